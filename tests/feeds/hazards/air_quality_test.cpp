#include "feeds/air/air_quality_service.h"
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
  std::size_t hours;
  std::size_t values;
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
        R"({"error":true,"reason":"Latitude must be in range"})", R"({"hourly":{"pm2_5":[1]}})"}) {
    EXPECT_FALSE(parseAirQuality(body)) << body;
  }
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

}  // namespace
}  // namespace nimbara
