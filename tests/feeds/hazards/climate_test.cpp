#include "feeds/climate/climate_service.h"
#include "feeds/outlook/outlook_service.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year;
using test::at;
using testing::ElementsAre;

constexpr Date kNovember = year(2026) / 11 / 15;

/// Years from 1991 with the same days: in year n (from 0) all have n degrees.
std::vector<DayTemperature> yearsOf(int count) {
  std::vector<DayTemperature> list;
  for (int i = 0; i < count; ++i) {
    for (sys_days day(year(1991 + i) / 1 / 1); Date(day).year() == year(1991 + i); day += days(1))
      list.push_back({Date(day), static_cast<double>(i)});
  }
  return list;
}

TEST(Climate, HasNormalsOfEachDay) {
  ClimateNormals const normals = climateNormals(yearsOf(31));
  ASSERT_EQ(normals.size(), kClimateDays);
  for (std::size_t index : {0U, 59U, 200U, 365U}) {
    ASSERT_TRUE(normals[index]) << index;
    EXPECT_NEAR(normals[index]->p50, 15, 0.5) << index;
    EXPECT_NEAR(normals[index]->p10, 3, 0.5) << index;
    EXPECT_NEAR(normals[index]->p90, 27, 0.5) << index;
  }
  EXPECT_TRUE(climateNormals(yearsOf(15))[100]) << "enough years";
  EXPECT_FALSE(climateNormals(yearsOf(14))[100]);
  EXPECT_FALSE(climateOf({}, kNovember));
}

TEST(Climate, PoolsAWeekToBothSides) {
  std::vector<DayTemperature> list;
  for (int i = 0; i < 15; ++i) list.push_back({year(1991 + i) / 11 / 15, 8});
  ClimateNormals const normals = climateNormals(list);
  EXPECT_TRUE(climateOf(normals, year(2026) / 11 / 8));
  EXPECT_TRUE(climateOf(normals, year(2026) / 11 / 22));
  EXPECT_FALSE(climateOf(normals, year(2026) / 11 / 7));
  EXPECT_FALSE(climateOf(normals, year(2026) / 11 / 23));
  EXPECT_EQ(climateIndex(year(2020) / 2 / 29), 59);
  EXPECT_EQ(climateIndex(year(2021) / 12 / 31), 365);
}

struct WordRow {
  double mean;
  ClimateWord word;
};

TEST(Climate, IsUsualWithinTwoDegreesAndThreeFifths) {
  ClimateDay const normal{8, 3, 5, 8, 9, 14};
  using enum ClimateWord;
  for (WordRow const& row : {WordRow{8, usual}, WordRow{9.9, usual}, WordRow{10, warmer}, WordRow{14, warmer},
                             WordRow{14.1, unusuallyWarm}, WordRow{5, usual}, WordRow{4.9, colder},
                             WordRow{3, colder}, WordRow{2.9, unusuallyCold}})
    EXPECT_EQ(climateWord(normal, row.mean), row.word) << row.mean;
}

TEST(Climate, ComparesSixtyDaysAtLeast) {
  std::vector<DayTemperature> forecasts, archive;
  for (int i = 0; i < 60; ++i) {
    Date const day(sys_days(kNovember) - days(i));
    forecasts.push_back({day, 10});
    archive.push_back({day, 9.5});
  }
  EXPECT_EQ(climateBias(forecasts, archive), 0.5);
  archive.pop_back();
  EXPECT_FALSE(climateBias(forecasts, archive));
}

std::string answerOf(std::string const& first, int count, double celsius) {
  auto day = sys_days(*parseDate(first));
  std::string time, warmest, coldest;
  for (int i = 0; i < count; ++i, day += days(1)) {
    std::string const comma = i == 0 ? "" : ",";
    time += comma + "\"" + formatDate(Date(day)) + "\"";
    warmest += comma + std::to_string(celsius + 4);
    coldest += comma + std::to_string(celsius - 4);
  }
  return R"({"daily":{"time":[)" + time + R"(],"temperature_2m_max":[)" + warmest +
         R"(],"temperature_2m_min":[)" + coldest + "]}}";
}

TEST(Climate, LeavesOutDaysWithoutValues) {
  auto const found = parseDayTemperatures(
      R"({"daily":{"time":["2026-11-15","2026-11-16","x",7,"2026-11-18"],
          "temperature_2m_max":[4,null,1,1,101],"temperature_2m_min":[2,1,1,1,1,1]}})");
  ASSERT_TRUE(found);
  ASSERT_EQ(found->size(), 1);
  EXPECT_EQ(found->front().mean, 3);
  for (std::string const body : {"", "[]", "{}", "<html>", R"({"reason":"no"})", R"({"daily":{}})"})
    EXPECT_FALSE(parseDayTemperatures(body)) << body;
  for (std::string const& body : test::damagedForms(answerOf("2026-11-15", 2, 3), 3))
    parseDayTemperatures(body);
}

