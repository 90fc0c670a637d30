#include "feeds/air/air_index.h"
#include "feeds/air/air_quality_service.h"
#include "feeds/air/us_index.h"
#include "support/answers/bad_bytes.h"
#include "support/feed_readings.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

constexpr char kAnswer[] =
    R"({"latitude":52.5,"utc_offset_seconds":3600,"current_units":{"pm2_5":"μg/m³"},
        "current":{"time":"2026-11-21T10:00","interval":3600,"pm2_5":12.5,"us_aqi":52,"european_aqi":31},
        "hourly_units":{"time":"iso8601","pm2_5":"μg/m³"},
        "hourly":{"time":["2026-11-21T00:00","2026-11-21T01:00","2026-11-21T02:00"],"pm2_5":[7.5,null,9]}})";

TEST(AirQuality, IsReadWhole) {
  auto const forecast = parseAirQuality(kAnswer);
  ASSERT_TRUE(forecast) << forecast.error().text();
  ASSERT_EQ(forecast->hours.size(), 3);
  EXPECT_EQ(forecast->hours[0], (AirQualityHour{at("2026-11-20T23:00:00Z"), 7.5, {{7.5}}}));
  EXPECT_EQ(forecast->hours[1], (AirQualityHour{at("2026-11-21T00:00:00Z"), {}}));
  EXPECT_EQ(forecast->hours[2].pm25, 9);
  EXPECT_EQ(forecast->pm25, 12.5);
  EXPECT_EQ(forecast->usAqi, 52);
  EXPECT_EQ(forecast->europeanAqi, 31);
}

struct HourRow {
  std::string hourly;
  std::size_t hours, values;
};

TEST(AirQuality, ToleratesGapsInTheHours) {
  for (HourRow const& row : {
           HourRow{R"({"time":["2026-11-21T00:00"],"pm2_5":[]})", 1, 0},
           {R"({"time":["2026-11-21T00:00"]})", 1, 0},
           {R"({"time":["2026-11-21T00:00"],"pm2_5":null})", 1, 0},
           {R"({"time":["2026-11-21T00:00"],"pm2_5":[1,2,3]})", 1, 1},
           {R"({"time":["2026-11-21T00:00","rubbish",7,null],"pm2_5":[1,2,3,4]})", 1, 1},
           {R"({"time":["2026-11-21T00:00","2026-11-21T01:00"],"pm2_5":["9",-0.1]})", 2, 0},
           {R"({"time":["2026-11-21T00:00","2026-11-21T01:00"],"pm2_5":[0,100000]})", 2, 2},
           {R"({"time":["2026-11-21T00:00"],"pm2_5":[100001]})", 1, 0},
           {R"({"time":[],"pm2_5":[]})", 0, 0},
       }) {
    auto const forecast = parseAirQuality(R"({"current":{},"hourly":)" + row.hourly + "}");
    ASSERT_TRUE(forecast) << row.hourly;
    EXPECT_EQ(forecast->hours.size(), row.hours) << row.hourly;
    EXPECT_EQ(std::ranges::count_if(forecast->hours, [](auto const& hour) { return hour.pm25.has_value(); }),
              row.values)
        << row.hourly;
  }
}

TEST(AirQuality, IsRefusedInOtherDocuments) {
  for (std::string const body :
       {"", "{}", "[]", "null", "<html>log in</html>", R"({"current":7,"hourly":[]})", "[{}]",
        R"({"error":true,"reason":"Latitude must be in range"})", R"({"hourly":{"pm2_5":[1]}})"})
    EXPECT_FALSE(parseAirQuality(body)) << body;
  EXPECT_EQ(parseAirQuality(R"({"reason":"too\nmany"})").error().text(), "too many");
  for (std::string const& body : test::damagedForms(kAnswer, 7)) parseAirQuality(body);
}

TEST(AirQuality, ReadsARecordedAnswerForSeveralPlaces) {
  auto const files = test::sampleFiles("open-meteo-air-quality");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  auto const forecast = parseAirQuality(test::readFile(files->front()));
  ASSERT_TRUE(forecast) << forecast.error().text();
  EXPECT_TRUE(forecast->hours.empty());
  EXPECT_EQ(forecast->pm25, 4.2);
  EXPECT_FALSE(forecast->usAqi);
  EXPECT_EQ(forecast->europeanAqi, 35);
}

