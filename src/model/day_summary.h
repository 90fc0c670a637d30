// What a person wants to know of a day at a glance, taken from its hours, and from the provider's own words
// on the day where it gave no hours or left a value out of them. Pure.
#pragma once

#include "model/weather_data.h"

#include <optional>

namespace nimbara {

struct DaySummary {
  /// What one would call the day: thunder, snow, sleet, rain or fog that fills hours of the waking day, the
  /// gravest first; what fell in the night if there was much of it; else the sky that is seen most. Absent
  /// where nothing is known.
  std::optional<WeatherConditionCode> condition;
  std::optional<double> precipitationMM;
  std::optional<double> strongestWindKmph;
  std::optional<double> strongestGustKmph;
  std::string windDirection;               ///< of the strongest wind
  std::optional<int> precipitationChance;  ///< %: the provider's own, else the highest of the hours
};

DaySummary summarize(DailyForecast const& day);

}  // namespace nimbara
