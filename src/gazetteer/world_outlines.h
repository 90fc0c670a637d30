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

/// Open lines between two countries, without the disputed ones.
std::vector<WorldLine> borderLines();

/// Open lines around territories that ISO 3166 has no code for, towards their neighbours. Other disputed
/// borders are among `borderLines`.
std::vector<WorldLine> disputedLines();

/// Closed rings; islands in them are rings too, by the even-odd rule.
std::vector<WorldLine> lakeOutlines();

/// Open lines.
std::vector<WorldLine> riverLines();

}  // namespace nimbara
