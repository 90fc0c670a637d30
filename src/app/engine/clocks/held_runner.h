// Holds work back until it is released, and then passes everything on: the first refresh loads the network's
// library, which must not take the processor from the window's first frame.
#pragma once

#include "app/services/task_runner.h"

#include <mutex>
#include <utility>
#include <vector>

namespace nimbara {

class HeldRunner final : public TaskRunner {
 public:
  explicit HeldRunner(TaskRunner& runner) : runner_(runner) {}

  void run(Task task) override {
    std::lock_guard const lock(mutex_);
    if (isReleased_) {
      runner_.run(std::move(task));
    } else {
      held_.push_back(std::move(task));
    }
  }

  bool isReleased() {
    std::lock_guard const lock(mutex_);
    return isReleased_;
  }
  void release() {
    std::lock_guard const lock(mutex_);
    isReleased_ = true;
    for (Task& task : std::exchange(held_, {})) runner_.run(std::move(task));
  }

 private:
  TaskRunner& runner_;
  std::mutex mutex_;
  bool isReleased_ = false;
  std::vector<Task> held_;
};

}  // namespace nimbara
