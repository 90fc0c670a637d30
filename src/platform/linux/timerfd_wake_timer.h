// Waits on the kernel's timer of the wall clock, which also tells when that clock is set and when the machine
// comes back from sleep.
#pragma once

#include "platform/wake_timer.h"

namespace nimbara {

class TimerfdWakeTimer final : public WakeTimer {
 public:
  TimerfdWakeTimer();
  ~TimerfdWakeTimer() override;
  TimerfdWakeTimer(TimerfdWakeTimer const&) = delete;
  TimerfdWakeTimer& operator=(TimerfdWakeTimer const&) = delete;

  Cause wait(std::optional<std::chrono::milliseconds> span, std::stop_token stop) override;
  void wake() override;

 private:
  void arm(std::optional<std::chrono::milliseconds> span) const;

  int timer_;
  int event_;
};

}  // namespace nimbara
