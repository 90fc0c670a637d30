// Runs what is due and sleeps until the next due moment, or until something wakes it. The process's only
// timer. Between waking and waking nothing happens.
#pragma once

#include "app/engine/app_state.h"
#include "app/notices/notifier.h"
#include "platform/wake_timer.h"

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>

namespace nimbara {

/// Until `stop`. A wall clock that jumps, as after sleep, refreshes what is old.
void runScheduler(AppState& state, Notifier& notifier, WakeTimer& timer, Clock const& clock,
                  std::stop_token const& stop);

/// Random, up to 20 s: services ask clients not to come all on the full minute.
std::chrono::milliseconds requestJitter();

/// The system's clock, or one that was set to `start` and runs on from there.
std::unique_ptr<Clock> runningClock(std::optional<Instant> start);

}  // namespace nimbara
