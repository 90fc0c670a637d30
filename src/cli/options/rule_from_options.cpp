#include "cli/options/rule_from_options.h"

#include "base/text/text.h"
#include "notifications/custom/condition_kinds.h"

#include <algorithm>

namespace nimbara {

namespace {

std::unexpected<Failure> mistake(std::string sentence) {
  return std::unexpected(Failure{exitCode::kUsage, std::move(sentence), {}});
}

/// "wed" or "wednesday".
std::optional<DayOfWeek> dayNamed(std::string_view text) {
  std::string const wanted = asciiLowered(trimmed(text));
  auto const found = std::ranges::find_if(enumNames<DayOfWeek>, [&](std::string_view name) {
    return name == wanted || name.substr(0, 3) == wanted;
  });
  if (found == enumNames<DayOfWeek>.end()) return std::nullopt;
  return static_cast<DayOfWeek>(found - enumNames<DayOfWeek>.begin());
}

Result<EnumSet<DayOfWeek>, Failure> daysOf(std::string_view text) {
  EnumSet<DayOfWeek> days;
  for (std::string_view const part : split(text, ',')) {
    auto const day = dayNamed(part);
    if (!day) return mistake("'" + oneLine(part) + "' is not a day; use mon,tue,wed,thu,fri,sat,sun");
    days.insert(*day);
  }
  return days;
}

Result<Uuid, Failure> placeOf(std::string const& text, PlaceList const& places) {
  auto const wanted = parsePlace(text);
  SavedPlace const* saved = places.find(text);
  if (saved == nullptr && !wanted) return mistake(wanted.error());
  if (saved == nullptr && std::holds_alternative<Coordinate>(*wanted)) {
    saved = places.findNear(std::get<Coordinate>(*wanted));
  }
  if (saved != nullptr) return saved->id;
  return std::unexpected(Failure{exitCode::kUnavailable,
                                 "there is no saved place '" + oneLine(text) +
                                     "'; save it first with: nimbara places add " + oneLine(text),
                                 {}});
}

/// Why the comparison does not suit what is measured; nothing when it does.
std::optional<std::string> misfit(CustomNotification const& rule, bool hasThreshold) {
  ConditionKind const& kind = kindOf(rule.conditionType);
  std::string const type(enumName(rule.conditionType));
  bool const isAny = rule.conditionOperator == ConditionOperator::any;
  if (kind.isWithin() && !hasThreshold) return type + " needs a --threshold in minutes";
  if (kind.isWithin() && rule.conditionOperator != ConditionOperator::below)
    return type + " comes within a number of minutes; the operator for it is below";
  if (isAny && !kind.canBeAny())
    return "'any' cannot be used with " + type + "; compare it with above or below";
  if (!isAny && kind.isEvent()) return type + " occurs or does not; the operator for it is any";
  if (!isAny && !hasThreshold) return type + " needs a --threshold";
  return std::nullopt;
}

/// Without an operator an amount lies above, and an event occurs.
ConditionOperator usualOperator(CustomNotification const& rule, RulesOptions const& options) {
  ConditionKind const& kind = kindOf(rule.conditionType);
  if (kind.isWithin()) return ConditionOperator::below;
  bool const isAny = kind.isEvent() || (kind.canBeAny() && !options.threshold);
  return isAny ? ConditionOperator::any : ConditionOperator::above;
}

void setCondition(CustomNotification& rule, RulesOptions const& options) {
  bool const wasWithin = kindOf(rule.conditionType).isWithin();
  if (options.type) rule.conditionType = *enumFromName<ConditionType>(*options.type);
  // No other kind is compared as this one is.
  bool const isOther = wasWithin != kindOf(rule.conditionType).isWithin();
  if (options.comparison) {
    rule.conditionOperator = *enumFromName<ConditionOperator>(*options.comparison);
  } else if (options.action == RulesOptions::Action::add || isOther) {
    rule.conditionOperator = usualOperator(rule, options);
  }
  if (options.threshold) rule.threshold = *options.threshold;
}

Result<void, Failure> setSchedule(CustomNotification& rule, RulesOptions const& options) {
  if (options.lookahead) rule.lookaheadHours = *options.lookahead;
  if (options.hour) rule.checkHour = *options.hour;
  if (options.immediately) rule.checkHour = CustomNotification::kImmediately;
  if (!options.days) return {};
  auto const days = daysOf(*options.days);
  if (!days) return std::unexpected(days.error());
  rule.scheduledDays = *days;
  return {};
}

Result<void, Failure> setPlace(CustomNotification& rule, RulesOptions const& options,
                               PlaceList const& places) {
  if (options.selectedPlace) rule.locationID.reset();
  if (!options.place) return {};
  auto const place = placeOf(*options.place, places);
  if (!place) return std::unexpected(place.error());
  rule.locationID = *place;
  return {};
}

}  // namespace

CustomNotification newRule() {
  CustomNotification rule;
  rule.id = Uuid::random();
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  return rule;
}

Result<CustomNotification, Failure> ruleWith(CustomNotification rule, RulesOptions const& options,
                                             PlaceList const& places) {
  if (options.title) rule.title = trimmed(*options.title);
  if (rule.title.empty()) return mistake("a rule needs a title");
  setCondition(rule, options);
  bool const hasThreshold = options.threshold || options.action != RulesOptions::Action::add;
  if (auto const sentence = misfit(rule, hasThreshold)) return mistake(*sentence);
  if (auto const done = setSchedule(rule, options); !done) return std::unexpected(done.error());
  if (auto const done = setPlace(rule, options, places); !done) return std::unexpected(done.error());
  if (auto const fault = faultOf(rule)) return mistake("the rule is not valid: " + *fault);
  return rule;
}

}  // namespace nimbara
