#include "notifications/rules/daily_rules.h"

#include "model/condition_text.h"
#include "model/day_summary.h"
#include "model/present.h"
#include "model/upcoming_hours.h"
#include "notifications/rules/rule_constants.h"

#include <algorithm>
#include <map>

namespace nimbara {

namespace {

using Relation = Measurement::Relation;
using Hours = std::span<HourlyForecast const>;

DailyForecast const* today(RuleInputs const& inputs) {
  return inputs.weather ? dayAt(*inputs.weather, inputs.now) : nullptr;
}

DailyForecast const* tomorrow(RuleInputs const& inputs) {
  DailyForecast const* const day = today(inputs);
  if (day == nullptr || day == &inputs.weather->daily.back()) return nullptr;
  return std::next(day);
}

Evaluation single(Measurement const& measured, std::string title, std::string body) {
  Finding finding;
  finding.title = std::move(title);
  finding.body = std::move(body);
  finding.severity = AlertSeverity::info;
  return {{std::move(finding)}, {measured}, {}};
}

Evaluation unconditional(std::string title, std::string body) {
  Evaluation evaluation = single({}, std::move(title), std::move(body));
  evaluation.measured.clear();
  return evaluation;
}

int highest(DailyForecast const& day, int HourlyForecast::* value) {
  if (day.hourly.empty()) return 0;
  return (*std::ranges::max_element(day.hourly, {}, value)).*value;
}

std::string dayText(RuleInputs const& inputs, DailyForecast const& day) {
  return conditionText(summarize(day).condition.value_or(WeatherConditionCode::unknown),
                       hasDaylight(*inputs.weather, day), *inputs.texts);
}

bool knowsChance(HourlyForecast const& hour) {
  return hour.knows(ForecastValue::precipitationChance);
}

/// 0 where no hour tells a chance, for texts that name it only when it is high.
int highestChance(DailyForecast const& day, int HourlyForecast::* chance) {
  int most = 0;
  for (HourlyForecast const& hour : day.hourly) {
    if (knowsChance(hour)) most = std::max(most, hour.*chance);
  }
  return most;
}

/// The hours of a day in which people are about.
bool isWakingHour(HourlyForecast const& hour) {
  return hour.hour >= 7 && hour.hour < 22;
}

/// One condition fills less than half of the waking hours.
bool isVaried(DailyForecast const& day) {
  std::map<ConditionCategory, int> counts;
  int hours = 0;
  for (HourlyForecast const& hour : day.hourly) {
    if (!isWakingHour(hour)) continue;
    ++counts[category(hour.condition)];
    ++hours;
  }
  auto const most = std::ranges::max_element(counts, {}, [](auto const& entry) { return entry.second; });
  return most != counts.end() && 2 * most->second < hours;
}

/// The lowest temperature until the next morning.
std::optional<double> nightLow(RuleInputs const& inputs) {
  Hours const night = inputs.hoursWithin(cuts::kNightLength);
  if (night.empty()) return std::nullopt;
  return std::ranges::min_element(night, {}, &HourlyForecast::tempC)->tempC;
}

bool isBeachHour(HourlyForecast const& hour) {
  return hour.hour >= cuts::kBeachFrom && hour.hour < cuts::kBeachUntil &&
         hour.feelsLikeC >= cuts::kBeachWarmC && hour.feelsLikeC <= cuts::kBeachHotC && knowsChance(hour) &&
         hour.knows(ForecastValue::windSpeed) && hour.chanceOfRain < cuts::kBeachRainChance &&
         hour.chanceOfThunder < cuts::kBeachRainChance && hour.windSpeedKmph < cuts::kBeachWindKmh &&
         hour.windGustKmph < cuts::kBeachGustKmh && hour.cloudCover < cuts::kBeachCloud;
}

/// The longest run of beach hours of the rest of the day.
Hours beachWindow(RuleInputs const& inputs, DailyForecast const& day) {
  Hours const rest = upcomingHours(day.hourly, inputs.now);
  Hours best;
  for (auto begin = rest.begin(); begin != rest.end();) {
    auto const end = std::find_if_not(begin, rest.end(), isBeachHour);
    if (static_cast<std::size_t>(end - begin) > best.size()) best = Hours(begin, end);
    begin = end == rest.end() ? end : std::next(end);
  }
  return best;
}

}  // namespace

Evaluation umbrellaReminder(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  DailyForecast const* const day = today(inputs);
  if (day == nullptr) return Evaluation::unknown(Lack::noForecast);
  if (!day->hourly.empty() && std::ranges::none_of(day->hourly, knowsChance)) {
    return Evaluation::unknown(Lack::noDetail);
  }
  int const chance = highestChance(*day, &HourlyForecast::chanceOfRain);
  Measurement const measured{"rainChance", static_cast<double>(chance), Relation::atLeast,
                             cuts::kUmbrellaChance, "%"};
  if (!measured.holds()) return {{}, {measured}, {}};
  return single(measured, inputs.text("push.umbrella.title"),
                inputs.texts->format("push.umbrella.body", chance));
}

Evaluation uvReminder(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  DailyForecast const* const day = today(inputs);
  if (day == nullptr) return Evaluation::unknown(Lack::noForecast);
  int const index = std::max(day->uvIndex, highest(*day, &HourlyForecast::uvIndex));
  Measurement const measured{"uvIndex", static_cast<double>(index), Relation::atLeast, cuts::kUvReminderIndex,
                             ""};
  if (!measured.holds()) return {{}, {measured}, {}};
  return single(measured, inputs.text("push.uvReminder.title"),
                inputs.texts->format("push.uvReminder.body", index));
}

Evaluation beachTime(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  DailyForecast const* const day = today(inputs);
  if (day == nullptr) return Evaluation::unknown(Lack::noForecast);
  Hours const window = beachWindow(inputs, *day);
  Measurement const measured{"beachHours", static_cast<double>(window.size()), Relation::atLeast,
                             cuts::kBeachHours, ""};
  if (!measured.holds()) return {{}, {measured}, {}};
  double const warmest = std::ranges::max_element(window, {}, &HourlyForecast::tempC)->tempC;
  Instant const end = window.back().date + std::chrono::hours(1);
  return single(
      measured, inputs.text("push.beach.title"),
      inputs.texts->format("push.beach.body", hourText(inputs, std::max(window.front().date, inputs.now)),
                           hourText(inputs, end), temperatureText(inputs, warmest)));
}

Evaluation morningSummary(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  DailyForecast const* const day = today(inputs);
  if (day == nullptr) return Evaluation::unknown(Lack::noForecast);
  Texts const& texts = *inputs.texts;
  std::string_view const unit = temperatureSymbol(inputs);
  std::string body =
      texts.format("push.morning.body", inputs.place.name, shownTemperature(inputs, day->maxTempC), unit,
                   shownTemperature(inputs, day->minTempC), unit, dayText(inputs, *day));
  int const rain = highestChance(*day, &HourlyForecast::chanceOfRain);
  int const snow = highestChance(*day, &HourlyForecast::chanceOfSnow);
  if (snow > rain && snow >= cuts::kSummaryChance) {
    body += " " + texts.format("push.summary.snowChance", snow);
  } else if (rain >= cuts::kSummaryChance) {
    body += " " + texts.format("push.summary.rainChance", rain);
  }
  return unconditional(inputs.text("push.morning.title"), std::move(body));
}

Evaluation eveningSummary(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  std::optional<double> const low = nightLow(inputs);
  if (!low) return Evaluation::unknown(Lack::noForecast);
  Texts const& texts = *inputs.texts;
  std::string_view const unit = temperatureSymbol(inputs);
  std::string body = texts.format("push.evening.bodyLow", shownTemperature(inputs, *low), unit);
  if (DailyForecast const* const next = tomorrow(inputs)) {
    std::string const condition =
        isVaried(*next) ? inputs.text("push.evening.variedConditions") : dayText(inputs, *next);
    body += " " + texts.format("push.evening.bodyTomorrow", condition,
                               shownTemperature(inputs, next->maxTempC), unit);
  }
  return unconditional(inputs.text("push.evening.title"), std::move(body));
}

}  // namespace nimbara
