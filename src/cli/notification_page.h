// What a pass of the notification engine did, or would do, as text and as JSON. Pure.
#pragma once

#include "base/texts.h"
#include "cli/style.h"
#include "notifications/notification_log.h"

#include <string>
#include <vector>

namespace nimbara {

/// What was told and what is scheduled, in the order of delivery.
std::string notificationsJson(PassPlan const& plan);
std::string notificationsText(PassPlan const& plan, Texts const& texts, Style const& style, int width);

/// Every decision: what each rule found at each place, and why that is told or not.
std::string explanationJson(PassPlan const& plan);
std::string explanationText(PassPlan const& plan, Texts const& texts, Style const& style);

/// The log of what was told and held back, newest first.
std::string logJson(std::vector<LoggedNotification> const& log);
std::string logText(std::vector<LoggedNotification> const& log, Texts const& texts, Style const& style);

}  // namespace nimbara
