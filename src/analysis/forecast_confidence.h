// How far a forecast can be trusted, day by day: by how much another provider's differs from it, and by how
// far ahead the day is. Pure.
#pragma once

#include "base/time/calendar.h"
#include "model/weather_data.h"

#include <optional>
#include <vector>

namespace nimbara {

enum class ConfidenceLevel { low, medium, high };
template <>
inline constexpr auto enumNames<ConfidenceLevel> = std::to_array<std::string_view>({"low", "medium", "high"});
static_assert(enumNamesComplete(ConfidenceLevel::high));

/// Two forecasts of a day. The differences are the shown forecast's less the other's: of temperature and wind
/// at the moments that both have, of precipitation over the day.
struct DayConfidence {
  Date day;
  int daysAhead = 0;
  ConfidenceLevel level = ConfidenceLevel::low;
  bool isForTime = false;  ///< it is no higher because the day is far ahead, not for a difference
  double highestC = 0;
  double lowestC = 0;
  std::optional<double> precipMM = {};  ///< absent where one of them does not know
  std::optional<double> windKmph = {};  ///< of the strongest mean wind; likewise

  bool operator==(DayConfidence const&) const = default;
};

/// From today on, what is left of each day that both cover alike. Empty where there is none: then nothing is
/// known.
std::vector<DayConfidence> forecastConfidence(WeatherData const& shown, WeatherData const& other, Instant now,
                                              Calendar const& calendar);

}  // namespace nimbara
