#include "regions/region_map.h"

#include "support/answers/outlines.h"

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
  return reading ? regionMapOf(outlineSetOf(reading->outlines)) : std::string();
}

std::vector<std::string> codesAt(std::string const& bytes, Coordinate place, std::string_view country = {}) {
  auto const map = RegionMap::over(bytes);
  EXPECT_TRUE(map) << map.error();
  std::vector<std::string> codes;
  if (!map) return codes;
  for (MappedRegion const& region : map->at(place, country)) codes.emplace_back(region.code);
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
    std::string_view country;
    std::vector<std::string> codes;
  };
  for (auto const& [place, country, codes] :
       {Row{{52.5, 12.5}, "", {"XX1"}},
        {{51.5, 11.5}, "", {"XX2"}},
        {{50.25, 10.25}, "", {"XX3", "XX1"}},  // the smaller first
        {{51.5, 14}, "", {"XX4"}},
        {{51.5, 12.99}, "", {"XX1"}},
        {{51.5, 13.01}, "", {"XX4"}},
        {{51.5, 13.01}, "DE", {"XX1"}},  // beyond the border, but its country is known
        {{51.5, 13.35}, "DE", {"XX1"}},  // 24.3 km
        {{51.5, 13.37}, "DE", {}},       // 25.6 km
        {{53.02, 11}, "", {}},           // on nobody's ground, of no known country
        {{53.22, 11}, "DE", {"XX1"}},    // 24.5 km
        {{53.23, 11}, "DE", {}},         // 25.6 km
        {{51.5, 9.65}, "DE", {"XX1"}},
        {{51.5, 9.63}, "DE", {}},
        {{0, 0}, "", {}},
        {{90, 0}, "DE", {}},
        {{-90, -180}, "", {}},
        {{91, 0}, "", {}},
        {{51.5, std::nan("")}, "DE", {}}}) {
    EXPECT_EQ(codesAt(bytes, place, country), codes) << formatCoordinate(place) << country;
  }
}

TEST(RegionMap, TakesHugeAndPolarRegions) {
  std::string const bytes = mapOf(collection({feature("WORLD", "", "World", rectangle(-90, -180, 90, 180)),
                                              feature("POLE", "", "Pole", rectangle(85, -180, 90, 180)),
                                              feature("EAST", "", "East", rectangle(10, 179, 20, 180))}));
  EXPECT_THAT(codesAt(bytes, {89, 179}), ElementsAre("WORLD", "POLE")) << "land first";
  EXPECT_THAT(codesAt(bytes, {15, 179.5}), ElementsAre("WORLD", "EAST"));
  EXPECT_THAT(codesAt(bytes, {-90, -180}).size(), 1U);
}

TEST(RegionMap, GivesARegionsOutlineAsRings) {
  OutlineSet set = outlineSetOf(
      readOutlines(collection({feature("XX1", "DE", "Whole",
                                       rectangle(50, 10, 53, 13) + "," + rectangle(51, 11, 52, 12)),
                               feature("XX2", "DE", "Beside", rectangle(50, 13, 53, 16))}))
          ->outlines);
  set.aliases = {{{"NUTS3", "DE1"}, "XX2"}};
  std::string const bytes = regionMapOf(set);
  auto const map = RegionMap::over(bytes);
  ASSERT_TRUE(map);
  auto const cornersOf = [&](RegionCode const& code) {
    std::vector<std::size_t> counts;
    for (auto const& ring : map->outlineOf(code)) {
      EXPECT_NE(ring.front(), ring.back());
      counts.push_back(ring.size());
    }
    return counts;
  };
  EXPECT_THAT(cornersOf({"EMMA_ID", "XX1"}), testing::UnorderedElementsAre(4, 4)) << "and a hole";
  EXPECT_THAT(map->outlineOf({"EMMA_ID", "XX2"}),
              ElementsAre(testing::UnorderedElementsAre(Coordinate{50, 13}, Coordinate{53, 13},
                                                        Coordinate{53, 16}, Coordinate{50, 16})));
  EXPECT_EQ(map->outlineOf({"NUTS3", "DE1"}), map->outlineOf({"EMMA_ID", "XX2"}));
  EXPECT_THAT(map->outlineOf({"EMMA_ID", "XX3"}), IsEmpty());
}

