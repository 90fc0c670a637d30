#include "desktop/views/hazards/alert_map.h"

#include "regions/region_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

/// About 110 km.
constexpr double kLeastDegrees = 1;
constexpr double kRoom = 1.3;

/// Of "HR|wind|EMMA_ID:HR001": what the event is known by ends with its region where that has a code.
RegionCode regionOf(WeatherAlert const& alert) {
  std::string_view const event = alert.event ? std::string_view(*alert.event) : std::string_view();
  return regionCodeOf(event.substr(event.rfind('|') + 1));
}

}  // namespace

AlertMap alertMap(WeatherAlert const& alert, Coordinate place, RegionMap const* outlines) {
  AlertMap map;
  map.place = place;
  if (outlines != nullptr && alert.event) map.rings = outlines->outlineOf(regionOf(alert));
  return map;
}

MapFrame frameOf(AlertMap const& map, double aspect) {
  double south = map.place.latitude, north = south, west = 0, east = 0;
  for (auto const& ring : map.rings) {
    for (Coordinate const& corner : ring) {
      double const away = std::remainder(corner.longitude - map.place.longitude, 360);
      south = std::min(south, corner.latitude);
      north = std::max(north, corner.latitude);
      west = std::min(west, away);
      east = std::max(east, away);
    }
  }
  double const middle = (south + north) / 2;
  double const narrowing = std::max(0.15, std::cos(middle * std::numbers::pi / 180));
  double const high = kRoom * std::max({kLeastDegrees, north - south, (east - west) * narrowing / aspect});
  double const wide = high * aspect / narrowing;
  double const excess = std::max({1.0, wide / 360, high / 180});
  return {
      {middle, std::remainder(map.place.longitude + (west + east) / 2, 360)}, wide / excess, high / excess};
}

}  // namespace nimbara
