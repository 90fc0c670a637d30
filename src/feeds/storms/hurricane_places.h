// Named places on the coasts that tropical cyclones of the Atlantic and the Pacific come to, to tell where a
// cyclone is. A fixed table and a pure look-up.
#pragma once

#include "base/geodesy.h"

#include <span>
#include <string_view>

namespace nimbara {

struct HurricanePlace {
  std::string_view name;
  double latitude = 0;   ///< degrees
  double longitude = 0;  ///< degrees

  Coordinate coordinate() const { return {latitude, longitude}; }
};

/// At least one of every stretch of coast: basin by basin, roughly along the coasts.
std::span<HurricanePlace const> hurricanePlaces();

struct NearestHurricanePlace {
  HurricanePlace place;
  double km = 0;
};

NearestHurricanePlace nearestHurricanePlace(Coordinate coordinate);

}  // namespace nimbara
