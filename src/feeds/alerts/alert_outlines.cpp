#include "feeds/alerts/alert_outlines.h"

#include "base/map_frame.h"
#include "feeds/cap/shape_geometry.h"
#include "feeds/cap/warning_shape.h"
#include "regions/region_map.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

/// Of "HR|wind|EMMA_ID:HR001": what the event is known by ends with its region where that has a code.
RegionCode regionOf(WeatherAlert const& alert) {
  std::string_view const event = alert.event ? std::string_view(*alert.event) : std::string_view();
  return regionCodeOf(event.substr(event.rfind('|') + 1));
}

/// Each corner as far east of the one before it as the shorter way round is: lines stay in one piece.
std::vector<Coordinate> unwrapped(std::vector<Coordinate> ring) {
  for (std::size_t i = 1; i < ring.size(); ++i) {
    double const last = ring[i - 1].longitude;
    ring[i].longitude = last + std::remainder(ring[i].longitude - last, 360);
  }
  return ring;
}

void addDrawn(std::vector<std::vector<Coordinate>>& rings, WeatherAlert const& alert) {
  for (std::string const& text : alert.polygons.value_or(std::vector<std::string>())) {
    if (auto polygon = parseWarningPolygon(text)) rings.push_back(unwrapped(std::move(*polygon)));
  }
  for (std::string const& text : alert.circles.value_or(std::vector<std::string>())) {
    auto const circle = parseWarningCircle(text);
    if (!circle || circle->radiusKm <= 0) continue;
    auto& ring = rings.emplace_back(circleAround(circle->center, circle->radiusKm));
    for (Coordinate& corner : ring) corner.longitude += circle->center.longitude;
  }
}

}  // namespace

AlertOutlines alertOutlines(WeatherAlert const& alert, RegionMap const* outlines) {
  AlertOutlines found;
  addDrawn(found.rings, alert);
  found.isEachAnArea = !found.rings.empty();
  if (found.rings.empty() && outlines != nullptr && alert.event)
    found.rings = outlines->outlineOf(regionOf(alert));
  return found;
}

bool holds(AlertOutlines const& outlines, Coordinate place) {
  auto const count =
      std::ranges::count_if(outlines.rings, [&](WarningPolygon const& ring) { return holds(ring, place); });
  return outlines.isEachAnArea ? count > 0 : count % 2 == 1;
}

}  // namespace nimbara
