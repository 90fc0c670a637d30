// What a warning or an alert is about. Records state it by the name of the symbol that stands for it, the
// program's own settings and texts by a word.
#pragma once

#include "base/enum_names.h"

#include <string_view>

namespace nimbara {

enum class WarningKind {
  other,
  tornado,
  tropicalCyclone,
  coast,
  thunderstorm,
  avalanche,
  rain,
  snow,
  ice,
  fire,
  heat,
  cold,
  fog,
  smoke,
  air,
  dust,
  wind,
  sun
};

/// The symbols, in the order of the enumerators: the JSON form.
template <>
inline constexpr auto enumNames<WarningKind> = std::to_array<std::string_view>(
    {"exclamationmark.triangle.fill", "tornado", "hurricane", "water.waves", "cloud.bolt.fill",
     "mountain.2.fill", "cloud.heavyrain.fill", "cloud.snow.fill", "snowflake", "flame.fill",
     "thermometer.sun.fill", "thermometer.snowflake", "cloud.fog.fill", "smoke.fill", "aqi.medium",
     "sun.dust.fill", "wind", "sun.max.trianglebadge.exclamationmark"});
static_assert(enumNamesComplete(WarningKind::sun));

/// "thunderstorm": ends keys of texts, and a mute names it.
std::string_view wordOf(WarningKind kind);

}  // namespace nimbara
