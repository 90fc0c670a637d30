#include "support/answers/interchange_answer.h"

namespace nimbara::test {

HourlyEntry plainEntry(Instant begin, double celsius) {
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

WttrResponse plainAnswer(Coordinate place, Instant now, double celsius) {
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
