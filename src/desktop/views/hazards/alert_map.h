// Where a warning holds, as lines on a map beside the place. Pure functions.
#pragma once

#include "desktop/views/globe/world_map.h"
#include "model/weather_alert.h"

#include <vector>

namespace nimbara {

class RegionMap;

struct AlertMap {
  /// Of what the issuer draws, or names by a code that the outlines have; empty where the areas are only
  /// named. Shapes may lie over one another.
  std::vector<std::vector<Coordinate>> rings;
  Coordinate place;

  bool operator==(AlertMap const&) const = default;
};

/// `outlines` may be null.
AlertMap alertMap(WeatherAlert const& alert, Coordinate place, RegionMap const* outlines);

/// What holds all of the rings and the place, with some room around them, and is not closer than a region's
/// width. `aspect` is the picture's width in heights.
MapFrame frameOf(AlertMap const& map, double aspect);

}  // namespace nimbara
