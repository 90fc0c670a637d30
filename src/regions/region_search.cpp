#include "regions/region_map.h"
#include "regions/region_map_layout.h"
#include "regions/region_map_sections.h"

#include <limits>

namespace nimbara {

using namespace region_map;

namespace {

double sizeOf(Box const& box) {
  return (static_cast<double>(box.northEast.latitude) - box.southWest.latitude) *
         (static_cast<double>(box.northEast.longitude) - box.southWest.longitude);
}

/// The place, and how far other points are from it on the plane that touches the globe there.
class Viewpoint {
 public:
  explicit Viewpoint(Coordinate place)
      : latitude_(place.latitude * kOutlineStepsPerDegree),
        longitude_(place.longitude * kOutlineStepsPerDegree),
        eastScale_(std::max(1e-3, std::cos(place.latitude * std::numbers::pi / 180))) {}

  /// Whether a ray eastwards from the place may meet a line within the box.
  bool looksAt(Box const& box) const {
    return latitude_ >= box.southWest.latitude && latitude_ <= box.northEast.latitude &&
           longitude_ <= box.northEast.longitude;
  }

  /// Whether the ray meets the edge.
  bool crosses(OutlinePoint a, OutlinePoint b) const {
    if ((a.latitude > latitude_) == (b.latitude > latitude_)) return false;
    double const share = (latitude_ - a.latitude) / (static_cast<double>(b.latitude) - a.latitude);
    return longitude_ < a.longitude + share * (static_cast<double>(b.longitude) - a.longitude);
  }

  double kmTo(Box const& box) const {
    double const north =
        std::max({0.0, box.southWest.latitude - latitude_, latitude_ - box.northEast.latitude});
    double const east =
        std::max({0.0, box.southWest.longitude - longitude_, longitude_ - box.northEast.longitude});
    return std::hypot(north, east * eastScale_) / kStepsPerKm;
  }

  double kmTo(OutlinePoint a, OutlinePoint b) const {
    double const ax = (a.longitude - longitude_) * eastScale_;
    double const ay = a.latitude - latitude_;
    double const dx = (b.longitude - longitude_) * eastScale_ - ax;
    double const dy = b.latitude - latitude_ - ay;
    double const length = dx * dx + dy * dy;
    double const share = length > 0 ? std::clamp(-(ax * dx + ay * dy) / length, 0.0, 1.0) : 0;
    return std::sqrt((ax + share * dx) * (ax + share * dx) + (ay + share * dy) * (ay + share * dy)) /
           kStepsPerKm;
  }

 private:
  double latitude_;
  double longitude_;
  double eastScale_;
};

}  // namespace

/// One look-up.
class RegionSearch {
 public:
  RegionSearch(RegionMap const& map, Coordinate place, std::string_view country)
      : map_(map), place_(place), from_(place), country_(country) {}

  FoundRegions run() {
    lookInCell(cellOf(place_));
    lookInCell(kEverywhere);
    if (!country_.empty() && !holdsLand_ && nearest_.km < kLandReachKm) add(nearest_);
    std::sort(candidates_.begin(), candidates_.begin() + count_);
    FoundRegions found;
    for (std::size_t i = 0; i < std::size_t(count_); ++i) found.regions_[i] = described(candidates_[i]);
    found.size_ = static_cast<std::size_t>(count_);
    return found;
  }

 private:
  struct Candidate {
    RegionRecord record;
    double km = std::numeric_limits<double>::infinity();

    /// Land first, then by distance, then by size.
    bool operator<(Candidate const& other) const {
      if (record.isSea != other.record.isSea) return record.isSea < other.record.isSea;
      if (km != other.km) return km < other.km;
      return sizeOf(record.box) < sizeOf(other.record.box);
    }
  };

  void lookInCell(std::uint32_t cell) {
    std::size_t const count = countIn<CellRecord>(map_.cells_);
    for (std::size_t i = firstOf(cell, count); i < count; ++i) {
      auto const record = recordAt<CellRecord>(map_.cells_, i);
      if (record.cell != cell) return;
      if (record.region < map_.regionCount_) look(recordAt<RegionRecord>(map_.regions_, record.region));
    }
  }

