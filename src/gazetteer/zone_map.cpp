#include "gazetteer/zone_map.h"

#include "gazetteer/tables.h"

#include <algorithm>

namespace nimbara::gazetteer {

namespace {

/// The last row and column take the pole and the 180th meridian as well.
std::uint32_t cellOf(double degrees, double origin, int count) {
  auto const cell = static_cast<int>((degrees - origin) * kCellsPerDegree);
  return static_cast<std::uint32_t>(std::clamp(cell, 0, count - 1));
}

}  // namespace

std::uint16_t zoneCellAt(Coordinate coordinate) {
  std::uint32_t const row = cellOf(coordinate.latitude, -90, kZoneRows);
  std::uint32_t const column = cellOf(coordinate.longitude, -180, kZoneColumns);
  Table<std::uint32_t> const rows(Section::zoneRows);
  Table<ZoneRun> const runs(Section::zoneRuns);
  std::size_t const behind = partitionPoint(runs, rows[row], rows[row + 1],
                                            [column](ZoneRun run) { return firstColumnOf(run) <= column; });
  return static_cast<std::uint16_t>(zoneOf(runs[behind - 1]));
}

}  // namespace nimbara::gazetteer
