#include "regions/region_outline.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

namespace nimbara {

namespace {

/// Longer stretches are halved blindly, so that no arc, however made, takes time by the square of its
/// length.
constexpr std::size_t kLongestStretch = 1024;
constexpr std::uint32_t kVanished = 0xFFFF'FFFF;
/// Of a triangle, whose last point is the first again.
constexpr std::size_t kFewestClosedPoints = 4;

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
std::pair<std::size_t, double> farthest(OutlineArc const& arc, std::size_t first, std::size_t last) {
  std::pair<std::size_t, double> found{first, -1};
  for (std::size_t i = first + 1; i < last; ++i) {
    double const distance = squaredDistance(arc[i], arc[first], arc[last]);
    if (distance > found.second) found = {i, distance};
  }
  return found;
}

/// Marks the corners to keep (Douglas and Peucker's way, without recursion).
std::vector<bool> keptCorners(OutlineArc const& arc, double squaredTolerance) {
  std::vector<bool> kept(arc.size(), false);
  kept.front() = kept.back() = true;
  std::vector<std::pair<std::size_t, std::size_t>> stretches{{0, arc.size() - 1}};
  while (!stretches.empty()) {
    auto const [first, last] = stretches.back();
    stretches.pop_back();
    if (last - first < 2) continue;
    std::size_t corner = first + (last - first) / 2;
    if (last - first <= kLongestStretch) {
      auto const [index, distance] = farthest(arc, first, last);
      if (distance <= squaredTolerance) continue;
      corner = index;
    }
    kept[corner] = true;
    stretches.emplace_back(first, corner);
    stretches.emplace_back(corner, last);
  }
  return kept;
}

/// Regions of which the world's coasts, good to some kilometres, tell the wrong thing: lakes and fjords that
/// they have as land, and an island that they have not.
constexpr std::pair<std::string_view, bool> kKnownSea[] = {
    {"SE813", true}, {"NL807", true}, {"DK805", true}, {"DK806", true}, {"PT026", false}};

/// Sea regions reach over the shore by up to 0.23 of their area; of the land regions of islands, spits and
/// harbours at least 0.25 are land on such coasts.
bool isSea(RegionOutline const& outline) {
  constexpr double kLandFrom = 0.24;
  auto const* const known =
      std::ranges::find(kKnownSea, outline.code.code, [](auto const& row) { return row.first; });
  return known != std::ranges::end(kKnownSea) ? known->second : landShare(outline.rings) < kLandFrom;
}

/// Where three or more borders meet: points that have other neighbours in one ring than in another.
class Junctions {
 public:
  void add(OutlineRing const& ring) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      OutlinePoint const before = ring[(i + ring.size() - 1) % ring.size()];
      OutlinePoint const after = ring[(i + 1) % ring.size()];
      Seen const seen{std::min(before, after), std::max(before, after), false};
      auto const [found, isNew] = seen_.try_emplace(keyOf(ring[i]), seen);
      if (isNew) continue;
      Seen& known = found->second;
      known.isJunction |= known.low != seen.low || known.high != seen.high;
    }
  }

  bool has(OutlinePoint point) const { return seen_.at(keyOf(point)).isJunction; }

 private:
  struct Seen {
    OutlinePoint low, high;
    bool isJunction;
  };

  static std::uint64_t keyOf(OutlinePoint point) {
    return std::uint64_t{static_cast<std::uint32_t>(point.latitude)} << 32U |
           static_cast<std::uint32_t>(point.longitude);
  }

  std::unordered_map<std::uint64_t, Seen> seen_;
};

/// The ring's pieces from junction to junction; the whole of it, closed, when it has none.
std::vector<OutlineArc> arcsOf(OutlineRing ring, Junctions const& junctions) {
  auto const isJunction = [&](OutlinePoint point) { return junctions.has(point); };
  auto start = std::ranges::find_if(ring, isJunction);
  if (start == ring.end()) start = std::ranges::min_element(ring);
  std::ranges::rotate(ring, start);
  ring.push_back(ring.front());
  std::vector<OutlineArc> arcs;
  OutlineArc arc{ring.front()};
  for (std::size_t i = 1; i < ring.size(); ++i) {
    arc.push_back(ring[i]);
    if (i + 1 < ring.size() && !isJunction(ring[i])) continue;
    arcs.push_back(std::move(arc));
    arc = {ring[i]};
  }
  return arcs;
}

/// Arcs, each once whichever way it is walked, numbered in the order in which they come.
class ArcNumbers {
 public:
  std::uint32_t number(OutlineArc arc) {
    OutlineArc reversed(arc.rbegin(), arc.rend());
    if (reversed < arc) arc = std::move(reversed);
    return numbers_.try_emplace(std::move(arc), static_cast<std::uint32_t>(numbers_.size())).first->second;
  }

