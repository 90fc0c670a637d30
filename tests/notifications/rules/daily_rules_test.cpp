#include "notifications/rules/daily_rules.h"

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

// The forecast of these tests begins with the day, which is a Monday.
constexpr char kMidnight[] = "2026-06-15T00:00:00Z";
constexpr char kEvening[] = "2026-06-15T18:00:00Z";

/// Hours of a day, the last one left out.
template <class F>
Change hoursOf(std::size_t day, int from, int until, F change) {
  return [=](WeatherData& data) {
    for (HourlyForecast& hour : data.daily.at(day).hourly) {
      if (hour.hour >= from && hour.hour < until) change(hour);
    }
  };
}

Change rain(int from, int until, int chance) {
  return hoursOf(0, from, until, [=](HourlyForecast& hour) { hour.chanceOfRain = chance; });
}
Change snow(int from, int until, int chance) {
  return hoursOf(0, from, until, [=](HourlyForecast& hour) { hour.chanceOfSnow = chance; });
}
Change warm(double celsius) {
  return hoursOf(0, 0, 24, [=](HourlyForecast& hour) { hour.tempC = hour.feelsLikeC = celsius; });
}
Change uvOf(int from, int until, int index) {
  return hoursOf(0, from, until, [=](HourlyForecast& hour) { hour.uvIndex = index; });
}
Change dayUv(int index) {
  return [=](WeatherData& data) { data.daily.at(0).uvIndex = index; };
}
Change beach(int from, int until) {
  return hoursOf(0, from, until, [](HourlyForecast& hour) { hour.tempC = hour.feelsLikeC = 24; });
}
template <class F>
Change everyHour(F change) {
  return hoursOf(0, 0, 24, change);
}
Change highs(double today, double low, double tomorrow) {
  return [=](WeatherData& data) {
    data.daily.at(0).maxTempC = today;
    data.daily.at(0).minTempC = low;
    data.daily.at(1).maxTempC = tomorrow;
  };
}
Change skyTomorrow(int from, int until, Code condition) {
  return hoursOf(1, from, until, [=](HourlyForecast& hour) { hour.condition = condition; });
}
/// Clear skies over McMurdo.
void polarNight(WeatherData& data) {
  data.location.latitude = -77.85;
  data.location.longitude = 166.67;
  for (DailyForecast& day : data.daily) {
    for (HourlyForecast& hour : day.hourly) hour.condition = Code::sunny;
  }
}
/// The forecast ends with the day.
void endToday(WeatherData& data) {
  data.daily.resize(1);
  data.allHourly.resize(24);
}

struct Row {
  char const* what;
  EvaluateRule rule;
  char const* now;
  Change change;
  char const* body;  ///< empty: nothing is found
};

constexpr char kWindow[] = "Warm, sunny and calm from 10 AM until 1 PM, up to 24°C.";
constexpr char kWholeDay[] = "Warm, sunny and calm from 9 AM until 7 PM, up to 24°C.";
constexpr char kHotDay[] = "Warm, sunny and calm from 9 AM until 7 PM, up to 36°C.";

