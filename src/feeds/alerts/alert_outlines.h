// Where a warning holds, as outlines to draw. Pure functions.
#pragma once

#include "base/geodesy.h"
#include "model/weather_alert.h"

#include <vector>

namespace nimbara {

class RegionMap;

struct AlertOutlines {
  /// Empty where the areas are only named.
  std::vector<std::vector<Coordinate>> rings;
  /// Each ring is an area, and they may lie over one another; else an odd number of them encloses the area.
  bool isEachAnArea = false;

  bool operator==(AlertOutlines const&) const = default;
};

/// What the issuer draws, circles as polygons; else the region that the event names by its code, where the
/// outlines have it. `outlines` may be null.
AlertOutlines alertOutlines(WeatherAlert const& alert, RegionMap const* outlines);

/// Whether the place is in one of them.
bool holds(AlertOutlines const& outlines, Coordinate place);

}  // namespace nimbara
