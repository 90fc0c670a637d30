#include "feeds/region_outline.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nimbara {

namespace {

/// Longer stretches are halved blindly, so that no ring, however made, takes time by the square of its
/// length.
constexpr std::size_t kLongestStretch = 1024;
constexpr std::size_t kFewestCorners = 3;

struct Vector {
  double x = 0;
  double y = 0;
};

Vector between(OutlinePoint from, OutlinePoint to) {
  return {static_cast<double>(to.longitude) - from.longitude,
          static_cast<double>(to.latitude) - from.latitude};
}

/// From `point` to the line from `a` to `b`.
double squaredDistance(OutlinePoint point, OutlinePoint a, OutlinePoint b) {
  Vector const line = between(a, b);
  Vector const way = between(a, point);
  double const length = line.x * line.x + line.y * line.y;
  double const share = length > 0 ? std::clamp((way.x * line.x + way.y * line.y) / length, 0.0, 1.0) : 0;
  double const dx = way.x - share * line.x;
  double const dy = way.y - share * line.y;
  return dx * dx + dy * dy;
}

/// The corner farthest from the line between the ends, and its squared distance.
std::pair<std::size_t, double> farthest(OutlineRing const& ring, std::size_t first, std::size_t last) {
  std::pair<std::size_t, double> found{first, -1};
  for (std::size_t i = first + 1; i < last; ++i) {
    double const distance = squaredDistance(ring[i], ring[first], ring[last]);
    if (distance > found.second) found = {i, distance};
  }
  return found;
}

/// Marks the corners to keep (Douglas and Peucker's way, without recursion).
std::vector<bool> keptCorners(OutlineRing const& ring, double squaredTolerance) {
  std::vector<bool> kept(ring.size(), false);
  kept.front() = kept.back() = true;
  std::vector<std::pair<std::size_t, std::size_t>> stretches{{0, ring.size() - 1}};
  while (!stretches.empty()) {
    auto const [first, last] = stretches.back();
    stretches.pop_back();
    if (last - first < 2) continue;
    std::size_t corner = first + (last - first) / 2;
    if (last - first <= kLongestStretch) {
      auto const [index, distance] = farthest(ring, first, last);
      if (distance <= squaredTolerance) continue;
      corner = index;
    }
    kept[corner] = true;
    stretches.emplace_back(first, corner);
    stretches.emplace_back(corner, last);
  }
  return kept;
}

}  // namespace

OutlinePoint outlinePoint(Coordinate coordinate) {
  constexpr double kSteps = 1e5;
  return {static_cast<std::int32_t>(std::lround(coordinate.latitude * kSteps)),
          static_cast<std::int32_t>(std::lround(coordinate.longitude * kSteps))};
}

OutlineRing simplified(OutlineRing const& ring, std::int32_t tolerance) {
  OutlineRing closed;
  closed.reserve(ring.size() + 1);
  std::ranges::unique_copy(ring, std::back_inserter(closed));
  if (!closed.empty() && closed.front() != closed.back()) closed.push_back(closed.front());
  if (closed.size() <= kFewestCorners) return {};
  auto const kept = keptCorners(closed, static_cast<double>(tolerance) * tolerance);
  OutlineRing corners;
  for (std::size_t i = 0; i + 1 < closed.size(); ++i) {
    if (kept[i]) corners.push_back(closed[i]);
  }
  return corners.size() < kFewestCorners ? OutlineRing() : corners;
}

}  // namespace nimbara
