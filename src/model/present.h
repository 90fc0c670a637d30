// What a forecast says of a moment: the provider's reading while it is young, else the entry of that hour.
// Pure.
#pragma once

#include "model/weather_data.h"

#include <optional>

namespace nimbara {

/// Conditions of one moment. What nobody measured or forecast is absent.
struct Present {
  double tempC = 0;
  double tempF = 0;
  double feelsLikeC = 0;
  double feelsLikeF = 0;
  double windSpeedKmph = 0;  ///< 0 where `knowsWind` is false
  bool knowsWind = true;
  std::string windDirection;
  std::optional<double> windGustKmph;
  std::optional<double> precipMM;
  std::optional<int> humidity;       ///< %
  std::optional<int> cloudCover;     ///< %
  std::optional<double> pressure;    ///< hPa
  std::optional<double> visibility;  ///< km
  std::optional<double> dewPointC;
  std::optional<double> dewPointF;
  std::optional<int> uvIndex;
  std::optional<int> chanceOfRain;  ///< %
  WeatherConditionCode condition = WeatherConditionCode::unknown;
  std::string description;  ///< the provider's own words for the condition
  bool isDay = true;
  bool isReading = false;         ///< measured or analysed by the provider, not forecast
  std::optional<Instant> readAt;  ///< of a reading
};

/// How long a provider's reading stands for the present.
inline constexpr std::chrono::minutes kReadingLife{90};

/// A reading of hours ago, or of hours ahead as after the clock was set back, says nothing of `now`; the
/// moment of the reading counts where the record tells it, and always that of the fetch.
bool hasYoungReading(WeatherData const& data, Instant now);

/// The one answer to "how is it now", for every face and rule. Nothing when the forecast neither holds a
/// young reading nor covers `now`.
std::optional<Present> presentAt(WeatherData const& data, Instant now);

/// The provider's reading whatever its age, to be shown with its day and time; nothing where there is none.
std::optional<Present> lastReading(WeatherData const& data);

/// The day of the forecast that contains `now`, or null.
DailyForecast const* dayAt(WeatherData const& data, Instant now);

/// Whether the sun is up at the place.
bool isDayAt(WeatherData const& data, Instant instant);

/// Whether the sun is up at the place in the middle of that hour.
bool isDayIn(WeatherData const& data, HourlyForecast const& hour);

/// Whether the sun is up at the place when it stands highest on that day: not in a polar night.
bool hasDaylight(WeatherData const& data, DailyForecast const& day);

}  // namespace nimbara
