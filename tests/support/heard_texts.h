// What a listener heard on another thread, as texts, for a test that waits until it has heard enough.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace nimbara::test {

class HeardTexts {
 public:
  void add(std::string text) {
    std::lock_guard const lock(mutex_);
    texts_.push_back(std::move(text));
    changed_.notify_all();
  }
  /// All that was heard, as soon as there are `count` or after a long time.
  std::vector<std::string> wait(std::size_t count) {
    constexpr std::chrono::seconds kLong{20};
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, kLong, [&] { return texts_.size() >= count; });
    return texts_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> texts_;
};

}  // namespace nimbara::test
