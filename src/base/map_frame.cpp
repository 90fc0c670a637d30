#include "base/map_frame.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr int kCirclePoints = 180;
/// About 110 km.
constexpr double kLeastDegrees = 1;
constexpr double kRoom = 1.3;

}  // namespace

MapPoint MapFrame::at(Coordinate point) const {
  return atOffset(std::remainder(point.longitude - centre.longitude, 360), point.latitude);
}

MapPoint MapFrame::atOffset(double degreesEast, double latitude) const {
  return {0.5 + degreesEast / degreesWide, 0.5 + (centre.latitude - latitude) / degreesHigh};
}

Coordinate MapFrame::under(MapPoint point) const {
  return {centre.latitude - (point.y - 0.5) * degreesHigh,
          std::remainder(centre.longitude + (point.x - 0.5) * degreesWide, 360)};
}

MapFrame frameHolding(std::span<std::vector<Coordinate> const> rings, Coordinate place, double aspect) {
  double south = place.latitude, north = south, west = 0, east = 0;
  for (auto const& ring : rings) {
    for (Coordinate const& corner : ring) {
      double const away = std::remainder(corner.longitude - place.longitude, 360);
      south = std::min(south, corner.latitude);
      north = std::max(north, corner.latitude);
      west = std::min(west, away);
      east = std::max(east, away);
    }
  }
  double const middle = (south + north) / 2;
  double const narrowing = std::max(0.15, std::cos(middle * kRadians));
  double const high = kRoom * std::max({kLeastDegrees, north - south, (east - west) * narrowing / aspect});
  double const wide = high * aspect / narrowing;
  double const excess = std::max({1.0, wide / 360, high / 180});
  return {{middle, std::remainder(place.longitude + (west + east) / 2, 360)}, wide / excess, high / excess};
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
