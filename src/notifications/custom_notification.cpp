#include "notifications/custom_notification.h"

#include "base/json/json_codec.h"

#include <algorithm>

namespace nimbara {

namespace {

namespace dom = simdjson::dom;

bool isKnownDay(dom::element element) {
  std::string_view name;
  return element.get(name) == simdjson::SUCCESS && enumFromName<DayOfWeek>(name).has_value();
}

/// A day that nobody knows would be a day on which the rule silently never runs.
bool knowsAllDays(dom::element element) {
  dom::array days;
  return element["scheduledDays"].get(days) == simdjson::SUCCESS && std::ranges::all_of(days, isKnownDay);
}

Result<CustomNotification, std::string> readRule(dom::element element) {
  CustomNotification rule;
  json_detail::Failure failure;
  if (!json_detail::read(element, rule, failure)) {
    return std::unexpected(DecodeError{failure.path, failure.reason}.text());
  }
  if (!knowsAllDays(element)) return std::unexpected("/scheduledDays: the name of a known day is expected");
  if (auto fault = faultOf(rule)) return std::unexpected(*fault);
  return rule;
}

}  // namespace

namespace {

std::optional<std::string> rainFaultOf(CustomNotification const& rule) {
  bool const isPossible = rule.threshold >= CustomNotification::kLeastRainMinutes &&
                          rule.threshold <= CustomNotification::kMostRainMinutes;
  if (!isPossible) return "rain can be looked for within 5 to 120 minutes";
  if (!rule.isImmediate()) return "rain in the next minutes cannot wait for an hour of the day";
  if (rule.conditionOperator != ConditionOperator::below) return "rain comes below a number of minutes";
  return std::nullopt;
}

}  // namespace

std::optional<std::string> faultOf(CustomNotification const& rule) {
  if (rule.checkHour != CustomNotification::kImmediately && (rule.checkHour < 0 || rule.checkHour > 23)) {
    return "the hour to check at is not between 0 and 23";
  }
  if (rule.lookaheadHours < 0 || rule.lookaheadHours > CustomNotification::kFarthestHours) {
    return "the look-ahead is not between 0 and " + std::to_string(CustomNotification::kFarthestHours) +
           " hours";
  }
  if (!std::isfinite(rule.threshold)) return "its threshold is not a number";
  if (rule.conditionType == ConditionType::rainWithin) return rainFaultOf(rule);
  return std::nullopt;
}

Result<CustomNotificationList, std::string> parseCustomNotifications(std::string_view text) {
  auto const root = json_detail::parseDocument(text);
  if (!root) return std::unexpected(root.error().text());
  dom::array elements;
  if (root->get(elements) != simdjson::SUCCESS) return std::unexpected("a list is expected");
  CustomNotificationList list;
  for (std::size_t number = 1; dom::element const element : elements) {
    auto rule = readRule(element);
    if (rule) {
      list.rules.push_back(std::move(*rule));
    } else {
      list.unread.push_back(simdjson::minify(element));
      list.warnings.push_back("rule " + std::to_string(number) + " of the list was skipped: " + rule.error());
    }
    ++number;
  }
  return list;
}

std::string encodeCustomNotifications(CustomNotificationList const& list) {
  std::string out = "[";
  for (CustomNotification const& rule : list.rules) out += (out.size() > 1 ? "," : "") + encodeJson(rule);
  for (std::string const& json : list.unread) out += (out.size() > 1 ? "," : "") + json;
  return out + "]";
}

}  // namespace nimbara