TEST(Rings, AreMadeOfArcsThatMeet) {
  OutlinePoint const a{0, 0}, b{0, 9}, c{9, 9};
  EXPECT_THAT(ringsOf({{a, b}, {c, b}, {c, a}}), ElementsAre(ElementsAre(a, b, c)));
  EXPECT_THAT(ringsOf({{a, b, c, a}}), ElementsAre(ElementsAre(a, b, c)));
  EXPECT_THAT(ringsOf({{a, b}, {b, c}}), IsEmpty()) << "it is open";
  EXPECT_THAT(ringsOf({{a}, {}}), IsEmpty());
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
  std::string const bytes = regionMapOf(outlineSetOf(outlines));
  auto const map = RegionMap::over(bytes);
  ASSERT_TRUE(map);
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
    std::vector<std::string> holding;
    for (MappedRegion const& region : map->at(place)) {
      if (region.km == 0) holding.emplace_back(region.code);
    }
    ASSERT_THAT(holding, testing::UnorderedElementsAreArray(expected)) << round;
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
        EXPECT_LE(map->at({52, 13}, "DE").size(), FoundRegions::kMost);
        map->countByCountry();
      }
    }
  }
}

TEST(Outlines, LoseOnlyPointsThatDoNotMatter) {
  OutlineArc circle;
  for (int i = 0; i <= 3600; ++i) {
    double const angle = (i % 3600) * std::numbers::pi / 1800;
    circle.push_back(outlinePoint({50 + std::sin(angle), 10 + std::cos(angle)}));
  }
  OutlineArc const few = simplified(circle, 20);
  EXPECT_LT(few.size(), 120U);
  EXPECT_GT(few.size(), 30U);
  EXPECT_EQ(few.front(), circle.front());
  EXPECT_EQ(few.back(), circle.back());
  EXPECT_EQ(simplified({{0, 0}, {0, 1000}, {0, 2000}, {5000, 2000}}, 20),
            (OutlineArc{{0, 0}, {0, 2000}, {5000, 2000}}));
  EXPECT_EQ(simplified({{0, 0}, {10, 10}}, 20).size(), 2U) << "its ends stay";
  EXPECT_THAT(simplified({{0, 0}, {10, 10}, {0, 10}, {0, 0}}, 20), IsEmpty()) << "closed";
  EXPECT_EQ(simplified({{0, 0}, {10, 10}, {0, 10}, {0, 0}}, 0).size(), 4U);
  EXPECT_THAT(simplified({}, 0), IsEmpty());
  EXPECT_THAT(simplified({{1, 1}}, 0), IsEmpty());
}

TEST(Outlines, ShareTheirBorders) {
  auto const reading = readOutlines(collection({feature("A", "DE", "Alpha", rectangle(50, 10, 51, 11)),
                                                feature("B", "DE", "Beta", rectangle(50, 11, 51, 12))}));
  ASSERT_TRUE(reading);
  OutlineSet const set = outlineSetOf(reading->outlines);
  EXPECT_EQ(set.arcs.size(), 3U) << "two of one's own and one that both have";
  ASSERT_EQ(set.regions.size(), 2U);
  EXPECT_EQ(set.regions[0].arcs.size(), 2U);
  std::string const bytes = regionMapOf(set);
  for (double longitude = 10.9; longitude < 11.1; longitude += 0.00001)
    ASSERT_EQ(codesAt(bytes, {50.5, longitude}).size(), 1U) << "on neither side nor on both: " << longitude;
}

