// What stands in the sky behind the present weather: sun, moon, clouds and what falls from them, as numbers
// that a picture is painted from. Pure.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"
#include "model/weather_condition.h"

namespace nimbara {

/// As one looks towards the equator: to the south on the northern half of the earth, to the north on the
/// other.
struct SkyScene {
  double sunAltitude = -90;   ///< degrees above the horizon
  double sunAlong = 0.5;      ///< from the left edge of the view, 0, to the right one, 1
  double moonAltitude = -90;  ///< degrees
  double moonAlong = 0.5;
  double moonIllumination = 0;  ///< 0-1
  bool moonLitOnRight = true;
  double clouds = 0;  ///< share of the sky, 0-1
  double fog = 0;     ///< 0-1
  double rain = 0;    ///< 0-1: none, light, heavy
  double snow = 0;    ///< 0-1
  bool hasLightning = false;

  bool operator==(SkyScene const&) const = default;
};

SkyScene skyScene(WeatherConditionCode condition, Coordinate place, Instant now);

}  // namespace nimbara
