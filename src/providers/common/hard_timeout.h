// A limit in time that holds even when the operation under it does not end: the caller goes on at the limit,
// and whatever the operation brings later is dropped.
#pragma once

#include "base/result.h"
#include "providers/common/api_error.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

namespace nimbara {

/// Threads whose results nobody waits for any more. They were asked to stop; the owner's end waits for them,
/// so that none outlives what it works on.
class LateWork {
 public:
  ~LateWork() { requestStop(); }

  void keep(std::jthread thread, std::shared_ptr<std::atomic<bool>> ended) {
    std::lock_guard const lock(mutex_);
    std::erase_if(threads_, [](Entry const& entry) { return entry.ended->load(); });
    thread.request_stop();
    threads_.push_back({std::move(thread), std::move(ended)});
  }

 private:
  struct Entry {
    std::jthread thread;
    std::shared_ptr<std::atomic<bool>> ended;
  };

  void requestStop() {
    for (Entry& entry : threads_) entry.thread.request_stop();
  }

  std::mutex mutex_;
  std::list<Entry> threads_;
};

/// The shared state of one time-limited call: whoever comes first settles it, all others come too late.
template <class T>
class HardTimeoutBox {
 public:
  using Outcome = Result<T, APIError>;

  /// True when this outcome is the one that the caller gets.
  bool finish(Outcome outcome) {
    {
      std::lock_guard const guard(lock_);
      if (finished_) return false;
      finished_ = true;
      outcome_ = std::move(outcome);
    }
    continuation_.notify_all();
    return true;
  }

  /// Waits for the outcome; at the limit the call is settled as timed out.
  Outcome wait(std::chrono::milliseconds limit) {
    {
      std::unique_lock guard(lock_);
      continuation_.wait_for(guard, limit, [this] { return finished_; });
    }
    finish(std::unexpected(APIError::network({HttpError::Kind::timedOut, "no answer in time"})));
    std::lock_guard const guard(lock_);
    return std::move(*outcome_);
  }

 private:
  std::mutex lock_;
  std::condition_variable continuation_;
  bool finished_ = false;
  std::optional<Outcome> outcome_;
};

/// Runs `operation` on a thread of its own for at most `limit`. Its stop token is triggered at the limit and
/// when `caller` is stopped; a stopped caller gets a `cancelled` error. The thread of an operation that goes
/// on regardless is handed to `late`.
template <class T>
Result<T, APIError> hardTimeout(std::chrono::milliseconds limit, LateWork& late,
                                std::function<Result<T, APIError>(std::stop_token)> operation,
                                std::stop_token const& caller = {}) {
  auto const cancelled = [] {
    return std::unexpected(APIError::network({HttpError::Kind::cancelled, "cancelled"}));
  };
  if (caller.stop_requested()) return cancelled();
  auto const box = std::make_shared<HardTimeoutBox<T>>();
  auto const ended = std::make_shared<std::atomic<bool>>(false);
  std::jthread work([box, ended, operation = std::move(operation)](std::stop_token const& stop) {
    box->finish(operation(stop));
    ended->store(true);
  });
  std::stop_callback const cancel(caller, [&] { box->finish(cancelled()); });
  auto outcome = box->wait(limit);
  late.keep(std::move(work), ended);
  return outcome;
}

}  // namespace nimbara
