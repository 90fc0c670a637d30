#include "feeds/region_map.h"

#include "feeds/region_names.h"
#include "feeds/region_update.h"
#include "feeds/regions.h"
#include "support/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/outlines.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <random>

namespace nimbara {
namespace {

using test::collection;
using test::feature;
using test::rectangle;
using test::square;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string mapOf(std::string const& geoJson) {
  auto const reading = readOutlines(geoJson);
  EXPECT_TRUE(reading) << reading.error();
  return reading ? regionMapOf(reading->outlines) : std::string();
}

std::vector<std::string> codesAt(std::string const& bytes, Coordinate place) {
  auto const map = RegionMap::over(bytes);
  EXPECT_TRUE(map) << map.error();
  std::vector<std::string> codes;
  if (!map) return codes;
  for (MappedRegion const& region : map->at(place)) codes.emplace_back(region.code);
  return codes;
}

TEST(RegionMap, FindsTheRegionsThatAPlaceLiesIn) {
  std::string const hole = rectangle(51, 11, 52, 12);
  std::string const bytes = mapOf(collection(
      {feature("XX1", "DE", "Whole", rectangle(50, 10, 53, 13) + "," + hole),
       feature("XX2", "DE", "Hole", hole), feature("XX3", "DE", "Corner", rectangle(50, 10, 50.5, 10.5)),
       feature("XX4", "GR", "Beside", rectangle(50, 13, 53, 16))}));
  struct Row {
    Coordinate place;
    std::vector<std::string> codes;
  };
  for (auto const& [place, codes] : {Row{{52.5, 12.5}, {"XX1"}},
                                     {{51.5, 11.5}, {"XX2"}},
                                     {{50.25, 10.25}, {"XX3", "XX1"}},  // the smaller first
                                     {{51.5, 14}, {"XX4"}},
                                     {{51.5, 12.99}, {"XX1"}},
                                     {{51.5, 13.01}, {"XX4"}},
                                     {{53.02, 11}, {"XX1"}},  // 2.2 km beyond
                                     {{53.03, 11}, {}},       // 3.3 km
                                     {{51.5, 9.97}, {"XX1"}},
                                     {{51.5, 9.95}, {}},
                                     {{0, 0}, {}},
                                     {{90, 0}, {}},
                                     {{-90, -180}, {}},
                                     {{91, 0}, {}},
                                     {{51.5, std::nan("")}, {}}}) {
    EXPECT_EQ(codesAt(bytes, place), codes) << formatCoordinate(place);
  }
}

TEST(RegionMap, TakesHugeAndPolarRegions) {
  std::string const bytes = mapOf(collection({feature("WORLD", "", "World", rectangle(-90, -180, 90, 180)),
                                              feature("POLE", "", "Pole", rectangle(85, -180, 90, 180)),
                                              feature("EAST", "", "East", rectangle(10, 179, 20, 180))}));
  EXPECT_THAT(codesAt(bytes, {89, 179}), ElementsAre("POLE", "WORLD"));
  EXPECT_THAT(codesAt(bytes, {15, 179.5}), ElementsAre("EAST", "WORLD"));
  EXPECT_THAT(codesAt(bytes, {-90, -180}).size(), 1U);
}

TEST(RegionMap, AgreesWithAPlainSearchOnRandomOutlines) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> unit(0, 1);
  std::vector<RegionOutline> outlines;
  for (int i = 0; i < 300; ++i) {
    Coordinate const center{35 + unit(random) * 35, unit(random) * 50 - 10};
    OutlineRing ring;
    for (int corner = 0; corner < 12; ++corner) {
      double const angle = corner * std::numbers::pi / 6;
      double const reach = 0.2 + unit(random) * 2;
      ring.push_back(outlinePoint(
          {center.latitude + reach * std::sin(angle), center.longitude + reach * std::cos(angle)}));
    }
    outlines.push_back({{"EMMA_ID", std::to_string(i)}, "XX", "", {ring}});
  }
  std::string const bytes = regionMapOf(outlines);
  auto const isWithin = [](OutlineRing const& ring, OutlinePoint at) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
      auto const a = ring[i], b = ring[(i + 1) % ring.size()];
      if ((a.latitude > at.latitude) == (b.latitude > at.latitude)) continue;
      double const edge = a.longitude + (static_cast<double>(b.longitude) - a.longitude) *
                                            (static_cast<double>(at.latitude) - a.latitude) /
                                            (static_cast<double>(b.latitude) - a.latitude);
      if (at.longitude < edge) inside = !inside;
    }
    return inside;
  };
  int found = 0;
  for (int round = 0; round < 2000; ++round) {
    Coordinate const place{35 + unit(random) * 35, unit(random) * 50 - 10};
    std::vector<std::string> expected;
    for (RegionOutline const& outline : outlines) {
      if (isWithin(outline.rings[0], outlinePoint(place))) expected.push_back(outline.code.code);
    }
    if (expected.empty()) continue;
    ++found;
    ASSERT_THAT(codesAt(bytes, place), testing::UnorderedElementsAreArray(expected)) << round;
  }
  EXPECT_GT(found, 500);
}

