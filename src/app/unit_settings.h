// The units that the user reads: chosen one by one, or by the custom of the region.
#pragma once

#include "base/units.h"
#include "platform/settings.h"

#include <string_view>

namespace nimbara {

/// The units in use where a locale ("en_GB.UTF-8", "zh-Hant-TW") belongs; metric without a region.
Units regionalUnits(std::string_view locale);

/// The chosen units, and the region's for those that are automatic.
Units unitsOf(Settings const& settings, std::string_view locale);

}  // namespace nimbara
