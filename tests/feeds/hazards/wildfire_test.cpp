#include "feeds/fires/wildfire_service.h"
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

constexpr char kHeader[] =
    "latitude,longitude,bright_ti4,scan,track,acq_date,acq_time,satellite,instrument,confidence,version,"
    "bright_ti5,frp,daynight\n";

std::string row(std::string const& place, std::string const& time = "730",
                std::string const& confidence = "n", std::string const& date = "2026-11-21",
                std::string const& frp = "5.5") {
  return place + ",330,0.4,0.4," + date + "," + time + ",N20,VIIRS," + confidence + ",2.0NRT,290," + frp +
         ",D\n";
}

struct SpotRow {
  std::string line;
  std::string time;  ///< empty: no hot spot
};

TEST(HotSpots, AreReadByTheirColumns) {
  for (SpotRow const& test : {
           SpotRow{row("38.5,-122.5"), "2026-11-21T07:30:00Z"},
           {row("38.5,-122.5", "0730"), "2026-11-21T07:30:00Z"},
           {row("38.5,-122.5", "5"), "2026-11-21T00:05:00Z"},
           {row("38.5,-122.5", "0"), "2026-11-21T00:00:00Z"},
           {row("38.5,-122.5", "2359"), "2026-11-21T23:59:00Z"},
           {row("38.5,-122.5", "2400"), ""},
           {row("38.5,-122.5", "60"), ""},
           {row("38.5,-122.5", "-5"), ""},
           {row("38.5,-122.5", "00730"), ""},
           {row("38.5,-122.5", ""), ""},
           {row("38.5,-122.5", "730", "h"), "2026-11-21T07:30:00Z"},
           {row("38.5,-122.5", "730", "Nominal"), "2026-11-21T07:30:00Z"},
           {row("38.5,-122.5", "730", "30"), "2026-11-21T07:30:00Z"},
           {row("38.5,-122.5", "730", "x"), ""},
           {row("38.5,-122.5", "730", "n", "2026-13-21"), ""},
           {row("91,-122.5"), ""},
           {row("38.5,180.5"), ""},
           {row("nan,-122.5"), ""},
           {row("38.5,-122.5", "730", "n", "2026-11-21", ""), "2026-11-21T07:30:00Z"},
           {"38.5,-122.5\n", ""},
       }) {
    auto const spots = parseHotSpots(kHeader + test.line + row("1,2"));
    ASSERT_TRUE(spots) << test.line;
    ASSERT_EQ(spots->size(), test.time.empty() ? 1 : 2) << test.line;
    if (test.time.empty()) continue;
    EXPECT_EQ(formatIso8601(spots->front().time), test.time) << test.line;
  }
}

TEST(HotSpots, OfLowConfidenceAreLeftOut) {
  for (std::string const confidence : {"l", "L", "low", "29", "0"}) {
    auto const spots = parseHotSpots(kHeader + row("1,2", "730", confidence));
    ASSERT_TRUE(spots) << confidence;
    EXPECT_TRUE(spots->empty()) << confidence;
  }
  EXPECT_EQ(parseHotSpots(kHeader + row("1,2", "730", "79"))->front().confidence, FireConfidence::nominal);
  EXPECT_EQ(parseHotSpots(kHeader + row("1,2", "730", "80"))->front().confidence, FireConfidence::high);
}

TEST(HotSpots, NoneAreNotTheSameAsATextThatIsNoTable) {
  auto const none = parseHotSpots(kHeader);
  EXPECT_TRUE(none && none->empty());
  EXPECT_TRUE(
      parseHotSpots("confidence,acq_time,acq_date,longitude,latitude\r\n\r\nn,730,2026-11-21,2,1\r\n"))
      << "any order of columns, without the power";
  for (std::string const& body :
       {std::string("Invalid MAP_KEY."), std::string(), std::string("<html>"),
        std::string("latitude,longitude\n1,2"), std::string("Exceeding allowed transaction limit"),
        kHeader + std::string("x\ny\n") + row("1,2")})
    EXPECT_FALSE(parseHotSpots(body)) << body;
  EXPECT_TRUE(parseHotSpots(kHeader + std::string("x\n") + row("1,2"))) << "as many good rows as bad ones";
  EXPECT_NE(parseHotSpots("Invalid MAP_KEY.").error().text().find("Invalid MAP_KEY."), std::string::npos);
  for (std::string const& body : test::damagedForms(kHeader + row("1,2"), 3)) parseHotSpots(body);
}

