#include "feeds/space/geomagnetic_latitude.h"
#include "feeds/space/geomagnetic_service.h"
#include "feeds/space/kp_forecast_service.h"
#include "feeds/space/kp_scale.h"
#include "feeds/space/planetary_k_index.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

std::string rows(std::string const& later) {
  return R"([["time_tag","Kp","a_running","station_count"])" + later + "]";
}

TEST(KIndex, IsTheNewestOfEitherForm) {
  struct Row {
    std::string body;
    std::optional<double> kp;
  };
  for (Row const& row : {
           // Rows of texts behind a header.
           Row{rows(R"(,["a","2.67","12","8"],["b","3.33","18","8"])"), 3.33},
           Row{rows(R"(,["a","2.67","12","8"],["b","","18","8"])"), 2.67},
           Row{rows(R"(,["a","2.67"],["b"],[])"), 2.67},
           Row{rows(R"(,["a"," 4.33 \n"])"), 4.33},
           Row{rows(R"(,["a","1.00"],["b","4.33x"])"), 1},
           Row{rows(R"(,["a","0.00"])"), 0},
           Row{rows(""), std::nullopt},
           Row{R"([["a","5"]])", std::nullopt},
           Row{rows(R"(,["a","1.00"],["b",null])"), std::nullopt},
           Row{rows(R"(,["a","1.00"],["b",2])"), std::nullopt},
           Row{rows(R"(,["a","1.00"],7)"), std::nullopt},
           // Objects without a header.
           Row{R"([{"time_tag":"a","Kp":2.67},{"time_tag":"b","Kp":3}])", 3},
           Row{R"([{"Kp":2.67},{"Kp":null},{"Kp":true},{"a":1},{"Kp":"x"},{"Kp":""}])", 2.67},
           Row{R"([{"Kp":0}])", 0},
           Row{R"([{"Kp":" 4.33 "}])", 4.33},
           Row{R"([{"kp":1.5}])", 1.5},
           Row{R"([{"Kp":2,"kp":1.5}])", 2},
           Row{R"([{"Kp":null}])", std::nullopt},
           // Neither.
           Row{R"([{"Kp":1},["a","2"]])", std::nullopt},
           Row{R"([["h","h"],{"Kp":1}])", std::nullopt},
           Row{"[]", std::nullopt},
           Row{R"({"Kp":1})", std::nullopt},
           Row{R"([{"Kp":1}]{"Kp":2}])", std::nullopt},
           Row{R"([{"Kp":1},)", std::nullopt},
           Row{"", std::nullopt},
           Row{"<html>", std::nullopt},
       })
    EXPECT_EQ(newestKp(row.body), row.kp) << row.body;
}

TEST(KIndex, SurvivesDamage) {
  for (std::string const& body : test::damagedForms(rows(R"(,["a","2.67","12","8"])"), 1)) newestKp(body);
}

/// "00:00 2 observed, 03:00 3 predicted".
std::string told(Result<std::vector<KpReading>, DecodeError> const& readings) {
  if (!readings) return "error";
  std::string text;
  for (KpReading const& reading : *readings)
    text += (text.empty() ? "" : ", ") + formatIso8601(reading.begin).substr(11, 5) + " " +
            std::to_string(static_cast<int>(reading.kp)) + " " + std::string(enumName(reading.kind));
  return text;
}

