#include "app/scheduler.h"

#include <algorithm>

namespace nimbara {

namespace {

std::optional<Instant> earlier(std::optional<Instant> a, std::optional<Instant> b) {
  if (!a || !b) return a ? a : b;
  return std::min(*a, *b);
}

void runScheduler(AppState& state, Notifier* notifier, WakeTimer& timer, Clock const& clock,
                  std::stop_token const& stop) {
  while (!stop.stop_requested()) {
    state.runDue();
    if (notifier != nullptr) notifier->runDue();
    std::optional<std::chrono::milliseconds> span;
    if (auto const due = earlier(state.nextDue(), notifier != nullptr ? notifier->nextDue() : std::nullopt)) {
      span = std::max(*due - clock.now(), std::chrono::milliseconds(0));
    }
    if (timer.wait(span, stop) != WakeTimer::Cause::clockChanged) continue;
    state.wokeUp(RefreshTrigger::resumed);
    if (notifier != nullptr) notifier->wokeUp();
  }
}

}  // namespace

void runScheduler(AppState& state, Notifier& notifier, WakeTimer& timer, Clock const& clock,
                  std::stop_token const& stop) {
  runScheduler(state, &notifier, timer, clock, stop);
}

void runScheduler(AppState& state, WakeTimer& timer, Clock const& clock, std::stop_token const& stop) {
  runScheduler(state, nullptr, timer, clock, stop);
}

}  // namespace nimbara
