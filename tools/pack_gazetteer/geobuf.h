// Reads outlines in the Geobuf form (features as Protocol Buffers, coordinates as differences of integers).
#pragma once

#include "base/geodesy.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara::gazetteer {

using Ring = std::vector<Coordinate>;

struct Feature {
  /// The value of the property "tzid".
  std::string zone;
  /// All rings of all polygons, not closed; what an odd number of them encloses is inside.
  std::vector<Ring> rings;
};

/// Throws std::runtime_error for what is no Geobuf feature collection of polygons.
std::vector<Feature> readGeobuf(std::string_view bytes);

}  // namespace nimbara::gazetteer
