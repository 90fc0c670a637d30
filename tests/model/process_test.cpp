#include "model/process.h"

#include "model/day_summary.h"
#include "model/upcoming_hours.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::zone;
using Code = WeatherConditionCode;
using namespace std::chrono_literals;

struct CodeRow {
  std::string_view code;
  Code condition;
};

TEST(ConditionCodes, MapAsTheTableHasThem) {
  for (CodeRow const& row : {CodeRow{"113", Code::sunny},
                             CodeRow{"+113", Code::sunny},
                             CodeRow{"116", Code::partlyCloudy},
                             CodeRow{"119", Code::cloudy},
                             CodeRow{"122", Code::overcast},
                             CodeRow{"260", Code::fog},
                             CodeRow{"353", Code::lightShowers},
                             CodeRow{"281", Code::lightSleet},
                             CodeRow{"377", Code::lightSleet},
                             CodeRow{"266", Code::lightRain},
                             CodeRow{"305", Code::heavyShowers},
                             CodeRow{"302", Code::heavyRain},
                             CodeRow{"200", Code::thunderyShowers},
                             CodeRow{"389", Code::thunderyHeavyRain},
                             CodeRow{"179", Code::lightSnow},
                             CodeRow{"338", Code::heavySnow},
                             CodeRow{"368", Code::lightSnowShowers},
                             CodeRow{"395", Code::heavySnowShowers},
                             CodeRow{"392", Code::thunderySnowShowers},
                             CodeRow{" 113", Code::unknown},
                             CodeRow{"113.0", Code::unknown},
                             CodeRow{"", Code::unknown},
                             CodeRow{"sunny", Code::unknown},
                             CodeRow{"112", Code::unknown},
                             CodeRow{"396", Code::unknown},
                             CodeRow{"-113", Code::unknown}}) {
    EXPECT_EQ(enumName(conditionOfWwoCode(row.code)), enumName(row.condition)) << "'" << row.code << "'";
  }
}

TEST(ConditionCodes, CountAsManyAsTheTableLists) {
  int known = 0;
  for (int code = -1000; code <= 1000; ++code) {
    if (conditionOfWwoCode(std::to_string(code)) != Code::unknown) ++known;
  }
  EXPECT_EQ(known, 48);
}

struct StepRow {
  std::vector<int> hours;  ///< at which the entries begin
  std::size_t index;
  int length;  ///< h
};

