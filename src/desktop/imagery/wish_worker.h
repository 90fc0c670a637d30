// One wish at a time, served on a thread of its own while somebody has it. Owned by whoever makes pictures
// for a map or the globe.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>

namespace nimbara {

template <class Wish>
class WishWorker {
 public:
  /// On the worker's thread, without locks. False: it is to be served again after a while.
  using Serve = std::function<bool(Wish const& wish, std::stop_token const& stop)>;
  /// Before a wish is served again; each time twice as long, up to the second.
  struct Rest {
    std::chrono::milliseconds first, most;
  };

  WishWorker(Rest rest, Serve serve)
      : rest_(rest), serve_(std::move(serve)), thread_([this](std::stop_token const& end) { work(end); }) {}
  ~WishWorker() {
    thread_.request_stop();
    want(std::nullopt);
  }
  WishWorker(WishWorker const&) = delete;
  WishWorker& operator=(WishWorker const&) = delete;

  /// What was wanted before is wanted no more, and is stopped; nothing while nobody looks. Returns at once.
  void want(std::optional<Wish> const& wish) {
    std::lock_guard const lock(mutex_);
    if (wish == wish_) return;
    stop_.request_stop();
    stop_ = std::stop_source();
    wish_ = wish;
    isNew_ = wish.has_value();
    wake_.notify_all();
  }

 private:
  void work(std::stop_token const& end) {
    std::unique_lock lock(mutex_);
    std::optional<std::chrono::milliseconds> rest;  // before the wish is served again
    auto const isDue = [this] { return isNew_; };
    while (true) {
      if (rest) {
        wake_.wait_for(lock, end, *rest, isDue);
      } else {
        wake_.wait(lock, end, isDue);
      }
      if (end.stop_requested()) return;
      auto const next = isNew_ || !rest ? rest_.first : std::min(2 * *rest, rest_.most);
      isNew_ = false;
      rest.reset();
      if (!wish_) continue;
      Wish const wish = *wish_;
      std::stop_token const stop = stop_.get_token();
      lock.unlock();
      if (!serve_(wish, stop)) rest = next;
      lock.lock();
    }
  }

  Rest rest_;
  Serve serve_;
  std::mutex mutex_;  // guards the four below
  std::condition_variable_any wake_;
  std::optional<Wish> wish_;
  bool isNew_ = false;  ///< nobody has begun with it
  std::stop_source stop_;
  std::jthread thread_;
};

}  // namespace nimbara
