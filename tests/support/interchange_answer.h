// Interchange records of tests: a present and a few hours around a moment, in UTC.
#pragma once

#include "providers/common/interchange.h"
#include "support/instants.h"

namespace nimbara::test {

inline HourlyEntry plainEntry(Instant begin, double celsius) {
  HourlyEntry entry;
  entry.begin = begin;
  entry.hour = Calendar::utc().hour(begin);
  entry.temperature2m = entry.apparentTemperature = celsius;
  entry.relativeHumidity2m = 50;
  entry.weatherCode = 2;
  entry.windSpeed10m = 10;
  entry.visibility = 20'000;
  return entry;
}

/// `now` at `celsius`, with two days of hours of the same temperature from the start of its day on.
inline WttrResponse plainAnswer(Coordinate place, Instant now, double celsius) {
  Calendar const utc = Calendar::utc();
  WttrResponse response;
  response.timeZone = "UTC";
  response.nearestArea = {writeArea(place)};
  response.request = {writeRequest(place)};
  LocalTime const observed = utc.local(now);
  response.currentCondition = {writeCurrent(plainEntry(now, celsius), observed, "now")};
  for (int day = 0; day < 2; ++day) {
    DailyEntry entry;
    entry.date = addDays(utc.day(now), day);
    std::vector<HourlyEntry> hours;
    hours.reserve(24);
    for (int hour = 0; hour < 24; ++hour) {
      hours.push_back(plainEntry(utc.startOfDay(entry.date) + std::chrono::hours(hour), celsius));
    }
    response.weather.push_back(*writeDay(entry, hours, utc, place));
  }
  return response;
}

}  // namespace nimbara::test
