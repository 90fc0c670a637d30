// What a forecast says of a moment: the provider's reading while it is young, else the entry of that hour.
// Pure.
#pragma once

#include "model/weather_data.h"

#include <optional>

namespace nimbara {

/// Conditions of one moment. Details that the provider lacked are absent.
struct Present {
  double tempC = 0;
  double tempF = 0;
  double feelsLikeC = 0;
  double feelsLikeF = 0;
  double windSpeedKmph = 0;
  std::string windDirection;
  std::optional<double> windGustKmph;
  double precipMM = 0;
  std::optional<int> humidity;       ///< %
  std::optional<double> pressure;    ///< hPa
  std::optional<double> visibility;  ///< km
  std::optional<int> uvIndex;
  std::optional<int> chanceOfRain;  ///< %
  WeatherConditionCode condition = WeatherConditionCode::unknown;
  bool isDay = true;
  bool isReading = false;  ///< measured or analysed by the provider, not forecast
};

/// How long a provider's reading stands for the present.
inline constexpr std::chrono::minutes kReadingLife{90};

/// A reading of hours ago, or of hours ahead as after the clock was set back, says nothing of `now`.
bool hasYoungReading(WeatherData const& data, Instant now);

/// Nothing when the forecast neither holds a young reading nor covers `now`.
std::optional<Present> presentAt(WeatherData const& data, Instant now);

/// The day of the forecast that contains `now`, or null.
DailyForecast const* dayAt(WeatherData const& data, Instant now);

}  // namespace nimbara