TEST(HotSpots, ReadARecordedTable) {
  auto const files = test::sampleFiles("firms");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  std::string const body = test::readFile(files->front());
  auto const spots = parseHotSpots(body);
  ASSERT_TRUE(spots) << spots.error().text();
  EXPECT_EQ(std::ranges::count(body, '\n') - 1, 3125);
  EXPECT_GT(spots->size(), 2500);
  EXPECT_LT(spots->size(), 3125) << "some are of low confidence";
  auto const fires = firesNear(*spots, {-14, 134}, 500, at("2022-04-04T00:00:00Z"));
  EXPECT_GT(fires.size(), 10);
  for (std::size_t i = 1; i < fires.size(); ++i)
    EXPECT_LE(haversineKm({-14, 134}, fires[i - 1].coordinate), haversineKm({-14, 134}, fires[i].coordinate));
}

HotSpot spot(double latitude, double longitude, double frp = 1, Instant time = at("2026-11-21T09:00:00Z")) {
  return {{latitude, longitude}, time, frp, FireConfidence::nominal};
}

constexpr double kDegreesInAKm = 1 / 111.195;

TEST(Fires, AreHotSpotsThatAreNearEachOther) {
  Instant const now = at("2026-11-21T09:20:00Z");
  struct Row {
    double km;  ///< between two neighbours of three
    std::size_t fires;
  };
  for (Row const& test : {Row{0, 1}, Row{1.99, 1}, Row{2.01, 3}}) {
    double const step = test.km * kDegreesInAKm;
    auto const fires = firesNear({spot(2 * step, 10), spot(0, 10), spot(step, 10)}, {0, 10}, 50, now);
    EXPECT_EQ(fires.size(), test.fires) << test.km;
  }
  auto const across =
      firesNear({spot(0, 179.995, 3, now - 2h), spot(0, -179.995, 7, now - 1h)}, {0, 180}, 50, now);
  ASSERT_EQ(across.size(), 1);
  EXPECT_EQ(across[0].hotSpots, 2);
  EXPECT_EQ(across[0].frp, 7);
  EXPECT_EQ(across[0].detectedAt, now - 1h);
  EXPECT_NEAR(std::abs(across[0].coordinate.longitude), 180, 1e-9);
}

TEST(Fires, AreOfTheLastDayAndWithinTheRadius) {
  Instant const now = at("2026-11-21T09:20:00Z");
  EXPECT_EQ(firesNear({spot(0, 0, 1, now - 24h)}, {0, 0}, 50, now).size(), 1);
  EXPECT_EQ(firesNear({spot(0, 0, 1, now - 24h - 1ms)}, {0, 0}, 50, now).size(), 0);
  EXPECT_EQ(firesNear({spot(0, 0, 1, now + 61min)}, {0, 0}, 50, now).size(), 0);
  EXPECT_EQ(firesNear({spot(49.9 * kDegreesInAKm, 0)}, {0, 0}, 50, now).size(), 1);
  EXPECT_EQ(firesNear({spot(50.1 * kDegreesInAKm, 0)}, {0, 0}, 50, now).size(), 0);
}

TEST(Fires, KeepTheirIdentifierFromPassToPass) {
  Instant const now = at("2026-11-21T09:20:00Z");
  auto const before = firesNear({spot(38.51, -122.62)}, {38.5, -122.6}, 50, now);
  auto later = firesNear({spot(38.51, -122.62, 9, now + 12h), spot(38.505, -122.61, 9, now + 12h)},
                         {38.5, -122.6}, 50, now + 12h);
  ASSERT_EQ(before.size() + later.size(), 2);
  EXPECT_EQ(before[0].id, "fire:38.50,-122.60");
  EXPECT_EQ(later[0].id, before[0].id) << "without a time in it";
  auto moved = firesNear({spot(38.51 + 4.9 * kDegreesInAKm, -122.62)}, {38.5, -122.6}, 50, now);
  EXPECT_NE(moved[0].id, before[0].id);
  keepFireIds(moved, before);
  EXPECT_EQ(moved[0].id, before[0].id);
  auto other = firesNear({spot(38.51 + 5.1 * kDegreesInAKm, -122.62)}, {38.5, -122.6}, 50, now);
  keepFireIds(other, before);
  EXPECT_NE(other[0].id, before[0].id);
}

