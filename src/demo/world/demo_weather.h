// Generated weather: a pure function of place and moment, the same in every run. Season and day move the
// temperature, fronts bring falling pressure, wind, clouds and rain together, warm afternoons bring showers
// and thunder, still humid nights fog. Nothing here is a forecast of anything real.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"

namespace nimbara {

/// One place at one moment, in the units of the forecast services.
struct DemoWeather {
  double temperature = 0;               ///< °C
  double humidity = 0;                  ///< %
  double dewPoint = 0;                  ///< °C, never above the temperature
  double apparentTemperature = 0;       ///< °C
  double cloudCover = 0;                ///< %
  double pressure = 0;                  ///< hPa at sea level
  double windSpeed = 0;                 ///< km/h
  double windGusts = 0;                 ///< km/h, never below the wind
  double windDirection = 0;             ///< degrees, 0-360
  double precipitation = 0;             ///< mm in the hour, water
  double snowfall = 0;                  ///< cm in the hour; above 0 exactly when it snows
  double precipitationProbability = 0;  ///< %
  double visibility = 0;                ///< m
  double uvIndex = 0;
  int weatherCode = 0;  ///< WMO
  bool isDay = false;
};

DemoWeather demoWeather(Coordinate place, Instant instant);

}  // namespace nimbara
