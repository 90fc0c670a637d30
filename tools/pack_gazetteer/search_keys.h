// Under which folded names a city can be found.
#pragma once

#include "towns.h"

namespace nimbara::gazetteer {

/// The city's own name, then those other names that the earlier ones do not already answer to.
std::vector<std::string> searchKeys(Town const& town);

}  // namespace nimbara::gazetteer
