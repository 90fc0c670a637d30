#include "notifications/custom/condition_kinds.h"

#include <algorithm>

namespace nimbara {

namespace {

using Type = ConditionType;
using Unit = ConditionUnit;
using Hour = HourlyForecast;
using Detail = WeatherDetailField;
using Value = ForecastValue;
using Group = ConditionCategory;
using Measured = StationQuantity;

bool isSnow(WeatherConditionCode condition) {
  Group const group = category(condition);
  return group == Group::lightSnow || group == Group::heavySnow ||
         condition == WeatherConditionCode::thunderySnowShowers;
}

double eventChance(bool isNow, int chance) {
  return isNow ? 100 : chance;
}

constexpr std::string_view kTemperatureSound = "temp_drop.caf";
constexpr std::string_view kWindSound = "wind_alert.caf";
constexpr std::string_view kSunSound = "uv_high.caf";
constexpr std::string_view kStormSound = "storm_alert.caf";
constexpr std::string_view kWarningSound = "weather_warning.caf";
constexpr std::string_view kCriticalSound = "weather_critical.caf";

constexpr ConditionKind kKinds[] = {
    {Type::precipitation,
     Unit::mm,
     kStormSound,
     [](Hour const& h) { return h.precipMM; },
     {},
     Value::precipitation},
    {Type::precipChance,
     Unit::percent,
     kStormSound,
     [](Hour const& h) -> double { return std::max(h.chanceOfRain, h.chanceOfSnow); },
     {},
     Value::precipitationChance},
    {Type::temperature, Unit::celsius, kTemperatureSound, [](Hour const& h) { return h.tempC; }, {}, {}},
    {Type::feelsLike, Unit::celsius, kTemperatureSound, [](Hour const& h) { return h.feelsLikeC; }, {}, {}},
    {Type::dewPoint,
     Unit::celsius,
     kTemperatureSound,
     [](Hour const& h) { return h.dewPointC; },
     Detail::dewPoint,
     {}},
    {Type::uvIndex,
     Unit::index,
     kSunSound,
     [](Hour const& h) -> double { return h.uvIndex; },
     Detail::uvIndex,
     {}},
    {Type::windSpeed,
     Unit::kmh,
     kWindSound,
     [](Hour const& h) { return h.windSpeedKmph; },
     {},
     Value::windSpeed},
    {Type::windGust,
     Unit::kmh,
     kWindSound,
     [](Hour const& h) { return h.windGustKmph; },
     {},
     Value::windGust},
    {Type::humidity,
     Unit::percent,
     kWarningSound,
     [](Hour const& h) -> double { return h.humidity; },
     Detail::humidity,
     {}},
    {Type::snow,
     Unit::percent,
     kStormSound,
     [](Hour const& h) { return eventChance(isSnow(h.condition), h.chanceOfSnow); },
     {},
     {}},
    {Type::fog,
     Unit::percent,
     kWarningSound,
     [](Hour const& h) { return eventChance(category(h.condition) == Group::fog, h.chanceOfFog); },
     {},
     {}},
    {Type::thunder,
     Unit::percent,
     kStormSound,
     [](Hour const& h) {
       return eventChance(category(h.condition) == Group::thunderstorm, h.chanceOfThunder);
     },
     {},
     {}},
    {Type::cloudCover,
     Unit::percent,
     kWarningSound,
     [](Hour const& h) -> double { return h.cloudCover; },
     Detail::cloudCover,
     {}},
    {Type::visibility,
     Unit::km,
     kWarningSound,
     [](Hour const& h) { return h.visibilityKm; },
     Detail::visibility,
     {}},
    {Type::pressure,
     Unit::hPa,
     kWarningSound,
     [](Hour const& h) { return h.pressure; },
     Detail::pressure,
     {}},
    {Type::airQuality, Unit::microgram, kWarningSound, nullptr, {}, {}},
    {Type::earthquake, Unit::magnitude, kCriticalSound, nullptr, {}, {}},
    {Type::rainWithin, Unit::minutes, kStormSound, nullptr, {}, {}},
    {Type::stationTemperature, Unit::celsius, kTemperatureSound, nullptr, {}, {}, Measured::temperature},
    {Type::stationHumidity, Unit::percent, kWarningSound, nullptr, {}, {}, Measured::humidity},
    {Type::stationWind, Unit::kmh, kWindSound, nullptr, {}, {}, Measured::windSpeed},
    {Type::stationRain, Unit::mm, kStormSound, nullptr, {}, {}, Measured::rainLastHour},
};

constexpr bool rowsStandInOrder() {
  for (std::size_t i = 0; i < std::size(kKinds); ++i) {
    if (kKinds[i].type != static_cast<Type>(i)) return false;
  }
  return std::size(kKinds) == enumNames<Type>.size();
}
static_assert(rowsStandInOrder());

}  // namespace

std::span<ConditionKind const> conditionKinds() {
  return kKinds;
}

ConditionKind const& kindOf(Type type) {
  return kKinds[static_cast<std::size_t>(type)];
}

}  // namespace nimbara