TEST(RegionMap, StaysWithinWhateverBytesItIsGiven) {
  std::string const whole = mapOf(collection(
      {feature("A", "DE", "Alpha", square({52, 13}, 1)), feature("B", "DE", "Beta", square({52, 13}, 0.5))}));
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_FALSE(RegionMap::over(whole.substr(0, size)));
  EXPECT_FALSE(RegionMap::over(whole + "x"));
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (char const value : {'\xff', '\x7f', '\0'}) {
      std::string damaged = whole;
      damaged[at] = value;
      if (auto const map = RegionMap::over(damaged)) {
        EXPECT_LE(map->at({52, 13}).size(), 16U);
        map->countByCountry();
      }
    }
  }
}

TEST(Outlines, LoseOnlyCornersThatDoNotMatter) {
  OutlineRing circle;
  for (int i = 0; i < 3600; ++i) {
    double const angle = i * std::numbers::pi / 1800;
    circle.push_back(outlinePoint({50 + std::sin(angle), 10 + std::cos(angle)}));
  }
  OutlineRing const few = simplified(circle);
  EXPECT_LT(few.size(), 120U);
  EXPECT_GT(few.size(), 30U);
  OutlineRing const rectangle{{0, 0}, {0, 1000}, {0, 2000}, {5000, 2000}, {5000, 0}, {0, 0}};
  EXPECT_EQ(simplified(rectangle), (OutlineRing{{0, 0}, {0, 2000}, {5000, 2000}, {5000, 0}}));
  EXPECT_THAT(simplified({{0, 0}, {10, 10}, {0, 10}}), IsEmpty());
  EXPECT_EQ(simplified({{0, 0}, {10, 10}, {0, 10}}, 0).size(), 3U);
  for (OutlineRing const& none :
       {OutlineRing{}, {{0, 0}}, {{0, 0}, {5, 5}}, {{1, 1}, {1, 1}, {1, 1}, {1, 1}}})
    EXPECT_THAT(simplified(none, 0), IsEmpty());
}

TEST(Outlines, TakeTheFormsThatArePublished) {
  auto const reading = readOutlines(
      R"({"type":"FeatureCollection","features":[
        {"type":"Feature","properties":{"code":"UK105","country":"UK","name":"Strathclyde","type":"EMMA_ID"},
         "geometry":{"type":"MultiPolygon","coordinates":[[[[-5,55],[-4,55],[-4,56],[-5,55]]],
           [[[-6,55,12.5],[-5.5,55,1],[-5.5,55.5,0],[-6,55,12.5]]],[[[1,1],[1.0001,1],[1,1.0001],[1,1]]]]}},
        {"geometry":{"coordinates":[[[6,45],[7,45],[7,46],[6,45]]],"type":"Polygon"},
         "properties":{"NUTS_ID":"FR718","LEVL_CODE":3,"CNTR_CODE":"FR","NUTS_NAME":"Haute-Savoie"}},
        {"properties":{"code":"EL001","country":"EL","name":"x"},"geometry":{"type":"Polygon","coordinates":[[[20,38],[21,38],[21,39]]]}},
        {"properties":{"name":"no code"},"geometry":{"type":"Polygon","coordinates":[[[20,38],[21,38],[21,39]]]}},
        {"properties":{"code":"P"},"geometry":{"type":"Point","coordinates":[20,38]}},
        {"properties":{"code":"P"},"geometry":null},
        {"properties":{"code":"P"},"geometry":{"type":"Polygon","coordinates":[[[20,98],[21,38],[21,39]]]}},
        {"properties":{"code":"P"},"geometry":{"type":"Polygon","coordinates":[[["20",8],[21,38],[21,39]]]}},
        {"properties":{"code":"P"},"geometry":{"type":"Polygon","coordinates":[]}}, 7]})");
  ASSERT_TRUE(reading) << reading.error();
  EXPECT_EQ(reading->skipped, 7U);
  ASSERT_EQ(reading->outlines.size(), 3U);
  EXPECT_EQ(reading->outlines[0].code, (RegionCode{"EMMA_ID", "UK105"}));
  EXPECT_EQ(reading->outlines[0].country, "GB");
  EXPECT_EQ(reading->outlines[0].rings.size(), 2U);
  EXPECT_EQ(reading->outlines[1].code, (RegionCode{"NUTS3", "FR718"}));
  EXPECT_EQ(reading->outlines[1].name, "Haute-Savoie");
  EXPECT_EQ(reading->outlines[2].country, "GR");
}

