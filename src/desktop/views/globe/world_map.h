// Which part of the world a map shows. Pure functions.
#pragma once

#include "base/map_frame.h"

#include <optional>

namespace nimbara {

/// The whole world without a place or with a radius of 0, else what lies around the place with some room
/// beside the circle. `aspect` is the picture's width in heights.
MapFrame frameAround(std::optional<Coordinate> place, double radiusKm, double aspect);

}  // namespace nimbara