TEST(StepLengths, EndAtTheNextEntryAndAfterSixHours) {
  for (StepRow const& row :
       {StepRow{{0, 1}, 0, 1}, StepRow{{0, 3, 9}, 1, 6}, StepRow{{0, 3, 9}, 2, 6}, StepRow{{0, 7}, 0, 6},
        StepRow{{0, 1, 4}, 2, 3}, StepRow{{5, 5}, 0, 0}, StepRow{{5, 4}, 0, 0}, StepRow{{5}, 0, 1}}) {
    std::vector<HourlyForecast> entries(row.hours.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
      entries[i].date = at("2026-11-21T00:00:00Z") + row.hours[i] * 1h;
    EXPECT_EQ(stepLength(entries, row.index), row.length * 1h) << row.hours.back() << " " << row.index;
  }
}

TEST(Conditions, CollapseTheirNamesAndCategoriesOnPurpose) {
  EXPECT_EQ(displayName(Code::lightSleet), "Sleet");
  EXPECT_EQ(displayName(Code::thunderyShowers), displayName(Code::thunderyHeavyRain));
  EXPECT_EQ(displayName(Code::heavySnowShowers), "Heavy Snow");
  EXPECT_EQ(symbolName(Code::sunny, true), "sun.max.fill");
  EXPECT_EQ(symbolName(Code::sunny, false), "moon.stars.fill");
  EXPECT_EQ(category(Code::unknown), ConditionCategory::cloudy);
  EXPECT_EQ(category(Code::thunderySnowShowers), ConditionCategory::thunderstorm);
  EXPECT_EQ(category(Code::lightShowers), ConditionCategory::lightRain);
  EXPECT_EQ(category(Code::heavyShowers), ConditionCategory::heavyRain);
}

WeatherDay dayWithHours(std::string date, std::vector<std::string> const& times) {
  WeatherDay day;
  day.date = std::move(date);
  for (std::string const& time : times) day.hourly.emplace_back().time = time;
  return day;
}

TEST(Process, ReadsTextsLeniently) {
  WttrResponse response;
  CurrentCondition& current = response.currentCondition.emplace_back();
  current.tempC = "";
  current.feelsLikeC = " -3.5 ";
  current.humidity = "81.9";
  current.weatherCode = "113";
  current.weatherDesc = {{"Clear"}, {"second"}};
  response.nearestArea.push_back({{{"Łódź"}}, {{"Poland"}}, {}, {}, "51.77", "19.46", ""});
  WeatherData const data = process(response, Calendar::utc(), at("2026-11-21T06:00:00.75Z"));
  EXPECT_EQ(data.current.tempC, 0);
  EXPECT_EQ(data.current.feelsLikeC, -3.5);
  EXPECT_EQ(data.current.humidity, 81);
  EXPECT_EQ(data.current.condition, Code::sunny);
  EXPECT_EQ(data.current.conditionDescription, "Clear");
  EXPECT_EQ(data.location.areaName, "Łódź");
  EXPECT_EQ(data.location.region, "");
  EXPECT_EQ(data.location.latitude, 51.77);
  EXPECT_EQ(data.fetchedAt, at("2026-11-21T06:00:00Z"));
}

TEST(Process, HasDefaultsForWhatIsMissing) {
  WeatherData const data = process({}, Calendar::utc(), at("2026-11-21T06:00:00Z"));
  EXPECT_EQ(data.location.areaName, "Unknown");
  EXPECT_EQ(data.location.latitude, 0);
  EXPECT_EQ(data.current.condition, Code::unknown);
  EXPECT_FALSE(data.current.isReading());
  EXPECT_TRUE(data.daily.empty());
}

TEST(Process, PutsDaysAndHoursIntoThePlacesTime) {
  WttrResponse response;
  response.timeZone = "Asia/Kathmandu";
  response.weather = {dayWithHours("2026-11-21", {"0", "300", "2100"}), dayWithHours("no date", {"0"})};
  response.weather[0].dailyPrecipitationChance = "40";
  response.weather[0].astronomy.push_back({"52", "Full Moon", "", "", "07:33 AM", ""});
  WeatherData const data = process(response, zone("America/New_York"), at("2026-11-21T06:00:00Z"));
  ASSERT_EQ(data.daily.size(), 1U);
  DailyForecast const& day = data.daily[0];
  EXPECT_EQ(formatIso8601(day.date), "2026-11-20T18:15:00Z");
  ASSERT_EQ(day.hourly.size(), 3U);
  EXPECT_EQ(day.hourly[1].hour, 3);
  EXPECT_EQ(formatIso8601(day.hourly[2].date), "2026-11-21T15:15:00Z");
  EXPECT_EQ(day.hourly[2].hour, 21);
  EXPECT_EQ(day.dailyPrecipitationChance, 40);
  EXPECT_EQ(day.astronomy.moonIllumination, 52);
  EXPECT_EQ(data.allHourly, day.hourly);
  EXPECT_EQ(data.location.timeZone, "Asia/Kathmandu");
}

TEST(Process, UsesTheCurrentCalendarWithoutAZone) {
  WttrResponse response;
  response.weather = {dayWithHours("2026-11-21", {"0"})};
  WeatherData const data = process(response, zone("America/New_York"), at("2026-11-21T06:00:00Z"));
  EXPECT_EQ(formatIso8601(data.daily[0].date), "2026-11-21T05:00:00Z");
  response.timeZone = "Mars/Olympus";
  EXPECT_EQ(process(response, zone("America/New_York"), at("2026-11-21T06:00:00Z")).daily[0].date,
            data.daily[0].date);
}

TEST(Process, NeitherLosesNorDoublesTheHoursOfAClockChange) {
  WttrResponse response;
  response.timeZone = "Europe/Berlin";
  std::vector<std::string> autumn{"0", "100", "200", "200"};
  std::vector<std::string> spring{"0", "100"};
  for (int hour = 3; hour < 24; ++hour) {
    autumn.push_back(std::to_string(hour * 100));
    spring.push_back(std::to_string(hour * 100));
  }
  response.weather = {dayWithHours("2026-03-29", spring), dayWithHours("2026-10-25", autumn)};
  WeatherData const data = process(response, Calendar::utc(), at("2026-11-21T06:00:00Z"));
  for (DailyForecast const& day : data.daily) {
    for (std::size_t i = 0; i < day.hourly.size(); ++i) {
      EXPECT_EQ(day.hourly[i].date, day.date + i * 1h) << i;
    }
  }
  EXPECT_EQ(data.daily[0].hourly.size(), 23U);
  EXPECT_EQ(data.daily[1].hourly.size(), 25U);
}

DailyForecast dayOf(std::vector<Code> const& conditions) {
  DailyForecast day;
  for (std::size_t i = 0; i < conditions.size(); ++i) {
    HourlyForecast& hour = day.hourly.emplace_back();
    hour.hour = static_cast<int>(i) + 7;
    hour.condition = conditions[i];
  }
  return day;
}

TEST(DaySummary, TellsTheGravestWeatherThatLastsTwoHours) {
  using enum WeatherConditionCode;
  EXPECT_EQ(summarize(dayOf({sunny, sunny, lightRain, lightRain})).condition, lightRain);
  EXPECT_EQ(summarize(dayOf({sunny, sunny, sunny, lightRain})).condition, sunny);
  EXPECT_EQ(summarize(dayOf({lightRain, lightRain, lightRain, thunderyShowers, thunderyHeavyRain})).condition,
            thunderyShowers);
  EXPECT_EQ(summarize(dayOf({fog, fog, fog, fog, sunny})).condition, fog);  // the sky seen most
  EXPECT_EQ(summarize(dayOf({fog, fog, fog, fog, sunny, sunny, sunny, sunny, sunny})).condition, sunny);
  EXPECT_EQ(summarize(dayOf({fog, fog, fog, fog, fog, sunny, sunny, sunny, sunny, sunny, sunny})).condition,
            fog);
  EXPECT_EQ(summarize(DailyForecast{}).condition, std::nullopt);
}

TEST(DaySummary, AddsUpTheHours) {
  DailyForecast day = dayOf({Code::sunny, Code::sunny});
  day.hourly[0].precipMM = 1.5;
  day.hourly[1].precipMM = 2;
  day.hourly[1].windSpeedKmph = 30;
  day.hourly[1].windDirection = "NE";
  day.hourly[0].windGustKmph = 55;
  day.hourly[0].chanceOfRain = 35;
  DaySummary const summary = summarize(day);
  EXPECT_EQ(summary.precipitationMM, 3.5);
  EXPECT_EQ(summary.strongestWindKmph, 30);
  EXPECT_EQ(summary.windDirection, "NE");
  EXPECT_EQ(summary.strongestGustKmph, 55);
  EXPECT_EQ(summary.precipitationChance, 35);
  day.dailyPrecipitationChance = 20;
  EXPECT_EQ(summarize(day).precipitationChance, 20);
}

TEST(HourAt, FindsTheHourThatContainsNow) {
  std::vector<HourlyForecast> hours(3);
  for (std::size_t i = 0; i < hours.size(); ++i) hours[i].date = at("2026-11-21T06:00:00Z") + i * 1h;
  EXPECT_EQ(hourAt(hours, at("2026-11-21T05:59:59Z")), nullptr);
  EXPECT_EQ(hourAt(hours, at("2026-11-21T06:00:00Z")), &hours[0]);
  EXPECT_EQ(hourAt(hours, at("2026-11-21T07:59:59.999Z")), &hours[1]);
  EXPECT_EQ(hourAt(hours, at("2026-11-21T08:59:59Z")), &hours[2]);
  EXPECT_EQ(hourAt(hours, at("2026-11-21T09:00:00Z")), nullptr);
  EXPECT_EQ(hourAt({}, at("2026-11-21T09:00:00Z")), nullptr);
}

TEST(HourAt, LetsAnEntryStandUntilTheNextOne) {
  std::vector<HourlyForecast> hours(4);
  int const begins[] = {6, 7, 13, 25};
  for (std::size_t i = 0; i < hours.size(); ++i) hours[i].date = at("2026-11-21T00:00:00Z") + begins[i] * 1h;
  EXPECT_EQ(hourAt(hours, at("2026-11-21T12:59:59Z")), &hours[1]);
  EXPECT_EQ(hourAt(hours, at("2026-11-21T18:59:59Z")), &hours[2]);
  EXPECT_EQ(hourAt(hours, at("2026-11-21T19:00:00Z")), nullptr);  // nothing stands longer than six hours
  EXPECT_EQ(upcomingHours(hours, at("2026-11-21T19:00:00Z")).size(), 1U);
  EXPECT_EQ(hourAt(hours, at("2026-11-22T06:59:59Z")), &hours[3]);
  EXPECT_EQ(upcomingHours(hours, at("2026-11-22T07:00:00Z")).size(), 0U);
  EXPECT_EQ(upcomingHours(hours, at("2026-11-20T00:00:00Z")).size(), 4U);
}

}  // namespace
}  // namespace nimbara
