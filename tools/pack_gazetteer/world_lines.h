// Coasts and borders for drawing, from a file in the TopoJSON form: lines that several shapes share stand in
// it once, as differences of integers.
#pragma once

#include "geobuf.h"
#include "table_file.h"

namespace nimbara::gazetteer {

struct WorldLines {
  /// Not closed; what an odd number of them encloses is land. None leaves -180 to 180 degrees.
  std::vector<Ring> coasts;
  /// Between two countries; open.
  std::vector<Ring> borders;
};

/// Throws std::runtime_error for what is no such file with the objects "land" and "countries".
WorldLines readWorldLines(std::string_view topoJson);

/// The parts of a ring on either side of the 180th meridian. A ring around a pole takes the pole in.
std::vector<Ring> cutAtDateLine(Ring const& ring);

void packWorldLines(WorldLines const& lines, TableFile& file);

}  // namespace nimbara::gazetteer