TEST(Outlines, ComeBackFromTheirText) {
  auto const reading = readOutlines(collection({feature("A", "DE", "Alpha", rectangle(50, 10, 51, 11)),
                                                feature("B", "DE", "B", rectangle(50, 11, 51, 12)),
                                                feature("C", "PT", "Portugal", rectangle(40, -8, 41, -7)),
                                                feature("D", "PT", "Portugal", rectangle(39, -8, 40, -7)),
                                                feature("E", "DE", "Sea", rectangle(54.2, 7, 54.6, 7.5))}));
  ASSERT_TRUE(reading);
  OutlineSet set = outlineSetOf(reading->outlines);
  set.edition = "2026-02-20";
  set.aliases = readAliases("# registry\tcode\tEMMA_ID codes\nNUTS3\tDE1\tA B\nFIPS\tX\n");
  EXPECT_EQ(set.aliases, (std::vector<RegionAlias>{{{"NUTS3", "DE1"}, "A"}, {{"NUTS3", "DE1"}, "B"}}));
  std::string const text = outlineText(set);
  auto const back = readOutlineText(text);
  ASSERT_TRUE(back) << back.error();
  EXPECT_EQ(outlineText(*back), text);
  EXPECT_EQ(regionMapOf(*back), regionMapOf(set));
  EXPECT_EQ(outlineText(RegionMap::over(regionMapOf(set))->outlines()), text);
  EXPECT_EQ(set.regions[0].name, "Alpha");
  EXPECT_EQ(set.regions[1].name, "") << "the code is no name";
  EXPECT_EQ(set.regions[2].name, "") << "nor is what others are called as well";
  EXPECT_FALSE(set.regions[0].isSea);
  EXPECT_TRUE(set.regions[4].isSea);
}

TEST(Outlines, AreRefusedWhereTheirTextIsWrong) {
  EXPECT_TRUE(readOutlineText("# none\n\n"));
  for (std::string const bad :
       {"arc\t1", "arc\t1 2", "arc\t1 2 x 4", "arc\t1 2 3", "arc\t9999999 2 1 1", "arc", "rubbish",
        "region\tEMMA_ID\tA\tDE\tland\tAlpha\t0", "arc\t1 2 3 4\nregion\tEMMA_ID\tA\tDE\tlake\tAlpha\t0",
        "arc\t1 2 3 4\nregion\tEMMA_ID\tA\tDE\tland\tAlpha\t1",
        "arc\t1 2 3 4\nregion\tEMMA_ID\tA\tDE\tland\tAlpha\t", "alias\tNUTS3\tA"})
    EXPECT_FALSE(readOutlineText(bad)) << bad;
}

TEST(Outlines, AreCompletedFromAnOlderEdition) {
  auto const setOf = [](std::vector<std::string> const& features) {
    return outlineSetOf(readOutlines(collection(features))->outlines);
  };
  OutlineSet set = setOf({feature("A", "DE", "Alpha", rectangle(50, 10, 51, 11)),
                          feature("C", "LV", "Gamma", rectangle(56, 24, 57, 25))});
  OutlineSet older = setOf({feature("A", "DE", "Old", rectangle(52, 10, 53, 11)),
                            feature("B", "DE", "Gone", rectangle(50, 11, 51, 12)),
                            feature("C", "LV", "Old", rectangle(50, 11, 51, 12)),
                            feature("D", "LV", "Delta", rectangle(57, 24, 58, 25)),
                            feature("E", "LV", "Eta", rectangle(57, 25, 58, 26)),
                            feature("F", "SE", "Phi", rectangle(60, 15, 61, 16))});
  older.aliases = {{{"NUTS3", "N"}, "F"}};
  complete(set, older);
  std::string const bytes = regionMapOf(set);
  EXPECT_THAT(codesAt(bytes, {50.5, 10.5}), ElementsAre("A"));
  EXPECT_THAT(codesAt(bytes, {50.5, 11.5}), IsEmpty()) << "half of Germany's regions are enough";
  EXPECT_THAT(codesAt(bytes, {56.5, 24.5}), ElementsAre("C"));
  EXPECT_THAT(codesAt(bytes, {57.5, 25.5}), ElementsAre("E")) << "a third of Latvia's are not";
  EXPECT_THAT(codesAt(bytes, {60.5, 15.5}), ElementsAre("F"));
  EXPECT_THAT(RegionMap::over(bytes)->aliasesOf("F"), ElementsAre(RegionCode{"NUTS3", "N"}));
}

