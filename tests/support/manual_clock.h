// A clock that moves only when a test moves it.
#pragma once

#include "platform/clock.h"

#include <atomic>

namespace nimbara::test {

class ManualClock final : public Clock {
 public:
  explicit ManualClock(Instant now) : now_(now) {}
  Instant now() const override { return now_; }
  std::chrono::steady_clock::time_point steadyNow() const override { return steady_; }

  /// Both clocks; back in time only the wall clock goes.
  void advance(std::chrono::milliseconds step) {
    now_ = now_.load() + step;
    if (step.count() > 0) steady_ = steady_.load() + step;
  }
  /// The wall clock alone, as when somebody sets it.
  void set(Instant now) { now_ = now; }

 private:
  std::atomic<Instant> now_;
  std::atomic<std::chrono::steady_clock::time_point> steady_{
      std::chrono::steady_clock::time_point(std::chrono::hours(1000))};
};

}  // namespace nimbara::test
