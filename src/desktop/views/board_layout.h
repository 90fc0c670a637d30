// How cards stand in the columns of a wide page. Pure functions.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace nimbara {

struct LaneSpan {
  double x = 0;
  double width = 0;

  bool operator==(LaneSpan const&) const = default;
};

/// Columns side by side over the whole width, as wide as their weights say, in whole points.
std::vector<LaneSpan> laneSpans(std::span<double const> weights, double width, double spacing);

struct BoardEntry {
  int lane = 0;  ///< the last one for a number beyond; below 0 the entry takes the whole width
  double height = 0;
};

struct BoardTops {
  std::vector<double> tops;  ///< of each entry
  double height = 0;

  bool operator==(BoardTops const&) const = default;
};

/// Entries one below the other in their lanes. What takes the whole width stands below all before it.
BoardTops boardTops(std::span<BoardEntry const> entries, std::size_t lanes, double spacing);

/// The number of the lane in which an entry stands that does not take the whole width.
std::size_t laneOf(int lane, std::size_t lanes);

}  // namespace nimbara
