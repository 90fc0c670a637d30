// What the Joint Typhoon Warning Center publishes of tropical cyclones: the list of its warnings, and the
// warning itself in columns. Pure; any bytes may be given.
#pragma once

#include "feeds/storms/tropical_storm.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The files of the warnings in force, "wp2526", each once; those of the seas that the National Hurricane
/// Center watches are left out. An empty list means that there are none: whatever does not say so, or is not
/// whole, is an error.
Result<std::vector<std::string>, DecodeError> parseJtwcList(std::string_view body);

/// The storm of a file by its name: position, wind and movement of now, the forecast with the radius of
/// gales, and the way that it came.
Result<TropicalStorm, DecodeError> parseJtwcWarning(std::string_view body, std::string_view file);

}  // namespace nimbara