class AirQualityServiceTest : public testing::Test {
 protected:
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  AirQualityService service_{http_, clock_, {"https://air.example", "se cret"}};
};

TEST_F(AirQualityServiceTest, AsksForAPlaceOnceAnHour) {
  for (int i = 0; i < 3; ++i) http_.willAnswer(200, kAnswer);
  EXPECT_TRUE(service_.fetchForecast({52.52004, 13.4}).isCurrent());
  EXPECT_EQ(http_.requests[0].url,
            "https://air.example/v1/air-quality?latitude=52.5200&longitude=13.4000&hourly=" + airVariables() +
                "&current=" + airVariables() + "&timezone=GMT&forecast_days=5&apikey=se%20cret");
  EXPECT_TRUE(service_.fetchForecast({52.52, 13.40004}).isCurrent()) << "the same four decimals";
  EXPECT_EQ(http_.requests.size(), 1);
  EXPECT_TRUE(service_.fetchForecast({52.5202, 13.4}).isCurrent());
  EXPECT_EQ(http_.requests.size(), 2);
  clock_.advance(3600s);
  service_.fetchForecast({52.52, 13.4});
  EXPECT_EQ(http_.requests.size(), 3);
}

TEST_F(AirQualityServiceTest, NeverTakesAFailureForCleanAir) {
  http_.willAnswer(200, "<html>");
  auto const failed = service_.fetchForecast({52.52, 13.4});
  EXPECT_EQ(failed.state, FeedState::failed);
  EXPECT_FALSE(failed.checkedAt);
  EXPECT_EQ(failed.failedSince, clock_.now());
  EXPECT_EQ(service_.fetchForecast({91, 0}).state, FeedState::failed);
  EXPECT_EQ(http_.requests.size(), 1) << "a place off the globe is not asked for";
}

struct IndexRow {
  Pollutant pollutant;
  double concentration, index;
};

TEST(AirIndex, HasTheEuropeanBandsOf2024) {
  for (IndexRow const& row :
       {IndexRow{Pollutant::pm25, 0, 0}, IndexRow{Pollutant::pm25, 5, 20}, IndexRow{Pollutant::pm25, 15, 40},
        IndexRow{Pollutant::pm25, 50, 60}, IndexRow{Pollutant::pm25, 140, 100},
        IndexRow{Pollutant::pm25, 190, 120}, IndexRow{Pollutant::pm10, 45, 40},
        IndexRow{Pollutant::pm10, 270, 100}, IndexRow{Pollutant::no2, 10, 20},
        IndexRow{Pollutant::no2, 42.5, 50}, IndexRow{Pollutant::o3, 110, 50},
        IndexRow{Pollutant::o3, 180, 100}, IndexRow{Pollutant::so2, 275, 100}})
    EXPECT_NEAR(europeanIndex(row.pollutant, row.concentration), row.index, 1e-9)
        << enumName(row.pollutant) << row.concentration;
}

/// Both sides of the agency's breakpoints, and the examples of its technical document.
TEST(UsIndex, HasTheBreakpointsOf2024) {
  constexpr double kNo2 = 46.01 / 24.45, kO3 = 48 / 24.45, kSo2 = 64.07 / 24.45;  // µg/m³ of one ppb
  for (IndexRow const& row : {IndexRow{Pollutant::pm25, 0, 0},
                              IndexRow{Pollutant::pm25, 9.0, 50},
                              IndexRow{Pollutant::pm25, 9.09, 50},
                              IndexRow{Pollutant::pm25, 9.1, 51},
                              IndexRow{Pollutant::pm25, 35.4, 100},
                              IndexRow{Pollutant::pm25, 35.9, 102},
                              IndexRow{Pollutant::pm25, 55.4, 150},
                              IndexRow{Pollutant::pm25, 125.4, 200},
                              IndexRow{Pollutant::pm25, 225.4, 300},
                              IndexRow{Pollutant::pm25, 325.4, 500},
                              IndexRow{Pollutant::pm25, 900, 500},
                              IndexRow{Pollutant::pm10, 54.9, 50},
                              IndexRow{Pollutant::pm10, 154, 100},
                              IndexRow{Pollutant::pm10, 155, 101},
                              IndexRow{Pollutant::pm10, 604, 500},
                              IndexRow{Pollutant::o3, 54 * kO3, 50},
                              IndexRow{Pollutant::o3, 78.53333 * kO3, 126},
                              IndexRow{Pollutant::o3, 200 * kO3, 300},
                              IndexRow{Pollutant::no2, 100 * kNo2, 100},
                              IndexRow{Pollutant::no2, 361 * kNo2, 151},
                              IndexRow{Pollutant::so2, 75 * kSo2, 100},
                              IndexRow{Pollutant::so2, 304 * kSo2, 200}})
    EXPECT_EQ(usIndex(row.pollutant, row.concentration), row.index)
        << enumName(row.pollutant) << row.concentration;
}

