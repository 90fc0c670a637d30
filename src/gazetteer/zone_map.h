// The map of time zones: rows of cells from south to north, each a list of runs from west to east.
#pragma once

#include "base/geodesy.h"

#include <cstdint>

namespace nimbara::gazetteer {

inline constexpr std::uint16_t kOpenSea = 0;

/// The number of the zone whose cell has the coordinate in it; kOpenSea beyond all territorial waters.
std::uint16_t zoneCellAt(Coordinate coordinate);

}  // namespace nimbara::gazetteer
