#include "feeds/alerts/alert_outlines.h"

#include "base/map_frame.h"
#include "feeds/cap/shape_geometry.h"
#include "regions/region_map.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

/// First the region of "HR|wind|EMMA_ID:HR001": what the event is known by ends with it where it has a code.
std::vector<RegionCode> regionsOf(WeatherAlert const& alert) {
  std::vector<RegionCode> regions;
  std::string_view const event = alert.event ? std::string_view(*alert.event) : std::string_view();
  if (event.contains('|')) regions.push_back(regionCodeOf(event.substr(event.rfind('|') + 1)));
  for (WarningMessage const& message : alert.messages.value_or(std::vector<WarningMessage>())) {
    for (WarningCode const& code : message.codes) regions.push_back({code.registry, code.code});
  }
  return regions;
}

/// Rings of a region share corners at most, so most of the corners decide.
bool isWithin(WarningPolygon const& ring, WarningPolygon const& other) {
  auto const held =
      std::ranges::count_if(ring, [&](Coordinate const corner) { return holds(other, corner); });
  return 2 * static_cast<std::size_t>(held) > ring.size();
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

std::vector<RegionRings> regionOutlines(WeatherAlert const& alert, RegionMap const* outlines) {
  std::vector<RegionRings> found;
  if (outlines == nullptr) return found;
  std::string registry;
  for (RegionCode const& region : regionsOf(alert)) {
    if (!registry.empty() && region.registry != registry) continue;
    RegionRings rings = outlines->outlineOf(region);
    if (rings.empty() || std::ranges::find(found, rings) != found.end()) continue;
    registry = region.registry;
    found.push_back(std::move(rings));
  }
  return found;
}

std::vector<OutlinedArea> partsOf(RegionRings rings) {
  std::vector<ShapeBox> boxes;
  boxes.reserve(rings.size());
  for (WarningPolygon const& ring : rings) boxes.push_back(boxOf(ring));
  std::vector<std::vector<std::size_t>> around(rings.size());  // of each ring, those that it lies within
  for (std::size_t i = 0; i < rings.size(); ++i) {
    for (std::size_t j = 0; j < rings.size(); ++j) {
      bool const mayBe = i != j && isNear(boxes[j], rings[i].front(), 0);
      if (mayBe && isWithin(rings[i], rings[j])) around[i].push_back(j);
    }
  }
  std::vector<OutlinedArea> parts;
  std::vector<std::size_t> partOf(rings.size());
  for (std::size_t i = 0; i < rings.size(); ++i) {
    if (around[i].size() % 2 == 1) continue;
    partOf[i] = parts.size();
    parts.push_back({rings[i], {}});
  }
  for (std::size_t i = 0; i < rings.size(); ++i) {
    if (around[i].size() % 2 == 0) continue;
    // The innermost of those around it is the one whose inside it is taken from.
    auto const inner = std::ranges::max(around[i], {}, [&](std::size_t ring) { return around[ring].size(); });
    if (around[inner].size() % 2 == 0) parts[partOf[inner]].holes.push_back(std::move(rings[i]));
  }
  return parts;
}

AlertOutlines alertOutlines(WeatherAlert const& alert, RegionMap const* outlines) {
  AlertOutlines found;
  addDrawn(found.rings, alert);
  found.isEachAnArea = !found.rings.empty();
  if (found.isEachAnArea) return found;
  for (RegionRings& region : regionOutlines(alert, outlines))
    std::ranges::move(region, std::back_inserter(found.rings));
  return found;
}

bool holds(AlertOutlines const& outlines, Coordinate place) {
  auto const count =
      std::ranges::count_if(outlines.rings, [&](WarningPolygon const& ring) { return holds(ring, place); });
  return outlines.isEachAnArea ? count > 0 : count % 2 == 1;
}

}  // namespace nimbara
