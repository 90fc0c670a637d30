// Where a warning holds, as outlines to draw. Pure functions.
#pragma once

#include "feeds/cap/warning_shape.h"
#include "model/warnings/weather_alert.h"

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

/// The borders of a region, of no direction; what an odd number of them encloses is inside.
using RegionRings = std::vector<WarningPolygon>;

/// The regions that the warning names by their codes, each once, where the outlines have them; of a region
/// that several registries list the codes of one. `outlines` may be null.
std::vector<RegionRings> regionOutlines(WeatherAlert const& alert, RegionMap const* outlines);

/// Without what `holes` enclose.
struct OutlinedArea {
  WarningPolygon outer;
  std::vector<WarningPolygon> holes;

  bool operator==(OutlinedArea const&) const = default;
};

/// The same region, part by part; rings may touch and do not cross one another.
std::vector<OutlinedArea> partsOf(RegionRings rings);

/// What the issuer draws, circles as polygons; else the regions that it names. `outlines` may be null.
AlertOutlines alertOutlines(WeatherAlert const& alert, RegionMap const* outlines);

/// Whether the place is in one of them.
bool holds(AlertOutlines const& outlines, Coordinate place);

}  // namespace nimbara
