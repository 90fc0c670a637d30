// Names of regions in a form that can be compared with the area names of warnings.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// `name` without the words that say only what kind of region it is ("województwo", "Landkreis", "County",
/// "Département du"). Empty when nothing is left that names one region among others: fewer than four letters,
/// or only a point of the compass or the like.
std::string bareRegionName(std::string_view name);

}  // namespace nimbara
