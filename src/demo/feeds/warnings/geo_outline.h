// The areas of the demo's warnings as geometries of GeoJSON.
#pragma once

#include "base/geodesy.h"
#include "base/json/json.h"

#include <vector>

namespace nimbara {

/// A polygon for one outline, else a multipolygon.
void writeGeometry(JsonWriter& json, std::vector<std::vector<Coordinate>> const& outlines);

}  // namespace nimbara
