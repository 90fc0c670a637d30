// States of notifications in tests: what the page may have to show.
#pragma once

#include "app/state/notifications_state.h"
#include "states.h"

namespace nimbara::test {

LoggedNotification logLine(std::string title, RuleOutcome outcome, Instant time = kNow);

CustomNotification gustRule(std::string title = "Gusts", double threshold = 50);

NotificationsState withSettings(SettingValues values);

/// Everything at once and much of it.
NotificationsState crowdedState();

std::shared_ptr<EngineSnapshot> notifying(NotificationsState state);

}  // namespace nimbara::test
