#include "model/weather_condition.h"

#include "base/text/number.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using Code = WeatherConditionCode;

struct ConditionRow {
  Code code;
  std::string_view displayName;
  std::string_view daySymbol;
  std::string_view nightSymbol;
  ConditionCategory category;
};

constexpr std::array kConditions = std::to_array<ConditionRow>({
    {Code::sunny, "Sunny", "sun.max.fill", "moon.stars.fill", ConditionCategory::clear},
    {Code::partlyCloudy, "Partly Cloudy", "cloud.sun.fill", "cloud.moon.fill",
     ConditionCategory::partlyCloudy},
    {Code::cloudy, "Cloudy", "cloud.fill", "cloud.fill", ConditionCategory::cloudy},
    {Code::overcast, "Overcast", "cloud.fill", "cloud.fill", ConditionCategory::cloudy},
    {Code::fog, "Fog", "cloud.fog.fill", "cloud.fog.fill", ConditionCategory::fog},
    {Code::lightShowers, "Light Showers", "cloud.sun.rain.fill", "cloud.moon.rain.fill",
     ConditionCategory::lightRain},
    {Code::lightSleet, "Sleet", "cloud.sleet.fill", "cloud.sleet.fill", ConditionCategory::sleet},
    {Code::lightRain, "Light Rain", "cloud.drizzle.fill", "cloud.drizzle.fill", ConditionCategory::lightRain},
    {Code::heavyShowers, "Heavy Showers", "cloud.rain.fill", "cloud.rain.fill", ConditionCategory::heavyRain},
    {Code::heavyRain, "Heavy Rain", "cloud.heavyrain.fill", "cloud.heavyrain.fill",
     ConditionCategory::heavyRain},
    {Code::thunderyShowers, "Thunderstorms", "cloud.bolt.rain.fill", "cloud.bolt.rain.fill",
     ConditionCategory::thunderstorm},
    {Code::thunderyHeavyRain, "Thunderstorms", "cloud.bolt.rain.fill", "cloud.bolt.rain.fill",
     ConditionCategory::thunderstorm},
    {Code::lightSnow, "Light Snow", "cloud.snow.fill", "cloud.snow.fill", ConditionCategory::lightSnow},
    {Code::heavySnow, "Heavy Snow", "cloud.snow.fill", "cloud.snow.fill", ConditionCategory::heavySnow},
    {Code::lightSnowShowers, "Snow Showers", "cloud.snow.fill", "cloud.snow.fill",
     ConditionCategory::lightSnow},
    {Code::heavySnowShowers, "Heavy Snow", "cloud.snow.fill", "cloud.snow.fill",
     ConditionCategory::heavySnow},
    {Code::thunderySnowShowers, "Thunder Snow", "cloud.bolt.fill", "cloud.bolt.fill",
     ConditionCategory::thunderstorm},
    {Code::unknown, "Unknown", "cloud.fill", "cloud.fill", ConditionCategory::cloudy},
});

constexpr bool rowsStandInOrder() {
  for (std::size_t i = 0; i < kConditions.size(); ++i) {
    if (kConditions[i].code != static_cast<Code>(i)) return false;
  }
  return kConditions.size() == enumNames<Code>.size();
}
static_assert(rowsStandInOrder());

struct WwoRow {
  int wwo;
  Code condition;
};

/// Ascending by code. Freezing rain and ice pellets count as sleet, patchy sleet (179) as snow, and of the
/// two codes for snow with thunder only 392 is thunder snow.
constexpr std::array kWwoCodes = std::to_array<WwoRow>({
    {113, Code::sunny},
    {116, Code::partlyCloudy},
    {119, Code::cloudy},
    {122, Code::overcast},
    {143, Code::fog},
    {176, Code::lightShowers},
    {179, Code::lightSnow},
    {182, Code::lightSleet},
    {185, Code::lightSleet},
    {200, Code::thunderyShowers},
    {227, Code::lightSnow},
    {230, Code::heavySnow},
    {248, Code::fog},
    {260, Code::fog},
    {263, Code::lightShowers},
    {266, Code::lightRain},
    {281, Code::lightSleet},
    {284, Code::lightSleet},
    {293, Code::lightRain},
    {296, Code::lightRain},
    {299, Code::heavyShowers},
    {302, Code::heavyRain},
    {305, Code::heavyShowers},
    {308, Code::heavyRain},
    {311, Code::lightSleet},
    {314, Code::lightSleet},
    {317, Code::lightSleet},
    {320, Code::lightSleet},
    {323, Code::lightSnowShowers},
    {326, Code::lightSnowShowers},
    {329, Code::heavySnow},
    {332, Code::heavySnow},
    {335, Code::heavySnowShowers},
    {338, Code::heavySnow},
    {350, Code::lightSleet},
    {353, Code::lightShowers},
    {356, Code::heavyShowers},
    {359, Code::heavyRain},
    {362, Code::lightSleet},
    {365, Code::lightSleet},
    {368, Code::lightSnowShowers},
    {371, Code::heavySnowShowers},
    {374, Code::lightSleet},
    {377, Code::lightSleet},
    {386, Code::thunderyShowers},
    {389, Code::thunderyHeavyRain},
    {392, Code::thunderySnowShowers},
    {395, Code::heavySnowShowers},
});
static_assert(std::ranges::is_sorted(kWwoCodes, std::ranges::less_equal{}, &WwoRow::wwo));

ConditionRow const& row(Code condition) {
  return kConditions[static_cast<std::size_t>(condition)];
}

}  // namespace

std::string_view displayName(Code condition) {
  return row(condition).displayName;
}

std::string_view symbolName(Code condition, bool isDay) {
  return isDay ? row(condition).daySymbol : row(condition).nightSymbol;
}

ConditionCategory category(Code condition) {
  return row(condition).category;
}

bool isPrecipitation(Code condition) {
  static_assert(ConditionCategory::fog < ConditionCategory::lightRain);
  return category(condition) >= ConditionCategory::lightRain;
}

Code conditionOfWwoCode(std::string_view code) {
  auto const number = parseInteger(code);
  if (!number) return Code::unknown;
  auto const found = std::ranges::lower_bound(kWwoCodes, *number, {}, &WwoRow::wwo);
  return found != kWwoCodes.end() && found->wwo == *number ? found->condition : Code::unknown;
}

}  // namespace nimbara
