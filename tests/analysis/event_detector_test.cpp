#include "analysis/event_detector.h"

#include "support/forecasts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace nimbara {
namespace {

using test::at;
using test::mildForecast;
using Code = WeatherConditionCode;

Instant const kNow = at("2026-11-21T05:15:00Z");
Instant const kBegin = at("2026-11-21T00:00:00Z");

/// Under a half covered sky.
WeatherData cloudyForecast(int hours) {
  WeatherData weather = mildForecast(kBegin, hours);
  for (HourlyForecast& hour : weather.allHourly) hour.cloudCover = 50;
  return weather;
}

std::vector<WeatherEvent> eventsOf(WeatherData const& weather) {
  return EventDetector{}.detect(weather, kNow);
}

/// Kinds with their hours from midnight, "rain 8-11".
std::string linesOf(std::vector<WeatherEvent> const& events) {
  std::string out;
  for (WeatherEvent const& event : events) {
    auto const hour = [](Instant instant) {
      return std::to_string(std::chrono::duration_cast<std::chrono::hours>(instant - kBegin).count());
    };
    out += (out.empty() ? "" : ", ") + std::string(enumName(event.kind)) + " " + hour(event.begin) + "-" +
           hour(event.end);
  }
  return out;
}

struct Row {
  std::string what;
  std::function<void(HourlyForecast&)> change;  ///< of the hours 8 to 10
  std::string expected;
};

void PrintTo(Row const& row, std::ostream* out) {
  *out << row.what;
}

class EventRows : public testing::TestWithParam<Row> {};

TEST_P(EventRows, BeginAtTheirBound) {
  WeatherData weather = cloudyForecast(36);
  for (std::size_t i = 8; i < 11; ++i) GetParam().change(weather.allHourly[i]);
  EXPECT_EQ(linesOf(eventsOf(weather)), GetParam().expected);
}

auto rain(double mm, int chance, double celsius = 15, Code code = Code::lightRain) {
  return [=](HourlyForecast& hour) {
    hour.precipMM = mm;
    hour.chanceOfRain = chance;
    hour.tempC = celsius;
    hour.condition = code;
  };
}

auto says(std::string const& words, double celsius) {
  return [=](HourlyForecast& hour) {
    rain(1, 80, celsius, Code::lightSleet)(hour);
    hour.conditionDescription = words;
  };
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, EventRows,
    testing::Values(
        Row{"rain", rain(0.1, 30), "rain 8-11"}, Row{"a trace", rain(0.09, 90), ""},
        Row{"unlikely rain", rain(1.9, 29), ""}, Row{"much rain of a small chance", rain(2, 5), "rain 8-11"},
        Row{"rain below zero", rain(1, 80, -0.1), "freezingRain 8-11"},
        Row{"rain at zero", rain(1, 80, 0), "rain 8-11"},
        Row{"freezing drizzle", says("Light Freezing Drizzle", 1), "freezingRain 8-11"},
        Row{"sleet", says("Light sleet", 1), "sleet 8-11"},
        Row{"snow grains", says("Snow Grains", -3), "snow 8-11"},
        Row{"snow", rain(1, 80, 1, Code::heavySnow), "snow 8-11"},
        Row{"a wet hour of no condition, by its temperature", rain(1, 80, -8, Code::unknown), "snow 8-11"},
        Row{"no amount, but a condition",
            [](HourlyForecast& hour) {
              hour.condition = Code::lightRain;
              hour.unknownValues = ForecastValues{ForecastValue::precipitation};
            },
            "rain 8-11"},
        Row{"neither amount nor condition",
            [](HourlyForecast& hour) {
              hour.condition = Code::unknown;
              hour.unknownValues = ForecastValues{ForecastValue::precipitation};
            },
            ""},
        Row{"fog by sight", [](HourlyForecast& hour) { hour.visibilityKm = 0.49; }, "fog 8-11"},
        Row{"mist", [](HourlyForecast& hour) { hour.visibilityKm = 0.5; }, ""},
        Row{"no reading of the visibility", [](HourlyForecast& hour) { hour.visibilityKm = 0; }, ""},
        Row{"fog by name", [](HourlyForecast& hour) { hour.condition = Code::fog; }, "fog 8-11"},
        Row{"thunder", [](HourlyForecast& hour) { hour.chanceOfThunder = 50; }, "thunder 8-11"},
        Row{"little thunder", [](HourlyForecast& hour) { hour.chanceOfThunder = 49; }, ""},
        Row{"gale", [](HourlyForecast& hour) { hour.windSpeedKmph = 62; }, "gale 8-11"},
        Row{"near gale", [](HourlyForecast& hour) { hour.windSpeedKmph = 61.9; }, ""},
        Row{"gusts", [](HourlyForecast& hour) { hour.windGustKmph = 75; }, "gale 8-11"},
        Row{"gusts below", [](HourlyForecast& hour) { hour.windGustKmph = 74.9; }, ""},
        Row{"gusts that are not known",
            [](HourlyForecast& hour) {
              hour.windGustKmph = 75;
              hour.unknownValues = ForecastValues{ForecastValue::windGust};
            },
            ""},
        Row{"clear sky", [](HourlyForecast& hour) { hour.cloudCover = 20; }, "clearSky 8-11"},
        Row{"a few clouds", [](HourlyForecast& hour) { hour.cloudCover = 21; }, ""},
        Row{"strong sun", [](HourlyForecast& hour) { hour.uvIndex = 6; }, "strongSun 8-11"},
        Row{"mild sun", [](HourlyForecast& hour) { hour.uvIndex = 5; }, ""}));

struct DayRow {
  double high;
  EventKind kind;
  int days;
  bool isSpell;
};

TEST(Events, TakeSpellsFromTheirBound) {
  for (auto const& [high, kind, days, isSpell] :
       {DayRow{30, EventKind::heat, 3, true}, DayRow{30, EventKind::heat, 2, false},
        DayRow{29.9, EventKind::heat, 3, false}, DayRow{0, EventKind::cold, 3, true},
        DayRow{0, EventKind::cold, 2, false}, DayRow{0.1, EventKind::cold, 3, false}}) {
    WeatherData weather = cloudyForecast(24 * 6);
    for (DailyForecast& day : weather.daily) day.maxTempC = 15;
    for (int i = 0; i < days; ++i) weather.daily[static_cast<std::size_t>(i) + 1].maxTempC = high;
    auto const events = eventsOf(weather);
    EXPECT_EQ(std::ranges::count(events, kind, &WeatherEvent::kind), isSpell ? 1 : 0) << high << " " << days;
  }
}

TEST(Events, TakeThreeClearHoursForAWindow) {
  for (std::size_t const hours : {2, 3}) {
    WeatherData weather = cloudyForecast(36);
    for (std::size_t i = 8; i < 8 + hours; ++i) weather.allHourly[i].cloudCover = 20;
    EXPECT_EQ(linesOf(eventsOf(weather)), hours == 3 ? "clearSky 8-11" : "");
  }
}

TEST(Events, EndADroughtAfterFourDryDays) {
  for (std::size_t const wetDay : {3, 4}) {
    WeatherData weather = cloudyForecast(24 * 6);
    for (HourlyForecast& hour : weather.daily[wetDay].hourly) hour.precipMM = 0.1;
    auto const events = eventsOf(weather);
    EXPECT_EQ(std::ranges::count(events, EventKind::droughtEnd, &WeatherEvent::kind), wetDay == 4 ? 1 : 0);
  }
}

TEST(Events, ArePartedByTwoDryHours) {
  WeatherData weather = cloudyForecast(36);
  for (std::size_t const i : {8, 10, 13}) rain(1, 80)(weather.allHourly[i]);
  weather.allHourly[10].precipMM = 3;
  auto const events = eventsOf(weather);
  EXPECT_EQ(linesOf(events), "rain 8-11, rain 13-14");
  EXPECT_EQ(events.front().peak, kBegin + std::chrono::hours(10));
  EXPECT_DOUBLE_EQ(*events.front().totalMM, 4);
}

TEST(Events, CountOfTheRunningHourWhatIsToCome) {
  WeatherData weather = cloudyForecast(24);
  rain(4, 80, -8, Code::heavySnow)(weather.allHourly[5]);
  rain(4, 80, -8, Code::heavySnow)(weather.daily.front().hourly[5]);
  weather.daily.front().totalSnowCm = 6;
  auto const events = eventsOf(weather);
  ASSERT_EQ(linesOf(events), "snow 5-6");
  EXPECT_DOUBLE_EQ(*events.front().totalMM, 3);
  EXPECT_DOUBLE_EQ(*events.front().totalSnowCm, 4.5);
}

TEST(Events, FindTheFirstFrostInEitherAutumn) {
  for (auto const& [latitude, begin, expected] : {std::tuple{50.0, "2026-10-10T00:00:00Z", 1},
                                                  {50.0, "2026-05-10T00:00:00Z", 0},
                                                  {-45.0, "2026-05-10T00:00:00Z", 1},
                                                  {-45.0, "2026-10-10T00:00:00Z", 0}}) {
    WeatherData weather = mildForecast(at(begin), 48);
    weather.location.latitude = latitude;
    weather.allHourly[30].tempC = 0;
    auto const events = EventDetector{}.detect(weather, at(begin));
    EXPECT_EQ(std::ranges::count(events, EventKind::firstFrost, &WeatherEvent::kind), expected) << begin;
  }
}

TEST(Events, TakeThreeHotDaysForASpellAndFourDryOnesForADrought) {
  for (int const days : {2, 3}) {
    WeatherData weather = cloudyForecast(24 * 6);
    for (int i = 0; i < days; ++i) weather.daily[static_cast<std::size_t>(i) + 1].maxTempC = 30;
    for (HourlyForecast& hour : weather.daily.back().hourly) hour.precipMM = 0.1;
    for (DailyForecast& day : weather.daily) day.maxTempC = std::max(day.maxTempC, 1.0);
    auto const events = eventsOf(weather);
    EXPECT_EQ(std::ranges::count(events, EventKind::heat, &WeatherEvent::kind), days == 3 ? 1 : 0);
    auto const rain = std::ranges::find(events, EventKind::droughtEnd, &WeatherEvent::kind);
    ASSERT_NE(rain, events.end());
    EXPECT_EQ(rain->value, 5);
  }
}

}  // namespace
}  // namespace nimbara
