#include "feeds/region_map.h"

#include "feeds/region_map_layout.h"

#include <cstring>
#include <optional>

namespace nimbara {

using namespace region_map;

namespace {

constexpr std::size_t kLargestFile = std::size_t{256} << 20;

template <class Record>
Record recordAt(std::string_view section, std::size_t number) {
  Record record;
  std::memcpy(&record, section.data() + number * sizeof record, sizeof record);
  return record;
}

template <class Record>
std::size_t countIn(std::string_view section) {
  return section.size() / sizeof(Record);
}

/// The text that begins there; empty beyond the end.
std::string_view textAt(std::string_view texts, std::uint32_t place) {
  if (place >= texts.size()) return {};
  std::string_view const rest = texts.substr(place);
  return rest.substr(0, rest.find('\0'));
}

/// What a section leaves of a range; corrupt files have ranges beyond it.
std::size_t endWithin(std::size_t first, std::size_t count, std::size_t size) {
  return first >= size ? first : first + std::min(count, size - first);
}

double area(Box const& box) {
  return (static_cast<double>(box.northEast.latitude) - box.southWest.latitude) *
         (static_cast<double>(box.northEast.longitude) - box.southWest.longitude);
}

/// Cuts sections off the front.
class Cutter {
 public:
  explicit Cutter(std::string_view rest) : rest_(rest) {}

  std::string_view cut(std::uint64_t bytes) {
    if (bytes > rest_.size()) {
      isShort_ = true;
      return {};
    }
    std::string_view const section = rest_.substr(0, static_cast<std::size_t>(bytes));
    rest_.remove_prefix(section.size());
    return section;
  }
  bool isExact() const { return !isShort_ && rest_.empty(); }

 private:
  std::string_view rest_;
  bool isShort_ = false;
};

}  // namespace

/// One look-up.
class RegionSearch {
 public:
  RegionSearch(RegionMap const& map, Coordinate place)
      : map_(map),
        place_(place),
        point_(outlinePoint(place)),
        eastScale_(std::cos(place.latitude * std::numbers::pi / 180)) {}

  std::vector<MappedRegion> run() {
    lookInCell(cellOf(place_));
    lookInCell(kEverywhere);
    if (found_.empty() && nearest_) found_.push_back(*nearest_);
    std::ranges::stable_sort(found_, {}, [](RegionRecord const& region) { return area(region.box); });
    std::vector<MappedRegion> regions;
    regions.reserve(found_.size());
    for (RegionRecord const& region : found_) regions.push_back(described(region));
    return regions;
  }

 private:
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
    if (!isNear(region.box)) return;
    bool inside = false;
    double km = kRegionReachKm;
    std::size_t const end = endWithin(region.firstRing, region.ringCount, countIn<RingRecord>(map_.rings_));
    for (std::size_t i = region.firstRing; i < end; ++i)
      walk(recordAt<RingRecord>(map_.rings_, i), inside, km);
    if (inside) {
      found_.push_back(region);
    } else if (km < nearestKm_) {
      nearestKm_ = km;
      nearest_ = region;
    }
  }

  bool isNear(Box const& box) const {
    double const north = kRegionReachKm * kStepsPerKm;
    double const east = north / std::max(eastScale_, 1e-3);
    return point_.latitude >= box.southWest.latitude - north &&
           point_.latitude <= box.northEast.latitude + north &&
           point_.longitude >= box.southWest.longitude - east &&
           point_.longitude <= box.northEast.longitude + east;
  }

  void walk(RingRecord const& ring, bool& inside, double& km) const {
    std::size_t const end = endWithin(ring.firstPoint, ring.pointCount, countIn<OutlinePoint>(map_.points_));
    if (ring.firstPoint >= end) return;
    auto before = recordAt<OutlinePoint>(map_.points_, end - 1);
    for (std::size_t i = ring.firstPoint; i < end; ++i) {
      auto const corner = recordAt<OutlinePoint>(map_.points_, i);
      if (crosses(before, corner)) inside = !inside;
      if (found_.empty()) km = std::min(km, kmFrom(before, corner));
      before = corner;
    }
  }

