// Satellites made up around the present moment, in the groups by which they are published. Pure: the same in
// every run; none of them is where a real one is.
#pragma once

#include "globe/tle.h"

#include <optional>
#include <vector>

namespace nimbara {

/// The members of the group with this name; nothing for a name that no group has.
std::optional<std::vector<SGP4::TLE>> demoSatellites(std::string_view wanted, Instant now);

}  // namespace nimbara
