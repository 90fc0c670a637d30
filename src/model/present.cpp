#include "model/present.h"

#include "model/day_summary.h"
#include "model/upcoming_hours.h"

namespace nimbara {

namespace {

template <class Conditions, class Value>
std::optional<Value> detail(Conditions const& conditions, WeatherDetailField field, Value value) {
  return conditions.has(field) ? std::optional(value) : std::nullopt;
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
  present.windDirection = from.windDirection;
  present.precipMM = from.precipMM;
  present.humidity = detail(from, WeatherDetailField::humidity, from.humidity);
  present.pressure = detail(from, WeatherDetailField::pressure, from.pressure);
  present.uvIndex = detail(from, WeatherDetailField::uvIndex, from.uvIndex);
  present.condition = from.condition;
  return present;
}

Present ofReading(WeatherData::ProcessedCurrent const& current) {
  Present present = shared(current);
  present.visibility = detail(current, WeatherDetailField::visibility, current.visibility);
  present.isReading = true;
  return present;
}

Present ofHour(HourlyForecast const& hour) {
  Present present = shared(hour);
  present.visibility = detail(hour, WeatherDetailField::visibility, hour.visibilityKm);
  return present;
}

bool isDayAt(WeatherData const& data, HourlyForecast const* hour, Instant now) {
  DailyForecast const* const day = dayAt(data, now);
  return day == nullptr || hour == nullptr || isDaylight(*day, *hour);
}

}  // namespace

DailyForecast const* dayAt(WeatherData const& data, Instant now) {
  auto const after = std::ranges::upper_bound(data.daily, now, {}, &DailyForecast::date);
  if (after == data.daily.begin()) return nullptr;
  // The longest day of a place has 25 hours.
  DailyForecast const& day = *std::prev(after);
  return now - day.date < std::chrono::hours(25) ? &day : nullptr;
}

bool hasYoungReading(WeatherData const& data, Instant now) {
  return data.current.isReading() && std::chrono::abs(now - data.fetchedAt) < kReadingLife;
}

std::optional<Present> presentAt(WeatherData const& data, Instant now) {
  HourlyForecast const* const hour = hourAt(data.allHourly, now);
  auto const& current = data.current;
  bool const isYoung = hasYoungReading(data, now);
  if (!isYoung && hour == nullptr) return std::nullopt;
  Present present = isYoung ? ofReading(current) : ofHour(*hour);
  present.isDay = isYoung && current.isDay ? *current.isDay : isDayAt(data, hour, now);
  if (hour != nullptr) {
    present.windGustKmph = hour->windGustKmph;
    present.chanceOfRain = hour->chanceOfRain;
  }
  return present;
}

}  // namespace nimbara