TEST(Fires, AreAskedForInBoxes) {
  struct Row {
    Coordinate place;
    double radiusKm;
    std::vector<std::string> areas;
  };
  for (Row const& test : {
           Row{{0, 0}, 111.19, {"-1.1,-1.0,1.1,1.0"}},
           {{60, 10}, 111.19, {"7.9,59.0,12.1,61.0"}},
           {{0, 179.5}, 111.19, {"178.4,-1.0,180.0,1.0", "-180.0,-1.0,-179.4,1.0"}},
           {{0, -179.5}, 111.19, {"-180.0,-1.0,-178.4,1.0", "179.4,-1.0,180.0,1.0"}},
           {{89.5, 0}, 50, {"-180.0,89.0,180.0,90.0"}},
           {{-90, 0}, 500, {"-180.0,-90.0,180.0,-85.5"}},
       })
    EXPECT_EQ(fireAreas(test.place, test.radiusKm), test.areas) << formatCoordinate(test.place);
}

class WildfireServiceTest : public testing::Test {
 protected:
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  WildfireService service_{http_, clock_, {"https://firms.example", "0123456789abcdef0123456789abcdef"}};
};

TEST_F(WildfireServiceTest, AsksForAnAreaEveryQuarterOfAnHour) {
  http_.willAnswer(200, kHeader + row("38.5,-122.5"));
  http_.willAnswer(200, kHeader);
  auto const fires = service_.fetchFires({38.5, -122.6}, 50);
  EXPECT_TRUE(fires.isCurrent());
  EXPECT_EQ(fires.data.size(), 1);
  EXPECT_EQ(http_.requests[0].url,
            "https://firms.example/api/area/csv/0123456789abcdef0123456789abcdef/VIIRS_NOAA20_NRT/"
            "-123.2,38.0,-122.0,39.0/2");
  clock_.advance(899'999ms);
  EXPECT_EQ(service_.fetchFires({38.5, -122.6}, 50).data.size(), 1);
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(1ms);
  EXPECT_TRUE(service_.fetchFires({38.5, -122.6}, 50).data.empty());
}

TEST_F(WildfireServiceTest, HasNoSourceWithoutAKey) {
  WildfireService service(http_, clock_, {"https://firms.example", " "});
  EXPECT_EQ(service.fetchFires({38.5, -122.6}, 50).state, FeedState::notConfigured);
  EXPECT_TRUE(http_.requests.empty());
}

TEST_F(WildfireServiceTest, NeverTellsTheKey) {
  std::string const key = "0123456789abcdef0123456789abcdef";
  auto const problemOf = [&] {
    auto const reading = service_.fetchFires({38.5, -122.6}, 50);
    EXPECT_EQ(reading.state, FeedState::failed);
    EXPECT_FALSE(reading.problem().empty());
    clock_.advance(1h);
    return reading.problem();
  };
  for (std::string const& text : {"Invalid MAP_KEY " + key, std::string(60, 'x') + " " + key + " " + key}) {
    http_.willAnswer(200, text);
    EXPECT_EQ(problemOf().find(key.substr(0, 8)), std::string::npos) << text;
  }
  http_.willFail({HttpError::Kind::protocol, "cannot get /api/area/csv/" + key + "/"});
  EXPECT_EQ(problemOf().find(key.substr(0, 8)), std::string::npos);
  http_.willAnswer(400, "Invalid MAP_KEY.");
  problemOf();
}

TEST_F(WildfireServiceTest, IsOnlyAsGoodAsBothSidesOf180Degrees) {
  http_.willAnswer(200, kHeader + row("0,179.9"));
  http_.willAnswer(503, "");
  auto const reading = service_.fetchFires({0, 179.9}, 50);
  EXPECT_EQ(http_.requests.size(), 2);
  EXPECT_EQ(reading.state, FeedState::failed);
  EXPECT_EQ(reading.data.size(), 1) << "what is known is told all the same";
  EXPECT_FALSE(reading.checkedAt);
  EXPECT_EQ(reading.failedSince, clock_.now());
}

TEST_F(WildfireServiceTest, LooksNoFartherThanTheLargestRadius) {
  http_.willAnswer(200, kHeader);
  service_.fetchFires({0, 0}, 1e9);
  EXPECT_NE(http_.requests[0].url.find("/-4.6,-4.5,4.6,4.5/"), std::string::npos) << http_.requests[0].url;
  for (double const radius : {0.0, -1.0, std::nan("")})
    EXPECT_EQ(service_.fetchFires({0, 0}, radius).state, FeedState::failed) << radius;
  EXPECT_EQ(http_.requests.size(), 1);
}

}  // namespace
}  // namespace nimbara