TEST(RegionNames, LoseTheirAdministrativeWords) {
  struct Row {
    std::string_view name;
    std::string_view bare;
  };
  for (auto const& [name, bare] : {Row{"województwo mazowieckie", "mazowieckie"},
                                   {"Landkreis Görlitz", "Görlitz"},
                                   {"Rhein-Hunsrück-Kreis", "Rhein-Hunsrück"},
                                   {"Kreis Vulkaneifel", "Vulkaneifel"},
                                   {"County Cork", "Cork"},
                                   {"Cork County", "Cork"},
                                   {"Département du Rhône", "Rhône"},
                                   {"Provincia di Bolzano", "Bolzano"},
                                   {"Province of Rome", "Rome"},
                                   {"Comunidad de Madrid", "Madrid"},
                                   {"Región de Murcia", "Murcia"},
                                   {"Stockholms län", "Stockholms"},
                                   {"Okres Zlín", "Zlín"},
                                   {"Județul Cluj", "Cluj"},
                                   {"Bács-Kiskun megye", "Bács-Kiskun"},
                                   {"Helsinki sub-region", "Helsinki"},
                                   {"Област Варна", "Варна"},
                                   {"Îles du Ponant", "Îles du Ponant"},
                                   {"Ain", ""},
                                   {"Zug", ""},
                                   {"Kanton Uri", ""},
                                   {"Jura", "Jura"},
                                   {"Район", ""},
                                   {"Central Region", ""},
                                   {"North-East", ""},
                                   {"Nord-Est", "Nord-Est"},
                                   {"England", ""},
                                   {"County", ""},
                                   {"", ""},
                                   {" - ", ""}}) {
    EXPECT_EQ(bareRegionName(name), bare) << name;
  }
}

class RegionFileTest : public testing::Test {
 protected:
  Result<RegionUpdate, std::string> install(std::string const& document) {
    return installRegions({document}, file());
  }
  std::filesystem::path file() const { return regionFileIn(folder.path()); }

  std::string const good = collection({feature("DE1", "DE", "Kreis Alpha", square({52.52, 13.41}, 0.5)),
                                       feature("DE2", "DE", "Kreis Beta", square({52.52, 14.41}, 0.5)),
                                       feature("PL1", "PL", "Gamma", square({52.52, 16}, 0.5))});
  test::TemporaryFolder folder;
};

TEST_F(RegionFileTest, TellsWhatItHolds) {
  auto const update = install(good);
  ASSERT_TRUE(update) << update.error();
  EXPECT_EQ(update->regions, 3U);
  EXPECT_EQ(update->byCountry, (std::map<std::string, std::size_t>{{"DE", 2}, {"PL", 1}}));
  EXPECT_EQ(update->fileBytes, std::filesystem::file_size(file()));
  PlaceRegions const found = Regions(file()).at({52.52, 13.41});
  EXPECT_EQ(found.country, "DE");
  EXPECT_THAT(found.names, ElementsAre("Alpha", "Berlin"));
  EXPECT_THAT(found.codes, ElementsAre(RegionCode{"EMMA_ID", "DE1"}));
}

TEST_F(RegionFileTest, LeavesCodesOfNeighbouringCountriesOut) {
  ASSERT_TRUE(install(good));
  EXPECT_THAT(Regions(file()).at({52.5, 14.85}).codes, IsEmpty());  // in Poland, within a German outline
}

