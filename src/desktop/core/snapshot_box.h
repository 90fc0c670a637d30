// Hands the newest snapshot from the core's threads to the window's: what was not taken before the next one
// came is skipped, so that the window never works through old ones. Owned by the program's entry.
#pragma once

#include "app/state/engine_snapshot.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace nimbara {

class SnapshotBox {
 public:
  using Snapshot = std::shared_ptr<EngineSnapshot const>;

  /// `announce` is called on the core's threads when the box was empty: the window is to take what is there.
  explicit SnapshotBox(std::function<void()> announce) : announce_(std::move(announce)) {}

  void put(Snapshot snapshot) {
    bool const wasEmpty = [&] {
      std::lock_guard const lock(mutex_);
      return std::exchange(newest_, std::move(snapshot)) == nullptr;
    }();
    arrived_.notify_one();
    if (wasEmpty) announce_();
  }

  /// Null when there is nothing new, or nothing comes within `patience`.
  Snapshot take(std::chrono::milliseconds patience = {}) {
    std::unique_lock lock(mutex_);
    arrived_.wait_for(lock, patience, [this] { return newest_ != nullptr; });
    return std::exchange(newest_, nullptr);
  }

 private:
  std::function<void()> announce_;
  std::mutex mutex_;
  std::condition_variable arrived_;
  Snapshot newest_;
};

}  // namespace nimbara
