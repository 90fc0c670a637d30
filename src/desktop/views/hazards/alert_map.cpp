#include "desktop/views/hazards/alert_map.h"

namespace nimbara {

AlertMap alertMap(WeatherAlert const& alert, Coordinate place, RegionMap const* outlines) {
  return {alertOutlines(alert, outlines), place};
}

MapFrame frameOf(AlertMap const& map, double aspect) {
  return frameHolding(map.area.rings, map.place, aspect);
}

}  // namespace nimbara
