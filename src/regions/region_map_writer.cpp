#include "base/text/search_text.h"
#include "regions/region_map.h"
#include "regions/region_map_layout.h"

#include <limits>
#include <unordered_map>

namespace nimbara {

using namespace region_map;

namespace {

constexpr std::uint32_t kMostCells = 3600;

constexpr Box kNowhere{{std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::max()},
                       {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::min()}};

void include(Box& box, Box const& other) {
  box.southWest = {std::min(box.southWest.latitude, other.southWest.latitude),
                   std::min(box.southWest.longitude, other.southWest.longitude)};
  box.northEast = {std::max(box.northEast.latitude, other.northEast.latitude),
                   std::max(box.northEast.longitude, other.northEast.longitude)};
}

Box boxOf(OutlineArc const& arc) {
  Box box = kNowhere;
  for (OutlinePoint const point : arc) include(box, {point, point});
  return box;
}

/// The cells from which a region within a box may be reached.
struct CellRange {
  std::uint32_t south, north, west, east;

  std::uint32_t count() const { return (north - south + 1) * (east - west + 1); }
};

CellRange cellsOf(Box const& box) {
  constexpr double kDegreesPerKm = 180 / (std::numbers::pi * kEarthRadiusKm);
  double const margin = kLandReachKm * kDegreesPerKm;
  double const south = static_cast<double>(box.southWest.latitude) / kOutlineStepsPerDegree - margin;
  double const north = static_cast<double>(box.northEast.latitude) / kOutlineStepsPerDegree + margin;
  double const widest = std::min(89.0, std::max(std::abs(south), std::abs(north)));
  double const wide = margin / std::cos(widest * std::numbers::pi / 180);
  double const west = static_cast<double>(box.southWest.longitude) / kOutlineStepsPerDegree - wide;
  double const east = static_cast<double>(box.northEast.longitude) / kOutlineStepsPerDegree + wide;
  return {row(south), row(north), column(west), column(east)};
}

class Writer {
 public:
  void add(OutlineArc const& arc) {
    ArcRecord record{boxOf(arc), arc.front(), static_cast<std::uint32_t>(steps_.size()), 0};
    for (std::size_t i = 1; i < arc.size(); ++i) addSteps(arc[i - 1], arc[i]);
    record.stepCount = static_cast<std::uint32_t>(steps_.size()) - record.firstStep;
    arcs_.push_back(record);
  }

  void add(OutlinedRegion const& region) {
    auto const number = static_cast<std::uint32_t>(regions_.size());
    RegionRecord record;
    record.box = kNowhere;
    record.firstBorder = static_cast<std::uint32_t>(borders_.size());
    record.borderCount = static_cast<std::uint32_t>(region.arcs.size());
    record.registry = text(region.code.registry);
    record.code = text(region.code.code);
    record.country = text(region.country);
    record.name = text(region.name);
    record.isSea = region.isSea ? 1 : 0;
    for (std::uint32_t const arc : region.arcs) include(record.box, arcs_[arc].box);
    borders_.insert(borders_.end(), region.arcs.begin(), region.arcs.end());
    addCells(cellsOf(record.box), number);
    if (std::string const folded = searchFolded(region.name); !folded.empty()) names_ += folded + "\n";
    regions_.push_back(record);
  }

  void add(RegionAlias const& alias) {
    aliases_.push_back({text(alias.code.registry), text(alias.code.code), text(alias.region)});
  }

  std::string bytes(std::string const& edition) {
    std::ranges::sort(cells_);
    Header header;
    header.edition = text(edition);
    header.regions = static_cast<std::uint32_t>(regions_.size());
    header.arcs = static_cast<std::uint32_t>(arcs_.size());
    header.borders = static_cast<std::uint32_t>(borders_.size());
    header.cells = static_cast<std::uint32_t>(cells_.size());
    header.aliases = static_cast<std::uint32_t>(aliases_.size());
    header.steps = static_cast<std::uint32_t>(steps_.size());
    header.nameBytes = static_cast<std::uint32_t>(names_.size());
    header.textBytes = static_cast<std::uint32_t>(texts_.size());
    std::string out(reinterpret_cast<char const*>(&header), sizeof header);
    append(out, regions_);
    append(out, arcs_);
    append(out, borders_);
    append(out, cells_);
    append(out, aliases_);
    append(out, steps_);
    return out + names_ + texts_;
  }

 private:
  template <class Record>
  static void append(std::string& out, std::vector<Record> const& records) {
    out.append(reinterpret_cast<char const*>(records.data()), records.size() * sizeof(Record));
  }

  /// One step, or several equal ones where it is too long for the record.
  void addSteps(OutlinePoint from, OutlinePoint to) {
    constexpr int kLongest = std::numeric_limits<std::int16_t>::max();
    int const north = to.latitude - from.latitude;
    int const east = to.longitude - from.longitude;
    int const count = std::max(
        {1, (std::abs(north) + kLongest - 1) / kLongest, (std::abs(east) + kLongest - 1) / kLongest});
    for (int i = 0; i < count; ++i) {
      auto const part = [&](int whole) {
        return static_cast<std::int16_t>(whole * (i + 1) / count - whole * i / count);
      };
      steps_.push_back({part(north), part(east)});
    }
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
  std::vector<ArcRecord> arcs_;
  std::vector<std::uint32_t> borders_;
  std::vector<CellRecord> cells_;
  std::vector<AliasRecord> aliases_;
  std::vector<Step> steps_;
  std::string names_ = "\n";
  std::string texts_;
  std::unordered_map<std::string, std::uint32_t> placeOf_;
};

}  // namespace

std::string regionMapOf(OutlineSet const& set) {
  Writer writer;
  for (OutlineArc const& arc : set.arcs) writer.add(arc);
  for (OutlinedRegion const& region : set.regions) writer.add(region);
  for (RegionAlias const& alias : set.aliases) writer.add(alias);
  return writer.bytes(set.edition);
}

}  // namespace nimbara
