#include "providers/wttr/wttr_join.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "base/units.h"
#include "providers/common/interchange.h"
#include "providers/wttr/wttr_hours.h"
#include "providers/wttr/wttr_ranges.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kFarthestKm = 100;
constexpr int kSecondsADay = 24 * 60 * 60;
/// Of the three that the service gives; more would be no answer of it.
constexpr std::size_t kMostDays = 16;

bool isNumber(std::string const& text) {
  return parseDouble(text).has_value();
}

/// What is no number is no reading.
void clearUnlessNumber(std::string& text) {
  if (!isNumber(text)) text.clear();
}

void fillTemperatures(std::string& celsius, std::string& fahrenheit) {
  clearUnlessNumber(celsius);
  clearUnlessNumber(fahrenheit);
  if (celsius.empty() && !fahrenheit.empty()) {
    celsius = roundedText(celsiusFromFahrenheit(lenientDouble(fahrenheit)));
  } else if (fahrenheit.empty() && !celsius.empty()) {
    fahrenheit = roundedText(fahrenheitFromCelsius(lenientDouble(celsius)));
  }
}

template <class Condition>
DetailFields detailsOf(Condition const& condition) {
  struct Row {
    WeatherDetailField field;
    std::string Condition::* text;
  };
  constexpr Row kRows[] = {{WeatherDetailField::humidity, &Condition::humidity},
                           {WeatherDetailField::visibility, &Condition::visibility},
                           {WeatherDetailField::pressure, &Condition::pressure},
                           {WeatherDetailField::uvIndex, &Condition::uvIndex},
                           {WeatherDetailField::cloudCover, &Condition::cloudcover}};
  DetailFields details;
  for (Row const& row : kRows) {
    if (isNumber(condition.*row.text)) details.insert(row.field);
  }
  return details;
}

template <class Condition>
void fitShared(Condition& condition) {
  fillTemperatures(condition.tempC, condition.tempF);
  fillTemperatures(condition.feelsLikeC, condition.feelsLikeF);
  if (condition.feelsLikeC.empty()) {
    condition.feelsLikeC = condition.tempC;
    condition.feelsLikeF = condition.tempF;
  }
  if (condition.weatherDesc.empty()) condition.weatherDesc = {{"Unknown"}};
  condition.availableDetailFields = detailsOf(condition);
}

std::optional<int> hourOf(HourlyCondition const& hour) {
  auto const time = parseInteger(hour.time);
  if (!time || *time < 0 || *time > 2300) return std::nullopt;
  return *time / 100;
}

void fitHours(std::vector<HourlyCondition>& hours) {
  for (HourlyCondition& hour : hours) {
    fitShared(hour);
    fillTemperatures(hour.dewPointC, hour.dewPointF);
    if (!hour.dewPointC.empty()) hour.availableDetailFields.insert(WeatherDetailField::dewPoint);
  }
  std::erase_if(hours, [](HourlyCondition const& hour) { return !hourOf(hour) || hour.tempC.empty(); });
  std::ranges::stable_sort(hours, {}, [](HourlyCondition const& hour) { return *hourOf(hour); });
}

double temperatureOf(HourlyCondition const& hour) {
  return lenientDouble(hour.tempC);
}

/// Extremes that are missing are taken from the hours.
void fitDay(WeatherDay& day) {
  fitHours(day.hourly);
  fillTemperatures(day.maxtempC, day.maxtempF);
  fillTemperatures(day.mintempC, day.mintempF);
  fillTemperatures(day.avgtempC, day.avgtempF);
  if (!day.hourly.empty()) {
    auto const [least, most] = std::ranges::minmax_element(day.hourly, {}, temperatureOf);
    if (day.maxtempC.empty()) day.maxtempC = most->tempC;
    if (day.mintempC.empty()) day.mintempC = least->tempC;
  }
  if (day.avgtempC.empty() && !day.maxtempC.empty() && !day.mintempC.empty()) {
    day.avgtempC = roundedText((lenientDouble(day.maxtempC) + lenientDouble(day.mintempC)) / 2);
  }
  fillTemperatures(day.maxtempC, day.maxtempF);
  fillTemperatures(day.mintempC, day.mintempF);
  fillTemperatures(day.avgtempC, day.avgtempF);
}

bool isUsable(WeatherDay const& day) {
  return parseDate(day.date) && !day.maxtempC.empty() && !day.mintempC.empty();
}

