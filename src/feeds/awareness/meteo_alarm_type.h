// What a MeteoAlarm warning is of: twelve kinds of weather.
#pragma once

#include "base/enum_names.h"

#include <string_view>

namespace nimbara {

enum class MeteoAlarmType {
  wind,
  snowIce,
  thunderstorm,
  fog,
  heat,
  cold,
  coastal,
  forestFire,
  avalanche,
  rain,
  flood,
  rainFlood,
  generic  ///< not classified
};

template <>
inline constexpr auto enumNames<MeteoAlarmType> =
    std::to_array<std::string_view>({"wind", "snowIce", "thunderstorm", "fog", "heat", "cold", "coastal",
                                     "forestFire", "avalanche", "rain", "flood", "rainFlood", "generic"});
static_assert(enumNamesComplete(MeteoAlarmType::generic));

}  // namespace nimbara
