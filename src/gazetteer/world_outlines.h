// The world's coasts and borders for drawing it, good to some kilometres. Read from tables that are part of
// the program; nothing is kept, so ask once for each picture.
#pragma once

#include "base/geodesy.h"

#include <vector>

namespace nimbara {

using WorldLine = std::vector<Coordinate>;

/// Closed rings, the last point repeating the first: what an odd number of them encloses is land. They keep
/// to -180 to 180 degrees and run along that meridian where land lies on both sides of it, and along the
/// south pole below Antarctica. Lakes but the Caspian Sea count as land.
std::vector<WorldLine> landOutlines();

/// Open lines between two countries.
std::vector<WorldLine> borderLines();

}  // namespace nimbara
