#include "providers/weatherkit/apple_weather_join.h"

#include "providers/common/hours_by_day.h"
#include "providers/common/interchange.h"
#include "providers/common/local_hours.h"
#include "providers/common/measurement_ranges.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::size_t kDays = 7;
constexpr double kPercent = 100;
constexpr double kCmPerMm = 0.1;

Reading scaled(Reading reading, double factor) {
  if (!reading) return std::nullopt;
  return *reading * factor;
}

/// An amount of the hour; the intensity (mm/h) where only that is given.
Reading amountOf(Reading amount, Reading intensity) {
  return amount ? amount : intensity;
}

HourlyEntry entryOf(AppleWeatherHour const& in, Instant begin) {
  HourlyEntry entry;
  entry.begin = begin;
  entry.temperature2m = in.temperature;
  entry.relativeHumidity2m = scaled(in.humidity, kPercent);
  entry.apparentTemperature = in.temperatureApparent;
  entry.dewPoint2m = in.temperatureDewPoint;
  if (in.conditionCode) entry.condition = conditionOfAppleCode(*in.conditionCode);
  entry.cloudCover = scaled(in.cloudCover, kPercent);
  entry.precipitationProbability = scaled(in.precipitationChance, kPercent);
  entry.precipitation = amountOf(in.precipitationAmount, in.precipitationIntensity);
  entry.snowfall = scaled(amountOf(in.snowfallAmount, in.snowfallIntensity), kCmPerMm);
  entry.windSpeed10m = in.windSpeed;
  entry.windDirection10m = in.windDirection;
  entry.windGusts10m = in.windGust;
  entry.pressureMsl = in.pressure;
  entry.visibility = in.visibility;
  entry.uvIndex = in.uvIndex;
  entry.isDay = in.daylight;
  dropImpossible(entry);
  return entry;
}

/// Those that have a time and a temperature, in the order of time, each moment once.
std::vector<HourlyEntry> hoursOf(AppleWeatherResponse const& response) {
  std::vector<HourlyEntry> entries;
  if (!response.hours) return entries;
  for (AppleWeatherHour const& hour : *response.hours) {
    if (hour.time) entries.push_back(entryOf(hour, *hour.time));
  }
  std::erase_if(entries, [](HourlyEntry const& entry) { return !entry.temperature2m; });
  std::ranges::stable_sort(entries, {}, &HourlyEntry::begin);
  auto const repeated = std::ranges::unique(entries, {}, &HourlyEntry::begin);
  entries.erase(repeated.begin(), repeated.end());
  return entries;
}

/// The middle of a day tells its date also where midnight is missing or the day was cut a little off.
Date dateOf(Instant begin, Calendar const& calendar) {
  return calendar.day(begin + std::chrono::hours(12));
}

void addWind(std::optional<AppleWeatherDayPart> const& part, DailyEntry& day) {
  if (!part || !part->windSpeed || day.windSpeedMax >= part->windSpeed) return;
  day.windSpeedMax = part->windSpeed;
  day.windDirectionDominant = part->windDirection;
}

DailyEntry dayOf(AppleWeatherDay const& in, Date date) {
  DailyEntry day;
  day.date = date;
  day.temperatureMax = in.temperatureMax;
  day.temperatureMin = in.temperatureMin;
  day.uvIndexMax = in.maxUvIndex;
  day.precipitationProbabilityMax = scaled(in.precipitationChance, kPercent);
  day.snowfallSum = scaled(in.snowfallAmount, kCmPerMm);
  day.precipitationSum = in.precipitationAmount;
  if (in.conditionCode) day.condition = conditionOfAppleCode(*in.conditionCode);
  addWind(in.daytime, day);
  addWind(in.overnight, day);
  dropImpossible(day);
  day.sunrise = in.sunrise;
  day.sunset = in.sunset;
  return day;
}

/// The days that the answer lists; without that data set, those that its hours touch.
std::vector<DailyEntry> daysOf(AppleWeatherResponse const& response, HoursByDay const& hoursOfDays,
                               Calendar const& calendar) {
  std::map<Date, DailyEntry> days;
  if (response.days) {
    for (AppleWeatherDay const& day : *response.days) {
      if (!day.begin) continue;
      Date const date = dateOf(*day.begin, calendar);
      days.try_emplace(date, dayOf(day, date));
    }
  }
  if (days.empty()) {
    for (auto const& [date, entries] : hoursOfDays) days.try_emplace(date, dayOf({}, date));
  }
  std::vector<DailyEntry> list;
  for (auto const& [date, day] : days) {
    if (list.size() < kDays) list.push_back(day);
  }
  return list;
}

std::optional<CurrentCondition> currentOf(AppleWeatherResponse const& response,
                                          std::vector<HourlyEntry> const& entries, Calendar const& calendar,
                                          Instant now) {
  Instant const moment = response.current ? response.current->time.value_or(now) : now;
  HourlyEntry present = response.current ? entryOf(*response.current, moment) : HourlyEntry{};
  if (auto const* const hour = hourContaining(entries, moment)) fillGaps(present, *hour);
  if (!present.temperature2m) return std::nullopt;
  LocalTime const local = calendar.local(moment);
  return writeCurrent(present, local, formatLocalTime(local));
}

}  // namespace

Result<WttrResponse, APIError> joinAppleWeather(AppleWeatherResponse const& response, Coordinate place,
                                                Calendar const& calendar, Instant now) {
  if (!response.current && !response.hours && !response.days) {
    return std::unexpected(APIError::of(APIError::Case::noData));
  }
  std::vector<HourlyEntry> entries = onLocalHours(hoursOf(response), calendar);
  HoursByDay days = hoursByDay(entries, calendar);
  WttrResponse record;
  record.timeZone = calendar.zoneId();
  record.nearestArea = {writeArea(place)};
  record.request = {writeRequest(place)};
  if (auto current = currentOf(response, entries, calendar, now)) {
    record.currentCondition = {std::move(*current)};
  }
  for (DailyEntry const& day : daysOf(response, days, calendar)) {
    if (auto written = writeDay(day, days[day.date], calendar, place))
      record.weather.push_back(std::move(*written));
  }
  if (record.weather.empty() && record.currentCondition.empty()) {
    return std::unexpected(APIError::of(APIError::Case::noResults));
  }
  return record;
}

}  // namespace nimbara
