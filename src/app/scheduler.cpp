#include "app/scheduler.h"

#include <algorithm>

namespace nimbara {

void runScheduler(AppState& state, WakeTimer& timer, Clock const& clock, std::stop_token const& stop) {
  while (!stop.stop_requested()) {
    state.runDue();
    std::optional<std::chrono::milliseconds> span;
    if (auto const due = state.nextDue()) {
      span = std::max(*due - clock.now(), std::chrono::milliseconds(0));
    }
    if (timer.wait(span, stop) == WakeTimer::Cause::clockChanged) state.wokeUp(RefreshTrigger::resumed);
  }
}

}  // namespace nimbara
