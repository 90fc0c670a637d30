#include "feeds/air/air_index.h"

#include "feeds/air/us_index.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

struct IndexRow {
  Pollutant pollutant;
  double concentration, index;
};

TEST(AirIndex, HasTheEuropeanBandsOf2024) {
  for (IndexRow const& row : {IndexRow{Pollutant::pm25, 0, 0},
                              {Pollutant::pm25, 5, 20},
                              {Pollutant::pm25, 15, 40},
                              {Pollutant::pm25, 50, 60},
                              {Pollutant::pm25, 140, 100},
                              {Pollutant::pm25, 190, 120},
                              {Pollutant::pm10, 45, 40},
                              {Pollutant::pm10, 270, 100},
                              {Pollutant::no2, 10, 20},
                              {Pollutant::no2, 42.5, 50},
                              {Pollutant::o3, 110, 50},
                              {Pollutant::o3, 180, 100},
                              {Pollutant::so2, 275, 100}}) {
    EXPECT_NEAR(europeanIndex(row.pollutant, row.concentration), row.index, 1e-9)
        << enumName(row.pollutant) << row.concentration;
  }
}

/// Both sides of the agency's breakpoints, and the examples of its technical document.
TEST(UsIndex, HasTheBreakpointsOf2024) {
  constexpr double kNo2 = 46.01 / 24.45, kO3 = 48 / 24.45, kSo2 = 64.07 / 24.45;  // µg/m³ of one ppb
  for (IndexRow const& row : {IndexRow{Pollutant::pm25, 0, 0},      {Pollutant::pm25, 9.0, 50},
                              {Pollutant::pm25, 9.09, 50},          {Pollutant::pm25, 9.1, 51},
                              {Pollutant::pm25, 35.4, 100},         {Pollutant::pm25, 35.9, 102},
                              {Pollutant::pm25, 55.4, 150},         {Pollutant::pm25, 125.4, 200},
                              {Pollutant::pm25, 225.4, 300},        {Pollutant::pm25, 325.4, 500},
                              {Pollutant::pm25, 900, 500},          {Pollutant::pm10, 54.9, 50},
                              {Pollutant::pm10, 154, 100},          {Pollutant::pm10, 155, 101},
                              {Pollutant::pm10, 604, 500},          {Pollutant::o3, 54 * kO3, 50},
                              {Pollutant::o3, 78.53333 * kO3, 126}, {Pollutant::o3, 200 * kO3, 300},
                              {Pollutant::no2, 100 * kNo2, 100},    {Pollutant::no2, 361 * kNo2, 151},
                              {Pollutant::so2, 75 * kSo2, 100},     {Pollutant::so2, 304 * kSo2, 200}}) {
    EXPECT_EQ(usIndex(row.pollutant, row.concentration), row.index)
        << enumName(row.pollutant) << row.concentration;
  }
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
  for (BandCase const& row : {BandCase{AirScale::european, 20, good},
                              {AirScale::european, 21, fair},
                              {AirScale::european, 60, moderate},
                              {AirScale::european, 61, poor},
                              {AirScale::european, 100, veryPoor},
                              {AirScale::european, 101, extremelyPoor},
                              {AirScale::us, 50, good},
                              {AirScale::us, 51, moderate},
                              {AirScale::us, 101, unhealthyForSensitive},
                              {AirScale::us, 151, unhealthy},
                              {AirScale::us, 201, veryUnhealthy},
                              {AirScale::us, 301, hazardous}}) {
    EXPECT_EQ(airBand(row.scale, row.index), row.band) << row.index;
  }
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
