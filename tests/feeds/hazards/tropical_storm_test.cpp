#include "feeds/storms/hurricane_places.h"
#include "feeds/storms/tropical_storm_service.h"
#include "gazetteer/gazetteer.h"
#include "support/answers/bad_bytes.h"
#include "support/feed_readings.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"

#include <gtest/gtest.h>

#include <set>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

constexpr char kLena[] =
    R"({"id":"al092026","binNumber":"AT4","name":"Lena","classification":"HU","intensity":"65","pressure":"987",
        "latitude":"34.2N","longitude":"83.0W","latitudeNumeric":34.2,"longitudeNumeric":-83,"movementDir":290,
        "movementSpeed":10,"lastUpdate":"2026-09-29T15:00:00.000Z","publicAdvisory":null})";

std::string listOf(std::string const& storms) {
  return R"({"activeStorms":[)" + storms + "]}";
}

TEST(TropicalStorms, AreReadWhole) {
  auto const storms = parseTropicalStorms(listOf(kLena));
  ASSERT_TRUE(storms && storms->size() == 1);
  TropicalStorm const& storm = storms->front();
  EXPECT_EQ(storm.id, "al092026");
  EXPECT_EQ(storm.basin, TropicalBasin::atlantic);
  EXPECT_EQ(storm.bin + storm.name + storm.classification, "AT4LenaHU");
  EXPECT_DOUBLE_EQ(storm.windMs * kKmhInMs, 120.38);
  EXPECT_EQ(storm.category, StormCategory::one);
  EXPECT_EQ(storm.pressure, 987);
  EXPECT_EQ(storm.coordinate, (Coordinate{34.2, -83}));
  EXPECT_EQ(storm.movementDirection, 290);
  EXPECT_DOUBLE_EQ(storm.movementMs.value_or(0) * kKmhInMs, 16.09344);
  EXPECT_EQ(storm.lastUpdate, at("2026-09-29T15:00:00Z"));
}

/// What the list serves of a storm is what its advisory says in miles an hour, as the centre's texts of
/// 7 August 2025 and 17 May 2020 have it. Read as knots it would be 21 and 15.
TEST(TropicalStorms, MoveAsFastAsTheirAdvisoriesSay) {
  struct Row {
    std::string id;
    double served, mph, kmh;
  };
  for (Row const& row : {Row{"al042025", 18, 18, 28.97}, {"al012020", 13, 13, 20.92}}) {
    auto const storms = parseTropicalStorms(
        listOf(R"({"id":")" + row.id +
               R"(","intensity":35,"latitudeNumeric":1,"longitudeNumeric":2,"movementDir":70,)" +
               R"("movementSpeed":)" + std::to_string(row.served) + "}"));
    ASSERT_TRUE(storms && storms->size() == 1) << row.id;
    double const kmh = storms->front().movementMs.value_or(0) * kKmhInMs;
    EXPECT_NEAR(kmh, row.kmh, 0.01) << row.id;
    EXPECT_NEAR(kmh * 1000 / 1609.344, row.mph, 0.01) << row.id;
  }
}

TEST(TropicalStorms, TolerateOddMembers) {
  struct Row {
    std::string members;
    bool isStorm;
  };
  constexpr char kGood[] = R"(,"intensity":35,"latitudeNumeric":1,"longitudeNumeric":2)";
  for (Row const& row : {
           Row{std::string(R"("id":"wp992026")") + kGood, true},
           {std::string(R"("id":"CP012026")") + kGood, true},
           {std::string(R"("id":"xx012026")") + kGood, false},
           {std::string(R"("id":"al12026")") + kGood, false},
           {std::string(R"("id":"alx12026")") + kGood, false},
           {std::string(R"("id":null)") + kGood, false},
           {std::string(R"("name":"x")") + kGood, false},
           {R"("id":"al012026","intensity":" 35 ","latitude":"1.5S","longitude":"2e")", true},
           {R"("id":"al012026","intensity":35,"latitude":"1.5","longitude":"2E")", false},
           {R"("id":"al012026","intensity":35,"latitude":"N","longitude":"E")", false},
           {R"("id":"al012026","intensity":35,"latitude":"","longitude":"")", false},
           {R"("id":"al012026","intensity":35,"latitude":"90.1N","longitude":"2E")", false},
           {R"("id":"al012026","intensity":"","latitudeNumeric":1,"longitudeNumeric":2)", false},
           {R"("id":"al012026","intensity":300,"latitudeNumeric":1,"longitudeNumeric":2)", true},
           {R"("id":"al012026","intensity":301,"latitudeNumeric":1,"longitudeNumeric":2)", false},
           {R"("id":"al012026","intensity":-1,"latitudeNumeric":1,"longitudeNumeric":2)", false},
           {std::string(
                R"("id":"al012026","movementDir":null,"movementSpeed":"x","pressure":7,"lastUpdate":9)") +
                kGood,
            true},
       }) {
    auto const storms = parseTropicalStorms(listOf("{" + row.members + "}," + kLena));
    ASSERT_TRUE(storms) << row.members;
    EXPECT_EQ(storms->size(), row.isStorm ? 2 : 1) << row.members;
    TropicalStorm const& storm = storms->front();
    if (!row.isStorm) continue;
    EXPECT_FALSE(storm.movementDirection || storm.movementMs || storm.pressure || storm.lastUpdate);
  }
}

