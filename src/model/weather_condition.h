// The eighteen conditions that the program knows, their coarse categories, and the mapping of WWO weather
// codes.
#pragma once

#include "base/enum_names.h"

#include <string_view>

namespace nimbara {

/// Order and names are stored in files.
enum class WeatherConditionCode {
  sunny,
  partlyCloudy,
  cloudy,
  overcast,
  fog,
  lightShowers,
  lightSleet,
  lightRain,
  heavyShowers,
  heavyRain,
  thunderyShowers,
  thunderyHeavyRain,
  lightSnow,
  heavySnow,
  lightSnowShowers,
  heavySnowShowers,
  thunderySnowShowers,
  unknown
};

template <>
inline constexpr auto enumNames<WeatherConditionCode> = std::to_array<std::string_view>(
    {"sunny", "partlyCloudy", "cloudy", "overcast", "fog", "lightShowers", "lightSleet", "lightRain",
     "heavyShowers", "heavyRain", "thunderyShowers", "thunderyHeavyRain", "lightSnow", "heavySnow",
     "lightSnowShowers", "heavySnowShowers", "thunderySnowShowers", "unknown"});
static_assert(enumNamesComplete(WeatherConditionCode::unknown));

/// Coarse groups for backgrounds and themes.
enum class ConditionCategory {
  clear,
  partlyCloudy,
  cloudy,
  fog,
  lightRain,
  heavyRain,
  thunderstorm,
  lightSnow,
  heavySnow,
  sleet
};

template <>
inline constexpr auto enumNames<ConditionCategory> =
    std::to_array<std::string_view>({"clear", "partlyCloudy", "cloudy", "fog", "lightRain", "heavyRain",
                                     "thunderstorm", "lightSnow", "heavySnow", "sleet"});
static_assert(enumNamesComplete(ConditionCategory::sleet));

/// The English name, the fallback of the localized texts "condition.<case>". Some conditions share one on
/// purpose.
std::string_view displayName(WeatherConditionCode condition);
/// The system symbol for day or night.
std::string_view symbolName(WeatherConditionCode condition, bool isDay);
ConditionCategory category(WeatherConditionCode condition);
/// Rain, snow, sleet or a thunderstorm.
bool isPrecipitation(WeatherConditionCode condition);

/// The condition of a WWO code as providers write it: an optional sign and digits, nothing around them. All
/// else, and every code that the table lacks, is `unknown`.
WeatherConditionCode conditionOfWwoCode(std::string_view code);

}  // namespace nimbara
