#include "notifications/custom/custom_rule_text.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/list_text.h"
#include "base/words/time_words.h"

#include <array>

namespace nimbara {

namespace {

using Operator = ConditionOperator;
using Type = ConditionType;
using Unit = ConditionUnit;

/// A value in the unit that a person reads, how it is written and its unit's name.
struct Shown {
  double value;
  std::string_view pattern;
  std::string_view unit;
};

constexpr std::string_view kTenths = "%.1f%@";
constexpr std::string_view kHundredths = "%.2f %@";
constexpr std::string_view kWhole = "%.0f%@";
constexpr std::string_view kWholeApart = "%.0f %@";

template <class U>
Shown shownIn(double value, U unit, std::string_view pattern = kTenths) {
  return {convert(value, unit), pattern, symbol(unit)};
}

Shown shownValue(ConditionUnit unit, double value, Units const& units) {
  switch (unit) {
    case Unit::celsius:
      return shownIn(value, units.temperature);
    case Unit::kmh:
      return shownIn(value, units.wind);
    case Unit::km:
      return shownIn(value, units.distance);
    case Unit::hPa:
      return shownIn(value, units.pressure, units.pressure == PressureUnit::inHg ? kHundredths : kTenths);
    case Unit::mm:
      return shownIn(value, units.precipitation,
                     units.precipitation == PrecipitationUnit::inch ? kHundredths : kTenths);
    case Unit::percent:
      return {value, kWhole, "%"};
    case Unit::index:
      return {value, kWhole, ""};
    case Unit::microgram:
      return {value, kTenths, "µg/m³"};
    case Unit::magnitude:
      return {value, kTenths, ""};
    case Unit::minutes:
      return {value, kWholeApart, "min"};
  }
  return {value, kTenths, ""};
}

std::string formatted(Shown const& shown, Texts const& texts) {
  std::array<MessageArgument, 2> const arguments{shown.value, shown.unit};
  return formatMessage(shown.pattern, arguments, texts.decimalPoint());
}

std::string spanText(int hours, Texts const& texts) {
  if (hours == 0) return std::string(texts.text("customnotif.desc.immediate"));
  return texts.format("customnotif.desc.window", hours);
}

std::string comparison(CustomNotification const& rule, Units const& units, Texts const& texts) {
  std::string const key = "customnotif.op." + std::string(enumName(rule.conditionOperator));
  return texts.format(key, conditionValueText(kindOf(rule.conditionType).unit, rule.threshold, units, texts));
}

std::string typeText(Type type, Texts const& texts) {
  return std::string(texts.text("customnotif.type." + std::string(enumName(type))));
}

std::string earthquakeText(CustomNotification const& rule, Units const& units, Texts const& texts) {
  if (rule.conditionOperator == Operator::any) return std::string(texts.text("customnotif.desc.earthquake"));
  return texts.format("customnotif.desc.earthquakeMagnitude", comparison(rule, units, texts));
}

std::string dayList(EnumSet<DayOfWeek> days, Texts const& texts) {
  std::string list;
  for (std::size_t i = 0; i < enumNames<DayOfWeek>.size(); ++i) {
    auto const day = static_cast<DayOfWeek>(i);
    if (!days.contains(day)) continue;
    appendItem(list, texts.text(weekdayKey(day)), texts);
  }
  return list;
}

/// "7 AM" in the language's words; any day has that hour in UTC.
std::string clockHour(int hour, Texts const& texts) {
  return TimeWords(texts, Calendar::utc()).hour(Instant(std::chrono::hours(hour)));
}

}  // namespace

ConditionScale conditionScale(ConditionUnit unit, Units const& units) {
  Shown const zero = shownValue(unit, 0, units);
  bool const isWhole = zero.pattern == kWhole || zero.pattern == kWholeApart;
  int const decimals = isWhole ? 0 : zero.pattern == kTenths ? 1 : 2;
  return {shownValue(unit, 1, units).value - zero.value, zero.value, zero.unit, decimals};
}

std::string conditionValueText(ConditionUnit unit, double value, Units const& units, Texts const& texts) {
  return formatted(shownValue(unit, value, units), texts);
}

std::string conditionDifferenceText(ConditionUnit unit, double difference, Units const& units,
                                    Texts const& texts) {
  Shown shown = shownValue(unit, difference, units);
  shown.value -= shownValue(unit, 0, units).value;
  return formatted(shown, texts);
}

std::string ruleDescription(CustomNotification const& rule, Units const& units, Texts const& texts) {
  if (rule.conditionType == Type::earthquake) return earthquakeText(rule, units, texts);
  if (rule.conditionType == Type::rainWithin)
    return texts.format("customnotif.desc.rainWithin", static_cast<int>(rule.threshold));
  bool const isNow = kindOf(rule.conditionType).isOfStation();
  std::string const span = spanText(isNow ? 0 : rule.lookaheadHours, texts);
  if (rule.conditionType == Type::airQuality) {
    return texts.format("customnotif.desc.airQuality", comparison(rule, units, texts), span);
  }
  std::string const type = typeText(rule.conditionType, texts);
  if (rule.conditionOperator == Operator::any) return texts.format("customnotif.desc.event", type, span);
  return texts.format("customnotif.desc.amount", type, comparison(rule, units, texts), span);
}

std::string ruleSchedule(CustomNotification const& rule, Texts const& texts) {
  bool const isDaily = rule.scheduledDays == EnumSet<DayOfWeek>::all();
  if (rule.scheduledDays.empty()) return std::string(texts.text("customnotif.sched.never"));
  if (rule.isImmediate()) {
    return isDaily ? std::string(texts.text("customnotif.sched.immediatelyDaily"))
                   : texts.format("customnotif.sched.immediatelyOn", dayList(rule.scheduledDays, texts));
  }
  std::string const hour = clockHour(rule.checkHour, texts);
  return isDaily ? texts.format("customnotif.sched.dailyAt", hour)
                 : texts.format("customnotif.sched.onAt", dayList(rule.scheduledDays, texts), hour);
}

std::string weekdayKey(DayOfWeek day) {
  return "weekday." + std::string(enumName(day).substr(0, 3));
}

}  // namespace nimbara