TEST(TropicalStorms, NoneAreNotTheSameAsAnAnswerThatIsNone) {
  auto const none = parseTropicalStorms(listOf(""));
  EXPECT_TRUE(none && none->empty());
  for (std::string const& body :
       {std::string("{}"), std::string("[]"), std::string(R"({"activeStorms":null})"), listOf("7"),
        listOf(R"({"id":"al092026"})"), std::string("<html>")})
    EXPECT_FALSE(parseTropicalStorms(body)) << body;
  for (std::string const& body : test::damagedForms(listOf(kLena), 3)) parseTropicalStorms(body);
}

TEST(TropicalStorms, HaveTheCategoryOfTheirWind) {
  struct Row {
    double knots;
    std::string_view category;
  };
  for (Row const& row : {Row{0, "depression"}, Row{33.9, "depression"}, Row{34, "storm"}, Row{63, "storm"},
                         Row{64, "1"}, Row{82, "1"}, Row{83, "2"}, Row{95, "2"}, Row{96, "3"}, Row{112, "3"},
                         Row{113, "4"}, Row{136, "4"}, Row{137, "5"}, Row{185, "5"}})
    EXPECT_EQ(enumName(stormCategory(row.knots)), row.category) << row.knots;
}

TEST(TropicalStorms, ReadARecordedList) {
  auto const files = test::sampleFiles("nhc");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  auto const storms = parseTropicalStorms(test::readFile(files->front()));
  ASSERT_TRUE(storms && storms->size() == 1);
  EXPECT_EQ(storms->front().id, "ep072026");
  EXPECT_EQ(storms->front().basin, TropicalBasin::easternPacific);
  EXPECT_EQ(storms->front().category, StormCategory::storm);
  EXPECT_EQ(storms->front().coordinate, (Coordinate{23.5, -136}));
}

std::string point(std::string const& properties, std::string const& coordinates = "[-83.9,35.1]") {
  return R"({"type":"Feature","properties":{)" + properties +
         R"(},"geometry":{"type":"Point","coordinates":)" + coordinates + "}}";
}

std::string trackOf(std::string const& points) {
  return R"({"type":"FeatureCollection","features":[)" + points + "]}";
}

struct TimeRow {
  std::string properties, lastUpdate;
  std::string time;  ///< empty: no point
};

