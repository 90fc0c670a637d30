// What a pass of the notification engine did, or would do, as text and as JSON. Pure.
#pragma once

#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "cli/pages/style.h"
#include "notifications/engine/pass_plan.h"
#include "notifications/log/notification_log.h"
#include "notifications/log/reason_text.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The text that says that there is nothing to send: of what was looked at alone.
std::string_view nothingKey(bool isAnyMissed, bool isAnyChecked);

/// What was sent and what is scheduled, in the order of delivery; of a preview what would be.
std::string notificationsJson(PassPlan const& plan);
std::string notificationsText(PassPlan const& plan, Texts const& texts, Style const& style, int width,
                              ReasonTense tense);

/// What reasons are written with.
struct ReasonWords {
  Texts const& texts;
  Units units;
  Calendar calendar;  ///< of moments
  Instant now;
};

/// How an explanation is written.
struct ExplanationPage {
  Style const& style;
  int width = 80;
  bool showsIdentifiers = false;
};

/// Every decision of a preview: what each rule found at each place, and why that would be sent or not. As
/// text, what would be sent comes first, and the rules that are turned off are only named.
std::string explanationJson(PassPlan const& plan);
std::string explanationText(PassPlan const& plan, ReasonWords const& words, ExplanationPage const& page);

/// The log of what was sent and held back, newest first.
std::string logJson(std::vector<LoggedNotification> const& log);
std::string logText(std::vector<LoggedNotification> const& log, ReasonWords const& words, Style const& style);

}  // namespace nimbara
