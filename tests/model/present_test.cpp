#include "model/present.h"

#include "base/geodesy.h"
#include "base/time/calendar.h"
#include "model/condition_text.h"
#include "support/forecasts.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using Code = WeatherConditionCode;
using namespace std::chrono_literals;

Instant const kFetched = at("2026-11-21T10:15:00Z");

/// A reading of 20 °C under a clear sky, and hours of -5 °C and heavy snow, with gusts.
WeatherData wintryForecast() {
  WeatherData data = test::mildForecast(at("2026-11-21T10:00:00Z"), 24);
  data.fetchedAt = kFetched;
  data.current.tempC = 20;
  data.current.condition = Code::sunny;
  data.current.observationTime = "2026-11-21T10:15";
  for (HourlyForecast& hour : data.allHourly) {
    hour.tempC = -5;
    hour.condition = Code::heavySnow;
    hour.windGustKmph = 40;
  }
  return data;
}

TEST(Present, IsTheReadingWhileItIsYoungAndThenItsHour) {
  WeatherData const data = wintryForecast();
  for (auto const& [age, isReading] :
       {std::pair{0min, true}, std::pair{89min, true}, std::pair{90min, false}, std::pair{11 * 60min, false},
        std::pair{-89min, true}, std::pair{-90min, false}}) {
    EXPECT_EQ(hasYoungReading(data, kFetched + age), isReading) << age.count();
  }
  auto const young = presentAt(data, kFetched + 89min);
  ASSERT_TRUE(young);
  EXPECT_EQ(young->tempC, 20);
  EXPECT_EQ(young->condition, Code::sunny);
  EXPECT_EQ(young->readAt, kFetched);
  auto const later = presentAt(data, kFetched + 11h);
  ASSERT_TRUE(later);
  EXPECT_EQ(later->tempC, -5);
  EXPECT_EQ(later->condition, Code::heavySnow);
  EXPECT_EQ(later->windGustKmph, 40);
  EXPECT_EQ(later->readAt, std::nullopt);
}

TEST(Present, CountsTheAgeOfAReadingFromItsOwnTime) {
  WeatherData data = wintryForecast();
  data.current.observationTime = "2026-11-21T08:45";  // fetched 90 minutes after it was taken
  EXPECT_FALSE(hasYoungReading(data, kFetched));
  data.current.observationTime = "2026-11-21T08:46";
  EXPECT_TRUE(hasYoungReading(data, kFetched));
  data.location.timeZone = "Asia/Kolkata";  // 14:15 there
  data.current.observationTime = "2026-11-21T14:15";
  EXPECT_TRUE(hasYoungReading(data, at("2026-11-21T10:00:00Z")));
  data.current.observationTime = "08:46 AM";  // no date: the moment of the fetch has to do
  EXPECT_TRUE(hasYoungReading(data, kFetched));
}

TEST(Present, KeepsAnOldReadingForWhoShowsItsDay) {
  WeatherData data = wintryForecast();
  data.allHourly.clear();
  Instant const later = kFetched + 11h;
  EXPECT_EQ(presentAt(data, later), std::nullopt);
  auto const last = lastReading(data);
  ASSERT_TRUE(last);
  EXPECT_EQ(last->tempC, 20);
  EXPECT_EQ(last->readAt, kFetched);
  data.current = {};
  EXPECT_EQ(lastReading(data), std::nullopt);
}

TEST(Present, LacksWhatTheProviderDidNotSay) {
  WeatherData data = wintryForecast();
  data.current.unknownValues = {ForecastValue::precipitation, ForecastValue::windSpeed};
  for (HourlyForecast& hour : data.allHourly) hour.unknownValues = ForecastValues::all();
  for (Instant const now : {kFetched, kFetched + 3h}) {
    auto const present = presentAt(data, now);
    ASSERT_TRUE(present);
    EXPECT_EQ(present->precipMM, std::nullopt);
    EXPECT_EQ(present->chanceOfRain, std::nullopt);
    EXPECT_EQ(present->windGustKmph, std::nullopt);
    EXPECT_FALSE(present->knowsWind);
  }
  data = wintryForecast();
  auto const present = presentAt(data, kFetched);
  EXPECT_EQ(present->precipMM, 0);
  EXPECT_EQ(present->chanceOfRain, 0);
  EXPECT_TRUE(present->knowsWind);
}