TEST(TropicalTracks, TellTheTimeOfAPoint) {
  for (TimeRow const& row : {
           TimeRow{R"("tau":12,"validtime":"30/0000")", "2026-09-29T15:00:00Z", "2026-09-30T00:00:00Z"},
           {R"("tau":48,"validtime":"01/1200")", "2026-09-29T15:00:00Z", "2026-10-01T12:00:00Z"},
           {R"("validtime":"04/1200")", "2026-12-30T21:00:00Z", "2027-01-04T12:00:00Z"},
           {R"("validtime":"30/1230")", "2026-12-30T21:00:00Z", "2026-12-30T12:30:00Z"},
           {R"("tau":0,"validtime":"31/1800")", "2027-01-01T00:00:00Z", "2026-12-31T18:00:00Z"},
           {R"("tau":24)", "2026-09-29T15:00:00Z", "2026-09-30T12:00:00Z"},
           {R"("tau":"24","validtime":null)", "2026-09-29T17:59:59Z", "2026-09-30T12:00:00Z"},
           {R"("tau":24,"validtime":"30-12")", "2026-09-29T15:00:00Z", "2026-09-30T12:00:00Z"},
           {R"("tau":24,"validtime":"30/2400")", "2026-09-29T15:00:00Z", "2026-09-30T12:00:00Z"},
           {R"("tau":24,"validtime":"00/1200")", "2026-09-29T15:00:00Z", "2026-09-30T12:00:00Z"},
           {R"("tau":240)", "2026-09-29T15:00:00Z", "2026-10-09T12:00:00Z"},
           {R"("tau":241)", "2026-09-29T15:00:00Z", ""},
           {R"("tau":-1)", "2026-09-29T15:00:00Z", ""},
           {R"("maxwind":50)", "2026-09-29T15:00:00Z", ""},
       }) {
    auto const track = parseTropicalTrack(trackOf(point(row.properties)), at(row.lastUpdate));
    ASSERT_TRUE(track) << row.properties;
    ASSERT_EQ(track->size(), row.time.empty() ? 0 : 1) << row.properties;
    if (row.time.empty()) continue;
    EXPECT_EQ(formatIso8601(track->front().time), row.time) << row.properties;
  }
}

TEST(TropicalTracks, LeaveOutPointsWithoutAPlaceAndSortTheOthers) {
  Instant const update = at("2026-09-29T15:00:00Z");
  auto const track = parseTropicalTrack(
      trackOf(point(R"("tau":24,"maxwind":100)") + "," + point(R"("tau":0,"maxwind":9999)") + "," +
              point(R"("tau":0)", "[null,1]") + "," + point(R"("tau":0)", "[1]") + "," +
              point(R"("tau":0)", "7") + "," + point(R"("tau":0)", "[181,0]") +
              R"(,null,{"properties":{"tau":0},"geometry":null})"),
      update);
  ASSERT_TRUE(track && track->size() == 2);
  EXPECT_FALSE(track->front().windMs);
  EXPECT_DOUBLE_EQ(track->back().windMs.value_or(0) * kKmhInMs, 185.2);
  EXPECT_EQ(track->back().coordinate, (Coordinate{35.1, -83.9}));
  for (std::string const body : {R"({"error":{"code":400}})", "<html>", "[]", R"({"features":{}})"})
    EXPECT_FALSE(parseTropicalTrack(body, update)) << body;
  for (std::string const& body : test::damagedForms(trackOf(point(R"("tau":24)")), 3))
    parseTropicalTrack(body, update);
}

TEST(TropicalTracks, AreFoundByTheNameOfTheirLayer) {
  auto const layers = parseMapLayers(
      R"({"layers":[{"id":7,"name":"AT1 Forecast Points"},{"id":41,"name":"AT4 Forecast Track"},
          {"id":42,"name":"AT4 Forecast Points "},{"id":"x","name":"AT5 Forecast Points"},null,
          {"id":-3,"name":"EP1 Forecast Points"},{"id":90,"name":" forecast points"}]})");
  ASSERT_TRUE(layers);
  EXPECT_EQ(trackLayerOf("AT4", *layers), 42);
  EXPECT_EQ(trackLayerOf("at1", *layers), 7);
  for (std::string_view const bin : {"AT5", "AT", "EP1", ""}) EXPECT_FALSE(trackLayerOf(bin, *layers)) << bin;
  EXPECT_FALSE(parseMapLayers("{}"));
}

class TropicalStormServiceTest : public testing::Test {
 protected:
  static constexpr char kLayers[] = R"({"layers":[{"id":42,"name":"AT4 Forecast Points"}]})";

  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-09-29T16:00:00Z")};
  TropicalStormService service_{http_, clock_, {"https://nhc.example", "https://maps.example"}};
};

