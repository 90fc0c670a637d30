// A clock that a test sets forward, the wall's and the steady one apart or together.
#pragma once

#include "platform/clock.h"

namespace nimbara::test {

class MovableClock final : public Clock {
 public:
  explicit MovableClock(Instant now) : now_(now) {}

  Instant now() const override { return now_; }
  std::chrono::steady_clock::time_point steadyNow() const override { return steady_; }

  void pass(std::chrono::milliseconds span) {
    now_ += span;
    steady_ += span;
  }
  void setWall(Instant now) { now_ = now; }

 private:
  Instant now_;
  std::chrono::steady_clock::time_point steady_{std::chrono::hours(1000)};
};

}  // namespace nimbara::test
