#include "gazetteer/world_outlines.h"

#include "gazetteer/tables.h"

namespace nimbara {

namespace {

using namespace gazetteer;

std::vector<WorldLine> linesOf(Section section, bool areClosed) {
  Table<RingRecord> const rings(section);
  Table<CoarsePoint> const points(Section::coarsePoints);
  std::vector<WorldLine> lines(rings.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    RingRecord const ring = rings[i];
    lines[i].reserve(ring.pointCount + 1);
    for (std::uint32_t k = 0; k < ring.pointCount; ++k) {
      CoarsePoint const point = points[ring.firstPoint + k];
      lines[i].push_back({point.latitude / kCoarsePerDegree, point.longitude / kCoarsePerDegree});
    }
    if (areClosed) lines[i].push_back(lines[i].front());
  }
  return lines;
}

}  // namespace

std::vector<WorldLine> landOutlines() {
  return linesOf(Section::coasts, true);
}

std::vector<WorldLine> borderLines() {
  return linesOf(Section::borders, false);
}

std::vector<WorldLine> disputedLines() {
  return linesOf(Section::disputed, false);
}

std::vector<WorldLine> lakeOutlines() {
  return linesOf(Section::lakes, true);
}

std::vector<WorldLine> riverLines() {
  return linesOf(Section::rivers, false);
}

}  // namespace nimbara
