#include "model/day_summary.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using Code = WeatherConditionCode;
using Codes = std::vector<Code>;
using Hours = std::vector<HourlyForecast>;

constexpr int kFirstWakingHour = 7;
constexpr int kLastWakingHour = 21;
/// So many hours of something that falls make a day of it.
constexpr int kHoursOfFall = 2;
constexpr int kHoursOfFog = 5;
/// So much of it does as well, whenever it falls.
constexpr double kSnowOfADayCm = 0.5;
constexpr double kRainOfADayMM = 2;
/// What to call so much where no hour and no provider names it.
constexpr double kHeavySnowCm = 10;
constexpr double kHeavyRainMM = 20;
/// The hours of a day cut short add up to less than the day.
constexpr std::size_t kWholeDay = 23;

/// Gravest first; the skies behind them are told apart by how often they stand in the day.
constexpr std::array kFalling = std::to_array<ConditionCategory>(
    {ConditionCategory::thunderstorm, ConditionCategory::heavySnow, ConditionCategory::heavyRain,
     ConditionCategory::sleet, ConditionCategory::lightSnow, ConditionCategory::lightRain});

bool isSnowfall(Code condition) {
  auto const group = category(condition);
  return group == ConditionCategory::heavySnow || group == ConditionCategory::lightSnow ||
         condition == Code::thunderySnowShowers;
}

bool isKnown(Code condition) {
  return condition != Code::unknown;
}

Codes conditionsOf(Hours const& hours, auto counts) {
  Codes conditions;
  for (HourlyForecast const& hour : hours) {
    if (isKnown(hour.condition) && counts(hour)) conditions.push_back(hour.condition);
  }
  return conditions;
}

bool isWaking(HourlyForecast const& hour) {
  return hour.hour >= kFirstWakingHour && hour.hour <= kLastWakingHour;
}

/// The most frequent of the conditions that `counts` accepts, the earliest of equals, if there are enough.
std::optional<Code> mostFrequent(Codes const& conditions, auto counts, int atLeast) {
  std::array<int, enumNames<Code>.size()> tally{};
  int total = 0;
  std::optional<Code> best;
  for (Code const condition : conditions) {
    if (!counts(condition)) continue;
    ++total;
    ++tally[static_cast<std::size_t>(condition)];
  }
  for (Code const condition : conditions) {
    int const count = tally[static_cast<std::size_t>(condition)];
    if (count > 0 && (!best || count > tally[static_cast<std::size_t>(*best)])) best = condition;
  }
  return total >= atLeast ? best : std::nullopt;
}

/// What falls, or the fog, that fills enough of these hours: the gravest kind that does so alone, else the
/// most frequent of what falls altogether.
std::optional<Code> lasting(Codes const& conditions) {
  auto const of = [](ConditionCategory wanted) {
    return [wanted](Code condition) { return category(condition) == wanted; };
  };
  for (ConditionCategory const kind : kFalling) {
    if (auto const found = mostFrequent(conditions, of(kind), kHoursOfFall)) return found;
  }
  if (auto const mixed = mostFrequent(conditions, isPrecipitation, kHoursOfFall)) return mixed;
  return mostFrequent(conditions, of(ConditionCategory::fog), kHoursOfFog);
}

/// The name of what fell: that of its hours, that of the provider's day, else one by the amount.
Code fallenAs(bool (*isOfKind)(Code), Codes const& conditions, DailyForecast const& day, Code byAmount) {
  if (auto const found = mostFrequent(conditions, isOfKind, 1)) return *found;
  return day.condition && isOfKind(*day.condition) ? *day.condition : byAmount;
}

/// What fell at whatever hour, if it was much.
std::optional<Code> fallen(DailyForecast const& day, Codes const& conditions, std::optional<double> mm) {
  if (day.totalSnowCm >= kSnowOfADayCm) {
    return fallenAs(isSnowfall, conditions, day,
                    day.totalSnowCm >= kHeavySnowCm ? Code::heavySnow : Code::lightSnow);
  }
  if (!mm || *mm < kRainOfADayMM) return std::nullopt;
  return fallenAs(isPrecipitation, conditions, day, *mm >= kHeavyRainMM ? Code::heavyRain : Code::lightRain);
}

std::optional<Code> conditionOf(DailyForecast const& day, std::optional<double> mm) {
  Codes const all = conditionsOf(day.hourly, [](HourlyForecast const&) { return true; });
  if (all.empty() && day.condition) return day.condition;
  Codes waking = conditionsOf(day.hourly, isWaking);
  if (waking.empty()) waking = all;
  if (auto const found = lasting(waking)) return found;
  if (auto const found = fallen(day, all, mm)) return found;
  return mostFrequent(waking, isKnown, 1);
}

/// The sum of the hours, where they are all there and all tell; else the provider's own, else what is known.
std::optional<double> precipitationOf(DailyForecast const& day) {
  bool allTell = day.hourly.size() >= kWholeDay;
  std::optional<double> sum;
  for (HourlyForecast const& hour : day.hourly) {
    bool const tells = hour.knows(ForecastValue::precipitation);
    if (tells) sum = sum.value_or(0) + hour.precipMM;
    allTell = allTell && tells;
  }
  return allTell || !day.precipMM ? sum : day.precipMM;
}

void addWind(DailyForecast const& day, DaySummary& summary) {
  for (HourlyForecast const& hour : day.hourly) {
    if (hour.knows(ForecastValue::windGust)) {
      summary.strongestGustKmph = std::max(summary.strongestGustKmph.value_or(0), hour.windGustKmph);
    }
    bool const isStronger = !summary.strongestWindKmph || hour.windSpeedKmph > *summary.strongestWindKmph;
    if (!hour.knows(ForecastValue::windSpeed) || !isStronger) continue;
    summary.strongestWindKmph = hour.windSpeedKmph;
    summary.windDirection = hour.windDirection;
  }
  if (summary.strongestWindKmph || !day.windSpeedKmph) return;
  summary.strongestWindKmph = day.windSpeedKmph;
  summary.windDirection = day.windDirection.value_or("");
}

std::optional<int> precipitationChanceOf(DailyForecast const& day) {
  std::optional<int> chance = day.dailyPrecipitationChance;
  if (chance) return chance;
  for (HourlyForecast const& hour : day.hourly) {
    if (hour.knows(ForecastValue::precipitationChance))
      chance = std::max(chance.value_or(0), hour.chanceOfRain);
  }
  return chance;
}

}  // namespace

DaySummary summarize(DailyForecast const& day) {
  DaySummary summary;
  summary.precipitationMM = precipitationOf(day);
  summary.condition = conditionOf(day, summary.precipitationMM);
  summary.precipitationChance = precipitationChanceOf(day);
  addWind(day, summary);
  return summary;
}

}  // namespace nimbara
