// Names of regions in a form that can be compared with the area names of warnings.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// `name` without the words that say only what kind of region it is ("województwo", "Landkreis", "County",
/// "Département du"). Empty when nothing is left that names one region among others: fewer than four letters,
/// or only a point of the compass or the like.
std::string bareRegionName(std::string_view name);

/// What a country's service calls the region, or the region that the district belongs to, of this name in the
/// gazetteer: in its own language, and in its own division of the country. Empty where these are the same.
std::vector<std::string_view> serviceNamesOf(std::string_view country, std::string_view gazetteerName);

}  // namespace nimbara
