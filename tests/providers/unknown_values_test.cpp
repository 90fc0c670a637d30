// What services leave out stays unknown through the interchange record and the processed forecast, and what
// cannot be counts as left out.
#include "model/day_summary.h"
#include "model/present.h"
#include "model/process.h"
#include "providers/common/measurement_ranges.h"
#include "providers/metnorway/yr_no_parser.h"
#include "providers/openmeteo/open_meteo_client.h"
#include "providers/wttr/wttr_ranges.h"
#include "support/answers/open_meteo_answer.h"
#include "support/samples.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using Code = WeatherConditionCode;

Instant const kNow = at("2026-11-21T09:20:00Z");
Coordinate const kBerlin{52.52, 13.41};

WeatherData forecastOf(std::string const& body, Instant now = kNow) {
  auto const record = readOpenMeteoAnswer({200, {}, body}, kBerlin, now);
  EXPECT_TRUE(record);
  return record ? process(*record, Calendar::utc(), now) : WeatherData{};
}

TEST(UnknownValues, AreNoZeros) {
  test::OpenMeteoAnswer answer;
  for (char const* const key :
       {"precipitation", "precipitation_probability", "wind_speed_10m", "wind_gusts_10m"}) {
    answer.hourly[key] = "";
    answer.current[key] = "";
  }
  WeatherData const data = forecastOf(answer.body());
  ASSERT_FALSE(data.allHourly.empty());
  for (std::size_t i = 0; i < enumNames<ForecastValue>.size(); ++i) {
    EXPECT_FALSE(data.allHourly.front().knows(static_cast<ForecastValue>(i))) << i;
  }
  EXPECT_FALSE(data.current.knows(ForecastValue::precipitation));
  EXPECT_FALSE(data.current.knows(ForecastValue::windSpeed));
  DaySummary const today = summarize(data.daily.front());
  EXPECT_EQ(today.precipitationMM, 7.2);  // the day's own sum
  EXPECT_EQ(today.strongestWindKmph, 22);
  EXPECT_EQ(today.windDirection, "NE");
}

TEST(UnknownValues, AreKeptByTheCacheAndAbsentWhereAllIsKnown) {
  test::OpenMeteoAnswer answer;
  EXPECT_EQ(encodeJson(forecastOf(answer.body())).find("_nimbaraUnknownValues"), std::string::npos);
  answer.hourly["precipitation_probability"] = "";
  WeatherData const data = forecastOf(answer.body());
  auto const read = decodeJson<WeatherData>(encodeJson(data));
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->allHourly.front().knows(ForecastValue::precipitationChance));
  EXPECT_TRUE(read->allHourly.front().knows(ForecastValue::precipitation));
  EXPECT_EQ(read->daily, data.daily);
}

TEST(UnknownValues, OfASingleHourAreItsOwn) {
  test::OpenMeteoAnswer answer;
  answer.setHour("precipitation", 12, "null");
  answer.setHour("precipitation_probability", 13, "null");
  WeatherData const data = forecastOf(answer.body());
  EXPECT_FALSE(data.allHourly[12].knows(ForecastValue::precipitation));
  EXPECT_TRUE(data.allHourly[12].knows(ForecastValue::precipitationChance));
  EXPECT_TRUE(data.allHourly[13].knows(ForecastValue::precipitation));
  EXPECT_FALSE(data.allHourly[13].knows(ForecastValue::precipitationChance));
  EXPECT_EQ(data.allHourly[13].chanceOfRain, 0);
}

TEST(WholeDays, KeepTheirCodeWindAndSumWithoutHours) {
  test::OpenMeteoAnswer answer;
  answer.hasHourly = false;
  WeatherData const data = forecastOf(answer.body());
  ASSERT_EQ(data.daily.size(), 7U);
  DaySummary const day = summarize(data.daily[3]);
  EXPECT_EQ(day.condition, Code::lightRain);
  EXPECT_EQ(day.precipitationMM, 7.2);
  EXPECT_EQ(day.strongestWindKmph, 22);
  EXPECT_EQ(day.windDirection, "NE");
  EXPECT_EQ(day.precipitationChance, 65);
}

struct RangeRow {
  MeasuredQuantity quantity;
  double inside;
  double outside;
};

