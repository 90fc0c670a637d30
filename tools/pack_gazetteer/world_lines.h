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
  /// Those of a territory without an identifier, which the file gives by ISO 3166; open.
  std::vector<Ring> disputed;
};

struct Waters {
  std::vector<Ring> lakes;  ///< not closed
  std::vector<Ring> rivers;
};

/// Throws std::runtime_error for what is no such file with the objects "land" and "countries".
WorldLines readWorldLines(std::string_view topoJson);

/// The parts of a ring on either side of the 180th meridian. A ring around a pole takes the pole in.
std::vector<Ring> cutAtDateLine(Ring const& ring);

/// Likewise for what has no objects "lakes" and "rivers".
Waters readWaters(std::string_view topoJson);

void packWorldLines(WorldLines const& lines, TableFile& file);
void packWaters(Waters const& waters, TableFile& file);

}  // namespace nimbara::gazetteer
