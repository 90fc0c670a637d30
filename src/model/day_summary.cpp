#include "model/day_summary.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr int kFirstWakingHour = 7;
constexpr int kLastWakingHour = 21;

struct GraveRow {
  ConditionCategory category;
  int hoursThatCount;
};

/// Gravest first; the skies behind them are told apart by how often they stand in the day.
constexpr std::array kGravest = std::to_array<GraveRow>({{ConditionCategory::thunderstorm, 2},
                                                         {ConditionCategory::heavySnow, 2},
                                                         {ConditionCategory::heavyRain, 2},
                                                         {ConditionCategory::sleet, 2},
                                                         {ConditionCategory::lightSnow, 2},
                                                         {ConditionCategory::lightRain, 2},
                                                         {ConditionCategory::fog, 5}});

using Conditions = std::vector<WeatherConditionCode>;

Conditions wakingConditions(std::vector<HourlyForecast> const& hours) {
  Conditions conditions;
  for (HourlyForecast const& hour : hours) {
    if (hour.hour >= kFirstWakingHour && hour.hour <= kLastWakingHour) conditions.push_back(hour.condition);
  }
  return conditions;
}

/// The most frequent of the conditions that `counts` accepts, the earliest of equals, if there are enough.
std::optional<WeatherConditionCode> mostFrequent(Conditions const& conditions, auto counts, int atLeast) {
  std::array<int, enumNames<WeatherConditionCode>.size()> tally{};
  int total = 0;
  std::optional<WeatherConditionCode> best;
  for (WeatherConditionCode const condition : conditions) {
    if (!counts(condition)) continue;
    ++total;
    ++tally[static_cast<std::size_t>(condition)];
  }
  for (WeatherConditionCode const condition : conditions) {
    int const count = tally[static_cast<std::size_t>(condition)];
    if (count > 0 && (!best || count > tally[static_cast<std::size_t>(*best)])) best = condition;
  }
  return total >= atLeast ? best : std::nullopt;
}

std::optional<WeatherConditionCode> conditionOf(std::vector<HourlyForecast> const& hours) {
  Conditions conditions = wakingConditions(hours);
  if (conditions.empty())
    std::ranges::transform(hours, std::back_inserter(conditions), &HourlyForecast::condition);
  for (GraveRow const& grave : kGravest) {
    auto const ofCategory = [&](WeatherConditionCode condition) {
      return category(condition) == grave.category;
    };
    if (auto const found = mostFrequent(conditions, ofCategory, grave.hoursThatCount)) return found;
  }
  return mostFrequent(conditions, [](WeatherConditionCode) { return true; }, 1);
}

}  // namespace

DaySummary summarize(DailyForecast const& day) {
  DaySummary summary;
  summary.condition = conditionOf(day.hourly);
  summary.precipitationChance = day.dailyPrecipitationChance;
  for (HourlyForecast const& hour : day.hourly) {
    summary.precipitationMM += hour.precipMM;
    summary.strongestGustKmph = std::max(summary.strongestGustKmph, hour.windGustKmph);
    if (hour.windSpeedKmph > summary.strongestWindKmph) {
      summary.strongestWindKmph = hour.windSpeedKmph;
      summary.windDirection = hour.windDirection;
    }
    if (!day.dailyPrecipitationChance) {
      summary.precipitationChance = std::max(summary.precipitationChance.value_or(0), hour.chanceOfRain);
    }
  }
  return summary;
}

bool isDaylight(DailyForecast const& day, HourlyForecast const& hour) {
  auto const rise = parseClock12(day.astronomy.sunrise);
  auto const set = parseClock12(day.astronomy.sunset);
  if (!rise && !set) return hour.uvIndex > 0;
  int const middle = hour.hour * 60 + 30;
  bool const behindRise = !rise || middle >= *rise;
  bool const beforeSet = !set || middle < *set;
  // Far from its time zone's middle, and in high summer, a place may see the sun set after midnight.
  return rise && set && *set < *rise ? behindRise || beforeSet : behindRise && beforeSet;
}

}  // namespace nimbara
