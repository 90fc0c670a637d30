#include "feeds/region_map.h"
#include "feeds/region_map_layout.h"

#include <limits>
#include <unordered_map>

namespace nimbara {

using namespace region_map;

namespace {

constexpr std::uint32_t kMostCells = 3600;

Box boxOf(RegionOutline const& outline) {
  constexpr auto kLow = std::numeric_limits<std::int32_t>::min();
  constexpr auto kHigh = std::numeric_limits<std::int32_t>::max();
  Box box{{kHigh, kHigh}, {kLow, kLow}};
  for (OutlineRing const& ring : outline.rings) {
    for (OutlinePoint const point : ring) {
      box.southWest.latitude = std::min(box.southWest.latitude, point.latitude);
      box.southWest.longitude = std::min(box.southWest.longitude, point.longitude);
      box.northEast.latitude = std::max(box.northEast.latitude, point.latitude);
      box.northEast.longitude = std::max(box.northEast.longitude, point.longitude);
    }
  }
  return box;
}

/// The cells from which a region within a box may be reached.
struct CellRange {
  std::uint32_t south, north, west, east;

  std::uint32_t count() const { return (north - south + 1) * (east - west + 1); }
};

CellRange cellsOf(Box const& box) {
  constexpr double kDegreesPerKm = 180 / (std::numbers::pi * kEarthRadiusKm);
  double const margin = kRegionReachKm * kDegreesPerKm;
  double const south = static_cast<double>(box.southWest.latitude) / kStepsPerDegree - margin;
  double const north = static_cast<double>(box.northEast.latitude) / kStepsPerDegree + margin;
  double const widest = std::min(89.0, std::max(std::abs(south), std::abs(north)));
  double const wide = margin / std::cos(widest * std::numbers::pi / 180);
  double const west = static_cast<double>(box.southWest.longitude) / kStepsPerDegree - wide;
  double const east = static_cast<double>(box.northEast.longitude) / kStepsPerDegree + wide;
  return {row(south), row(north), column(west), column(east)};
}

class Writer {
 public:
  void add(RegionOutline const& outline) {
    auto const number = static_cast<std::uint32_t>(regions_.size());
    RegionRecord record;
    record.box = boxOf(outline);
    record.firstRing = static_cast<std::uint32_t>(rings_.size());
    record.ringCount = static_cast<std::uint32_t>(outline.rings.size());
    record.registry = text(outline.code.registry);
    record.code = text(outline.code.code);
    record.country = text(outline.country);
    record.name = text(outline.name);
    for (OutlineRing const& ring : outline.rings) addRing(ring);
    addCells(cellsOf(record.box), number);
    regions_.push_back(record);
  }

  std::string bytes() {
    std::ranges::sort(cells_);
    Header header;
    header.regions = static_cast<std::uint32_t>(regions_.size());
    header.rings = static_cast<std::uint32_t>(rings_.size());
    header.points = static_cast<std::uint32_t>(points_.size());
    header.cells = static_cast<std::uint32_t>(cells_.size());
    header.textBytes = static_cast<std::uint32_t>(texts_.size());
    std::string out(reinterpret_cast<char const*>(&header), sizeof header);
    append(out, regions_);
    append(out, rings_);
    append(out, points_);
    append(out, cells_);
    return out + texts_;
  }

 private:
  template <class Record>
  static void append(std::string& out, std::vector<Record> const& records) {
    out.append(reinterpret_cast<char const*>(records.data()), records.size() * sizeof(Record));
  }

  void addRing(OutlineRing const& ring) {
    rings_.push_back({static_cast<std::uint32_t>(points_.size()), static_cast<std::uint32_t>(ring.size())});
    points_.insert(points_.end(), ring.begin(), ring.end());
  }

  void addCells(CellRange const& range, std::uint32_t region) {
    if (range.count() > kMostCells) {
      cells_.push_back({kEverywhere, region});
      return;
    }
    for (std::uint32_t line = range.south; line <= range.north; ++line) {
      for (std::uint32_t at = range.west; at <= range.east; ++at)
        cells_.push_back({line * kColumns + at, region});
    }
  }

  std::uint32_t text(std::string const& content) {
    auto const [found, isNew] = placeOf_.try_emplace(content, static_cast<std::uint32_t>(texts_.size()));
    if (isNew) texts_.append(content.c_str(), content.size() + 1);
    return found->second;
  }

  std::vector<RegionRecord> regions_;
  std::vector<RingRecord> rings_;
  std::vector<OutlinePoint> points_;
  std::vector<CellRecord> cells_;
  std::string texts_;
  std::unordered_map<std::string, std::uint32_t> placeOf_;
};

}  // namespace

std::string regionMapOf(std::span<RegionOutline const> outlines) {
  Writer writer;
  for (RegionOutline const& outline : outlines) writer.add(outline);
  return writer.bytes();
}

}  // namespace nimbara
