// The nearest cities and landmarks of a coordinate.
#pragma once

#include "gazetteer/table_layout.h"

#include <optional>

namespace nimbara::gazetteer {

/// The number of the nearest city of the world.
std::optional<std::size_t> nearestCityNumber(Coordinate coordinate);

/// The number of the country's nearest city within `reachKm`.
std::optional<std::size_t> nearestCityNumber(Coordinate coordinate, std::uint16_t country, double reachKm);

/// The region that the country's nearest landmark belongs to; kNone when there is none within 1500 km.
std::uint16_t regionAt(Coordinate coordinate, std::uint16_t country);

/// The district of the country's nearest town; kNone in countries whose districts are not told apart.
std::uint16_t districtAt(Coordinate coordinate, std::uint16_t country);

}  // namespace nimbara::gazetteer
