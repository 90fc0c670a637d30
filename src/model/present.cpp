#include "model/present.h"

#include "base/sun_moon.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

/// The sun's centre when its upper limb touches the horizon, refraction included, degrees.
constexpr double kRiseAltitude = -0.833;

template <class Conditions, class Value>
std::optional<Value> detail(Conditions const& conditions, WeatherDetailField field, Value value) {
  return conditions.has(field) ? std::optional(value) : std::nullopt;
}

template <class Conditions, class Value>
std::optional<Value> known(Conditions const& conditions, ForecastValue field, Value value) {
  return conditions.knows(field) ? std::optional(value) : std::nullopt;
}

/// What the present's and an hour's record name alike.
template <class Conditions>
Present shared(Conditions const& from) {
  Present present;
  present.tempC = from.tempC;
  present.tempF = from.tempF;
  present.feelsLikeC = from.feelsLikeC;
  present.feelsLikeF = from.feelsLikeF;
  present.windSpeedKmph = from.windSpeedKmph;
  present.knowsWind = from.knows(ForecastValue::windSpeed);
  present.windDirection = from.windDirection;
  present.precipMM = known(from, ForecastValue::precipitation, from.precipMM);
  present.humidity = detail(from, WeatherDetailField::humidity, from.humidity);
  present.cloudCover = detail(from, WeatherDetailField::cloudCover, from.cloudCover);
  present.pressure = detail(from, WeatherDetailField::pressure, from.pressure);
  present.uvIndex = detail(from, WeatherDetailField::uvIndex, from.uvIndex);
  present.condition = from.condition;
  present.description = from.conditionDescription;
  return present;
}

/// The moment of the reading, as far as its text is a date and time of the place.
std::optional<Instant> readingTime(WeatherData const& data) {
  auto const local = parseLocalTime(data.current.observationTime);
  if (!local || !data.location.timeZone) return std::nullopt;
  return calendarOf(data, Calendar::utc()).instant(*local);
}

Present ofReading(WeatherData const& data) {
  Present present = shared(data.current);
  present.visibility = detail(data.current, WeatherDetailField::visibility, data.current.visibility);
  present.isReading = true;
  present.readAt = readingTime(data).value_or(data.fetchedAt);
  return present;
}

Present ofHour(HourlyForecast const& hour) {
  Present present = shared(hour);
  present.visibility = detail(hour, WeatherDetailField::visibility, hour.visibilityKm);
  return present;
}

/// What readings lack and the hour around them tells.
void addOfHour(Present& present, HourlyForecast const& hour) {
  present.windGustKmph = known(hour, ForecastValue::windGust, hour.windGustKmph);
  present.chanceOfRain = known(hour, ForecastValue::precipitationChance, hour.chanceOfRain);
  present.dewPointC = detail(hour, WeatherDetailField::dewPoint, hour.dewPointC);
  present.dewPointF = detail(hour, WeatherDetailField::dewPoint, hour.dewPointF);
}

bool isNear(Instant then, Instant now) {
  return std::chrono::abs(now - then) < kReadingLife;
}

}  // namespace

DailyForecast const* dayAt(WeatherData const& data, Instant now) {
  auto const after = std::ranges::upper_bound(data.daily, now, {}, &DailyForecast::date);
  if (after == data.daily.begin()) return nullptr;
  // The longest day of a place has 25 hours.
  DailyForecast const& day = *std::prev(after);
  return now - day.date < std::chrono::hours(25) ? &day : nullptr;
}

bool isDayAt(WeatherData const& data, Instant instant) {
  return sunPosition(instant, {data.location.latitude, data.location.longitude}).altitude > kRiseAltitude;
}

bool isDayIn(WeatherData const& data, HourlyForecast const& hour) {
  return isDayAt(data, hour.date + std::chrono::minutes(30));
}

bool hasDaylight(WeatherData const& data, DailyForecast const& day) {
  using namespace std::chrono;
  constexpr double kSecondsOfADegree = 240;  // the sun's way around the world
  seconds const east(std::lround(data.location.longitude * kSecondsOfADegree));
  auto const noon = floor<days>(day.date) + 12h - east;
  return isDayAt(data, noon + ceil<days>(day.date - noon));  // the first noon since the day began
}

bool hasYoungReading(WeatherData const& data, Instant now) {
  return data.current.isReading() && isNear(data.fetchedAt, now) &&
         isNear(readingTime(data).value_or(data.fetchedAt), now);
}

std::optional<Present> presentAt(WeatherData const& data, Instant now) {
  HourlyForecast const* const hour = hourAt(data.allHourly, now);
  bool const isYoung = hasYoungReading(data, now);
  if (!isYoung && hour == nullptr) return std::nullopt;
  Present present = isYoung ? ofReading(data) : ofHour(*hour);
  present.isDay = isDayAt(data, now);
  if (hour != nullptr) addOfHour(present, *hour);
  return present;
}

std::optional<Present> lastReading(WeatherData const& data) {
  if (!data.current.isReading()) return std::nullopt;
  Present present = ofReading(data);
  present.isDay = data.current.isDay.value_or(isDayAt(data, readingTime(data).value_or(data.fetchedAt)));
  return present;
}

}  // namespace nimbara
