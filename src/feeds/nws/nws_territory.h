// Where the United States National Weather Service issues alerts; elsewhere it answers with an error, so
// nobody asks it there.
#pragma once

#include "base/geodesy.h"

#include <string_view>

namespace nimbara {

/// The United States, their territories and the states in free association with them, and the open sea
/// (`countryCode` empty) within its offshore waters. `countryCode` is that of the coordinate, ISO 3166-1.
bool isNwsTerritory(std::string_view countryCode, Coordinate coordinate);

}  // namespace nimbara
