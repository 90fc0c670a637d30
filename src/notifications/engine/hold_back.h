// What keeps a notification from being told now, and how one is presented: shared by what a pass finds and
// what was scheduled for an hour. Pure.
#pragma once

#include "base/words/texts.h"
#include "notifications/decision.h"
#include "notifications/rules/rule_settings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// "gov" of "gov_".
std::string_view withoutJoint(std::string_view stem);
NotificationUrgency urgencyOf(AlertSeverity severity);
std::vector<NotificationAction> notificationActions(Texts const& texts);

/// A finding as the desktop is to show it, under no identifier yet; a quiet one is delivered silently.
NotificationRequest requestFor(Rule const& rule, Finding const& finding, bool sounds, bool isQuiet,
                               Texts const& texts);

/// The body with what is said of an event and no part of it.
std::string wholeBody(Finding const& finding);

/// Snoozing and the quiet hours; `hour` is the place's.
std::optional<RuleOutcome> heldAtHour(RuleSettings const& values, Instant now, int hour);
/// A mute names the rule, the kind, or the kind at one severity.
bool mutes(RuleSettings const& values, Instant now, std::string_view stem, std::string const& kind,
           AlertSeverity severity);

}  // namespace nimbara
