#include "analysis/hour_kind.h"

#include "analysis/precip_kind.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr double kLeastMM = 0.1;
constexpr double kCertainMM = 2;
constexpr int kLeastChance = 30;
constexpr int kThunderChance = 50;
constexpr double kThickFogKm = 0.5;
constexpr double kGaleKmph = 62;
constexpr double kGaleGustKmph = 75;
constexpr int kClearCover = 20;

bool isEnough(HourlyForecast const& hour) {
  if (!hour.knows(ForecastValue::precipitation)) return isPrecipitation(hour.condition);
  if (hour.precipMM < kLeastMM) return false;
  bool const knowsChance = hour.knows(ForecastValue::precipitationChance);
  return !knowsChance || hour.precipMM >= kCertainMM ||
         std::max(hour.chanceOfRain, hour.chanceOfSnow) >= kLeastChance;
}

HourFall byTemperature(double celsius) {
  switch (fallAt(celsius)) {
    case Fall::snow:
      return HourFall::snow;
    case Fall::sleet:
      return HourFall::sleet;
    default:
      return HourFall::rain;
  }
}

/// Providers say in their English words what the eighteen conditions lump together.
bool saysOf(HourlyForecast const& hour, std::string_view word) {
  return hour.conditionDescription.find(word) != std::string::npos;
}

}  // namespace

HourFall fallOf(HourlyForecast const& hour) {
  bool const isTold =
      hour.knows(ForecastValue::precipitation) || hour.condition != WeatherConditionCode::unknown;
  if (!isTold) return HourFall::unknown;
  if (!isEnough(hour)) return HourFall::none;
  switch (category(hour.condition)) {
    case ConditionCategory::sleet:
      if (saysOf(hour, "reezing")) return HourFall::freezing;
      return saysOf(hour, "Snow Grains") ? HourFall::snow : HourFall::sleet;
    case ConditionCategory::lightSnow:
    case ConditionCategory::heavySnow:
      return HourFall::snow;
    case ConditionCategory::lightRain:
    case ConditionCategory::heavyRain:
      return hour.tempC < 0 ? HourFall::freezing : HourFall::rain;
    default:
      if (hour.condition == WeatherConditionCode::thunderySnowShowers) return HourFall::snow;
      return byTemperature(hour.tempC);
  }
}

bool isThundery(HourlyForecast const& hour) {
  return category(hour.condition) == ConditionCategory::thunderstorm ||
         hour.chanceOfThunder >= kThunderChance;
}

bool isThickFog(HourlyForecast const& hour) {
  bool const isSeen = hour.has(WeatherDetailField::visibility) && hour.visibilityKm > 0;
  return hour.condition == WeatherConditionCode::fog || (isSeen && hour.visibilityKm < kThickFogKm);
}

bool isGale(HourlyForecast const& hour) {
  return (hour.knows(ForecastValue::windSpeed) && hour.windSpeedKmph >= kGaleKmph) ||
         (hour.knows(ForecastValue::windGust) && hour.windGustKmph >= kGaleGustKmph);
}

double strongestWind(HourlyForecast const& hour) {
  double const wind = hour.knows(ForecastValue::windSpeed) ? hour.windSpeedKmph : 0;
  return std::max(wind, hour.knows(ForecastValue::windGust) ? hour.windGustKmph : 0);
}

bool isClear(HourlyForecast const& hour) {
  if (hour.condition == WeatherConditionCode::fog || isPrecipitation(hour.condition)) return false;
  if (!hour.has(WeatherDetailField::cloudCover)) return hour.condition == WeatherConditionCode::sunny;
  return hour.cloudCover <= kClearCover;
}

}  // namespace nimbara