Row const kRows[] = {
    {"40 % of rain", umbrellaReminder, kMidnight, rain(5, 6, 40), ""},
    {"41 % of rain", umbrellaReminder, kMidnight, rain(23, 24, 41),
     "Up to 41% chance of rain today. Don't forget your umbrella!"},

    {"UV 5", uvReminder, kMidnight, all(uvOf(12, 13, 5), dayUv(5)), ""},
    {"UV 6 by the hour", uvReminder, kMidnight, uvOf(12, 13, 6),
     "UV index expected to reach 6 today. Apply sunscreen before heading out."},
    {"UV 6 of the day", uvReminder, kMidnight, dayUv(6),
     "UV index expected to reach 6 today. Apply sunscreen before heading out."},

    {"three hours at the beach", beachTime, kMidnight, beach(10, 13), kWindow},
    {"two hours", beachTime, kMidnight, beach(10, 12), ""},
    {"two hours twice", beachTime, kMidnight, all(beach(10, 12), beach(14, 16)), ""},
    {"the longer of two", beachTime, kMidnight, all(beach(10, 13), beach(15, 19)),
     "Warm, sunny and calm from 3 PM until 7 PM, up to 24°C."},
    {"two of three are left", beachTime, "2026-06-15T11:00:00Z", beach(10, 13), ""},
    {"what is left begins now", beachTime, "2026-06-15T15:20:00Z", beach(9, 19),
     "Warm, sunny and calm from 3 PM until 7 PM, up to 24°C."},
    {"nine until seven", beachTime, kMidnight, beach(0, 24), kWholeDay},
    {"23.9 °C", beachTime, kMidnight, warm(23.9), ""},
    {"36 °C", beachTime, kMidnight, warm(36), kHotDay},
    {"36.1 °C", beachTime, kMidnight, warm(36.1), ""},
    {"19 % of rain", beachTime, kMidnight, all(beach(10, 13), rain(0, 24, 19)), kWindow},
    {"20 % of rain", beachTime, kMidnight, all(beach(10, 13), rain(0, 24, 20)), ""},
    {"20 % of thunder", beachTime, kMidnight,
     all(beach(10, 13), everyHour([](auto& hour) { hour.chanceOfThunder = 20; })), ""},
    {"24.9 km/h", beachTime, kMidnight,
     all(beach(10, 13), everyHour([](auto& hour) { hour.windSpeedKmph = 24.9; })), kWindow},
    {"25 km/h", beachTime, kMidnight,
     all(beach(10, 13), everyHour([](auto& hour) { hour.windSpeedKmph = 25; })), ""},
    {"gusts of 44.9 km/h", beachTime, kMidnight,
     all(beach(10, 13), everyHour([](auto& hour) { hour.windGustKmph = 44.9; })), kWindow},
    {"gusts of 45 km/h", beachTime, kMidnight,
     all(beach(10, 13), everyHour([](auto& hour) { hour.windGustKmph = 45; })), ""},
    {"49 % of cloud", beachTime, kMidnight,
     all(beach(10, 13), everyHour([](auto& hour) { hour.cloudCover = 49; })), kWindow},
    {"50 % of cloud", beachTime, kMidnight,
     all(beach(10, 13), everyHour([](auto& hour) { hour.cloudCover = 50; })), ""},

    {"a dry morning", morningSummary, kMidnight, all(highs(21, 9, 0), rain(0, 24, 9)),
     "Testville — High 21°C, Low 9°C. Partly Cloudy."},
    {"10 % of rain", morningSummary, kMidnight, all(highs(21, 9, 0), rain(4, 5, 10)),
     "Testville — High 21°C, Low 9°C. Partly Cloudy. Rain chance 10%."},
    {"a polar night without clouds", morningSummary, kMidnight, all(highs(-21, -29, 0), polarNight),
     "Testville — High -21°C, Low -29°C. Clear."},
    {"tomorrow in a polar night", eveningSummary, kEvening, all(highs(0, 0, -21), polarNight),
     "Tonight's low: 15°C. Tomorrow: Clear, high -21°C."},
    {"more rain than snow", morningSummary, kMidnight, all(highs(2, -3, 0), rain(4, 5, 30), snow(4, 5, 30)),
     "Testville — High 2°C, Low -3°C. Partly Cloudy. Rain chance 30%."},
    {"more snow than rain", morningSummary, kMidnight, all(highs(2, -3, 0), rain(4, 5, 30), snow(4, 5, 31)),
     "Testville — High 2°C, Low -3°C. Partly Cloudy. Snow chance 31%."},

    {"an evening without tomorrow", eveningSummary, kEvening, endToday, "Tonight's low: 15°C."},
    {"an evening", eveningSummary, kEvening,
     all(highs(0, 0, 23), [](WeatherData& data) { data.allHourly.at(18 + 11).tempC = 8; }),
     "Tonight's low: 8°C. Tomorrow: Partly Cloudy, high 23°C."},
    {"colder than after the night", eveningSummary, kEvening,
     all(highs(0, 0, 23), [](WeatherData& data) { data.allHourly.at(18 + 14).tempC = 8; }),
     "Tonight's low: 15°C. Tomorrow: Partly Cloudy, high 23°C."},
    {"8 of 15 waking hours are alike", eveningSummary, kEvening,
     all(highs(0, 0, 23), skyTomorrow(15, 18, Code::sunny), skyTomorrow(18, 24, Code::overcast)),
     "Tonight's low: 15°C. Tomorrow: Partly Cloudy, high 23°C."},
    {"7 of 15 waking hours are alike", eveningSummary, kEvening,
     all(highs(0, 0, 23), skyTomorrow(14, 18, Code::sunny), skyTomorrow(18, 24, Code::overcast)),
     "Tonight's low: 15°C. Tomorrow: Varied conditions, high 23°C."},
};

TEST(DailyRules, HoldOnTheRightSideOfEachCut) {
  for (Row const& row : kRows) {
    RuleInputs inputs = test::ruleInputs(at(kMidnight), row.change);
    inputs.now = at(row.now);
    inputs.readWeather();
    Evaluation const found = row.rule(inputs, {});
    EXPECT_EQ(bodyOf(found), row.body) << row.what;
    for (Measurement const& measured : found.measured) {
      EXPECT_EQ(measured.holds(), !found.findings.empty()) << row.what;
    }
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.what;
  }
}

TEST(DailyRules, SpeakTheUsersUnits) {
  RuleInputs inputs = test::ruleInputs(at(kMidnight), all(highs(21, 9, 23), beach(10, 13)));
  inputs.units = Units::imperial();
  EXPECT_EQ(bodyOf(beachTime(inputs, {})), "Warm, sunny and calm from 10 AM until 1 PM, up to 75°F.");
  EXPECT_EQ(bodyOf(morningSummary(inputs, {})), "Testville — High 70°F, Low 48°F. Partly Cloudy.");
  EXPECT_EQ(bodyOf(eveningSummary(inputs, {})), "Tonight's low: 59°F. Tomorrow: Partly Cloudy, high 73°F.");
}

}  // namespace
}  // namespace nimbara