TEST_F(TropicalStormServiceTest, GivesEachStormItsTrackAndAsksForItOncePerReport) {
  http_.willAnswer(200, listOf(kLena), {{"ETag", "\"1\""}});
  http_.willAnswer(200, kLayers);
  http_.willAnswer(200, trackOf(point(R"("tau":12)")));
  auto const first = service_.fetchStorms();
  EXPECT_TRUE(first.isCurrent());
  ASSERT_EQ(first.data.size(), 1);
  EXPECT_EQ(first.data[0].track.size(), 1);
  ASSERT_EQ(http_.requests.size(), 3);
  EXPECT_EQ(http_.requests[1].url,
            "https://maps.example/tropical/rest/services/tropical/NHC_tropical_weather/MapServer?f=json");
  EXPECT_EQ(http_.requests[2].url,
            "https://maps.example/tropical/rest/services/tropical/NHC_tropical_weather/MapServer/42/"
            "query?where=1%3D1&outFields=*&f=geojson");
  service_.fetchStorms();
  EXPECT_EQ(http_.requests.size(), 3);
  clock_.advance(900s);
  http_.willAnswer(304, "");
  EXPECT_EQ(service_.fetchStorms().data[0].track.size(), 1);
  EXPECT_EQ(http_.requests.size(), 4) << "the same report has the same track";
  EXPECT_EQ(test::headerOf(http_.requests[3], "If-None-Match"), "\"1\"");
  clock_.advance(900s);
  http_.willAnswer(200, "<html>");
  auto const failed = service_.fetchStorms();
  EXPECT_EQ(failed.state, FeedState::failed);
  EXPECT_EQ(failed.data.at(0).track.size(), 1) << "what was known stays";
}

TEST_F(TropicalStormServiceTest, LeavesAStormWithoutItsTrackWhenThatFails) {
  struct Row {
    std::string layers, track;
  };
  for (Row const& row : {Row{"<html>", ""}, Row{R"({"layers":[]})", ""}, Row{kLayers, R"({"error":{}})"},
                         Row{kLayers, trackOf("")}, Row{kLayers, trackOf(point(R"("tau":0)", "[30,30]"))}}) {
    TropicalStormService service(http_, clock_, {"https://nhc.example", "https://maps.example"});
    http_.willAnswer(200, listOf(kLena));
    http_.willAnswer(200, row.layers);
    if (!row.track.empty()) http_.willAnswer(200, row.track);
    auto const reading = service.fetchStorms();
    EXPECT_TRUE(reading.isCurrent()) << row.track;
    ASSERT_EQ(reading.data.size(), 1) << row.track;
    EXPECT_TRUE(reading.data[0].track.empty()) << row.track;
    auto const asked = http_.requests.size();
    service.fetchStorms();
    EXPECT_EQ(http_.requests.size(), asked) << "not again in the same quarter of an hour";
  }
}

TEST(HurricanePlaces, LieWhereTheGazetteerHasTheirCities) {
  std::set<std::string_view> names;
  EXPECT_GE(hurricanePlaces().size(), 60);
  for (HurricanePlace const& place : hurricanePlaces()) {
    EXPECT_TRUE(names.insert(place.name).second) << place.name;
    auto const nearest = nearestCity(place.coordinate());
    ASSERT_TRUE(nearest) << place.name;
    EXPECT_LT(nearest->km, 60) << place.name << " is far from " << nearest->city.name;
    std::string_view const name = place.name.substr(0, place.name.find(','));
    auto const named = searchCities(name, 12);
    bool const isThere = std::ranges::any_of(
        named, [&](City const& city) { return haversineKm(city.coordinate, place.coordinate()) < 25; });
    EXPECT_TRUE(isThere) << place.name << " is not there, but " << nearest->city.name;
  }
}

TEST(HurricanePlaces, AreFoundByDistance) {
  EXPECT_EQ(nearestHurricanePlace({25.8, -80.3}).place.name, "Miami");
  EXPECT_LT(nearestHurricanePlace({25.8, -80.3}).km, 15);
  EXPECT_EQ(nearestHurricanePlace({20.6, -155.4}).place.name, "Hilo");
  EXPECT_EQ(nearestHurricanePlace({19, -45}).place.name, "Bridgetown");
  EXPECT_GT(nearestHurricanePlace({19, -45}).km, 1000);
  EXPECT_EQ(nearestHurricanePlace({9, 179}).place.name, "Majuro");
  EXPECT_EQ(nearestHurricanePlace({12, -178}).place.name, "Majuro") << "across 180°";
}

}  // namespace
}  // namespace nimbara
