// Under which folded names a city can be found.
#pragma once

#include "towns.h"

#include <set>

namespace nimbara::gazetteer {

/// The city's own name, then those other names that the earlier ones do not already answer to.
std::vector<std::string> searchKeys(Town const& town);

/// The city's own name as others write it with accents ("cádiz" of Cadiz), in lower case.
std::set<std::string> accentedNames(Town const& town);

}  // namespace nimbara::gazetteer
