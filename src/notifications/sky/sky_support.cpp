#include "notifications/sky/sky_support.h"

#include "base/sun_moon.h"
#include "base/text/number.h"
#include "model/present.h"
#include "notifications/sky/sky_constants.h"

namespace nimbara::sky {

Finding pleasant(std::string identifier, std::string title, std::string body) {
  Finding finding;
  finding.identifier = std::move(identifier);
  finding.title = std::move(title);
  finding.body = std::move(body);
  finding.severity = AlertSeverity::info;
  return finding;
}

Finding nuisance(std::string identifier, std::string title, std::string body) {
  Finding finding = pleasant(std::move(identifier), std::move(title), std::move(body));
  finding.severity = AlertSeverity::advisory;
  return finding;
}

bool isRain(WeatherConditionCode condition) {
  auto const group = category(condition);
  return group == ConditionCategory::lightRain || group == ConditionCategory::heavyRain ||
         condition == WeatherConditionCode::thunderyShowers ||
         condition == WeatherConditionCode::thunderyHeavyRain;
}

bool isWet(WeatherConditionCode condition) {
  auto const group = category(condition);
  return isRain(condition) || group == ConditionCategory::thunderstorm || group == ConditionCategory::sleet ||
         group == ConditionCategory::lightSnow || group == ConditionCategory::heavySnow;
}

bool isOpenSky(WeatherConditionCode condition) {
  return condition == WeatherConditionCode::sunny || condition == WeatherConditionCode::partlyCloudy;
}

bool isDry(HourlyForecast const& hour) {
  return !isWet(hour.condition) && hour.precipMM < kDryHourMm;
}

int localHour(RuleInputs const& inputs, Instant instant) {
  return inputs.calendar.hour(instant);
}

double sunAltitude(RuleInputs const& inputs, Instant instant) {
  return sunPosition(instant, inputs.place.coordinate).altitude;
}

bool isDark(RuleInputs const& inputs, Instant instant) {
  return sunAltitude(inputs, instant) < kDarkSunAltitude;
}

int moonPercent(Instant instant) {
  return static_cast<int>(roundHalfAway(moonState(instant).illumination * 100));
}

std::optional<int> cloudCoverNow(RuleInputs const& inputs) {
  if (!inputs.weather) return std::nullopt;
  auto const& current = inputs.weather->current;
  bool const hasReading =
      hasYoungReading(*inputs.weather, inputs.now) && current.has(WeatherDetailField::cloudCover);
  if (hasReading) return current.cloudCover;
  bool const hasHour = !inputs.hours.empty() && inputs.hours.front().date <= inputs.now &&
                       inputs.hours.front().has(WeatherDetailField::cloudCover);
  return hasHour ? std::optional(inputs.hours.front().cloudCover) : std::nullopt;
}

double rainBefore(RuleInputs const& inputs, Instant instant, std::chrono::hours span) {
  double sum = 0;
  for (HourlyForecast const& hour : inputs.weather->allHourly) {
    if (hour.date < instant && hour.date >= instant - span) sum += hour.precipMM;
  }
  return sum;
}

bool isTimeForTonight(RuleInputs const& inputs) {
  return localHour(inputs, inputs.now) >= kTonightFromHour;
}

std::vector<HourlyForecast> comingNight(RuleInputs const& inputs) {
  auto const isNight = [&](HourlyForecast const& entry) {
    int const hour = localHour(inputs, entry.date);
    return hour >= kNightFromHour || hour < kNightUntilHour;
  };
  Hours const day = inputs.hoursWithin(std::chrono::hours(24));
  auto const begin = std::ranges::find_if(day, isNight);
  return {begin, std::find_if_not(begin, day.end(), isNight)};
}

}  // namespace nimbara::sky