/// 24 hours from noon on, of which the first `unknown` have nothing.
AirQualityForecast dayOf(int unknown) {
  AirQualityForecast forecast;
  for (int i = 0; i < 24; ++i) {
    AirLevels levels;
    if (i >= unknown) levels.pollutants = {35.9, {}, {}, 154.2, {}};
    forecast.hours.push_back({at("2026-11-21T12:00:00Z") + i * 1h, levels.pollutants[0], levels});
  }
  return forecast;
}

TEST(UsIndex, IsMadeOfTheHoursBeforeWhereTheServiceHasNone) {
  for (auto const& [unknown, isKnown] : {std::pair(0, true), {6, true}, {7, false}}) {
    AirQualityForecast forecast = dayOf(unknown);
    fillUsParts(forecast, at("2026-11-22T11:45:00Z"));
    EXPECT_EQ(forecast.hours.back().levels.usParts[0].has_value(), isKnown) << unknown;
    EXPECT_EQ(forecast.now.usParts[0].has_value(), isKnown) << unknown;
    EXPECT_EQ(forecast.now.usParts[3], 126) << "ozone takes eight hours";
    EXPECT_EQ(airIndexOf(forecast.now, AirScale::us)->leading, Pollutant::o3);
  }
  AirQualityForecast served = dayOf(0);
  served.hours.back().levels.usAqi = 61;
  fillUsParts(served, {});
  EXPECT_FALSE(served.hours.back().levels.usParts[0]) << "the service knows better";
  EXPECT_FALSE(served.now.usParts[0]) << "nobody says when the present is";
}

TEST(AirIndex, AgreesWithTheRecordedIndices) {
  auto const files = test::sampleFiles("air-quality");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  auto const forecast = parseAirQuality(test::readFile(files->front()));
  ASSERT_TRUE(forecast) << forecast.error().text();
  std::vector<AirLevels> moments{forecast->now};
  for (AirQualityHour const& hour : forecast->hours) moments.push_back(hour.levels);
  ASSERT_EQ(moments.size(), 4);
  for (AirLevels const& levels : moments) {
    ASSERT_TRUE(levels.europeanAqi);
    auto const index = airIndexOf(levels, AirScale::european);
    ASSERT_TRUE(index);
    EXPECT_NEAR(index->value, *levels.europeanAqi, 1);
    EXPECT_EQ(index->leading, Pollutant::pm25);
    EXPECT_EQ(index->band, AirBand::moderate);
  }
  // The parts that the service sends of the present hour: 44, 29, 22, 14 and 3.
  PollutantValues const& now = forecast->now.pollutants;
  double const parts[] = {44, 29, 22, 14, 3};
  for (std::size_t i = 0; i < now.size(); ++i)
    EXPECT_NEAR(europeanIndex(static_cast<Pollutant>(i), now[i].value_or(-1)), parts[i], 1) << i;
  for (AirLevels const& levels : moments) {
    for (Pollutant const gas : {Pollutant::no2, Pollutant::so2}) {
      auto const at = static_cast<std::size_t>(gas);
      EXPECT_NEAR(usIndex(gas, levels.pollutants[at].value_or(-1)), levels.usParts[at].value_or(-1), 1);
    }
  }
  EXPECT_EQ(airIndexOf(forecast->now, AirScale::us),
            (AirIndex{AirScale::us, 65, AirBand::moderate, Pollutant::pm25}));
}

