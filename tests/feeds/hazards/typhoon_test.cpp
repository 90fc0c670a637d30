#include "feeds/storms/gdacs.h"
#include "feeds/storms/jtwc.h"
#include "feeds/storms/storm_merge.h"
#include "feeds/storms/typhoon_service.h"
#include "feeds/storms/world_storms.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace nimbara {
namespace {

using test::at;

constexpr char kWarning[] =
    "WTPN51 PGTW 251500\n"
    "2026092512 25W SAO JOSE    010  01 305 12 SATL 060\n"
    "T000 214N 1282E 050 R034 060 NE QD 035 SE QD\n"
    "T012 225S 1272W 060 R050 015 NE QD R034 010 NE QD 070 SW QD\n"
    "AMP\nSUBJ: T024 words\n//\n2526092506 207N1293E  45\n2526092512 214N1282E\nNNNN\n";

TEST(Jtwc, ReadsAWarningInColumns) {
  auto const storm = parseJtwcWarning(kWarning, "wp2526");
  ASSERT_TRUE(storm) << storm.error().text();
  EXPECT_EQ(storm->id, "wp252026");
  EXPECT_EQ(storm->name, "Sao Jose");
  EXPECT_EQ(storm->basin, TropicalBasin::westernPacific);
  EXPECT_EQ(storm->classification, "TS");
  EXPECT_EQ(storm->lastUpdate, at("2026-09-25T12:00:00Z"));
  EXPECT_NEAR(storm->windMs, 25.722, 0.001);
  EXPECT_EQ(storm->movementDirection, 305);
  EXPECT_NEAR(storm->movementMs.value_or(0), 6.173, 0.001);
  EXPECT_NEAR(storm->galeRadiusKm.value_or(0), 111.12, 0.001);
  ASSERT_EQ(storm->track.size(), 2);
  EXPECT_NEAR(storm->track[1].coordinate.latitude, -22.5, 1e-9);
  EXPECT_NEAR(storm->track[1].coordinate.longitude, -127.2, 1e-9);
  EXPECT_NEAR(storm->track[1].galeRadiusKm.value_or(0), 70 * 1.852, 0.001);
  ASSERT_EQ(storm->past.size(), 2);
  EXPECT_EQ(storm->past[0].time, at("2026-09-25T06:00:00Z"));
  EXPECT_FALSE(storm->past[1].windMs);
}

TEST(Jtwc, RefusesWhatIsNoWarning) {
  for (std::string const body : {"", "<html>log in</html>", "2026092512 25W X 010 01 305 12\n",
                                 "2026092512 25W X 010 01 305 12\nT012 225N 1272E 060\n",
                                 "2026139912 25W X 010 01 305 12\nT000 214N 1282E 050\n",
                                 "2026092512 25W X 010 01 305 12\nT000 914N 1282E 050\n",
                                 "2026092512 25W X 010 01 305 12\nT000 214N 1282E 999\n"})
    EXPECT_FALSE(parseJtwcWarning(body, "wp2526")) << body;
  EXPECT_FALSE(parseJtwcWarning(kWarning, "../etc"));
  for (std::string const& body : test::damagedForms(kWarning, 3)) parseJtwcWarning(body, "wp2526");
}

struct ListRow {
  std::string body;
  std::optional<std::size_t> files;
};

TEST(Jtwc, TellsNoWarningsFromNoList) {
  std::string const link = "<a href='https://x/jtwc/products/";
  for (ListRow const& row :
       {ListRow{"<rss>No Current Tropical Cyclone Warnings.</rss>", 0},
        {"<rss>" + link + "wp2526.tcw'>" + link + "wp2526.tcw'>" + link + "sh0126.tcw</rss>", 2},
        {"<rss>" + link + "ep2526.tcw'></rss>", 0},
        {"<rss>" + link + "wp25.tcw'>" + link + "wp2526.gif</rss>", {}},
        {"<rss>" + link + "wp2526.tcw'>", {}},
        {"<rss></rss>", {}},
        {"<html>No Current Tropical Cyclone Warnings</html>", {}},
        {"", {}}}) {
    auto const files = parseJtwcList(row.body);
    ASSERT_EQ(files.has_value(), row.files.has_value()) << row.body;
    if (files) EXPECT_EQ(files->size(), *row.files) << row.body;
  }
}

std::string sampleNamed(std::string const& folder, std::string const& ending) {
  auto const files = test::sampleFiles(folder);
  if (!files) return {};
  for (auto const& file : *files)
    if (file.string().ends_with(ending)) return test::readFile(file);
  return {};
}

TEST(Jtwc, ReadsTheRecordedDay) {
  std::string const list = sampleNamed("jtwc", ".xml");
  if (list.empty()) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  EXPECT_EQ(parseJtwcList(list), (std::vector<std::string>{"wp2526"})) << "the others are another centre's";
  auto const storm = parseJtwcWarning(sampleNamed("jtwc", ".tcw"), "wp2526");
  ASSERT_TRUE(storm) << storm.error().text();
  EXPECT_EQ(storm->name, "Surigae");
  EXPECT_EQ(storm->track.size(), 9);
  EXPECT_EQ(storm->past.size(), 22);
  EXPECT_NEAR(storm->movementMs.value_or(0) / kMsInAKnot, 12, 1e-9);
  // By hand, on straight lines between the points in a table of degrees.
  Instant const now = at("2026-09-25T15:00:00Z");
  auto const naha = closestApproach(*storm, {26.21, 127.68}, now);
  ASSERT_TRUE(naha);
  EXPECT_NEAR(naha->km, 98.9, 5);
  EXPECT_GT(naha->time, at("2026-09-27T00:00:00Z"));
  auto const tokyo = closestApproach(*storm, {35.69, 139.69}, now);
  EXPECT_NEAR(tokyo->km, 300.5, 5);
  EXPECT_EQ(tokyo->time, at("2026-09-30T12:00:00Z")) << "the end of the track";
}

/// The angle between two places by the lengths of products of vectors, which no other reckoning here uses.
double greatCircleKm(Coordinate a, Coordinate b) {
  constexpr double kRadian = std::numbers::pi / 180;
  double const north = a.latitude * kRadian, south = b.latitude * kRadian;
  double const east = (b.longitude - a.longitude) * kRadian;
  double const x = std::cos(south) * std::sin(east);
  double const y = std::cos(north) * std::sin(south) - std::sin(north) * std::cos(south) * std::cos(east);
  double const z = std::sin(north) * std::sin(south) + std::cos(north) * std::cos(south) * std::cos(east);
  return std::atan2(std::hypot(x, y), z) * 6371.0088;
}

TEST(StormApproach, AgreesWithAThousandStepsOfTheRecordedTrack) {
  std::string const warning = sampleNamed("jtwc", ".tcw");
  if (warning.empty()) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  auto const storm = parseJtwcWarning(warning, "wp2526");
  ASSERT_TRUE(storm);
  for (Coordinate const place :
       {Coordinate{26.21, 127.68}, Coordinate{24.34, 124.16}, Coordinate{31.6, 130.56},
        Coordinate{33.5, 133.5}, Coordinate{35.69, 139.69}, Coordinate{25.03, 121.57},
        Coordinate{14.6, 120.98}, Coordinate{13.44, 144.79}}) {
    double least = 1e9;
    for (std::size_t leg = 1; leg < storm->track.size(); ++leg) {
      Coordinate const from = storm->track[leg - 1].coordinate, to = storm->track[leg].coordinate;
      for (int i = 0; i <= 1000; ++i) {
        double const part = i / 1000.0;
        least = std::min(least, greatCircleKm({std::lerp(from.latitude, to.latitude, part),
                                               std::lerp(from.longitude, to.longitude, part)},
                                              place));
      }
    }
    auto const nearest = closestApproach(*storm, place, *storm->lastUpdate);
    ASSERT_TRUE(nearest);
    EXPECT_NEAR(nearest->km, least, 5) << place.latitude << " " << place.longitude;
  }
}

TEST(Gdacs, ReadsTheRecordedEventOnce) {
  std::string const body = sampleNamed("gdacs", ".json");
  if (body.empty()) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  auto const storms = parseGdacsStorms(body);
  ASSERT_TRUE(storms) << storms.error().text();
  ASSERT_EQ(storms->size(), 1) << "one point and three lines";
  EXPECT_EQ(storms->front().name, "Twentythree");
  EXPECT_EQ(storms->front().id, "gdacs1001319");
  EXPECT_NEAR(storms->front().windMs / kMsInAKnot, 40, 0.01);
  EXPECT_EQ(storms->front().lastUpdate, at("2026-09-05T12:00:00Z"));
  EXPECT_EQ(storms->front().basin, TropicalBasin::westernPacific);
  for (std::string const& damaged : test::damagedForms(body, 97)) parseGdacsStorms(damaged);
}

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

/// Of the day on which one centre's warning was recorded, the other's list in its own form.
TEST(StormMerge, HasTheStormOfTheRecordedDayOnce) {
  std::string const warning = sampleNamed("jtwc", ".tcw"), list = sampleNamed("gdacs", ".json");
  if (warning.empty() || list.empty()) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  std::string same = replaced(list, "TWENTYTHREE-26", "SURIGAE-26");
  same = replaced(replaced(same, "2026-09-05T12:00:00", "2026-09-25T06:00:00"), "133.8", "129.3");
  same = replaced(same, "28.5", "20.7");
  std::vector<TropicalStorm> storms{*parseJtwcWarning(warning, "wp2526")};
  addStorms(storms, *parseGdacsStorms(same));
  ASSERT_EQ(storms.size(), 1);
  EXPECT_EQ(storms.front().centre, StormCentre::jtwc);
  EXPECT_EQ(storms.front().alsoBy, std::vector{StormCentre::gdacs});
  addStorms(storms, *parseGdacsStorms(list));
  EXPECT_EQ(storms.size(), 2) << "another one of another day";
}

TEST(Gdacs, RefusesOtherDocuments) {
  for (std::string const body : {"", "[]", "<html>", R"({"error":"x"})", R"({"features":7})"})
    EXPECT_FALSE(parseGdacsStorms(body)) << body;
  EXPECT_TRUE(parseGdacsStorms(R"({"features":[]})")->empty());
}

struct BasinRow {
  Coordinate at;
  TropicalBasin basin;
};

TEST(Gdacs, KnowsTheBasinOfAPosition) {
  using enum TropicalBasin;
  for (BasinRow const& row :
       {BasinRow{{25.8, -80.2}, atlantic}, BasinRow{{20, -95}, atlantic}, BasinRow{{14, -80}, atlantic},
        BasinRow{{15, -95}, easternPacific}, BasinRow{{20, -110}, easternPacific},
        BasinRow{{10, -90}, easternPacific}, BasinRow{{20, -156}, centralPacific},
        BasinRow{{20, 130}, westernPacific}, BasinRow{{15, 88}, northIndian}, BasinRow{{-15, 60}, southern}})
    EXPECT_EQ(basinAt(row.at), row.basin) << row.at.latitude << " " << row.at.longitude;
}

TropicalStorm stormAt(Coordinate place, std::string name = "Alder", StormCentre centre = StormCentre::jtwc) {
  TropicalStorm storm;
  storm.id = std::string(enumName(centre)) + name;
  storm.name = std::move(name);
  storm.coordinate = place;
  storm.lastUpdate = at("2026-09-25T00:00:00Z");
  storm.centre = centre;
  return storm;
}

TEST(StormMerge, TakesOneStormOnce) {
  // 4.49° of latitude are 499.3 km, 4.5° are 500.4 km.
  for (auto const& [latitude, hours, name, same] :
       {std::tuple{4.49, 24, "ALDER", true}, std::tuple{4.5, 24, "Alder", false},
        std::tuple{4.49, 25, "Alder", false}, std::tuple{0.0, 0, "Birch", false},
        std::tuple{1.79, 24, "TWENTYFIVE", true},  // 199 km
        std::tuple{1.81, 0, "Twenty-five", false}, std::tuple{0.0, 0, "Seven-E", true},
        std::tuple{0.0, 0, "Tenacious", false}, std::tuple{0.0, 0, "", false}}) {
    std::vector<TropicalStorm> storms{stormAt({0, 130})};
    TropicalStorm other = stormAt({latitude, 130}, name, StormCentre::gdacs);
    *other.lastUpdate += std::chrono::hours(hours);
    addStorms(storms, {other});
    EXPECT_EQ(storms.size(), same ? 1 : 2) << latitude << name;
    EXPECT_EQ(storms.front().alsoBy.size(), same ? 1 : 0);
  }
}

TEST(StormApproach, IsReckonedAlongGreatCircles) {
  TropicalStorm storm = stormAt({0, 0});
  Instant const begin = *storm.lastUpdate;
  storm.track = {{begin, {0, 0}, 30, {}}, {begin + std::chrono::hours(20), {0, 10}, 40, 100}};
  auto const aside = closestApproach(storm, {3, 5}, begin);
  ASSERT_TRUE(aside);
  EXPECT_NEAR(aside->km, 333.58, 0.1);  // three degrees
  EXPECT_LT(std::chrono::abs(aside->time - begin - std::chrono::hours(10)), std::chrono::seconds(1));
  auto const late = closestApproach(storm, {0, 2}, begin + std::chrono::hours(10));
  EXPECT_NEAR(late->km, 333.58, 0.1) << "it has gone by";
  EXPECT_EQ(late->time, begin + std::chrono::hours(10));
  EXPECT_FALSE(closestApproach(storm, {0, 2}, begin + std::chrono::hours(21)));
  EXPECT_FALSE(closestApproach(stormAt({0, 0}), {0, 2}, begin)) << "without a track";
  storm.coordinate = {10, 179};
  storm.track = {{begin + std::chrono::hours(10), {10, -179}, {}, {}}};
  EXPECT_LT(closestApproach(storm, {10, 180}, begin)->km, 1) << "across 180°";
}

TEST(WorldStorms, AreCurrentWhereEverySeaHasACentre) {
  using Reading = FeedReading<std::vector<TropicalStorm>>;
  Instant const now = at("2026-09-25T00:00:00Z");
  Reading const good{FeedState::current, {stormAt({0, 130})}, now, {}, {}};
  Reading const bad{FeedState::failed, {}, {}, now, ServiceFailure::answered(500)};
  EXPECT_TRUE(worldStorms(good, good, good).isCurrent());
  EXPECT_EQ(worldStorms(good, good, good).data.storms.size(), 1);
  EXPECT_TRUE(worldStorms(good, good, bad).isCurrent());
  EXPECT_TRUE(worldStorms(good, bad, good).isCurrent());
  EXPECT_EQ(worldStorms(good, bad, good).data.misses.size(), 1);
  EXPECT_FALSE(worldStorms(bad, good, good).isCurrent());
  EXPECT_FALSE(worldStorms(good, bad, bad).isCurrent());
  EXPECT_FALSE(worldStorms(good, bad, bad).checkedAt);
}

TEST(TyphoonService, IsNotWholeWithoutAStormsFile) {
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-09-25T15:00:00Z")};
  TyphoonService service(http, clock, "https://jtwc.example");
  http.willAnswer(200, "<rss>products/wp2526.tcw products/wp2626.tcw</rss>");
  http.willAnswer(200, kWarning);
  http.willAnswer(404, "");
  auto const reading = service.fetchStorms();
  EXPECT_EQ(reading.state, FeedState::failed);
  EXPECT_EQ(reading.data.size(), 1);
  EXPECT_EQ(http.requests[1].url, "https://jtwc.example/jtwc/products/wp2526.tcw");
}

}  // namespace
}  // namespace nimbara
