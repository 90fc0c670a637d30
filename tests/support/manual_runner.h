// A task runner whose tasks a test runs by hand. Any thread may hand it one.
#pragma once

#include "app/services/task_runner.h"

#include <deque>
#include <mutex>

namespace nimbara::test {

class ManualRunner final : public TaskRunner {
 public:
  void run(Task task) override {
    std::lock_guard const lock(mutex_);
    waiting_.push_back(std::move(task));
  }

  std::size_t waiting() const {
    std::lock_guard const lock(mutex_);
    return waiting_.size();
  }
  void runOne() { take()(std::stop_token()); }
  void runAll() {
    while (waiting() > 0) runOne();
  }

 private:
  Task take() {
    std::lock_guard const lock(mutex_);
    Task task = std::move(waiting_.front());
    waiting_.pop_front();
    return task;
  }

  mutable std::mutex mutex_;
  std::deque<Task> waiting_;
};

}  // namespace nimbara::test
