// Map tiles of an address that the user has entered: streets, relief or whatever is drawn there.
#pragma once

#include "base/web_mercator.h"
#include "platform/clock.h"

#include <string>
#include <string_view>

namespace nimbara {

/// "https://host/{z}/{x}/{y}.png": an address with each of the three once and nothing else in
/// braces.
bool isTileTemplate(std::string_view text);

/// One of the tiles. Only for what `isTileTemplate` accepts.
std::string streetTileAddress(std::string_view pattern, TileAddress tile);
/// What it is kept under, for a month: streets change slowly, and their servers ask for patience.
std::string streetTileKey(std::string_view pattern, TileAddress tile, Instant now);

}  // namespace nimbara
