// The tropical cyclones that the Global Disaster Alert and Coordination System lists: that a storm exists,
// where, and how strong it has been at most. Pure; any bytes may be given.
#pragma once

#include "feeds/storms/tropical_storm.h"

#include <string_view>
#include <vector>

namespace nimbara {

/// Each current event once. An answer without features means that there are none.
Result<std::vector<TropicalStorm>, DecodeError> parseGdacsStorms(std::string_view body);

/// The basin of a position, for reports that name none. West of Central America is the Pacific.
TropicalBasin basinAt(Coordinate position);

}  // namespace nimbara
