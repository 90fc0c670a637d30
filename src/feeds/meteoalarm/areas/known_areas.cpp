#include "feeds/meteoalarm/areas/known_areas.h"

#include "feeds/meteoalarm/areas/area_names.h"
#include "feeds/regions/region_names.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <set>

namespace nimbara {

namespace {

bool hasKnownCode(RawEntry const& entry, RegionMap const& outlines) {
  return std::ranges::any_of(entry.otherCodes,
                             [&](RegionCode const& code) { return outlines.knows(code); }) ||
         std::ranges::any_of(entry.nuts3Codes, [&](std::string const& code) {
           return outlines.knows({std::string(kNuts3Registry), code});
         });
}

/// Of the country's regions and districts, in the gazetteer's words and in the service's.
std::vector<std::string> regionNamesOf(std::string_view country) {
  std::set<std::string_view> given;
  for (City const& city : allCities()) {
    if (city.countryCode == country) given.insert({city.region, city.district});
  }
  std::set<std::string> names;
  for (std::string_view const name : given) {
    names.insert(comparableName(bareRegionName(name)));
    for (std::string_view const other : serviceNamesOf(country, name)) names.insert(comparableName(other));
  }
  names.erase("");
  return {names.begin(), names.end()};
}

}  // namespace

bool KnownAreas::has(std::string_view country, RawEntry const& entry, RegionMap const* outlines) {
  if (outlines != nullptr && hasKnownCode(entry, *outlines)) return true;
  std::string const area = comparableName(entry.areaDesc);
  if (area.empty()) return false;
  if (outlines != nullptr && outlines->hasName(area)) return true;
  auto const isOthersName = [](std::string_view) { return false; };
  std::lock_guard const lock(mutex_);
  return std::ranges::any_of(namesOf(country), [&](std::string const& name) {
    return isNamedIn(name, area, isOthersName) || isNamedIn(area, name, isOthersName);
  });
}

/// With the lock held.
std::vector<std::string> const& KnownAreas::namesOf(std::string_view country) {
  auto const found = names_.find(country);
  if (found != names_.end()) return found->second;
  return names_.emplace(country, regionNamesOf(country)).first->second;
}

}  // namespace nimbara
