#include "desktop/views/globe/world_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kKmPerDegree = kEarthRadiusKm * kRadians;
/// How much of the picture's smaller side the circle takes.
constexpr double kCircleShare = 0.82;

}  // namespace

MapFrame frameAround(std::optional<Coordinate> place, double radiusKm, double aspect) {
  if (!place || !(radiusKm > 0))
    return {{0, 0}, std::max(360.0, 180 * aspect), std::max(180.0, 360 / aspect)};
  double const narrowing = std::max(0.15, std::cos(place->latitude * kRadians));
  double const side = 2 * radiusKm / kKmPerDegree / kCircleShare;
  double const high = aspect >= 1 ? side : side / aspect;
  double const wide = high * aspect / narrowing;
  // Nothing is shown twice and no more than there is.
  double const excess = std::max({1.0, wide / 360, high / 180});
  MapFrame frame{*place, wide / excess, high / excess};
  double const highest = std::max(0.0, 90 - frame.degreesHigh / 2);
  frame.centre.latitude = std::clamp(frame.centre.latitude, -highest, highest);
  return frame;
}

}  // namespace nimbara