  /// Whether a ray eastwards from the place meets the edge.
  bool crosses(OutlinePoint a, OutlinePoint b) const {
    if ((a.latitude > point_.latitude) == (b.latitude > point_.latitude)) return false;
    double const share =
        (static_cast<double>(point_.latitude) - a.latitude) / (static_cast<double>(b.latitude) - a.latitude);
    return point_.longitude < a.longitude + share * (static_cast<double>(b.longitude) - a.longitude);
  }

  /// On the plane that touches the globe at the place.
  double kmFrom(OutlinePoint a, OutlinePoint b) const {
    double const ax = eastwards(a), ay = northwards(a);
    double const dx = eastwards(b) - ax, dy = northwards(b) - ay;
    double const length = dx * dx + dy * dy;
    double const share = length > 0 ? std::clamp(-(ax * dx + ay * dy) / length, 0.0, 1.0) : 0;
    return std::hypot(ax + share * dx, ay + share * dy) / kStepsPerKm;
  }
  double northwards(OutlinePoint point) const {
    return static_cast<double>(point.latitude) - point_.latitude;
  }
  double eastwards(OutlinePoint point) const {
    return (static_cast<double>(point.longitude) - point_.longitude) * eastScale_;
  }

  MappedRegion described(RegionRecord const& region) const {
    return {textAt(map_.texts_, region.registry), textAt(map_.texts_, region.code),
            textAt(map_.texts_, region.country), textAt(map_.texts_, region.name)};
  }

  static constexpr double kStepsPerKm = kStepsPerDegree * 180 / (std::numbers::pi * kEarthRadiusKm);

  RegionMap const& map_;
  Coordinate place_;
  OutlinePoint point_;
  double eastScale_;
  std::vector<RegionRecord> found_;
  std::optional<RegionRecord> nearest_;
  double nearestKm_ = kRegionReachKm;
};

Result<RegionMap, std::string> RegionMap::over(std::string_view bytes) {
  Header header;
  if (bytes.size() < sizeof header) return std::unexpected("it is too short");
  header = recordAt<Header>(bytes, 0);
  if (header.magic != kMagic || header.byteOrder != kByteOrder)
    return std::unexpected("it is no map of regions");
  Cutter cutter(bytes.substr(sizeof header));
  RegionMap map;
  map.regionCount_ = header.regions;
  map.regions_ = cutter.cut(std::uint64_t{header.regions} * sizeof(RegionRecord));
  map.rings_ = cutter.cut(std::uint64_t{header.rings} * sizeof(RingRecord));
  map.points_ = cutter.cut(std::uint64_t{header.points} * sizeof(OutlinePoint));
  map.cells_ = cutter.cut(std::uint64_t{header.cells} * sizeof(CellRecord));
  map.texts_ = cutter.cut(header.textBytes);
  if (!cutter.isExact()) return std::unexpected("its length is not what it says");
  return map;
}

Result<RegionMap, std::string> RegionMap::open(std::filesystem::path const& file) {
  auto bytes = MappedFile::open(file, kLargestFile);
  if (!bytes) return std::unexpected(bytes.error());
  auto map = over(bytes->bytes());
  if (!map) return std::unexpected("the file " + file.string() + " cannot be used: " + map.error());
  map->file_ = std::move(*bytes);
  return map;
}

std::vector<MappedRegion> RegionMap::at(Coordinate place) const {
  if (!isValid(place)) return {};
  return RegionSearch(*this, place).run();
}

std::map<std::string, std::size_t> RegionMap::countByCountry() const {
  std::map<std::string, std::size_t> counts;
  for (std::size_t i = 0; i < regionCount_; ++i)
    ++counts[std::string(textAt(texts_, recordAt<RegionRecord>(regions_, i).country))];
  return counts;
}

}  // namespace nimbara
