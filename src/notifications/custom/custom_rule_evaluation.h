// Looks at one of the user's own rules and the inputs of its place: does it hold, when, by how much, or why
// was it not looked at. Pure; whether a rule that holds is announced is the engine's decision.
#pragma once

#include "base/enum_names.h"
#include "notifications/custom_notification.h"
#include "notifications/rules/rule_inputs.h"
#include "notifications/rules/rule_settings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct PrecipOutlook;

enum class CustomOutcome {
  holds,
  doesNotHold,
  disabled,
  notToday,
  notYet,  ///< the hour of its check has not come
  placeDeleted,
  noForecast,    ///< none for that span
  feedFailed,    ///< the air quality or the earthquakes are not known
  noDetail,      ///< the provider does not give what it measures
  noRadar,       ///< nobody offers a nowcast of the place
  noStation,     ///< none is linked, or none that measures it
  stationSilent  ///< nothing was measured lately
};
template <>
inline constexpr auto enumNames<CustomOutcome> = std::to_array<std::string_view>(
    {"holds", "doesNotHold", "disabled", "notToday", "notYet", "placeDeleted", "noForecast", "feedFailed",
     "noDetail", "noRadar", "noStation", "stationSilent"});
static_assert(enumNamesComplete(CustomOutcome::stationSilent));

/// Nothing can be said of the condition.
bool isUnknown(CustomOutcome outcome);

struct CustomEvaluation {
  CustomOutcome outcome = CustomOutcome::doesNotHold;
  /// What comes nearest to the threshold or lies farthest beyond it; the earliest of equals. Absent when
  /// nothing was looked at.
  std::optional<double> value;
  std::optional<double> margin;  ///< beyond the threshold; negative: short of it
  std::optional<Instant> at;     ///< the value's hour, or when the earth shook
  bool isNow = false;            ///< it is the present's
  std::string where;             ///< of an earthquake

  bool holds() const { return outcome == CustomOutcome::holds; }
};

/// A chance from which an event counts as forecast, %.
inline constexpr double kLikelyPercent = 50;

/// Of the next two hours, with rain and snow named by the forecast; of a state that is not known where nobody
/// could be asked.
PrecipOutlook rainOutlook(RuleInputs const& inputs);

/// What a rule of that kind reads.
RuleInputSet inputsOf(CustomNotification::ConditionType type);

/// Why the rule is not due at `inputs.now`; nothing when it is. An hour that has passed still counts on its
/// day. Without `hasPlace` the saved place that it watches is gone.
std::optional<CustomOutcome> reasonNotDue(CustomNotification const& rule, RuleInputs const& inputs,
                                          bool hasPlace);

/// The rule's condition alone, whatever its schedule.
CustomEvaluation measuredRule(CustomNotification const& rule, RuleInputs const& inputs,
                              RuleSettings const& settings);

/// `inputs` are of the rule's own place.
CustomEvaluation evaluateCustomRule(CustomNotification const& rule, RuleInputs const& inputs,
                                    RuleSettings const& settings, bool hasPlace);

/// The body of its notification: the description with the value found.
std::string customRuleBody(CustomNotification const& rule, CustomEvaluation const& found,
                           RuleInputs const& inputs);

}  // namespace nimbara
