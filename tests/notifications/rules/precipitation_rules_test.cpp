#include "notifications/rules/weather_rules.h"
#include "support/rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using Code = WeatherConditionCode;
using test::all;
using test::at;
using test::bodyOf;
using test::Change;
using test::faultsOf;
using testing::IsEmpty;

// The forecast of these tests begins at noon.
constexpr char kNow[] = "2026-06-15T12:20:00Z";

/// Hours `from` to `until`, the last one left out.
template <class F>
Change hours(std::size_t from, std::size_t until, F change) {
  return [=](WeatherData& data) {
    for (std::size_t i = from; i < until; ++i) change(data.allHourly.at(i));
  };
}

Change rain(std::size_t from, std::size_t until, int chance) {
  return hours(from, until, [=](HourlyForecast& hour) { hour.chanceOfRain = chance; });
}
Change snow(std::size_t from, std::size_t until, int chance) {
  return hours(from, until, [=](HourlyForecast& hour) { hour.chanceOfSnow = chance; });
}
Change sky(std::size_t from, std::size_t until, Code condition) {
  return hours(from, until, [=](HourlyForecast& hour) { hour.condition = condition; });
}
Change now(Code condition) {
  return [=](WeatherData& data) { data.current.condition = condition; };
}
Change amount(std::size_t hour, double mm, int chance, Code condition) {
  return hours(hour, hour + 1, [=](HourlyForecast& x) {
    x.precipMM = mm;
    x.chanceOfRain = x.chanceOfSnow = chance;
    x.condition = condition;
  });
}
Change steady(double mmAnHour, std::size_t count, Code condition = Code::lightRain) {
  return hours(0, count, [=](HourlyForecast& x) {
    x.precipMM = mmAnHour;
    x.condition = condition;
  });
}

struct Row {
  char const* what;
  EvaluateRule rule;
  Change change;
  char const* body;  ///< empty: nothing is found
};

