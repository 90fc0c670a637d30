// The direction from one place to another on the sphere.
#pragma once

#include "base/geodesy.h"

#include <cmath>
#include <numbers>

namespace nimbara {

/// Degrees from north through east, 0 up to 360, of the shortest way from `from` to `to` where it begins.
inline double bearingDegrees(Coordinate from, Coordinate to) {
  constexpr double kRadian = std::numbers::pi / 180;
  double const east = (to.longitude - from.longitude) * kRadian;
  double const begin = from.latitude * kRadian;
  double const end = to.latitude * kRadian;
  double const y = std::sin(east) * std::cos(end);
  double const x = std::cos(begin) * std::sin(end) - std::sin(begin) * std::cos(end) * std::cos(east);
  double const degrees = std::fmod(std::atan2(y, x) / kRadian + 360, 360);
  return std::isfinite(degrees) ? degrees : 0;
}

}  // namespace nimbara