TEST(LandShare, TellsSeaFromLand) {
  auto const shareOf = [](double south, double west, double north, double east) {
    return landShare({{outlinePoint({south, west}), outlinePoint({south, east}), outlinePoint({north, east}),
                       outlinePoint({north, west})}});
  };
  EXPECT_DOUBLE_EQ(shareOf(51, 10, 52, 11), 1) << "Hesse";
  EXPECT_DOUBLE_EQ(shareOf(55.5, 4, 56.5, 5), 0) << "North Sea";
  EXPECT_NEAR(shareOf(52, 4, 53, 5), 0.5, 0.2) << "Holland's coast";
  EXPECT_DOUBLE_EQ(landShare({}), 1);
}

TEST(RegionMap, FindsSeaRegionsFromTheShore) {
  // The sea west of Esbjerg, and land that ends short of it.
  std::string const bytes = mapOf(collection({feature("LAND", "DK", "Land", rectangle(55.4, 8.6, 55.6, 9.5)),
                                              feature("SEA", "DK", "Sea", rectangle(55.2, 7, 55.8, 8.3)),
                                              feature("NOR", "NO", "Far", rectangle(55.2, 6, 55.8, 8.3))}));
  struct Row {
    Coordinate place;
    std::string_view country;
    std::vector<std::string> codes;
  };
  for (auto const& [place, country, codes] :
       {Row{{55.5, 8.9}, "DK", {"LAND"}},
        {{55.5, 8.37}, "DK", {"LAND", "SEA"}},  // 4.4 km from the sea, 14 km from the land
        {{55.5, 8.385}, "DK", {"LAND"}},        // 5.4 km
        {{55.5, 8.25}, "DK", {"LAND", "SEA"}},  // 22 km from the land
        {{55.5, 8.1}, "DK", {"SEA"}},           // 31 km
        {{55.5, 8.1}, "", {"SEA", "NOR"}},
        {{55.5, 8.25}, "NO", {"NOR"}}})
    EXPECT_EQ(codesAt(bytes, place, country), codes) << formatCoordinate(place) << country;
  auto const map = RegionMap::over(bytes);
  FoundRegions const found = map->at({55.5, 8.37}, "DK");
  EXPECT_NEAR(found.begin()->km, 14.5, 0.2);
  EXPECT_FALSE(found.begin()->isSea);
  EXPECT_TRUE((found.begin() + 1)->isSea);
}

TEST(RegionMap, KnowsCodesAndNames) {
  OutlineSet set =
      outlineSetOf(readOutlines(collection({feature("FR035", "FR", "Haute Savoie", square({45.9, 6.1}, 0.3)),
                                            feature("FR036", "FR", "Savoie", square({45.5, 6.4}, 0.1))}))
                       ->outlines);
  set.aliases = {{{"NUTS3", "FR718"}, "FR035"}};
  std::string const bytes = regionMapOf(set);
  auto const map = RegionMap::over(bytes);
  EXPECT_TRUE(map->knows({"EMMA_ID", "FR035"}));
  EXPECT_TRUE(map->knows({"NUTS3", "FR718"}));
  EXPECT_FALSE(map->knows({"NUTS3", "FR035"}));
  EXPECT_FALSE(map->knows({"EMMA_ID", "FR037"}));
  EXPECT_THAT(map->aliasesOf("FR035"), ElementsAre(RegionCode{"NUTS3", "FR718"}));
  EXPECT_THAT(map->aliasesOf("FR036"), IsEmpty());
  EXPECT_TRUE(map->hasName("haute savoie"));
  EXPECT_TRUE(map->hasName("savoie"));
  EXPECT_FALSE(map->hasName("haute"));
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
  EXPECT_EQ(reading->outlines[0].rings.size(), 3U);
  EXPECT_EQ(reading->outlines[1].code, (RegionCode{"NUTS3", "FR718"}));
  EXPECT_EQ(reading->outlines[1].name, "Haute-Savoie");
  EXPECT_EQ(reading->outlines[2].country, "GR");
}

}  // namespace
}  // namespace nimbara
