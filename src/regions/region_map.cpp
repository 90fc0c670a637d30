#include "regions/region_map.h"

#include "regions/region_map_layout.h"
#include "regions/region_map_sections.h"

#include <utility>

namespace nimbara {

using namespace region_map;

namespace {

constexpr std::size_t kLargestFile = std::size_t{256} << 20;

/// Cuts sections off the front.
class Cutter {
 public:
  explicit Cutter(std::string_view rest) : rest_(rest) {}

  std::string_view cut(std::uint64_t count, std::size_t recordSize = 1) {
    std::uint64_t const bytes = count * recordSize;
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

/// Where a section that is sorted by registry and code has the code.
template <class Record>
std::optional<std::size_t> findCode(std::string_view section, std::string_view texts,
                                    RegionCode const& wanted) {
  auto const codeOf = [&](std::size_t i) {
    auto const record = recordAt<Record>(section, i);
    return std::pair(textAt(texts, record.registry), textAt(texts, record.code));
  };
  std::pair const key(std::string_view(wanted.registry), std::string_view(wanted.code));
  std::size_t first = 0;
  for (std::size_t end = countIn<Record>(section); first < end;) {
    std::size_t const middle = first + (end - first) / 2;
    codeOf(middle) < key ? first = middle + 1 : end = middle;
  }
  bool const isFound = first < countIn<Record>(section) && codeOf(first) == key;
  return isFound ? std::optional(first) : std::nullopt;
}

std::vector<Coordinate> cornersOf(OutlineRing const& ring) {
  std::vector<Coordinate> corners;
  corners.reserve(ring.size());
  for (OutlinePoint const point : ring) {
    corners.push_back({point.latitude / kOutlineStepsPerDegree, point.longitude / kOutlineStepsPerDegree});
  }
  return corners;
}

}  // namespace

Result<RegionMap, std::string> RegionMap::over(std::string_view bytes) {
  Header header;
  if (bytes.size() < sizeof header) return std::unexpected("it is too short");
  header = recordAt<Header>(bytes, 0);
  if (header.magic != kMagic || header.byteOrder != kByteOrder)
    return std::unexpected("it is not a region map");
  Cutter cutter(bytes.substr(sizeof header));
  RegionMap map;
  map.byteCount_ = bytes.size();
  map.edition_ = header.edition;
  map.regionCount_ = header.regions;
  map.regions_ = cutter.cut(header.regions, sizeof(RegionRecord));
  map.arcs_ = cutter.cut(header.arcs, sizeof(ArcRecord));
  map.borders_ = cutter.cut(header.borders, sizeof(std::uint32_t));
  map.cells_ = cutter.cut(header.cells, sizeof(CellRecord));
  map.aliases_ = cutter.cut(header.aliases, sizeof(AliasRecord));
  map.steps_ = cutter.cut(header.steps, sizeof(Step));
  map.names_ = cutter.cut(header.nameBytes);
  map.texts_ = cutter.cut(header.textBytes);
  if (!cutter.isExact()) return std::unexpected("its length does not match its header");
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

OutlineArc RegionMap::arcAt(std::size_t number) const {
  auto const record = recordAt<ArcRecord>(arcs_, number);
  OutlineArc arc(1, record.first);
  std::size_t const end = endWithin(record.firstStep, record.stepCount, countIn<Step>(steps_));
  for (std::size_t at = record.firstStep; at < end; ++at)
    arc.push_back(stepped(arc.back(), recordAt<Step>(steps_, at)));
  return arc;
}

std::vector<std::vector<Coordinate>> RegionMap::outlineOf(RegionCode const& code) const {
  auto found = findCode<RegionRecord>(regions_, texts_, code);
  if (!found) {
    auto const alias = findCode<AliasRecord>(aliases_, texts_, code);
    if (!alias) return {};
    std::uint32_t const region = recordAt<AliasRecord>(aliases_, *alias).region;
    found = findCode<RegionRecord>(regions_, texts_,
                                   {std::string(kEmmaRegistry), std::string(textAt(texts_, region))});
    if (!found) return {};
  }
  auto const record = recordAt<RegionRecord>(regions_, *found);
  std::vector<OutlineArc> arcs;
  std::size_t const end = endWithin(record.firstBorder, record.borderCount, countIn<std::uint32_t>(borders_));
  for (std::size_t at = record.firstBorder; at < end; ++at) {
    auto const arc = recordAt<std::uint32_t>(borders_, at);
    if (arc < countIn<ArcRecord>(arcs_)) arcs.push_back(arcAt(arc));
  }
  std::vector<std::vector<Coordinate>> outline;
  for (OutlineRing const& ring : ringsOf(arcs)) outline.push_back(cornersOf(ring));
  return outline;
}

OutlineSet RegionMap::outlines() const {
  OutlineSet set;
  set.edition = edition();
  for (std::size_t i = 0; i < countIn<ArcRecord>(arcs_); ++i) set.arcs.push_back(arcAt(i));
  for (std::size_t i = 0; i < regionCount_; ++i) {
    auto const record = recordAt<RegionRecord>(regions_, i);
    OutlinedRegion& region = set.regions.emplace_back(
        RegionCode{std::string(textAt(texts_, record.registry)), std::string(textAt(texts_, record.code))},
        std::string(textAt(texts_, record.country)), std::string(textAt(texts_, record.name)),
        record.isSea != 0);
    std::size_t const end =
        endWithin(record.firstBorder, record.borderCount, countIn<std::uint32_t>(borders_));
    for (std::size_t at = record.firstBorder; at < end; ++at) {
      auto const arc = recordAt<std::uint32_t>(borders_, at);
      if (arc < set.arcs.size()) region.arcs.push_back(arc);
    }
  }
  for (std::size_t i = 0; i < countIn<AliasRecord>(aliases_); ++i) {
    auto const record = recordAt<AliasRecord>(aliases_, i);
    set.aliases.push_back(
        {{std::string(textAt(texts_, record.registry)), std::string(textAt(texts_, record.code))},
         std::string(textAt(texts_, record.region))});
  }
  return set;
}

std::vector<RegionCode> RegionMap::aliasesOf(std::string_view region) const {
  std::vector<RegionCode> codes;
  for (std::size_t i = 0; i < countIn<AliasRecord>(aliases_); ++i) {
    auto const alias = recordAt<AliasRecord>(aliases_, i);
    if (textAt(texts_, alias.region) == region)
      codes.push_back({std::string(textAt(texts_, alias.registry)), std::string(textAt(texts_, alias.code))});
  }
  return codes;
}

bool RegionMap::knows(RegionCode const& code) const {
  return findCode<RegionRecord>(regions_, texts_, code) || findCode<AliasRecord>(aliases_, texts_, code);
}

bool RegionMap::hasName(std::string_view folded) const {
  std::string line = "\n";
  line.append(folded).append("\n");
  return names_.find(line) != std::string_view::npos;
}

std::string_view RegionMap::edition() const {
  return textAt(texts_, edition_);
}

std::map<std::string, std::size_t> RegionMap::countByCountry() const {
  std::map<std::string, std::size_t> counts;
  for (std::size_t i = 0; i < regionCount_; ++i)
    ++counts[std::string(textAt(texts_, recordAt<RegionRecord>(regions_, i).country))];
  return counts;
}

}  // namespace nimbara
