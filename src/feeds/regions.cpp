#include "feeds/regions.h"

#include "feeds/region_names.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

void addName(std::vector<std::string>& names, std::string_view name) {
  std::string bare = bareRegionName(name);
  if (!bare.empty() && std::ranges::find(names, bare) == names.end()) names.push_back(std::move(bare));
}

/// "Auvergne-Rhône-Alpes": such a name has those of other places' districts in it.
bool joinsNames(std::string_view name) {
  return std::ranges::count(name, '-') >= 2;
}

void addCode(std::vector<RegionCode>& codes, MappedRegion const& region) {
  RegionCode code{std::string(region.registry), std::string(region.code)};
  if (std::ranges::find(codes, code) == codes.end()) codes.push_back(std::move(code));
}

/// Simplified outlines reach over a border here and there: where the country is known, only its own count.
std::vector<MappedRegion> ownRegions(std::string_view country, std::span<MappedRegion const> outlined) {
  std::vector<MappedRegion> own;
  std::ranges::copy_if(outlined, std::back_inserter(own), [&](MappedRegion const& region) {
    return country.empty() || region.country.empty() || region.country == country;
  });
  return own;
}

}  // namespace

PlaceRegions placeRegionsOf(Coordinate place, std::span<MappedRegion const> outlined) {
  PlaceFacts const facts = describePlace(place);
  std::vector<MappedRegion> const own = ownRegions(facts.countryCode, outlined);
  PlaceRegions regions;
  regions.country = facts.countryCode;
  if (regions.country.empty() && !own.empty()) regions.country = own.front().country;
  for (MappedRegion const& region : own) {
    addName(regions.names, region.name);
    addCode(regions.codes, region);
  }
  for (std::string_view const name : facts.regionNames) {
    if (regions.names.empty() || !joinsNames(name)) addName(regions.names, name);
  }
  return regions;
}

PlaceRegions Regions::at(Coordinate place) const {
  RegionMap const* const outlines = map();
  return placeRegionsOf(place, outlines == nullptr ? std::vector<MappedRegion>() : outlines->at(place));
}

std::optional<std::string> Regions::problem() const {
  map();
  return problem_;
}

RegionMap const* Regions::map() const {
  std::call_once(opened_, [this] {
    std::error_code ignored;
    if (file_.empty() || !std::filesystem::exists(file_, ignored)) return;
    auto opened = RegionMap::open(file_);
    if (opened) {
      map_.emplace(std::move(*opened));
    } else {
      problem_ = opened.error();
    }
  });
  return map_ ? &*map_ : nullptr;
}

}  // namespace nimbara