TEST(AirIndex, NamesNoPollutantForAnIndexAlone) {
  AirLevels levels;
  EXPECT_FALSE(airIndexOf(levels, AirScale::us));
  levels.usAqi = 151;
  levels.usParts[1] = 60;
  EXPECT_EQ(airIndexOf(levels, AirScale::us), (AirIndex{AirScale::us, 151, AirBand::unhealthy, {}}));
  EXPECT_FALSE(airIndexOf(levels, AirScale::european));
  levels.europeanAqi = 20;
  EXPECT_EQ(airIndexOf(levels, AirScale::european), (AirIndex{AirScale::european, 20, AirBand::good, {}}));
}

struct BandCase {
  AirScale scale;
  double index;
  AirBand band;
};

TEST(AirIndex, HasBandsWithBothSides) {
  using enum AirBand;
  for (BandCase const& row :
       {BandCase{AirScale::european, 20, good}, BandCase{AirScale::european, 21, fair},
        BandCase{AirScale::european, 60, moderate}, BandCase{AirScale::european, 61, poor},
        BandCase{AirScale::european, 100, veryPoor}, BandCase{AirScale::european, 101, extremelyPoor},
        BandCase{AirScale::us, 50, good}, BandCase{AirScale::us, 51, moderate},
        BandCase{AirScale::us, 101, unhealthyForSensitive}, BandCase{AirScale::us, 151, unhealthy},
        BandCase{AirScale::us, 201, veryUnhealthy}, BandCase{AirScale::us, 301, hazardous}})
    EXPECT_EQ(airBand(row.scale, row.index), row.band) << row.index;
}

/// 60 hours from midnight on with one value of each.
AirQualityForecast forecastOf(std::optional<double> birch, std::vector<double> const& uv = {}) {
  AirQualityForecast forecast;
  for (int i = 0; i < 60; ++i) {
    AirQualityHour hour{at("2026-04-21T00:00:00Z") + i * 1h, {}};
    hour.levels.pollen[1] = birch;
    hour.levels.uvIndex = static_cast<std::size_t>(i) < uv.size() ? uv[static_cast<std::size_t>(i)] : 0;
    forecast.hours.push_back(hour);
  }
  return forecast;
}

TEST(Pollen, HasThreeKindsOfNothing) {
  Instant const now = at("2026-04-21T09:20:00Z");
  Coordinate const berlin{52.5, 13.4};
  EXPECT_EQ(pollenOutlook(forecastOf(12), berlin, now).state, PollenState::values);
  EXPECT_EQ(pollenOutlook(forecastOf(12), berlin, now).highest[1], 12);
  EXPECT_EQ(pollenOutlook(forecastOf(0), berlin, now).state, PollenState::outOfSeason);
  EXPECT_EQ(pollenOutlook(forecastOf({}), berlin, now).state, PollenState::unknown);
  EXPECT_EQ(pollenOutlook(forecastOf({}), {40.7, -74}, now).state, PollenState::outOfRegion);
  EXPECT_EQ(pollenOutlook(forecastOf(12), berlin, at("2026-05-21T09:20:00Z")).state, PollenState::unknown);
}

TEST(Uv, HasTheHoursOfProtectionAhead) {
  std::vector<double> const uv{0, 0, 0, 0, 0, 0, 0, 1, 2.4, 2.5, 5, 6.2, 2.4, 3, 0};
  UvOutlook const outlook = uvOutlook(forecastOf({}, uv), at("2026-04-21T08:20:00Z"));
  EXPECT_EQ(outlook.highest, 6.2);
  EXPECT_EQ(outlook.protection,
            (std::vector<UvHours>{{at("2026-04-21T09:00:00Z"), at("2026-04-21T12:00:00Z"), 6.2},
                                  {at("2026-04-21T13:00:00Z"), at("2026-04-21T14:00:00Z"), 3}}));
  EXPECT_TRUE(uvOutlook(forecastOf({}), at("2026-04-21T08:20:00Z")).protection.empty());
  EXPECT_FALSE(uvOutlook({}, at("2026-04-21T08:20:00Z")).highest) << "not known is not low";
}

}  // namespace
}  // namespace nimbara
