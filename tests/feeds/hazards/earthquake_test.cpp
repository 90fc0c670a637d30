#include "feeds/quakes/earthquake_service.h"
#include "feeds/quakes/emsc.h"
#include "feeds/quakes/felt_intensity.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <map>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

std::string feature(std::string const& id, std::string const& properties,
                    std::string const& geometry = R"({"coordinates":[13.4,52.5,-0.3]})") {
  return R"({"type":"Feature","properties":{)" + properties + R"(},"geometry":)" + geometry + R"(,"id":")" +
         id + "\"}";
}

std::string collectionOf(std::vector<std::string> const& features) {
  std::string body = R"({"type":"FeatureCollection","features":[)";
  for (std::size_t i = 0; i < features.size(); ++i) body += (i > 0 ? "," : "") + features[i];
  return body + "]}";
}

std::string quakeAt(std::string const& id, Instant time) {
  return feature(id, R"("mag":1,"time":)" + std::to_string(time.time_since_epoch().count()));
}

TEST(Earthquakes, AreReadWhole) {
  auto const events = parseEarthquakes(collectionOf(
      {feature("nc1", R"("mag":-0.4,"place":"7 km N","time":1700000000000,"updated":1700000000500,"tz":null,
          "url":"https://a","detail":"https://b","alert":"green","sig":12,"type":"quarry blast")")}));
  ASSERT_TRUE(events && events->size() == 1);
  EXPECT_EQ(events->front(), (EarthquakeEvent{"nc1", -0.4, "7 km N", at("2023-11-14T22:13:20Z"),
                                              at("2023-11-14T22:13:20.500Z"), 52.5, 13.4, -0.3, "green", 12,
                                              "https://a", "https://b"}));
}

TEST(Earthquakes, AreLeftOutWhereAnEssentialIsMissing) {
  constexpr char kGood[] = R"("mag":1,"time":1700000000000)";
  struct Row {
    std::string properties, geometry;
    bool kept;
  };
  constexpr char kPoint[] = R"({"coordinates":[1,2,3]})";
  for (Row const& row :
       {Row{kGood, kPoint, true}, Row{R"("mag":null,"time":1700000000000)", kPoint, false},
        Row{R"("time":1700000000000)", kPoint, false}, Row{R"("mag":1,"time":null)", kPoint, false},
        Row{R"("mag":1,"time":1e300)", kPoint, false}, Row{kGood, "null", false},
        Row{kGood, R"({"coordinates":[1,2]})", false}, Row{kGood, R"({"coordinates":[1,2,null]})", false},
        Row{kGood, R"({"coordinates":[null,2,3,4]})", false},
        Row{kGood, R"({"coordinates":[1,2,3,null]})", true}, Row{kGood, "{}", false}}) {
    auto const events =
        parseEarthquakes(collectionOf({feature("a", row.properties, row.geometry), feature("b", kGood)}));
    ASSERT_TRUE(events) << row.properties << row.geometry;
    EXPECT_EQ(events->size(), row.kept ? 2 : 1) << row.properties << row.geometry;
  }
}

TEST(Earthquakes, KeepWhatMayBeMissing) {
  auto const events = parseEarthquakes(collectionOf({feature(
      "a", R"("mag":0,"time":1,"place":null,"updated":null,"alert":null,"sig":null,"url":"","detail":"")")}));
  ASSERT_TRUE(events && events->size() == 1);
  EXPECT_EQ(events->front().place, "Unknown location");
  EXPECT_FALSE(events->front().updated || events->front().alert || events->front().significance ||
               events->front().url || events->front().detailURL);
}

TEST(Earthquakes, AreRefusedInOtherDocuments) {
  for (std::string const& body :
       {std::string("{}"), std::string("[]"), std::string(R"({"features":7})"), collectionOf({"7"}),
        collectionOf({R"({"properties":{}})"}), collectionOf({R"({"id":"a"})"}),
        collectionOf({feature("a", R"("mag":"5","time":1)")})})
    EXPECT_FALSE(parseEarthquakes(body)) << body;
  for (std::string const& body : test::damagedForms(collectionOf({feature("a", R"("mag":1,"time":1)")}), 3))
    std::ignore = parseEarthquakes(body);
}

TEST(Earthquakes, AreRecentForADayAndNewestFirst) {
  Instant const now = at("2026-11-21T09:20:00Z");
  auto const event = [](std::string id, Instant time) {
    EarthquakeEvent made;
    made.id = std::move(id);
    made.time = time;
    return made;
  };
  auto const recent = recentEarthquakes({event("day", now - 86'400s), event("past", now - 86'400'001ms),
                                         event("new", now), event("older", now - 1h)},
                                        now);
  ASSERT_EQ(recent.size(), 3);
  EXPECT_EQ(recent[0].id + recent[1].id + recent[2].id, "newolderday");
}

TEST(Earthquakes, ReadRecordedCollectionsWhole) {
  auto const files = test::sampleFiles("usgs");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  std::map<std::string, std::size_t> const expected{
      {"all-day-2013-07-20.geojson", 159},          {"all-day-negative-magnitudes-2016-11-03.geojson", 151},
      {"all-hour-one-event-2013-07-20.geojson", 1}, {"m1.0-day-2022-04-04.geojson", 160},
      {"m2.5-day-2021-10-15.geojson", 31},          {"significant-month-2021-10-17.geojson", 16}};
  for (auto const& file : *files) {
    std::string const name = file.filename().string();
    std::string const body = test::readFile(file);
    std::size_t listed = 0;
    for (auto at = body.find("\"mag\""); at != std::string::npos; at = body.find("\"mag\"", at + 1)) ++listed;
    auto const events = parseEarthquakes(body);
    ASSERT_TRUE(events) << name;
    EXPECT_EQ(events->size(), listed) << name;
    EXPECT_EQ(listed, expected.at(name)) << name;
  }
}

class EarthquakeServiceTest : public testing::Test {
 protected:
  EarthquakeService service(bool isStandIn = false) {
    return EarthquakeService(relay_, clock_, {folder_.path() / "Earthquakes", isStandIn});
  }

  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  test::TemporaryFolder folder_;
  RelayFeedSource relay_{http_, clock_, "https://feeds.example"};
};

TEST_F(EarthquakeServiceTest, AsksTheFeedServerEveryFiveMinutes) {
  EarthquakeService quakes = service();
  std::string const body = collectionOf({quakeAt("a", clock_.now())});
  for (int i = 0; i < 2; ++i) http_.willAnswer(200, body);
  EXPECT_EQ(quakes.fetchEarthquakes().data.size(), 1);
  EXPECT_EQ(http_.requests[0].url, "https://feeds.example/api/feed.php?f=quakes");
  EXPECT_EQ(http_.requests[0].timeout, 25s);
  clock_.advance(299'999ms);
  quakes.fetchEarthquakes();
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(1ms);
  quakes.fetchEarthquakes();
  EXPECT_EQ(http_.requests.size(), 2);
}

TEST_F(EarthquakeServiceTest, AsksAgainAtOnceWhenTheListIsEmpty) {
  EarthquakeService quakes = service();
  http_.willAnswer(200, collectionOf({}));
  http_.willAnswer(200, collectionOf({}));
  quakes.fetchEarthquakes();
  quakes.fetchEarthquakes();
  EXPECT_EQ(http_.requests.size(), 2);
}

TEST_F(EarthquakeServiceTest, KeepsItsListThroughFailures) {
  struct Row {
    int status;
    std::string body;
  };
  for (Row const& row : {Row{500, collectionOf({})}, Row{304, ""}, Row{200, "<html>"}, Row{200, "{"}}) {
    EarthquakeService quakes = service();
    http_.willAnswer(299, collectionOf({quakeAt("a", clock_.now())}));
    auto const fresh = quakes.fetchEarthquakes();
    EXPECT_EQ(fresh.data.size(), 1);
    EXPECT_TRUE(fresh.isCurrent());
    Instant const checked = clock_.now();
    clock_.advance(300s);
    http_.willAnswer(row.status, row.body);
    auto const stale = quakes.fetchEarthquakes();
    EXPECT_EQ(stale.data, fresh.data);
    EXPECT_TRUE(stale.failure);
    EXPECT_EQ(stale.checkedAt, checked);
    EXPECT_EQ(stale.failedSince, clock_.now());
  }
}

TEST_F(EarthquakeServiceTest, RemembersOverARestartWhatIsLessThanADayOld) {
  Instant const now = clock_.now();
  http_.willAnswer(200, collectionOf({quakeAt("old", now - 1h), quakeAt("new", now)}));
  EXPECT_EQ(service().fetchEarthquakes().data.size(), 2);
  clock_.advance(23h + 1s);
  EarthquakeService restarted = service();
  auto const events = restarted.fetchEarthquakes().data;
  ASSERT_EQ(events.size(), 1);
  EXPECT_EQ(events[0].id, "new");
  EXPECT_EQ(http_.requests.size(), 2) << "what the disk holds is shown, but never taken for fresh";
}

TEST_F(EarthquakeServiceTest, LivesWithAnyFileOnDisk) {
  for (char const* const content : {"", "{}", "[{}]", "[", "\xff"}) {
    std::filesystem::create_directories(folder_.path() / "Earthquakes");
    folder_.write("Earthquakes/earthquakes.json", content);
    EXPECT_TRUE(service().fetchEarthquakes().data.empty()) << content;
  }
  std::filesystem::remove_all(folder_.path() / "Earthquakes");
  folder_.write("Earthquakes", "a file where the folder should be");
  http_.willAnswer(200, collectionOf({quakeAt("a", clock_.now())}));
  EXPECT_EQ(service().fetchEarthquakes().data.size(), 1);
}

TEST_F(EarthquakeServiceTest, NeverTakesAStandInsListForItsOwn) {
  http_.willAnswer(200, collectionOf({quakeAt("generated", clock_.now())}));
  EXPECT_EQ(service(true).fetchEarthquakes().data.size(), 1);
  EXPECT_EQ(service(true).fetchEarthquakes().data.size(), 1) << "the stand-in itself may";
  EXPECT_TRUE(service().fetchEarthquakes().data.empty());
  http_.willAnswer(200, collectionOf({quakeAt("real", clock_.now())}));
  EXPECT_EQ(service().fetchEarthquakes().data.size(), 1);
  EXPECT_EQ(service().fetchEarthquakes().data.size(), 1);
}

EarthquakeEvent quake(double magnitude, Coordinate place, int seconds = 0) {
  EarthquakeEvent event;
  event.id = "a";
  event.magnitude = magnitude;
  event.time = at("2026-10-03T02:00:00Z") + std::chrono::seconds(seconds);
  event.latitude = place.latitude;
  event.longitude = place.longitude;
  return event;
}

TEST(Emsc, ReadsTheRecordedList) {
  auto const files = test::sampleFiles("emsc");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  std::string const body = test::readFile(files->front());
  auto const events = parseEmscEarthquakes(body);
  ASSERT_TRUE(events) << events.error().text();
  ASSERT_EQ(events->size(), 11);
  EXPECT_EQ(events->front().place, "Pyrenees");
  EXPECT_EQ(events->front().time, at("2026-10-03T02:02:32.710Z"));
  EXPECT_EQ((*events)[1].depthKm, 7.1) << "downward, unlike the third coordinate";
  for (std::string const& damaged : test::damagedForms(body, 61)) parseEmscEarthquakes(damaged);
}

TEST(Emsc, TellsNoneFromNoList) {
  EXPECT_TRUE(parseEmscEarthquakes("")->empty()) << "status 204";
  EXPECT_TRUE(parseEmscEarthquakes(R"({"features":[]})")->empty());
  for (std::string const body : {"<html>", "[]", "{}", R"({"features":1})"})
    EXPECT_FALSE(parseEmscEarthquakes(body)) << body;
  EXPECT_TRUE(
      parseEmscEarthquakes(R"({"features":[{"properties":{"mag":3}},{"properties":null}]})")->empty());
}

struct SameRow {
  double magnitude, latitude;
  int seconds;
  bool same;
};

TEST(Emsc, CountsOneEarthquakeOnce) {
  // 0.899° of latitude are 99.96 km.
  for (SameRow const& row :
       {SameRow{4.5, 0.899, 90, true}, SameRow{4.51, 0, 0, false}, SameRow{4, 0.9, 0, false},
        SameRow{4, 0, 91, false}, SameRow{3.5, 0, -90, true}}) {
    EarthquakeEvent other = quake(row.magnitude, {row.latitude, 0}, row.seconds);
    other.emscMagnitude = row.magnitude;
    auto const merged = mergedEarthquakes({quake(4, {0, 0})}, {other});
    ASSERT_EQ(merged.size(), row.same ? 1 : 2) << row.magnitude << " " << row.latitude << " " << row.seconds;
    if (row.same) EXPECT_EQ(merged.front().emscMagnitude, row.magnitude);
  }
}

TEST(FeltIntensity, FallsWithDistance) {
  EXPECT_NEAR(feltIntensity(6, 0, 10), 2.085 + 8.568 - 1.402 * std::log(std::hypot(10, 5.3417)), 0.001);
  EXPECT_NEAR(feltDistanceKm(5, 10), 86.5, 1);
  EXPECT_EQ(feltDistanceKm(1, 10), 0);
  EXPECT_EQ(feltDistanceKm(5, 130), 0) << "too deep";
}

}  // namespace
}  // namespace nimbara
