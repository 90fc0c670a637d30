// The user's own rules in words: what a rule watches, when it runs, and its values in the user's units. Pure.
#pragma once

#include "base/units.h"
#include "base/words/texts.h"
#include "notifications/custom/condition_kinds.h"
#include "notifications/custom_notification.h"

#include <string>

namespace nimbara {

/// How a metric value and the user's unit hang together: shown = metric * factor + offset.
struct ConditionScale {
  double factor = 1;
  double offset = 0;
  std::string_view unit;
  int decimals = 0;  ///< that suit it

  double shown(double metric) const { return metric * factor + offset; }
  double metric(double shown) const { return (shown - offset) / factor; }
};
ConditionScale conditionScale(ConditionUnit unit, Units const& units);

/// A metric value in the user's unit: "31.1mph", "0.20 in", "70%".
std::string conditionValueText(ConditionUnit unit, double value, Units const& units, Texts const& texts);
/// The like of a difference of two values: no zero point is moved.
std::string conditionDifferenceText(ConditionUnit unit, double difference, Units const& units,
                                    Texts const& texts);

/// "Wind gust above 50.0km/h in the next 6 hours".
std::string ruleDescription(CustomNotification const& rule, Units const& units, Texts const& texts);
/// "Every day at 7 AM", "Mon, Wed, as soon as it is forecast".
std::string ruleSchedule(CustomNotification const& rule, Texts const& texts);
/// "weekday.wed".
std::string weekdayKey(DayOfWeek day);

}  // namespace nimbara
