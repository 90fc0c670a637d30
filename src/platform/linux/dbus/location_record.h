// A position as location services tell it on the bus, in the words that GeoClue and the location portal
// share.
#pragma once

#include "platform/location_source.h"

#include <map>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <string_view>

namespace nimbara {

using LocationProperties = std::map<std::string, sdbus::Variant>;

/// "the location is unknown: " and the reason.
LocationError locationError(LocationError::Kind kind, std::string_view reason);
/// Of an absent time the present one; an absent or impossible position is an error.
Result<LocationFix, LocationError> locationFix(LocationProperties const& properties);

}  // namespace nimbara