Row const kRows[] = {
    {"29 % of rain", rainStart, rain(2, 3, 29), ""},
    {"30 % of rain", rainStart, rain(2, 3, 30), "Rain expected from around 2 PM until about 3 PM (~1 h)."},
    {"rain without an end", rainStart, rain(2, 96, 30), "Rain is expected to start around 2 PM."},
    {"rain that ends within sight", rainStart, rain(2, 18, 30),
     "Rain expected from around 2 PM until about 6 AM (~16 h)."},
    {"rain in the present hour", rainStart, rain(0, 3, 30),
     "Rain is expected to begin in the next few hours."},
    {"rain in six hours", rainStart, rain(6, 7, 90),
     "Rain expected from around 6 PM until about 7 PM (~1 h)."},
    {"rain in seven hours", rainStart, rain(7, 8, 90), ""},
    {"it rains already", rainStart, all(now(Code::lightRain), rain(0, 9, 90)), ""},
    {"it snows, and rain comes", rainStart, all(now(Code::lightSnow), rain(2, 3, 90)),
     "Rain expected from around 2 PM until about 3 PM (~1 h)."},

    {"19 % of snow", snowStart, snow(2, 3, 19), ""},
    {"20 % of snow", snowStart, snow(2, 3, 20), "Snow expected from around 2 PM until about 3 PM (~1 h)."},
    {"snow without an end", snowStart, snow(2, 96, 20), "Snow is expected to start around 2 PM."},
    {"snow in the present hour", snowStart, snow(0, 3, 20),
     "Snow is expected to begin in the next few hours."},
    {"it snows already", snowStart, all(now(Code::heavySnow), snow(0, 9, 90)), ""},

    {"20 % of rain go on", rainStop, all(now(Code::lightRain), rain(0, 96, 20)), ""},
    {"19 % of rain are an end", rainStop, all(now(Code::lightRain), rain(0, 3, 80), rain(3, 96, 19)),
     "Rain should ease by around 3 PM."},
    {"rain by its condition", rainStop, all(now(Code::lightRain), sky(0, 4, Code::lightRain)),
     "Rain should ease by around 4 PM."},
    {"no wet hour at all", rainStop, now(Code::lightRain),
     "Rain is expected to clear up in the coming hours."},
    {"the end is too far off", rainStop, all(now(Code::lightRain), rain(0, 7, 80)), ""},
    {"the end is the last hour of the look-ahead", rainStop, all(now(Code::lightRain), rain(0, 6, 80)),
     "Rain should ease by around 6 PM."},
    {"it does not rain", rainStop, rain(0, 3, 80), ""},

    {"15 % of snow go on", snowStop, all(now(Code::lightSnow), snow(0, 96, 15)), ""},
    {"14 % of snow are an end", snowStop, all(now(Code::lightSnow), snow(0, 3, 80), snow(3, 96, 14)),
     "Snow should ease by around 3 PM."},
    {"no white hour at all", snowStop, now(Code::lightSnow),
     "Snow is expected to taper off in the coming hours."},
    {"it rains, which is no snow", snowStop, all(now(Code::lightRain), snow(0, 3, 80)), ""},

    {"4 mm", heavyRain, amount(2, 4, 50, Code::heavyRain),
     "Up to 4.0 mm of rain per hour expected around 2 PM."},
    {"3.9 mm", heavyRain, amount(2, 3.9, 50, Code::heavyRain), ""},
    {"49 %", heavyRain, amount(2, 9, 49, Code::heavyRain), ""},
    {"4 mm of snow", heavyRain, amount(2, 9, 90, Code::heavySnow), ""},
    {"in eight hours", heavyRain, amount(8, 9, 90, Code::heavyRain),
     "Up to 9.0 mm of rain per hour expected around 8 PM."},
    {"in nine hours", heavyRain, amount(9, 9, 90, Code::heavyRain), ""},

    {"2 mm", heavySnow, amount(2, 2, 50, Code::lightSnow),
     "Up to 2.0 mm of snow per hour (as water) expected around 2 PM."},
    {"1.9 mm", heavySnow, amount(2, 1.9, 50, Code::lightSnow), ""},
    {"49 % of snow", heavySnow, amount(2, 5, 49, Code::lightSnow), ""},
    {"2 mm of rain", heavySnow, amount(2, 5, 90, Code::lightRain), ""},

    {"30 mm in nine hours", flood, steady(3.34, 9),
     "Up to 30.1 mm of rain expected in the coming hours. Stay away from low-lying areas and flooded roads."},
    {"29.9 mm in nine hours", flood, steady(3.32, 9), ""},
    {"30 mm in longer", flood, all(steady(3.3, 9), steady(3.3, 24)), ""},
    {"snow floods nothing", flood, steady(9, 9, Code::heavySnow), ""},
};

TEST(PrecipitationRules, HoldOnTheRightSideOfEachCut) {
  for (Row const& row : kRows) {
    Evaluation const found = row.rule(test::ruleInputs(at(kNow), row.change), {});
    EXPECT_EQ(bodyOf(found), row.body) << row.what;
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.what;
    for (Measurement const& measured : found.measured) {
      EXPECT_TRUE(measured.holds() || found.findings.empty()) << row.what;
    }
  }
}

TEST(PrecipitationRules, SpeakTheUsersUnits) {
  RuleInputs inputs = test::ruleInputs(at(kNow), amount(2, 5.08, 50, Code::heavyRain));
  inputs.units = Units::imperial();
  EXPECT_EQ(bodyOf(heavyRain(inputs, {})), "Up to 0.20 in of rain per hour expected around 2 PM.");
  inputs = test::ruleInputs(at(kNow), steady(5.08, 9));
  inputs.units = Units::imperial();
  EXPECT_EQ(bodyOf(flood(inputs, {})),
            "Up to 1.80 in of rain expected in the coming hours. Stay away from low-lying areas and flooded "
            "roads.");
}

TEST(PrecipitationRules, TellHoursInThePlacesTime) {
  RuleInputs inputs = test::ruleInputs(at(kNow), rain(2, 3, 30));
  inputs.calendar = test::zone("Asia/Tokyo");
  EXPECT_EQ(bodyOf(rainStart(inputs, {})), "Rain expected from around 11 PM until about 12 AM (~1 h).");
}

}  // namespace
}  // namespace nimbara
