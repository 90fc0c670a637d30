#include "feeds/regions/regions.h"

#include "feeds/regions/meteo_alarm_countries.h"
#include "feeds/regions/region_names.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

extern "C" {
// NOLINTBEGIN(readability-identifier-naming)
extern char const nimbara_region_tables_begin[];
extern char const nimbara_region_tables_end[];
// NOLINTEND(readability-identifier-naming)
}

namespace nimbara {

namespace {

void addOnce(std::vector<std::string>& names, std::string name) {
  if (!name.empty() && std::ranges::find(names, name) == names.end()) names.push_back(std::move(name));
}

/// "Auvergne-Rhône-Alpes": such a name has those of other places' districts in it.
bool joinsNames(std::string_view name) {
  return std::ranges::count(name, '-') >= 2;
}

void addCode(PlaceRegions& regions, RegionCode const& code, bool isSea) {
  if (std::ranges::find(regions.codes, code) != regions.codes.end()) return;
  regions.codes.push_back(code);
  if (isSea) regions.seaCodes.push_back(code);
}

void addOutlined(PlaceRegions& regions, Coordinate place, RegionMap const& outlines) {
  FoundRegions const found = outlines.at(place, regions.country);
  if (regions.country.empty() && !found.empty()) regions.country = found.begin()->country;
  for (MappedRegion const& region : found) {
    addOnce(regions.names, bareRegionName(region.name));
    addCode(regions, {std::string(region.registry), std::string(region.code)}, region.isSea);
  }
  for (MappedRegion const& region : found) {
    for (RegionCode const& code : outlines.aliasesOf(region.code)) addCode(regions, code, region.isSea);
  }
}

/// The days of editions can be compared; a file without one was chosen by the user.
bool isOlder(RegionMap const& map, RegionMap const& other) {
  return !map.edition().empty() && map.edition() < other.edition();
}

}  // namespace

std::shared_ptr<RegionMap const> embeddedRegions() {
  static std::shared_ptr<RegionMap const> const map = [] {
    auto opened = RegionMap::over({nimbara_region_tables_begin, nimbara_region_tables_end});
    return opened ? std::make_shared<RegionMap const>(std::move(*opened)) : nullptr;
  }();
  return map;
}

PlaceRegions placeRegionsOf(Coordinate place, std::shared_ptr<RegionMap const> const& outlines) {
  PlaceFacts const facts = describePlace(place);
  PlaceRegions regions;
  regions.country = warningCountry(facts.countryCode);
  regions.outlines = outlines;
  if (outlines) addOutlined(regions, place, *outlines);
  bool hasServiceName = false;
  for (std::string_view const name : facts.regionNames) {
    // Close to a border the district, which comes first, tells more than the region.
    auto const others =
        hasServiceName ? std::vector<std::string_view>() : serviceNamesOf(regions.country, name);
    for (std::string_view const other : others) addOnce(regions.names, std::string(other));
    hasServiceName |= !others.empty();
    if (regions.names.empty() || !joinsNames(name)) addOnce(regions.names, bareRegionName(name));
  }
  return regions;
}

PlaceRegions Regions::at(Coordinate place) const {
  return placeRegionsOf(place, outlines());
}

std::shared_ptr<RegionMap const> Regions::outlines() const {
  auto const updated = current().updated;
  return updated ? updated : embeddedRegions();
}

bool Regions::isUpdated() const {
  return current().updated != nullptr;
}

std::optional<std::string> Regions::problem() const {
  return current().problem;
}

std::optional<Regions::Stamp> Regions::stampNow() const {
  if (file_.empty()) return std::nullopt;
  std::error_code error;
  Stamp stamp{std::filesystem::last_write_time(file_, error), 0};
  if (error) return std::nullopt;
  stamp.size = std::filesystem::file_size(file_, error);
  return error ? std::nullopt : std::optional(stamp);
}

/// A file that was replaced is read again; what was handed out of the one before stays whole.
Regions::State Regions::current() const {
  std::lock_guard const lock(mutex_);
  auto const stamp = stampNow();
  if (stamp == state_.stamp) return state_;
  state_ = {stamp, nullptr, {}};
  if (!stamp) return state_;
  auto opened = RegionMap::open(file_);
  if (!opened) {
    state_.problem = opened.error();
  } else if (auto const own = embeddedRegions(); !own || !isOlder(*opened, *own)) {
    state_.updated = std::make_shared<RegionMap const>(std::move(*opened));
  }
  return state_;
}

}  // namespace nimbara
