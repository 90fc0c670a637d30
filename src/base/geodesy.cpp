#include "base/geodesy.h"

#include "base/text/number.h"

#include <cmath>
#include <numbers>

namespace nimbara {

bool isValid(Coordinate coordinate) {
  return std::abs(coordinate.latitude) <= 90 && std::abs(coordinate.longitude) <= 180;
}

double haversineKm(Coordinate a, Coordinate b) {
  constexpr double kRadians = std::numbers::pi / 180;
  double const halfLatitude = std::sin((b.latitude - a.latitude) * kRadians / 2);
  double const halfLongitude = std::sin((b.longitude - a.longitude) * kRadians / 2);
  double const h = halfLatitude * halfLatitude + std::cos(a.latitude * kRadians) *
                                                     std::cos(b.latitude * kRadians) * halfLongitude *
                                                     halfLongitude;
  return 2 * kEarthRadiusKm * std::asin(std::sqrt(std::min(1.0, h)));
}

std::string formatCoordinate(Coordinate coordinate) {
  return fixedDecimal(std::abs(coordinate.latitude), 2) + (coordinate.latitude < 0 ? "°S " : "°N ") +
         fixedDecimal(std::abs(coordinate.longitude), 2) + (coordinate.longitude < 0 ? "°W" : "°E");
}

}  // namespace nimbara