TEST(MeasurementRanges, HoldTheRecordsOfTheEarth) {
  using enum MeasuredQuantity;
  for (RangeRow const& row :
       {RangeRow{temperature, 56.7, 1e6}, RangeRow{temperature, -89.2, -273.2},
        RangeRow{feltTemperature, 81, 101}, RangeRow{dewPoint, 35, 46}, RangeRow{percentage, 100, 102},
        RangeRow{percentage, 0, -1}, RangeRow{humidity, 100.4, 111}, RangeRow{pressure, 870, 849},
        RangeRow{pressure, 1084.8, 1101}, RangeRow{windSpeed, 408, 501}, RangeRow{windSpeed, 0, -0.1},
        RangeRow{windDirection, 360, 721}, RangeRow{visibility, 300'000, 1e9}, RangeRow{uvIndex, 43.3, 51},
        RangeRow{precipitation, 305, 501}, RangeRow{snowfall, 30, 201},
        RangeRow{precipitationOfDay, 1825, 2001}, RangeRow{snowfallOfDay, 256, 401}}) {
    EXPECT_TRUE(isPossible(row.quantity, row.inside)) << row.inside;
    EXPECT_FALSE(isPossible(row.quantity, row.outside)) << row.outside;
  }
}

TEST(ImpossibleValues, CountAsNotMeasured) {
  test::OpenMeteoAnswer answer;
  answer.current["temperature_2m"] = "1e6";
  answer.current["pressure_msl"] = "13";
  answer.setHour("temperature_2m", 5, "1e6");
  answer.setHour("precipitation", 6, "99999");
  answer.setHour("relative_humidity_2m", 7, "-4");
  answer.daily["temperature_2m_max"] = "1e6";
  WeatherData const data = forecastOf(answer.body());
  EXPECT_EQ(data.current.tempC, 6);  // of its hour, 5.5
  EXPECT_EQ(data.current.pressure, 1010);
  EXPECT_EQ(data.allHourly.size(), 7 * 24 - 1U);  // the hour without temperature is left out
  EXPECT_EQ(data.daily.front().maxTempC, 6);      // of its hours
  HourlyForecast const& six = data.allHourly[5];
  EXPECT_EQ(six.hour, 6);
  EXPECT_FALSE(six.knows(ForecastValue::precipitation));
  EXPECT_FALSE(data.allHourly[6].has(WeatherDetailField::humidity));
}

TEST(ImpossibleValues, OfMetNorwayAreTakenOutBeforeAnythingIsReckoned) {
  auto const steps = parseYrNo(
      R"({"properties":{"timeseries":[{"time":"2026-11-21T10:00:00Z","data":{"instant":{"details":
      {"air_temperature":1e6,"wind_speed":150,"wind_speed_of_gust":20,"relative_humidity":80}},
      "next_1_hours":{"details":{"precipitation_amount":-3,"probability_of_precipitation":40}}}}]}})");
  ASSERT_TRUE(steps);
  YrNoStep const& step = steps->front();
  EXPECT_EQ(step.instant.airTemperature, std::nullopt);
  EXPECT_EQ(step.instant.windSpeed, std::nullopt);  // 540 km/h
  EXPECT_EQ(step.instant.windSpeedOfGust, 20);
  EXPECT_EQ(step.instant.relativeHumidity, 80);
  EXPECT_EQ(step.next1Hours->precipitationAmount, std::nullopt);
  EXPECT_EQ(step.next1Hours->probabilityOfPrecipitation, 40);
}

TEST(ImpossibleValues, OfWttrBecomeEmptyTexts) {
  WttrResponse answer;
  CurrentCondition& current = answer.currentCondition.emplace_back();
  current.tempC = "1000000";
  current.tempF = "50";
  current.humidity = "300";
  current.visibility = "10";
  WeatherDay& day = answer.weather.emplace_back();
  day.maxtempC = "12";
  day.mintempC = "-400";
  HourlyCondition& hour = day.hourly.emplace_back();
  hour.precipMM = "-1";
  hour.chanceofrain = "180";
  hour.dewPointC = "7";
  hour.windGustKmph = "1e9";
  dropImpossible(answer);
  EXPECT_EQ(current.tempC, "");
  EXPECT_EQ(current.tempF, "50");
  EXPECT_EQ(current.humidity, "");
  EXPECT_EQ(current.visibility, "10");
  EXPECT_EQ(day.maxtempC, "12");
  EXPECT_EQ(day.mintempC, "");
  EXPECT_EQ(hour.precipMM, "");
  EXPECT_EQ(hour.chanceofrain, "");
  EXPECT_EQ(hour.dewPointC, "7");
  EXPECT_EQ(hour.windGustKmph, "");
}

struct RecordedRow {
  std::string_view file;
  std::string_view now;
  ForecastValue lacking;
};

TEST(UnknownValues, OfRecordedAnswersAreUnknown) {
  auto const files = test::sampleFiles("open-meteo");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES names no folder";
  using enum ForecastValue;
  for (RecordedRow const& row :
       {RecordedRow{"bucharest-winter-2026-01-16.json", "2026-01-16T20:20:00Z", precipitation},
        RecordedRow{"bucharest-winter-2026-01-16.json", "2026-01-16T20:20:00Z", precipitationChance},
        RecordedRow{"copenhagen-rain-2026-07-26.json", "2026-07-26T21:00:00Z", precipitation},
        RecordedRow{"copenhagen-rain-2026-07-26.json", "2026-07-26T21:00:00Z", windGust},
        RecordedRow{"london-hourly-dewpoint-2026-05-12.json", "2026-05-11T22:00:00Z", precipitation}}) {
    auto const file =
        std::ranges::find(*files, row.file, [](auto const& path) { return path.filename().string(); });
    ASSERT_NE(file, files->end()) << row.file;
    WeatherData const data = forecastOf(test::readFile(*file), at(std::string(row.now)));
    for (HourlyForecast const& hour : data.allHourly) EXPECT_FALSE(hour.knows(row.lacking)) << row.file;
  }
}

}  // namespace
}  // namespace nimbara