TEST(ClimateService, AsksForTheYearsOnceForEver) {
  test::TemporaryFolder folder;
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-15T12:00:00Z")};
  ClimateService::Options const options{"https://archive", "", "https://forecast", "", folder.path()};
  std::string const years = answerOf("1991-01-01", 10958, 8);
  http.willAnswer(200, years);
  http.willAnswer(200, answerOf("2026-08-15", 94, 14));
  http.willAnswer(200, answerOf("2026-08-01", 90, 13));
  ClimateService service(http, clock, options);
  auto const reading = service.fetch({52.52, 13.41}, kNovember);
  ASSERT_TRUE(reading.isCurrent()) << reading.problem();
  EXPECT_EQ(
      http.requests[0].url,
      "https://archive/v1/archive?latitude=52.50&longitude=13.50&start_date=1991-01-01&end_date=2020-12-31"
      "&daily=temperature_2m_max,temperature_2m_min&timezone=auto&models=era5");
  EXPECT_EQ(reading.data.bias, 1);
  EXPECT_EQ(reading.data.anomaly(), 5);
  EXPECT_EQ(reading.data.word(), ClimateWord::unusuallyWarm);
  EXPECT_EQ(service.fetch({52.5, 13.5}, kNovember).data, reading.data) << "the same cell";
  EXPECT_EQ(http.requests.size(), 3);
  ClimateService later(http, clock, options);
  http.willAnswer(500, "");
  auto const alone = later.fetch({52.52, 13.41}, kNovember);
  EXPECT_TRUE(alone.isCurrent()) << "the years are kept";
  EXPECT_TRUE(alone.data.usual);
  EXPECT_FALSE(alone.data.anomaly()) << "without a forecast there is nothing to compare";
  EXPECT_EQ(http.requests.size(), 4);
}

TEST(ClimateService, NeverTakesAFailureForAClimate) {
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-15T12:00:00Z")};
  ClimateService service(http, clock, {"https://archive", "", "https://forecast", "", {}});
  http.willAnswer(429, R"({"reason":"Minutely API request limit exceeded."})");
  EXPECT_EQ(service.fetch({52.52, 13.41}, kNovember).state, FeedState::failed);
  EXPECT_EQ(service.fetch({52.52, 13.41}, kNovember).state, FeedState::failed);
  EXPECT_EQ(http.requests.size(), 1) << "it is left alone";
  EXPECT_FALSE(service.fetch({91, 0}, kNovember).isCurrent());
}

constexpr std::string_view kThreeDays = R"({"daily":{
  "time":["2026-12-01","2026-12-02","2026-12-03"],
  "weather_code":[71,null,3],
  "temperature_2m_max":[1.5,-2,null],
  "temperature_2m_min":[-4.25,-9,-1],
  "precipitation_sum":[3.2,null,0],
  "precipitation_probability_max":[80,null,5],
  "wind_speed_10m_max":[22,null,10]}})";

TEST(Outlook, KeepsDaysWhoseTemperaturesAreKnown) {
  auto const days = parseOutlook(kThreeDays);
  ASSERT_TRUE(days) << days.error().text();
  using namespace std::chrono;
  EXPECT_THAT(*days, ElementsAre(OutlookDay{year(2026) / 12 / 1, -4.25, 1.5, 71, 80, 3.2, 22},
                                 OutlookDay{year(2026) / 12 / 2, -9, -2, {}, {}, {}, {}}));
  for (std::string const& damaged : test::damagedForms(std::string(kThreeDays), 61)) parseOutlook(damaged);
}

struct OutlookRow {
  std::string_view name, body;
  int days;  ///< -1: refused
};

TEST(OutlookRows, AreRead) {
  for (OutlookRow const& row :
       {OutlookRow{"nothing", "", -1}, OutlookRow{"html", "<html>", -1}, OutlookRow{"noDays", "{}", -1},
        OutlookRow{"refused", R"({"error":true,"reason":"Daily API request limit exceeded."})", -1},
        OutlookRow{"empty", R"({"daily":{"time":[]}})", 0},
        OutlookRow{"shortColumn",
                   R"({"daily":{"time":["2026-12-01","2026-12-02"],"temperature_2m_max":[1,2],
                      "temperature_2m_min":[0]}})",
                   1},
        OutlookRow{"coldAboveWarm",
                   R"({"daily":{"time":["2026-12-01"],"temperature_2m_max":[1],"temperature_2m_min":[1.1]}})",
                   0},
        OutlookRow{"impossible",
                   R"({"daily":{"time":["2026-12-01"],"temperature_2m_max":[101],"temperature_2m_min":[1]}})",
                   0},
        OutlookRow{"backwards",
                   R"({"daily":{"time":["2026-12-02","2026-12-01","2026-12-02"],
                      "temperature_2m_max":[1,1,1],"temperature_2m_min":[0,0,0]}})",
                   1},
        OutlookRow{"noDate",
                   R"({"daily":{"time":["soon"],"temperature_2m_max":[1],"temperature_2m_min":[0]}})", 0}}) {
    SCOPED_TRACE(row.name);
    auto const days = parseOutlook(row.body);
    int const count = days ? static_cast<int>(days->size()) : -1;
    EXPECT_EQ(count, row.days);
  }
}

}  // namespace
}  // namespace nimbara