  std::vector<OutlineArc> inOrder() const {
    std::vector<OutlineArc> arcs(numbers_.size());
    for (auto const& [arc, number] : numbers_) arcs[number] = arc;
    return arcs;
  }

 private:
  std::map<OutlineArc, std::uint32_t> numbers_;
};

/// A name that several regions of a country have, or that is but the code, tells none of them.
void eraseEmptyNames(std::vector<OutlinedRegion>& regions) {
  std::map<std::pair<std::string, std::string>, int> uses;
  for (OutlinedRegion const& region : regions) ++uses[{region.country, region.name}];
  for (OutlinedRegion& region : regions) {
    if (region.name == region.code.code || uses[{region.country, region.name}] > 1) region.name.clear();
  }
}

/// A region all of whose arcs would vanish keeps them as they are.
std::vector<OutlineArc> thinned(std::vector<OutlineArc> const& arcs, std::vector<OutlinedRegion>& regions,
                                std::int32_t tolerance) {
  std::vector<OutlineArc> thin;
  thin.reserve(arcs.size());
  for (OutlineArc const& arc : arcs) thin.push_back(simplified(arc, tolerance));
  for (OutlinedRegion& region : regions) {
    bool const isLost =
        std::ranges::all_of(region.arcs, [&](std::uint32_t arc) { return thin[arc].empty(); });
    if (isLost) {
      for (std::uint32_t const arc : region.arcs) thin[arc] = arcs[arc];
    }
  }
  return thin;
}

void eraseVanished(OutlineSet& set) {
  std::vector<std::uint32_t> numbers;
  std::vector<OutlineArc> kept;
  for (OutlineArc& arc : set.arcs) {
    numbers.push_back(static_cast<std::uint32_t>(kept.size()));
    if (!arc.empty())
      kept.push_back(std::move(arc));
    else
      numbers.back() = kVanished;
  }
  for (OutlinedRegion& region : set.regions) {
    for (std::uint32_t& arc : region.arcs) arc = numbers[arc];
    std::erase(region.arcs, kVanished);
  }
  set.arcs = std::move(kept);
}

}  // namespace

OutlinePoint outlinePoint(Coordinate coordinate) {
  return {static_cast<std::int32_t>(std::lround(coordinate.latitude * kOutlineStepsPerDegree)),
          static_cast<std::int32_t>(std::lround(coordinate.longitude * kOutlineStepsPerDegree))};
}

OutlineArc simplified(OutlineArc const& arc, std::int32_t tolerance) {
  if (arc.size() < 2) return {};
  bool const isClosed = arc.front() == arc.back();
  auto const kept = keptCorners(arc, static_cast<double>(tolerance) * tolerance);
  OutlineArc few;
  for (std::size_t i = 0; i < arc.size(); ++i) {
    if (kept[i]) few.push_back(arc[i]);
  }
  return isClosed && few.size() < kFewestClosedPoints ? OutlineArc() : few;
}

OutlineSet outlineSetOf(std::vector<RegionOutline> const& outlines, std::int32_t tolerance) {
  Junctions junctions;
  for (RegionOutline const& outline : outlines) {
    for (OutlineRing const& ring : outline.rings) junctions.add(ring);
  }
  ArcNumbers arcs;
  OutlineSet set;
  for (RegionOutline const& outline : outlines) {
    OutlinedRegion region{outline.code, outline.country, outline.name, isSea(outline), {}};
    for (OutlineRing const& ring : outline.rings) {
      for (OutlineArc& arc : arcsOf(ring, junctions)) region.arcs.push_back(arcs.number(std::move(arc)));
    }
    set.regions.push_back(std::move(region));
  }
  std::ranges::stable_sort(set.regions, {}, &OutlinedRegion::code);
  eraseEmptyNames(set.regions);
  set.arcs = thinned(arcs.inOrder(), set.regions, tolerance);
  eraseVanished(set);
  return set;
}

void complete(OutlineSet& set, OutlineSet const& older) {
  std::map<std::string, int> balance;
  std::set<RegionCode> known;
  for (OutlinedRegion const& region : set.regions) {
    balance[region.country] += 2;
    known.insert(region.code);
  }
  for (OutlinedRegion const& region : older.regions) --balance[region.country];
  for (OutlinedRegion region : older.regions) {
    if (balance[region.country] >= 0 || known.contains(region.code)) continue;
    for (std::uint32_t& arc : region.arcs) {
      set.arcs.push_back(older.arcs[arc]);
      arc = static_cast<std::uint32_t>(set.arcs.size() - 1);
    }
    set.regions.push_back(std::move(region));
  }
  std::ranges::stable_sort(set.regions, {}, &OutlinedRegion::code);
  set.aliases.insert(set.aliases.end(), older.aliases.begin(), older.aliases.end());
  std::ranges::sort(set.aliases);
  auto const repeated = std::ranges::unique(set.aliases);
  set.aliases.erase(repeated.begin(), repeated.end());
}

}  // namespace nimbara
