// A map of the world in text with satellites above it.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"
#include "cli/pages/style.h"

#include <string>
#include <vector>

namespace nimbara {

/// Latitude downwards, longitude to the right, the whole globe in `width` cells. Land is dotted; cells above
/// which satellites stand show one sign for one and another for several; the night side is dim.
std::string satelliteMap(std::vector<Coordinate> const& satellites, Instant now, int width,
                         Style const& style);

}  // namespace nimbara
