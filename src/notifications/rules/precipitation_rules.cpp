#include "notifications/rules/rule_constants.h"
#include "notifications/rules/weather_rules.h"

#include <algorithm>
#include <numeric>

namespace nimbara {

namespace {

using Relation = Measurement::Relation;
using Hours = std::span<HourlyForecast const>;
using Code = WeatherConditionCode;

enum class Kind { none, rain, snow };

Kind kindOf(Code condition) {
  switch (condition) {
    case Code::lightShowers:
    case Code::lightSleet:
    case Code::lightRain:
    case Code::heavyShowers:
    case Code::heavyRain:
    case Code::thunderyShowers:
    case Code::thunderyHeavyRain:
      return Kind::rain;
    case Code::lightSnow:
    case Code::heavySnow:
    case Code::lightSnowShowers:
    case Code::heavySnowShowers:
    case Code::thunderySnowShowers:
      return Kind::snow;
    default:
      return Kind::none;
  }
}

/// What differs between rain and snow.
struct Precipitation {
  Kind kind;
  int HourlyForecast::* chance;
  std::string_view chanceName;
  int startChance;
  int stopChance;
  std::string_view startTitle, startAt, startWindow, startBody;
  std::string_view stopTitle, stopAt, stopBody;
};

constexpr Precipitation kRain{Kind::rain,
                              &HourlyForecast::chanceOfRain,
                              "rainChance",
                              cuts::kRainStartChance,
                              cuts::kRainStopChance,
                              "push.rainStart.title",
                              "push.rainStart.bodyAt",
                              "push.rainStart.bodyWindow",
                              "push.rainStart.body",
                              "push.rainStop.title",
                              "push.rainStop.bodyAt",
                              "push.rainStop.body"};
constexpr Precipitation kSnow{Kind::snow,
                              &HourlyForecast::chanceOfSnow,
                              "snowChance",
                              cuts::kSnowStartChance,
                              cuts::kSnowStopChance,
                              "push.snowStart.title",
                              "push.snowStart.bodyAt",
                              "push.snowStart.bodyWindow",
                              "push.snowStart.body",
                              "push.snowStop.title",
                              "push.snowStop.bodyAt",
                              "push.snowStop.body"};

bool isFalling(RuleInputs const& inputs, Kind kind) {
  return inputs.present && kindOf(inputs.present->condition) == kind;
}

int highest(Hours hours, int HourlyForecast::* chance) {
  if (hours.empty()) return 0;
  return (*std::ranges::max_element(hours, {}, chance)).*chance;
}

bool knowsChance(HourlyForecast const& hour) {
  return hour.knows(ForecastValue::precipitationChance);
}

bool knowsAmount(HourlyForecast const& hour) {
  return hour.knows(ForecastValue::precipitation);
}

Measurement chanceMeasured(Precipitation const& what, Hours hours, int cut) {
  return {what.chanceName, static_cast<double>(highest(hours, what.chance)), Relation::atLeast,
          static_cast<double>(cut), "%"};
}

Evaluation single(Measurement const& measured, std::string title, std::string body) {
  Finding finding;
  finding.title = std::move(title);
  finding.body = std::move(body);
  return {{std::move(finding)}, {measured}, {}};
}

std::string startBody(RuleInputs const& inputs, Precipitation const& what, HourlyForecast const& start) {
  Texts const& texts = *inputs.texts;
  if (start.date <= inputs.now) return inputs.text(what.startBody);
  Hours const hours = inputs.hoursWithin(cuts::kSpellLookAhead);
  auto const end = std::ranges::find_if(hours, [&](HourlyForecast const& hour) {
    return hour.date > start.date && hour.*what.chance < what.startChance;
  });
  if (end == hours.end()) return texts.format(what.startAt, hourText(inputs, start.date));
  auto const length = std::chrono::duration_cast<std::chrono::hours>(end->date - start.date).count();
  return texts.format(what.startWindow, hourText(inputs, start.date), hourText(inputs, end->date), length);
}

Evaluation starts(RuleInputs const& inputs, Precipitation const& what) {
  Hours const hours = inputs.hoursWithin(cuts::kPrecipitationLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  if (std::ranges::none_of(hours, knowsChance)) return Evaluation::unknown(Lack::noDetail);
  Measurement const measured = chanceMeasured(what, hours, what.startChance);
  if (isFalling(inputs, what.kind)) return {{}, {measured}, "alreadyFalling"};
  if (!measured.holds()) return {{}, {measured}, {}};
  auto const start = std::ranges::find_if(
      hours, [&](HourlyForecast const& hour) { return hour.*what.chance >= what.startChance; });
  return single(measured, inputs.text(what.startTitle), startBody(inputs, what, *start));
}

bool isWet(HourlyForecast const& hour, Precipitation const& what) {
  return hour.*what.chance >= what.stopChance || kindOf(hour.condition) == what.kind;
}

Evaluation stops(RuleInputs const& inputs, Precipitation const& what) {
  Hours const hours = inputs.hoursWithin(cuts::kPrecipitationLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  // Nobody's 0 % is no reason to say that it stays dry.
  if (!std::ranges::all_of(hours, knowsChance)) return Evaluation::unknown(Lack::noDetail);
  int const lowest = (*std::ranges::min_element(hours, {}, what.chance)).*what.chance;
  Measurement const measured{what.chanceName, static_cast<double>(lowest), Relation::below,
                             static_cast<double>(what.stopChance), "%"};
  if (!isFalling(inputs, what.kind)) return {{}, {measured}, "notFalling"};
  auto const isWetHour = [&](HourlyForecast const& hour) { return isWet(hour, what); };
  auto const firstWet = std::ranges::find_if(hours, isWetHour);
  if (firstWet == hours.end()) {
    return single(measured, inputs.text(what.stopTitle), inputs.text(what.stopBody));
  }
  auto const dry = std::find_if_not(firstWet, hours.end(), isWetHour);
  if (dry == hours.end()) return {{}, {measured}, "noEndInSight"};
  return single(measured, inputs.text(what.stopTitle),
                inputs.texts->format(what.stopAt, hourText(inputs, dry->date)));
}

/// Much of it within hours.
struct HeavyFall {
  Precipitation const& what;
  double mm;
  int chance;
  std::string_view amountName, title, body;
};

constexpr HeavyFall kHeavyRain{kRain,        cuts::kHeavyRainMm, cuts::kHeavyRainChance,
                               "hourlyRain", "push.rain.title",  "push.rain.body"};
constexpr HeavyFall kHeavySnow{kSnow,        cuts::kHeavySnowMm, cuts::kHeavySnowChance,
                               "hourlySnow", "push.snow.title",  "push.snow.body"};

Evaluation heavyFall(RuleInputs const& inputs, HeavyFall const& heavy) {
  Hours const hours = inputs.hoursWithin(cuts::kHeavyLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  auto const likelyAmount = [&](HourlyForecast const& hour) {
    bool const isLikely =
        hour.*heavy.what.chance >= heavy.chance && kindOf(hour.condition) == heavy.what.kind;
    return isLikely ? hour.precipMM : 0;
  };
  bool const isKnown = std::ranges::any_of(
      hours, [](HourlyForecast const& hour) { return knowsChance(hour) && knowsAmount(hour); });
  if (!isKnown) return Evaluation::unknown(Lack::noDetail);
  auto const peak = std::ranges::max_element(hours, {}, likelyAmount);
  Measurement const measured{heavy.amountName, likelyAmount(*peak), Relation::atLeast, heavy.mm, "mm"};
  if (!measured.holds()) return {{}, {measured}, {}};
  std::string const amount = display(peak->precipMM, inputs.units.precipitation) + " " +
                             std::string(symbol(inputs.units.precipitation));
  return single(measured, inputs.text(heavy.title),
                inputs.texts->format(heavy.body, amount, hourText(inputs, peak->date)));
}

}  // namespace

Evaluation rainStart(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return starts(inputs, kRain);
}

Evaluation rainStop(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return stops(inputs, kRain);
}

Evaluation snowStart(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return starts(inputs, kSnow);
}

Evaluation snowStop(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return stops(inputs, kSnow);
}

Evaluation heavyRain(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return heavyFall(inputs, kHeavyRain);
}

Evaluation heavySnow(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return heavyFall(inputs, kHeavySnow);
}

Evaluation flood(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  Hours const hours = inputs.hoursWithin(cuts::kHeavyLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  if (std::ranges::none_of(hours, knowsAmount)) return Evaluation::unknown(Lack::noDetail);
  double const total =
      std::accumulate(hours.begin(), hours.end(), 0.0, [](double sum, HourlyForecast const& hour) {
        return sum + (kindOf(hour.condition) == Kind::rain ? hour.precipMM : 0);
      });
  Measurement const measured{"rainTotal", total, Relation::atLeast, cuts::kFloodMm, "mm"};
  if (!measured.holds()) return {{}, {measured}, {}};
  Evaluation found =
      single(measured, inputs.text("push.flood.title"),
             inputs.texts->format("push.flood.body", display(total, inputs.units.precipitation),
                                  " " + std::string(symbol(inputs.units.precipitation))));
  found.findings.front().severity = AlertSeverity::warning;
  return found;
}

}  // namespace nimbara
