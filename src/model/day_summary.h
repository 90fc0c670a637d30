// What a person wants to know of a day at a glance, taken from its hours. Pure.
#pragma once

#include "model/weather_data.h"

#include <optional>

namespace nimbara {

struct DaySummary {
  /// Thunder, snow, sleet, rain or fog that fills at least two of the day's waking hours, the gravest first;
  /// else the sky that is seen most. Absent for a day without hours.
  std::optional<WeatherConditionCode> condition;
  double precipitationMM = 0;
  double strongestWindKmph = 0;
  double strongestGustKmph = 0;
  std::string windDirection;               ///< of the strongest wind
  std::optional<int> precipitationChance;  ///< %: the provider's own, else the highest of the hours
};

DaySummary summarize(DailyForecast const& day);

/// Whether the sun is up in the middle of that hour of that day. Where the day knows no sunrise or sunset, as
/// near the poles, ultraviolet light tells.
bool isDaylight(DailyForecast const& day, HourlyForecast const& hour);

}  // namespace nimbara