void fitPresent(WttrResponse& record) {
  for (CurrentCondition& current : record.currentCondition) fitShared(current);
  std::erase_if(record.currentCondition,
                [](CurrentCondition const& current) { return current.tempC.empty(); });
  // The present has no dew point in this format; its hour has.
  bool const hoursHave =
      !record.weather.empty() && !record.weather.front().hourly.empty() &&
      record.weather.front().hourly.front().availableDetailFields.contains(WeatherDetailField::dewPoint);
  for (CurrentCondition& current : record.currentCondition) {
    if (hoursHave) current.availableDetailFields.insert(WeatherDetailField::dewPoint);
  }
}

bool isElsewhere(std::vector<NearestArea> const& areas, Coordinate place) {
  if (areas.empty()) return false;
  auto const latitude = parseDouble(areas.front().latitude);
  auto const longitude = parseDouble(areas.front().longitude);
  if (!latitude || !longitude) return false;
  return haversineKm({*latitude, *longitude}, place) > kFarthestKm;
}

/// The town that the service names, at the place that was asked for.
NearestArea areaOf(std::vector<NearestArea> const& areas, Coordinate place) {
  NearestArea plain = writeArea(place);
  if (areas.empty() || firstText(areas.front().areaName).empty()) return plain;
  NearestArea area = areas.front();
  area.latitude = plain.latitude;
  area.longitude = plain.longitude;
  return area;
}

/// What the two clocks of the present say: the place's ("2026-11-21 10:14 AM") and that of Greenwich
/// ("09:14 AM").
struct StatedClock {
  LocalTime local;
  std::chrono::minutes greenwich;

  /// Their difference is the offset but for whole days: the one that is nearest to what is expected.
  std::chrono::minutes offsetNear(std::chrono::seconds expected) const {
    auto const difference = std::chrono::floor<std::chrono::minutes>(
        local - std::chrono::floor<std::chrono::days>(local) - greenwich);
    double const away = std::chrono::duration<double, std::ratio<86400>>(expected - difference).count();
    return difference + std::chrono::days(std::lround(away));
  }
};

std::optional<StatedClock> statedClock(WttrResponse const& answer) {
  if (answer.currentCondition.empty()) return std::nullopt;
  CurrentCondition const& current = answer.currentCondition.front();
  std::string_view const text = current.localObsDateTime;
  auto const blank = text.find(' ');
  if (blank == std::string_view::npos) return std::nullopt;
  auto const date = parseDate(text.substr(0, blank));
  auto const local = parseClock12(text.substr(blank + 1));
  auto const greenwich = parseClock12(current.observationTime);
  // Zones stand whole quarters of an hour apart: other clocks are not of one moment.
  if (!date || !local || !greenwich || (*local - *greenwich) % 15 != 0) return std::nullopt;
  return StatedClock{std::chrono::local_days(*date) + std::chrono::minutes(*local),
                     std::chrono::minutes(*greenwich)};
}

/// The place's zone, unless the answer's own clocks say another offset.
Calendar calendarFor(WttrResponse const& answer, Coordinate place, TimeZoneLookup const& timeZone) {
  auto const clock = statedClock(answer);
  auto known = knownCalendar(timeZone, place);
  if (!clock) return known ? *std::move(known) : nauticalCalendar(place.longitude);
  Instant const near(clock->local.time_since_epoch());
  std::chrono::seconds const nautical(std::lround(place.longitude / 360 * kSecondsADay));
  auto const offset = clock->offsetNear(known ? known->offset(near) : nautical);
  if (known && standsAt(*known, offset, near - offset)) return *std::move(known);
  return Calendar::fixedOffset(offset);
}

}  // namespace

Result<WttrResponse, APIError> joinWttr(WttrResponse answer, Coordinate place,
                                        TimeZoneLookup const& timeZone) {
  if (isElsewhere(answer.nearestArea, place)) {
    return std::unexpected(APIError::of(APIError::Case::noResults));
  }
  dropImpossible(answer);
  Calendar const calendar = calendarFor(answer, place, timeZone);
  answer.timeZone = calendar.zoneId();
  answer.nearestArea = {areaOf(answer.nearestArea, place)};
  answer.request = {writeRequest(place)};
  for (WeatherDay& day : answer.weather) fitDay(day);
  std::erase_if(answer.weather, [](WeatherDay const& day) { return !isUsable(day); });
  if (answer.weather.size() > kMostDays) answer.weather.resize(kMostDays);
  layOutHours(answer.weather, calendar);
  fitPresent(answer);
  if (answer.weather.empty() && answer.currentCondition.empty()) {
    return std::unexpected(APIError::of(APIError::Case::noResults));
  }
  return answer;
}

}  // namespace nimbara