TEST_F(RegionFileTest, DoesWithoutOutlines) {
  Regions const none(file());
  EXPECT_THAT(none.at({52.52, 13.41}).names, ElementsAre("Berlin"));
  EXPECT_THAT(none.at({52.52, 13.41}).codes, IsEmpty());
  EXPECT_FALSE(none.problem());
  EXPECT_EQ(Regions({}).at({99, 0}), PlaceRegions{});
}

TEST_F(RegionFileTest, SaysWhyAFileCannotBeUsed) {
  ASSERT_TRUE(install(good));
  std::string const bytes = folder.read("regions.map");
  for (std::string const& bad :
       {std::string(), bytes.substr(0, bytes.size() / 2), "<html>" + bytes, bytes + "x"}) {
    folder.write("regions.map", bad);
    Regions const regions(file());
    EXPECT_THAT(regions.at({52.52, 13.41}).names, ElementsAre("Berlin"));
    ASSERT_TRUE(regions.problem());
    EXPECT_THAT(*regions.problem(), HasSubstr(file().string()));
    EXPECT_TRUE(install(good)) << "a broken file is replaced";
  }
}

TEST_F(RegionFileTest, KeepsTheGoodFileThroughBadUpdates) {
  ASSERT_TRUE(install(good));
  std::string const bytes = folder.read("regions.map");
  std::vector<std::string> bad = test::damagedForms(good, 50);
  bad.push_back(collection({}));
  bad.push_back(collection({feature("DE1", "DE", "Alone", square({52.52, 13.41}, 0.5))}));
  bad.push_back(std::string(2'000'000, '['));
  bad.push_back("{\"type\":\"FeatureCollection\"}");
  std::size_t refused = 0;
  for (std::string const& document : bad) {
    if (auto const update = install(document)) {
      EXPECT_GE(update->regions, 2U);
      ASSERT_TRUE(install(good));
      continue;
    }
    ++refused;
    ASSERT_EQ(folder.read("regions.map"), bytes);
  }
  EXPECT_GT(refused, bad.size() / 2);
}

constexpr char kList[] =
    R"([{"name":"README.md"},{"name":"MeteoAlarm_Geocodes_2026_02_20.json","type":"blob"},
  {"name":"MeteoAlarm_Geocodes_2026_07_31.json"},{"name":"MeteoAlarm_Geocodes_2026_07_31.csv"},{"name":"Zz.json"}])";

TEST_F(RegionFileTest, FetchesTheNewestOutlines) {
  test::FakeHttpClient http;
  http.willAnswer(200, kList);
  http.willAnswer(200, good);
  auto const update = updateRegions(http, "https://docs.example", file());
  ASSERT_TRUE(update) << update.error();
  EXPECT_EQ(update->edition, "MeteoAlarm_Geocodes_2026_07_31.json");
  EXPECT_EQ(update->regions, 3U);
  EXPECT_EQ(
      http.requests[1].url,
      "https://docs.example/meteoalarm-pm-group/documents/-/raw/master/MeteoAlarm_Geocodes_2026_07_31.json");
  EXPECT_GE(http.requests[1].maxBodyBytes, std::size_t{64} << 20);
}

TEST_F(RegionFileTest, SaysWhatCouldNotBeFetched) {
  struct Row {
    int listStatus;
    std::string list;
    int status;
    std::string document;
    std::string sentence;
  };
  for (Row const& row :
       {Row{500, "", 0, "", "the list of outlines cannot be fetched: status 500"},
        {200, "<html>", 0, "", "the list of outlines cannot be read"},
        {200, "[]", 0, "", "the list of outlines has none in it"},
        {200, kList, 404, "",
         "the outlines MeteoAlarm_Geocodes_2026_07_31.json cannot be fetched: status 404"},
        {200, kList, 200, "<html>", "the outlines cannot be read: it is no JSON"},
        {200, kList, 200, good.substr(0, good.size() - 9), "the outlines cannot be read: it is no JSON"},
        {200, kList, 200, "{}", "the outlines cannot be read: it is no collection of features"},
        {200, kList, 200, collection({}), "the outlines have no region in them"}}) {
    test::FakeHttpClient http;
    http.willAnswer(row.listStatus, row.list);
    if (row.status != 0) http.willAnswer(row.status, row.document);
    auto const update = updateRegions(http, "https://docs.example", file());
    ASSERT_FALSE(update);
    EXPECT_THAT(update.error(), HasSubstr(row.sentence));
    EXPECT_FALSE(std::filesystem::exists(file()));
  }
}

}  // namespace
}  // namespace nimbara
