// Runs what is due and sleeps until the next due moment, or until something wakes it. The process's only
// timer. Between waking and waking nothing happens.
#pragma once

#include "app/app_state.h"
#include "app/notifier.h"
#include "platform/wake_timer.h"

#include <stop_token>

namespace nimbara {

/// Until `stop`. A wall clock that jumps, as after sleep, refreshes what is old.
void runScheduler(AppState& state, Notifier& notifier, WakeTimer& timer, Clock const& clock,
                  std::stop_token const& stop);

/// The like for a program that tells nobody of anything.
void runScheduler(AppState& state, WakeTimer& timer, Clock const& clock, std::stop_token const& stop);

}  // namespace nimbara
