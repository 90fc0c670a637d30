// A task runner whose tasks a test runs by hand.
#pragma once

#include "app/task_runner.h"

#include <deque>

namespace nimbara::test {

class ManualRunner final : public TaskRunner {
 public:
  void run(Task task) override { waiting_.push_back(std::move(task)); }

  std::size_t waiting() const { return waiting_.size(); }
  void runOne() {
    Task const task = std::move(waiting_.front());
    waiting_.pop_front();
    task(std::stop_token());
  }
  void runAll() {
    while (!waiting_.empty()) runOne();
  }

 private:
  std::deque<Task> waiting_;
};

}  // namespace nimbara::test