struct SunRow {
  std::string_view what;
  Coordinate place;
  std::string instant;
  bool isDay;
};

TEST(Daylight, FollowsTheSunsHeightAtThePlace) {
  Coordinate const longyearbyen{78.22, 15.65};
  Coordinate const berlin{52.52, 13.41};
  for (SunRow const& row : {SunRow{"midnight sun", longyearbyen, "2026-06-21T23:00:00Z", true},
                            SunRow{"polar noon", longyearbyen, "2026-12-21T11:00:00Z", false},
                            SunRow{"night", berlin, "2026-11-21T04:00:00Z", false},
                            SunRow{"before sunrise at 7:29", berlin, "2026-11-21T06:20:00Z", false},
                            SunRow{"after it", berlin, "2026-11-21T06:40:00Z", true},
                            SunRow{"before sunset at 16:04", berlin, "2026-11-21T14:55:00Z", true},
                            SunRow{"after it", berlin, "2026-11-21T15:15:00Z", false},
                            SunRow{"summer in the south", {-77.85, 166.67}, "2026-12-21T12:00:00Z", true}}) {
    WeatherData data = test::mildForecast(at(row.instant), 1);
    data.location.latitude = row.place.latitude;
    data.location.longitude = row.place.longitude;
    data.current.isDay = !row.isDay;  // what a service thinks of its own cell does not count
    data.allHourly.front().uvIndex = row.isDay ? 0 : 3;
    EXPECT_EQ(presentAt(data, at(row.instant))->isDay, row.isDay) << row.what;
    HourlyForecast around;
    around.date = at(row.instant) - 30min;
    EXPECT_EQ(isDayIn(data, around), row.isDay) << row.what;
  }
}

struct DayRow {
  std::string_view what;
  Coordinate place;
  std::string begin;  ///< of the day there
  bool hasDaylight;
};

TEST(Daylight, IsTheDaysWhereTheSunRisesAtAll) {
  for (DayRow const& row :
       {DayRow{"a short day", {52.52, 13.41}, "2026-12-20T23:00:00Z", true},
        DayRow{"polar night", {78.22, 15.65}, "2026-11-21T23:00:00Z", false},
        DayRow{"polar day", {78.22, 15.65}, "2026-06-20T22:00:00Z", true},
        DayRow{"the last sun of Tromsø, at 11:30", {69.65, 18.96}, "2026-11-25T23:00:00Z", true},
        DayRow{"the day after next", {69.65, 18.96}, "2026-11-27T23:00:00Z", false},
        DayRow{"Anadyr's noon, a day after Greenwich's", {66.73, 177.51}, "2026-12-19T12:00:00Z", true},
        DayRow{"up at 13:00 by the clock, not at noon", {69.3, 30}, "2026-11-27T21:00:00Z", true},
        DayRow{"Utqiagvik, in the west", {71.29, -156.79}, "2026-12-21T09:00:00Z", false},
        DayRow{"Kiritimati, across the date line", {1.87, -157.36}, "2026-12-20T10:00:00Z", true}}) {
    WeatherData data = test::mildForecast(at(row.begin), 1);
    data.location.latitude = row.place.latitude;
    data.location.longitude = row.place.longitude;
    DailyForecast day;
    day.date = at(row.begin);
    EXPECT_EQ(hasDaylight(data, day), row.hasDaylight) << row.what;
  }
}

TEST(ConditionText, CallsNoNightSunny) {
  Texts const texts = Texts::load("en");
  EXPECT_EQ(conditionText(Code::sunny, true, texts), "Sunny");
  EXPECT_EQ(conditionText(Code::sunny, false, texts), "Clear");
  EXPECT_EQ(conditionText(Code::heavySnow, false, texts), "Heavy Snow");
}

}  // namespace
}  // namespace nimbara
