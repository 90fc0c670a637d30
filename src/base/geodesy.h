// Coordinates and distances on the sphere.
#pragma once

#include <string>

namespace nimbara {

/// Degrees, north and east positive.
struct Coordinate {
  double latitude = 0;
  double longitude = 0;

  bool operator==(Coordinate const&) const = default;
};

inline constexpr double kEarthRadiusKm = 6371.0;

/// Finite, latitude within ±90, longitude within ±180.
bool isValid(Coordinate coordinate);

/// Great-circle distance by the haversine formula on a sphere of 6371 km.
double haversineKm(Coordinate a, Coordinate b);

/// "52.52°N 13.41°E".
std::string formatCoordinate(Coordinate coordinate);

}  // namespace nimbara
