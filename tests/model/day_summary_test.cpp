#include "model/day_summary.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using Code = WeatherConditionCode;

/// The hours of a whole day under one sky.
DailyForecast dayUnder(Code sky) {
  DailyForecast day;
  for (int hour = 0; hour < 24; ++hour) {
    HourlyForecast& entry = day.hourly.emplace_back();
    entry.hour = hour;
    entry.condition = sky;
  }
  return day;
}

struct FallRow {
  std::string_view what;
  std::vector<std::pair<std::size_t, Code>> hours;  ///< on a partly cloudy day
  double snowCm;
  double rainMM;  ///< in the first of these hours, else at three o'clock
  Code condition;
};

TEST(DaySummary, NamesWhatFallsBeforeTheSkyAtNoon) {
  using enum WeatherConditionCode;
  for (FallRow const& row :
       {FallRow{"nothing falls", {}, 0, 0, partlyCloudy},
        FallRow{"snow of the night", {{2, lightSnow}, {3, lightSnow}}, 2.6, 2.2, lightSnow},
        FallRow{"snow that no hour names", {}, 2.6, 0, lightSnow},
        FallRow{"much of it", {}, 10, 0, heavySnow},
        FallRow{"a dusting", {{3, lightSnow}}, 0.4, 0.3, partlyCloudy},
        FallRow{"rain of the night", {{3, heavyShowers}}, 0, 2, heavyShowers},
        FallRow{"drops of the night", {{3, lightShowers}}, 0, 1.9, partlyCloudy},
        FallRow{"rain that no hour names", {}, 0, 5, lightRain}, FallRow{"much of it", {}, 0, 20, heavyRain},
        FallRow{"an hour each of two kinds", {{12, heavySnow}, {13, lightSnow}}, 0, 0, heavySnow},
        FallRow{"one hour of drops", {{12, lightRain}}, 0, 0.2, partlyCloudy}}) {
    DailyForecast day = dayUnder(partlyCloudy);
    for (auto const& [hour, condition] : row.hours) day.hourly[hour].condition = condition;
    day.hourly[row.hours.empty() ? 3 : row.hours.front().first].precipMM = row.rainMM;
    day.totalSnowCm = row.snowCm;
    EXPECT_EQ(summarize(day).condition, row.condition) << row.what;
  }
}

TEST(DaySummary, TakesTheProvidersWordsOnADayWithoutHours) {
  DailyForecast day;
  EXPECT_EQ(summarize(day).precipitationMM, std::nullopt);
  EXPECT_EQ(summarize(day).strongestWindKmph, std::nullopt);
  EXPECT_EQ(summarize(day).precipitationChance, std::nullopt);
  day.condition = Code::heavyRain;
  day.precipMM = 72;
  day.windSpeedKmph = 31;
  day.windDirection = "SW";
  DaySummary const summary = summarize(day);
  EXPECT_EQ(summary.condition, Code::heavyRain);
  EXPECT_EQ(summary.precipitationMM, 72);
  EXPECT_EQ(summary.strongestWindKmph, 31);
  EXPECT_EQ(summary.windDirection, "SW");
}

TEST(DaySummary, TakesNoUnknownValueForZero) {
  DailyForecast day = dayUnder(Code::cloudy);
  for (HourlyForecast& hour : day.hourly) hour.unknownValues = ForecastValues::all();
  DaySummary summary = summarize(day);
  EXPECT_EQ(summary.precipitationMM, std::nullopt);
  EXPECT_EQ(summary.precipitationChance, std::nullopt);
  EXPECT_EQ(summary.strongestWindKmph, std::nullopt);
  EXPECT_EQ(summary.strongestGustKmph, std::nullopt);
  day.hourly[5].unknownValues.reset();
  day.hourly[5].precipMM = 1.5;
  day.hourly[5].chanceOfRain = 20;
  EXPECT_EQ(summarize(day).precipitationMM, 1.5);  // at least this is known
  EXPECT_EQ(summarize(day).precipitationChance, 20);
  day.precipMM = 4;
  EXPECT_EQ(summarize(day).precipitationMM, 4);
  for (HourlyForecast& hour : day.hourly) hour.unknownValues.reset();
  EXPECT_EQ(summarize(day).precipitationMM, 1.5);  // the hours tell all of it
}

}  // namespace
}  // namespace nimbara
