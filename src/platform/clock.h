// The port through which the system learns what time it is. Decisions take `now` as an argument; only shells
// read it.
#pragma once

#include "base/time/instant.h"

#include <atomic>
#include <chrono>

namespace nimbara {

class Clock {
 public:
  virtual ~Clock() = default;
  /// Wall time, for everything that people and services date.
  virtual Instant now() const = 0;
  /// Time that never jumps, for limits and spans.
  virtual std::chrono::steady_clock::time_point steadyNow() const = 0;
};

class SystemClock final : public Clock {
 public:
  Instant now() const override {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
  }
  std::chrono::steady_clock::time_point steadyNow() const override {
    return std::chrono::steady_clock::now();
  }
};

/// A clock that stands where it was set: for runs that take a given moment for now.
class FixedClock final : public Clock {
 public:
  explicit FixedClock(Instant now) : now_(now) {}
  Instant now() const override { return now_; }
  std::chrono::steady_clock::time_point steadyNow() const override {
    return std::chrono::steady_clock::now();
  }

 private:
  Instant now_;
};

/// A clock that was set to a moment and runs on from there: for the background service in a run that takes a
/// given moment for its start.
class ShiftedClock final : public Clock {
 public:
  explicit ShiftedClock(Instant now) : shift_(now - SystemClock().now()) {}
  Instant now() const override { return SystemClock().now() + shift_; }
  std::chrono::steady_clock::time_point steadyNow() const override {
    return std::chrono::steady_clock::now();
  }

 private:
  std::chrono::milliseconds shift_;
};

/// A clock that its owner moves: for runs through time that nobody waits for. Other threads may read it.
class SteppedClock final : public Clock {
 public:
  explicit SteppedClock(Instant now) : now_(now) {}
  Instant now() const override { return now_; }
  std::chrono::steady_clock::time_point steadyNow() const override { return steady_; }

  /// The steady time moves with it, but never back.
  void set(Instant now) {
    auto const step = now - now_.load();
    now_ = now;
    if (step.count() > 0) steady_ = steady_.load() + step;
  }

 private:
  std::atomic<Instant> now_;
  std::atomic<std::chrono::steady_clock::time_point> steady_{
      std::chrono::steady_clock::time_point(std::chrono::hours(1000))};
};

}  // namespace nimbara
