// Where a warning holds, as lines on a map beside the place. Pure functions.
#pragma once

#include "base/map_frame.h"
#include "feeds/alerts/alert_outlines.h"

namespace nimbara {

struct AlertMap {
  AlertOutlines area;
  Coordinate place;

  bool operator==(AlertMap const&) const = default;
};

/// `outlines` may be null.
AlertMap alertMap(WeatherAlert const& alert, Coordinate place, RegionMap const* outlines);

/// What holds the whole area and the place; see `frameHolding`.
MapFrame frameOf(AlertMap const& map, double aspect);

}  // namespace nimbara