TEST(KpReadings, AreReadOfEitherFormOfBothProducts) {
  struct Row {
    std::string body, expected;
  };
  for (Row const& row : {
           Row{rows(R"(,["2026-02-03 00:00:00","2","12","8"],["2026-02-03 03:00:00","3","9","8"])"),
               "00:00 2 observed, 03:00 3 observed"},
           Row{R"([{"time_tag":"2026-05-03T03:00:00","Kp":3},{"time_tag":"2026-05-03T00:00:00","Kp":2}])",
               "00:00 2 observed, 03:00 3 observed"},
           Row{R"([["time_tag","kp","observed","noaa_scale"],["2026-02-02 00:00:00","2.0","observed",null],
                   ["2026-02-02 03:00:00","5","estimated","G1"],["2026-02-02 06:00:00","1","predicted",null]])",
               "00:00 2 observed, 03:00 5 estimated, 06:00 1 predicted"},
           Row{R"([{"time_tag":"2026-05-04T06:00:00","kp":4,"observed":"predicted","noaa_scale":null}])",
               "06:00 4 predicted"},
           Row{R"([{"time_tag":"2026-05-04T06:00:00","kp":0,"observed":"new word"}])", "06:00 0 observed"},
           // A time counts once; values off the scale, null and times that are none are left out.
           Row{R"([{"time_tag":"2026-05-04T06:00:00","kp":4},{"time_tag":"2026-05-04T06:00:00","kp":5},
                   {"time_tag":"2026-05-04T09:00:00","kp":9},{"time_tag":"2026-05-04T12:00:00","kp":9.01},
                   {"time_tag":"2026-05-04T15:00:00","kp":-0.1},{"time_tag":"2026-05-04T18:00:00","kp":null},
                   {"time_tag":"noon","kp":1},{"kp":1},7,[],["2026-05-04 21:00:00"]])",
               "06:00 4 observed, 09:00 9 observed"},
           Row{"[]", "error"},
           Row{R"({"time_tag":"2026-05-04T06:00:00","kp":4})", "error"},
           Row{R"([{"time_tag":"2026-05-04T06:00:00","kp":4})", "error"},
           Row{"<html>", "error"},
       })
    EXPECT_EQ(told(kpReadings(row.body)), row.expected) << row.body;
  for (std::string const& body : test::damagedForms(R"([{"time_tag":"2026-05-04T06:00:00","kp":4}])", 1))
    std::ignore = kpReadings(body);
}

TEST(KpReadings, ReadRecordedProducts) {
  auto const files = test::sampleFiles("swpc");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  for (auto const& file : *files) {
    std::string const body = test::readFile(file);
    auto const readings = kpReadings(body);
    ASSERT_TRUE(readings) << file;
    EXPECT_GE(readings->size(), 50) << file;
    bool const isForecast = file.filename().string().contains("forecast");
    auto const kp = newestKp(body);
    EXPECT_EQ(kp.has_value(), !isForecast) << file << " has nulls inside its rows of texts";
    EXPECT_TRUE(!kp || (*kp >= 0 && *kp <= 9)) << *kp;
    EXPECT_EQ(readings->back().kind, isForecast ? KpKind::predicted : KpKind::observed) << file;
  }
}

TEST(KpForecastService, TellsWhatIsPredictedAndKeepsItThroughFailures) {
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T09:20:00Z")};
  KpForecastService service(http, clock, "https://swpc.example");
  EXPECT_EQ(service.fetchForecast().state, FeedState::failed);
  http.willAnswer(200, R"([{"time_tag":"2026-11-21T06:00:00","kp":1,"observed":"observed"},
                           {"time_tag":"2026-11-21T09:00:00","kp":2,"observed":"predicted"}])");
  auto const first = service.fetchForecast();
  EXPECT_TRUE(first.isCurrent());
  EXPECT_EQ(told(first.data), "09:00 2 predicted");
  EXPECT_EQ(http.requests[1].url, "https://swpc.example/products/noaa-planetary-k-index-forecast.json");
  clock.advance(1h - 1ms);
  service.fetchForecast();
  EXPECT_EQ(http.requests.size(), 2);
  clock.advance(1ms);
  http.willAnswer(200, "[]");
  auto const failed = service.fetchForecast();
  EXPECT_FALSE(failed.isCurrent());
  EXPECT_EQ(told(failed.data), "09:00 2 predicted");
  EXPECT_EQ(failed.checkedAt, at("2026-11-21T09:20:00Z"));
}

class GeomagneticServiceTest : public testing::Test {
 protected:
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  GeomagneticService service_{http_, clock_, "https://swpc.example"};
};

