#include "desktop/views/board_layout.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace nimbara {

std::vector<LaneSpan> laneSpans(std::span<double const> weights, double width, double spacing) {
  if (weights.empty()) return {{0, width}};
  double const all = std::accumulate(weights.begin(), weights.end(), 0.0);
  double const room = width - spacing * static_cast<double>(weights.size() - 1);
  std::vector<LaneSpan> spans;
  double x = 0;
  for (double const weight : weights) {
    double const wide = std::max(0.0, std::floor(room * weight / all));
    spans.push_back({x, wide});
    x += wide + spacing;
  }
  spans.back().width = std::max(0.0, width - spans.back().x);
  return spans;
}

std::size_t laneOf(int lane, std::size_t lanes) {
  return std::min(static_cast<std::size_t>(std::max(lane, 0)), lanes - 1);
}

BoardTops boardTops(std::span<BoardEntry const> entries, std::size_t lanes, double spacing) {
  BoardTops result;
  std::vector<double> ends(std::max<std::size_t>(lanes, 1), 0);
  auto const below = [&](double end) { return end > 0 ? end + spacing : 0; };
  for (BoardEntry const& entry : entries) {
    if (entry.lane < 0) {
      double const top = below(std::ranges::max(ends));
      result.tops.push_back(top);
      std::ranges::fill(ends, top + entry.height);
    } else {
      double& end = ends[laneOf(entry.lane, ends.size())];
      result.tops.push_back(below(end));
      end = result.tops.back() + entry.height;
    }
  }
  result.height = std::ranges::max(ends);
  return result;
}

}  // namespace nimbara
