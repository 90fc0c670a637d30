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
constexpr int kCirclePoints = 180;

}  // namespace

MapPoint MapFrame::at(Coordinate point) const {
  return atOffset(std::remainder(point.longitude - centre.longitude, 360), point.latitude);
}

MapPoint MapFrame::atOffset(double degreesEast, double latitude) const {
  return {0.5 + degreesEast / degreesWide, 0.5 + (centre.latitude - latitude) / degreesHigh};
}

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

std::vector<Coordinate> circleAround(Coordinate place, double radiusKm) {
  double const angle = radiusKm / kEarthRadiusKm;
  double const latitude = place.latitude * kRadians;
  std::vector<Coordinate> points;
  points.reserve(kCirclePoints + 1);
  for (int i = 0; i <= kCirclePoints; ++i) {
    double const bearing = 2 * std::numbers::pi * i / kCirclePoints;
    double const sine =
        std::sin(latitude) * std::cos(angle) + std::cos(latitude) * std::sin(angle) * std::cos(bearing);
    double const north = std::asin(std::clamp(sine, -1.0, 1.0));
    double const east = std::atan2(std::sin(bearing) * std::sin(angle) * std::cos(latitude),
                                   std::cos(angle) - std::sin(latitude) * std::sin(north));
    points.push_back({north / kRadians, east / kRadians});
  }
  return points;
}

}  // namespace nimbara