TEST_F(GeomagneticServiceTest, AsksEveryHalfHour) {
  http_.willAnswer(200, R"([{"Kp":2}])");
  http_.willAnswer(200, R"([{"time_tag":"2026-11-21T06:00:00","Kp":3}])");
  EXPECT_EQ(service_.currentKp().data.now, 2);
  EXPECT_EQ(http_.requests[0].url, "https://swpc.example/products/noaa-planetary-k-index.json");
  EXPECT_EQ(http_.requests[0].timeout, 12s);
  clock_.advance(1'799'999ms);
  EXPECT_EQ(service_.currentKp().data.now, 2);
  clock_.advance(1ms);
  auto const second = service_.currentKp();
  EXPECT_EQ(second.data.now, 3);
  EXPECT_EQ(told(second.data.recent), "06:00 3 observed");
  clock_.advance(30min);
  http_.willAnswer(200, rows(""));
  auto const stale = service_.currentKp();
  EXPECT_EQ(stale.data.now, 3);
  EXPECT_TRUE(stale.failure) << "a table without a value";
  EXPECT_EQ(stale.checkedAt, at("2026-11-21T09:50:00Z"));
}

constexpr Coordinate kTromso{69.65, 18.96};
constexpr Coordinate kEdinburgh{55.95, -3.19};
constexpr Coordinate kBerlin{52.52, 13.41};
constexpr Coordinate kMinneapolis{44.98, -93.27};
constexpr Coordinate kHobart{-42.88, 147.33};
constexpr Coordinate kSingapore{1.35, 103.8};

TEST(GeomagneticLatitude, IsNotThatOfTheGlobe) {
  struct Row {
    Coordinate place;
    double degrees;  ///< corrected geomagnetic, as tables of 2020 have it
  };
  for (Row const& row : {Row{kTromso, 66.6}, Row{kEdinburgh, 53}, Row{kBerlin, 48.3}, Row{kMinneapolis, 54.6},
                         Row{kHobart, 53.9}, Row{{64.15, -21.94}, 64.2}, Row{{-45.87, 170.5}, 53.2}})
    EXPECT_NEAR(geomagneticLatitude(row.place), row.degrees, 2) << row.place.latitude;
}

TEST(GeomagneticLatitude, IsKnownEverywhere) {
  for (Coordinate const place : {Coordinate{90, 0}, Coordinate{-90, 0}, Coordinate{83, -85},
                                 Coordinate{0, 180}, Coordinate{0, -180}, Coordinate{-12, -77}}) {
    double const degrees = geomagneticLatitude(place);
    EXPECT_GE(degrees, 0) << place.latitude;
    EXPECT_LE(degrees, 90) << place.latitude;
  }
  EXPECT_GT(geomagneticLatitude({83, -85}), 80) << "near the pole";
  EXPECT_LT(geomagneticLatitude(kSingapore), 15);
}

TEST(AuroraSight, ComesNearerWithTheIndex) {
  using enum AuroraSight;
  struct Row {
    Coordinate place;
    double kp;
    AuroraSight sight;
  };
  for (Row const& row :
       {Row{kBerlin, 1.67, none}, Row{kBerlin, 6, none}, Row{kBerlin, 7, low}, Row{kBerlin, 9, low},
        Row{kEdinburgh, 4, none}, Row{kEdinburgh, 5, low}, Row{kEdinburgh, 8, high}, Row{kTromso, 0, high},
        Row{kMinneapolis, 2, none}, Row{kMinneapolis, 5, low}, Row{kHobart, 2, none}, Row{kHobart, 5, low},
        Row{kSingapore, 9, none}, Row{kTromso, -1, high}, Row{kBerlin, 12, low}})
    EXPECT_EQ(auroraSight(row.place, row.kp), row.sight) << row.place.latitude << " " << row.kp;
}

TEST(KpLevel, CountsTheStorms) {
  struct Row {
    double kp;
    int level;
  };
  for (Row const& row : {Row{0, 0}, Row{2.49, 0}, Row{2.5, 1}, Row{3.67, 2}, Row{4.49, 2}, Row{4.67, 3},
                         Row{5.33, 3}, Row{6, 4}, Row{7, 5}, Row{8, 6}, Row{8.99, 6}, Row{9, 7}})
    EXPECT_EQ(kpLevel(row.kp), row.level) << row.kp;
}

}  // namespace
}  // namespace nimbara
