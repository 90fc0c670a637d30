#include "app/engine/clocks/scheduler.h"

#include <algorithm>
#include <random>

namespace nimbara {

namespace {

std::optional<Instant> earlier(std::optional<Instant> a, std::optional<Instant> b) {
  if (!a || !b) return a ? a : b;
  return std::min(*a, *b);
}

}  // namespace

void runScheduler(AppState& state, Notifier& notifier, WakeTimer& timer, Clock const& clock,
                  std::stop_token const& stop) {
  while (!stop.stop_requested()) {
    state.runDue();
    notifier.runDue();
    std::optional<std::chrono::milliseconds> span;
    if (auto const due = earlier(state.nextDue(), notifier.nextDue())) {
      span = std::max(*due - clock.now(), std::chrono::milliseconds(0));
    }
    if (timer.wait(span, stop) != WakeTimer::Cause::clockChanged) continue;
    state.wokeUp(RefreshTrigger::resumed);
    notifier.wokeUp();
  }
}

std::chrono::milliseconds requestJitter() {
  static thread_local std::mt19937 random{std::random_device{}()};
  return std::chrono::milliseconds(std::uniform_int_distribution<int>(0, 20'000)(random));
}

std::unique_ptr<Clock> runningClock(std::optional<Instant> start) {
  if (start) return std::make_unique<ShiftedClock>(*start);
  return std::make_unique<SystemClock>();
}

}  // namespace nimbara
