#include "gazetteer/world_outlines.h"
#include "regions/region_outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

using Crossings = std::vector<double>;

struct Edge {
  Coordinate from, to;
};

/// The edges of the world's coasts, by bands of latitude.
class Land {
 public:
  Land() : bands_(kBands) {
    for (WorldLine const& ring : landOutlines()) {
      for (std::size_t i = 1; i < ring.size(); ++i) add({ring[i - 1], ring[i]});
    }
  }

  /// Longitudes at which the coast crosses a parallel, from west to east.
  Crossings crossingsAt(double latitude) const {
    Crossings crossings;
    for (Edge const& edge : bands_[bandOf(latitude)]) {
      if ((edge.from.latitude > latitude) == (edge.to.latitude > latitude)) continue;
      double const share = (latitude - edge.from.latitude) / (edge.to.latitude - edge.from.latitude);
      crossings.push_back(edge.from.longitude + share * (edge.to.longitude - edge.from.longitude));
    }
    std::ranges::sort(crossings);
    return crossings;
  }

 private:
  static constexpr int kBandsPerDegree = 4;
  static constexpr int kBands = 180 * kBandsPerDegree;

  static std::size_t bandOf(double latitude) {
    return static_cast<std::size_t>(
        std::clamp(static_cast<int>((latitude + 90) * kBandsPerDegree), 0, kBands - 1));
  }

  void add(Edge const& edge) {
    auto const [low, high] = std::minmax({bandOf(edge.from.latitude), bandOf(edge.to.latitude)});
    for (std::size_t band = low; band <= high; ++band) bands_[band].push_back(edge);
  }

  std::vector<std::vector<Edge>> bands_;
};

Crossings crossingsOf(std::vector<OutlineRing> const& rings, double latitude) {
  Crossings crossings;
  for (OutlineRing const& ring : rings) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      OutlinePoint const a = ring[i];
      OutlinePoint const b = ring[(i + 1) % ring.size()];
      if ((a.latitude > latitude) == (b.latitude > latitude)) continue;
      double const share = (latitude - a.latitude) / (static_cast<double>(b.latitude) - a.latitude);
      double const longitude = a.longitude + share * (static_cast<double>(b.longitude) - a.longitude);
      crossings.push_back(longitude / kOutlineStepsPerDegree);
    }
  }
  std::ranges::sort(crossings);
  return crossings;
}

double lengthOf(Crossings const& spans) {
  double length = 0;
  for (std::size_t i = 1; i < spans.size(); i += 2) length += spans[i] - spans[i - 1];
  return length;
}

/// How much the spans of both have in common.
double commonLength(Crossings const& a, Crossings const& b) {
  double length = 0;
  for (std::size_t i = 1; i < a.size(); i += 2) {
    for (std::size_t j = 1; j < b.size(); j += 2)
      length += std::max(0.0, std::min(a[i], b[j]) - std::max(a[i - 1], b[j - 1]));
  }
  return length;
}

}  // namespace

double landShare(std::vector<OutlineRing> const& rings) {
  constexpr int kLines = 64;
  static Land const land;
  std::int32_t low = 0;
  std::int32_t high = 0;
  bool isFirst = true;
  for (OutlineRing const& ring : rings) {
    for (OutlinePoint const point : ring) {
      low = isFirst ? point.latitude : std::min(low, point.latitude);
      high = isFirst ? point.latitude : std::max(high, point.latitude);
      isFirst = false;
    }
  }
  double all = 0;
  double onLand = 0;
  for (int line = 0; line < kLines; ++line) {
    double const latitude = low + (line + 0.5) * (static_cast<double>(high) - low) / kLines;
    Crossings const spans = crossingsOf(rings, latitude);
    double const scale = std::cos(latitude / kOutlineStepsPerDegree * std::numbers::pi / 180);
    all += scale * lengthOf(spans);
    onLand += scale * commonLength(spans, land.crossingsAt(latitude / kOutlineStepsPerDegree));
  }
  return all > 0 ? onLand / all : 1;
}

}  // namespace nimbara
