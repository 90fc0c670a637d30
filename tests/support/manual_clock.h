// A clock that moves only when a test moves it.
#pragma once

#include "platform/clock.h"

#include <atomic>

namespace nimbara::test {

class ManualClock final : public Clock {
 public:
  explicit ManualClock(Instant now) : now_(now) {}
  Instant now() const override { return now_; }
  std::chrono::steady_clock::time_point steadyNow() const override {
    return std::chrono::steady_clock::time_point(now_.load().time_since_epoch());
  }
  void advance(std::chrono::milliseconds step) { now_ = now_.load() + step; }
  void set(Instant now) { now_ = now; }

 private:
  std::atomic<Instant> now_;
};

}  // namespace nimbara::test
