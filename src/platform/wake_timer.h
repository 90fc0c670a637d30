// The port of waiting: a scheduler sleeps until a moment of the wall clock and is woken by whatever comes
// first. Between waking and waking the process does nothing at all.
#pragma once

#include "platform/clock.h"

#include <chrono>
#include <optional>
#include <stop_token>

namespace nimbara {

class WakeTimer {
 public:
  enum class Cause {
    due,           ///< the moment has come
    asked,         ///< `wake` was called
    clockChanged,  ///< the wall clock jumped: it was set, or the machine is back from sleep
    stopped
  };

  virtual ~WakeTimer() = default;
  /// Waits for `span` of the wall clock; without one until woken. One thread at a time.
  virtual Cause wait(std::optional<std::chrono::milliseconds> span, std::stop_token stop) = 0;
  /// Any thread; wakes the waiting one, or the next that waits.
  virtual void wake() = 0;
};

}  // namespace nimbara
