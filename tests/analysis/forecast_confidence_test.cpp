#include "analysis/forecast_confidence.h"

#include "support/forecasts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace nimbara {
namespace {

using test::at;
using test::mildForecast;
using enum ConfidenceLevel;

Instant const kBegin = at("2026-11-21T00:00:00Z");

struct Row {
  std::string what;
  std::function<void(HourlyForecast&)> change;  ///< of the noon that the other provider forecasts
  ConfidenceLevel level;
};

void PrintTo(Row const& row, std::ostream* out) {
  *out << row.what;
}

class ConfidenceRows : public testing::TestWithParam<Row> {};

TEST_P(ConfidenceRows, JudgeBothSidesOfABoundary) {
  WeatherData const shown = mildForecast(kBegin, 24);
  WeatherData other = shown;
  GetParam().change(other.allHourly[12]);
  auto const days = forecastConfidence(shown, other, kBegin, Calendar::utc());
  ASSERT_EQ(days.size(), 1U);
  EXPECT_EQ(days.front().level, GetParam().level);
}

auto temperature(double by) {
  return [=](HourlyForecast& hour) { hour.tempC += by; };
}

auto rain(double mm) {
  return [=](HourlyForecast& hour) { hour.precipMM += mm; };
}

auto wind(double kmph) {
  return [=](HourlyForecast& hour) { hour.windSpeedKmph += kmph; };
}

INSTANTIATE_TEST_SUITE_P(
    Differences, ConfidenceRows,
    testing::Values(Row{"the same", temperature(0), high}, Row{"2° warmer", temperature(2), high},
                    Row{"above 2° warmer", temperature(2.1), medium},
                    Row{"4° colder", temperature(-4), medium}, Row{"above 4° colder", temperature(-4.1), low},
                    Row{"2 mm", rain(2), high}, Row{"above 2 mm", rain(2.1), medium},
                    Row{"8 mm", rain(8), medium}, Row{"above 8 mm", rain(8.1), low},
                    Row{"10 km/h", wind(10), high}, Row{"above 10 km/h", wind(10.1), medium},
                    Row{"20 km/h", wind(20), medium}, Row{"above 20 km/h", wind(20.1), low}));

TEST(Confidence, AllowsWetDaysAShareOfTheirRain) {
  WeatherData shown = mildForecast(kBegin, 24);
  WeatherData other = shown;
  shown.allHourly[12].precipMM = 30;
  other.allHourly[12].precipMM = 18;
  EXPECT_EQ(forecastConfidence(shown, other, kBegin, Calendar::utc()).front().level, high);
  other.allHourly[12].precipMM = 17;
  EXPECT_EQ(forecastConfidence(shown, other, kBegin, Calendar::utc()).front().level, low);
}

TEST(Confidence, FallsWithTheLeadTime) {
  WeatherData const shown = mildForecast(kBegin, 24 * 8);
  auto const days = forecastConfidence(shown, shown, kBegin, Calendar::utc());
  ASSERT_EQ(days.size(), 8U);
  for (DayConfidence const& day : days) {
    EXPECT_EQ(day.level, day.daysAhead < 4 ? high : day.daysAhead < 7 ? medium : low) << day.daysAhead;
    EXPECT_EQ(day.isForTime, day.daysAhead >= 4);
  }
}

TEST(Confidence, KnowsNothingOfWhatOnlyOneForecasts) {
  WeatherData shown = mildForecast(kBegin, 48);
  WeatherData other = mildForecast(kBegin, 41);
  EXPECT_EQ(forecastConfidence(shown, other, kBegin, Calendar::utc()).size(), 1U);
  other = mildForecast(kBegin, 42);
  EXPECT_EQ(forecastConfidence(shown, other, kBegin, Calendar::utc()).size(), 2U);
  EXPECT_TRUE(forecastConfidence(shown, {}, kBegin, Calendar::utc()).empty());
  for (HourlyForecast& hour : shown.allHourly) hour.unknownValues = ForecastValues{ForecastValue::windSpeed};
  auto const days = forecastConfidence(shown, other, kBegin, Calendar::utc());
  EXPECT_EQ(days.front().windKmph, std::nullopt);
  EXPECT_EQ(days.front().precipMM, 0);
}

/// Amounts of six hours against those of each hour.
TEST(Confidence, ComparesLongStepsWithHours) {
  WeatherData shown = mildForecast(kBegin, 24);
  for (HourlyForecast& hour : shown.allHourly) hour.precipMM = 1;
  WeatherData other = shown;
  other.allHourly.clear();
  for (std::size_t i = 0; i < 24; i += 6) {
    other.allHourly.push_back(shown.allHourly[i]);
    other.allHourly.back().precipMM = 6;
  }
  auto const days = forecastConfidence(shown, other, kBegin, Calendar::utc());
  ASSERT_EQ(days.size(), 1U);
  EXPECT_EQ(days.front().precipMM, 0);
}

/// The days of New York when its clocks go forward and back.
TEST(Confidence, CountsDaysOf23And25Hours) {
  Calendar const calendar = test::zone("America/New_York");
  for (auto const& [begin, hours] : {std::pair("2026-03-08T05:00:00Z", 23), {"2026-11-01T04:00:00Z", 25}}) {
    WeatherData const shown = mildForecast(at(begin), hours + 24);
    auto const days = forecastConfidence(shown, shown, at(begin), calendar);
    ASSERT_EQ(days.size(), 2U) << begin;
    EXPECT_EQ(days.back().daysAhead, 1);
  }
}

}  // namespace
}  // namespace nimbara
