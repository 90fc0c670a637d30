// What falls in an hour of a forecast, if anything, and whether that is known. Pure.
#pragma once

#include "model/weather_data.h"

namespace nimbara {

enum class HourFall {
  none,
  unknown,  ///< neither an amount nor a condition is known
  rain,
  sleet,
  snow,
  freezing  ///< rain or drizzle that freezes on the ground
};

/// The hour's own condition decides; rain below 0 °C freezes on the ground. Less than 0.1 mm, or a chance
/// below 30 % where it is stated and less than 2 mm fall, is none.
HourFall fallOf(HourlyForecast const& hour);

inline bool falls(HourFall fall) {
  return fall >= HourFall::rain;
}

/// A thunderstorm, or a chance of 50 % for one.
bool isThundery(HourlyForecast const& hour);

/// Fog, or a visibility below 500 m; one of 0 is no reading.
bool isThickFog(HourlyForecast const& hour);

/// Beaufort 8 (62 km/h), or gusts of 75 km/h.
bool isGale(HourlyForecast const& hour);

/// The stronger of wind and gusts, km/h, as far as they are known; 0 where neither is.
double strongestWind(HourlyForecast const& hour);

/// At most a fifth of the sky is covered; where the cover is not stated, the condition decides.
bool isClear(HourlyForecast const& hour);

}  // namespace nimbara