  std::size_t firstOf(std::uint32_t cell, std::size_t count) const {
    std::size_t first = 0;
    while (first < count) {
      std::size_t const middle = first + (count - first) / 2;
      if (recordAt<CellRecord>(map_.cells_, middle).cell < cell) {
        first = middle + 1;
      } else {
        count = middle;
      }
    }
    return first;
  }

  void look(RegionRecord const& region) {
    if (!country_.empty() && textAt(map_.texts_, region.country) != country_) return;
    double const reach = region.isSea != 0 ? kSeaReachKm : nearest_.km;
    if (from_.kmTo(region.box) > reach) return;
    if (holds(region)) {
      holdsLand_ |= region.isSea == 0;
      return add({region, 0});
    }
    if (region.isSea == 0 && (holdsLand_ || country_.empty())) return;
    double const km = kmTo(region, reach);
    if (km >= reach) return;
    if (region.isSea != 0) return add({region, km});
    nearest_ = {region, km};
  }

  template <class Use>
  void eachArc(RegionRecord const& region, Use const& use) const {
    std::size_t const end =
        endWithin(region.firstBorder, region.borderCount, countIn<std::uint32_t>(map_.borders_));
    for (std::size_t i = region.firstBorder; i < end; ++i) {
      auto const arc = recordAt<std::uint32_t>(map_.borders_, i);
      if (arc < countIn<ArcRecord>(map_.arcs_)) use(recordAt<ArcRecord>(map_.arcs_, arc));
    }
  }

  template <class Use>
  void eachEdge(ArcRecord const& arc, Use const& use) const {
    std::size_t const end = endWithin(arc.firstStep, arc.stepCount, countIn<Step>(map_.steps_));
    OutlinePoint before = arc.first;
    for (std::size_t i = arc.firstStep; i < end; ++i) {
      OutlinePoint const next = stepped(before, recordAt<Step>(map_.steps_, i));
      use(before, next);
      before = next;
    }
  }

  bool holds(RegionRecord const& region) const {
    if (!from_.looksAt(region.box)) return false;
    bool isInside = false;
    eachArc(region, [&](ArcRecord const& arc) {
      if (!from_.looksAt(arc.box)) return;
      eachEdge(arc, [&](OutlinePoint a, OutlinePoint b) { isInside ^= from_.crosses(a, b); });
    });
    return isInside;
  }

  /// To the region's border; `reach` or more when it is farther.
  double kmTo(RegionRecord const& region, double reach) const {
    double nearest = reach;
    eachArc(region, [&](ArcRecord const& arc) {
      if (from_.kmTo(arc.box) >= nearest) return;
      eachEdge(arc, [&](OutlinePoint a, OutlinePoint b) { nearest = std::min(nearest, from_.kmTo(a, b)); });
    });
    return nearest;
  }

  /// When there is no room, the last in order makes some.
  void add(Candidate const& candidate) {
    if (count_ < kRoom) {
      candidates_[static_cast<std::size_t>(count_++)] = candidate;
      return;
    }
    auto* const last = std::max_element(candidates_.begin(), candidates_.end());
    if (candidate < *last) *last = candidate;
  }

  MappedRegion described(Candidate const& found) const {
    RegionRecord const& region = found.record;
    return {textAt(map_.texts_, region.registry),
            textAt(map_.texts_, region.code),
            textAt(map_.texts_, region.country),
            textAt(map_.texts_, region.name),
            region.isSea != 0,
            found.km};
  }

  static constexpr std::ptrdiff_t kRoom = FoundRegions::kMost;

  RegionMap const& map_;
  Coordinate place_;
  Viewpoint from_;
  std::string_view country_;
  std::array<Candidate, FoundRegions::kMost> candidates_;
  std::ptrdiff_t count_ = 0;
  Candidate nearest_{{}, kLandReachKm};
  bool holdsLand_ = false;
};

FoundRegions RegionMap::at(Coordinate place, std::string_view country) const {
  if (!isValid(place)) return {};
  return RegionSearch(*this, place, country).run();
}

}  // namespace nimbara
