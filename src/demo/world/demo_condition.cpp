#include "demo/world/demo_condition.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr DemoCondition kConditions[] = {
    {0, "113", "Clear", "clearsky", true, "Clear"},
    {1, "116", "Partly cloudy", "fair", true, "MostlyClear"},
    {2, "116", "Partly cloudy", "partlycloudy", true, "PartlyCloudy"},
    {3, "122", "Overcast", "cloudy", false, "Cloudy"},
    {45, "248", "Fog", "fog", false, "Foggy"},
    {48, "260", "Freezing fog", "fog", false, "Foggy"},
    {51, "266", "Light drizzle", "lightrain", false, "Drizzle"},
    {53, "266", "Light drizzle", "lightrain", false, "Drizzle"},
    {55, "296", "Light rain", "lightrain", false, "Drizzle"},
    {56, "281", "Freezing drizzle", "lightsleet", false, "FreezingDrizzle"},
    {57, "284", "Heavy freezing drizzle", "sleet", false, "FreezingDrizzle"},
    {61, "296", "Light rain", "lightrain", false, "Rain"},
    {63, "296", "Light rain", "rain", false, "Rain"},
    {65, "308", "Heavy rain", "heavyrain", false, "HeavyRain"},
    {66, "311", "Light freezing rain", "lightsleet", false, "FreezingRain"},
    {67, "314", "Moderate or heavy freezing rain", "heavysleet", false, "FreezingRain"},
    {71, "227", "Light snow", "lightsnow", false, "Snow"},
    {73, "227", "Light snow", "snow", false, "Snow"},
    {75, "338", "Heavy snow", "heavysnow", false, "HeavySnow"},
    {77, "350", "Ice pellets", "lightsleet", false, "WintryMix"},
    {80, "353", "Light rain shower", "lightrainshowers", true, "Showers"},
    {81, "356", "Moderate or heavy rain shower", "rainshowers", true, "HeavyRain"},
    {82, "356", "Moderate or heavy rain shower", "heavyrainshowers", true, "HeavyRain"},
    {85, "368", "Light snow showers", "lightsnowshowers", true, "SnowShowers"},
    {86, "371", "Moderate or heavy snow showers", "heavysnowshowers", true, "HeavySnow"},
    {95, "386", "Patchy light rain with thunder", "rainandthunder", false, "Thunderstorms"},
    {96, "389", "Moderate or heavy rain with thunder", "heavyrainandthunder", false, "StrongStorms"},
    {99, "389", "Moderate or heavy rain with thunder", "heavyrainandthunder", false, "StrongStorms"},
};

}  // namespace

DemoCondition const& demoCondition(int wmo) {
  auto const row = std::ranges::find(kConditions, wmo, &DemoCondition::wmo);
  return row == std::ranges::end(kConditions) ? kConditions[0] : *row;
}

}  // namespace nimbara
