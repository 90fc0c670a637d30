#include "feeds/cap/shape_geometry.h"

#include "feeds/alerts/alert_outlines.h"
#include "regions/region_map.h"

#include <gtest/gtest.h>

#include <cmath>

namespace nimbara {
namespace {

/// Where a place lies to an outline.
struct Row {
  std::string name;
  WarningPolygon polygon;
  Coordinate place;
  bool isInside = false;
  double km = -1;  ///< to the edge; below 0: further than 50 km
};

WarningPolygon const kFiji{{-16, 178}, {-16, -178}, {-18, -178}, {-18, 178}, {-16, 178}};
WarningPolygon const kEastOfCut{{65, -180}, {70, -180}, {70, -170}, {65, -170}};
WarningPolygon const kWestOfCut{{65, 170}, {70, 170}, {70, 180}, {65, 180}};
WarningPolygon const kSouthByThree{{-65, -120}, {-65, 0}, {-65, 120}};
WarningPolygon const kSouthDrawnFlat{{-65, -180}, {-65, -90}, {-65, 0},   {-65, 90},
                                     {-65, 180},  {-90, 180}, {-90, -180}};
WarningPolygon const kArctic{{80, -120}, {80, 0}, {80, 120}};
WarningPolygon const kTropics{{-20, -180}, {-20, 180}, {20, 180}, {20, -180}};
WarningPolygon const kBowTie{{0, 0}, {2, 2}, {0, 2}, {2, 0}};
WarningPolygon const kRing{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}, {1, 1}, {1, 3}, {3, 3}, {3, 1}, {1, 1}};

TEST(Lies, InAnOutlineOrSoFarFromIt) {
  for (Row const& row : {Row{"AcrossTheCutWestOfIt", kFiji, {-17, 179.9}, true},
                         Row{"AcrossTheCutEastOfIt", kFiji, {-17, -179.9}, true},
                         Row{"OnTheCutFromTheWest", kFiji, {-17, 180}, true},
                         Row{"OnTheCutFromTheEast", kFiji, {-17, -180}, true},
                         Row{"OnTheOtherSideOfTheEarth", kFiji, {-17, 0}},
                         Row{"SouthOfALongEdge", kFiji, {-18.1, -179.5}, false, 11.12},
                         Row{"FromBeyondTheCut", kEastOfCut, {67, 179.9}, false, 4.34},
                         Row{"EastHalf", kEastOfCut, {67, -179.9}, true},
                         Row{"WestHalf", kWestOfCut, {67, 179.9}, true},
                         Row{"RoundThePoleByThreeCorners", kSouthByThree, {-75, 10}, true},
                         Row{"ThePoleItself", kSouthByThree, {-90, 77}, true},
                         Row{"NorthOfThePolarCap", kSouthByThree, {-64.9, 10}, false, 11.12},
                         Row{"TheOtherPole", kSouthByThree, {89, 10}},
                         Row{"RoundThePoleDrawnFlat", kSouthDrawnFlat, {-75, 180}, true},
                         Row{"OutsideWhatIsDrawnFlat", kSouthDrawnFlat, {-60, 10}},
                         Row{"TheNorthPole", kArctic, {90, 0}, true},
                         Row{"SouthOfTheArctic", kArctic, {79, 10}},
                         Row{"AllRoundTheEarth", kTropics, {10, 20}, true},
                         Row{"NorthOfAllRoundTheEarth", kTropics, {20.1, 20}, false, 11.12},
                         Row{"BelowTheCrossing", kBowTie, {0.2, 1}},
                         Row{"InTheLeftWing", kBowTie, {1, 0.5}, true},
                         Row{"InTheRightWing", kBowTie, {0.5, 1.7}, true},
                         Row{"BetweenTheRings", kRing, {0.5, 2}, true},
                         Row{"InTheHole", kRing, {1.1, 2}, false, 11.12},
                         Row{"NoCorners", {}, {1, 1}},
                         Row{"OneCornerThrice", {{10, 10}, {10, 10}, {10, 10}}, {10, 10}, false, 0},
                         Row{"ALine", {{10, 10}, {10, 11}, {10, 12}}, {10.1, 11}, false, 11.12}}) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(holds(row.polygon, row.place), row.isInside);
    auto const km = kmTo(row.polygon, row.place, 50);
    if (row.isInside) EXPECT_EQ(km, 0.0);
    if (!row.isInside && row.km < 0) EXPECT_EQ(km, std::nullopt);
    if (!row.isInside && row.km >= 0) EXPECT_NEAR(km.value_or(-1), row.km, 0.02);
    EXPECT_TRUE(!km || isNear(boxOf(row.polygon), row.place, 50));
    // With the outline turned round and its first corner said twice nothing is different.
    WarningPolygon turned(row.polygon.rbegin(), row.polygon.rend());
    if (!turned.empty()) turned.push_back(turned.front());
    EXPECT_EQ(holds(turned, row.place), row.isInside);
  }
}

TEST(ShapeGeometry, NeighboursShareTheirBorderWithoutGapsAndOverlaps) {
  WarningPolygon const left{{0, 0}, {0, 1}, {3, 2}, {3, 0}};
  WarningPolygon const right{{0, 1}, {0, 3}, {3, 3}, {3, 2}};
  for (int i = 1; i < 300; ++i) {
    double const latitude = i / 100.0;
    Coordinate const border{latitude, 1 + latitude / 3};
    EXPECT_NE(holds(left, border), holds(right, border)) << latitude;
  }
  for (double const cut : {180.0, -180.0})
    EXPECT_NE(holds(kWestOfCut, {67, cut}), holds(kEastOfCut, {67, cut}));
}

TEST(ShapeGeometry, ACircleIsFilledAndAPointIsNone) {
  WarningCircle const circle{{-17, 179.9}, 30};
  EXPECT_TRUE(holds(circle, {-17, -179.9}));
  EXPECT_FALSE(holds(circle, {-17, -179.7}));
  EXPECT_NEAR(kmTo(circle, {-17, -179.7}, 50).value_or(-1), 12.53, 0.02);
  EXPECT_EQ(kmTo(circle, {-17, -179}, 50), std::nullopt);
  EXPECT_FALSE(holds(WarningCircle{{1, 1}, 0}, {1, 1}));
  EXPECT_FALSE(isDrawn({"A", {{{1, 1}, {1, 1}, {1, 1}}}, {{{1, 1}, 0}}, {}}));
  EXPECT_TRUE(isDrawn({"A", {}, {circle}, {}}));
}

TEST(ShapeGeometry, AnAreaIsAsFarAsItsNearestShapeWithBoxesOrWithout) {
  CapAlert message;
  message.infos.emplace_back().areas.push_back({"A", {kFiji, kEastOfCut, kArctic}, {{{-20, 178}, 100}}, {}});
  CapArea& area = message.infos[0].areas[0];
  for (Coordinate const place :
       {Coordinate{-17, 179}, {-18.1, 179}, {67, 179.9}, {89, 1}, {-19.2, 178}, {50, 50}}) {
    area.boxes.list.clear();
    auto const without = kmTo(area, place, 50);
    noteBoxes(message);
    ASSERT_EQ(area.boxes.list.size(), 3U);
    EXPECT_EQ(kmTo(area, place, 50), without);
  }
}

struct OutlineRow {
  char const* name;
  std::vector<std::string> polygons, circles;
  std::vector<Coordinate> inside, outside;
  std::size_t rings = 1;
};

TEST(AlertOutlineRows, HoldWhatIsDrawn) {
  for (OutlineRow const& row :
       {OutlineRow{"nothing", {}, {}, {}, {{0, 0}}, 0},
        OutlineRow{"square", {"10,20 10,22 12,22 12,20 10,20"}, {}, {{11, 21}}, {{11, 19.9}, {9.9, 21}}},
        OutlineRow{"overlapping",
                   {"10,20 10,22 12,22 12,20", "11,21 11,23 13,23 13,21"},
                   {},
                   {{11.5, 21.5}, {10.5, 20.5}, {12.5, 22.5}},
                   {{12.5, 20.5}},
                   2},
        OutlineRow{"acrossTheDateLine",
                   {"64,178 64,-178 66,-178 66,178"},
                   {},
                   {{65, 179}, {65, -179}},
                   {{65, 177}, {65, -177}, {65, 0}}},
        OutlineRow{"circle", {}, {"50,8 100"}, {{50, 8}, {50.85, 8}, {50, 9.3}}, {{50.95, 8}, {50, 9.5}}},
        OutlineRow{"circleAtTheDateLine", {}, {"0,-179.9 100"}, {{0, 179.5}, {0, -179.1}}, {{0, 178.9}}},
        OutlineRow{"point", {}, {"50,8 0"}, {}, {{50, 8}}, 0},
        OutlineRow{"unreadable", {"here", "10,20 10,22 12,22"}, {"there"}, {{10.5, 21.5}}, {{12, 20}}}}) {
    SCOPED_TRACE(row.name);
    WeatherAlert alert;
    alert.polygons = row.polygons;
    alert.circles = row.circles;
    AlertOutlines const outlines = alertOutlines(alert, nullptr);
    EXPECT_EQ(outlines.rings.size(), row.rings);
    for (Coordinate const place : row.inside) EXPECT_TRUE(holds(outlines, place)) << formatCoordinate(place);
    for (Coordinate const place : row.outside)
      EXPECT_FALSE(holds(outlines, place)) << formatCoordinate(place);
    for (auto const& ring : outlines.rings) {
      for (std::size_t i = 1; i < ring.size(); ++i)
        EXPECT_LE(std::abs(ring[i].longitude - ring[i - 1].longitude), 180) << "a line around the world";
    }
  }
}

WarningPolygon square(double south, double west, double side) {
  return {{south, west}, {south, west + side}, {south + side, west + side}, {south + side, west}};
}

RegionOutline region(char const* registry, char const* code, std::vector<WarningPolygon> const& rings) {
  RegionOutline outline{{registry, code}, "XX", code, {}};
  for (WarningPolygon const& ring : rings) {
    auto& points = outline.rings.emplace_back();
    for (Coordinate const corner : ring) points.push_back(outlinePoint(corner));
  }
  return outline;
}

WarningMessage naming(std::vector<WarningCode> codes) {
  return {"1", "office@weather.example", std::nullopt, "Actual", "Alert", {}, std::move(codes)};
}

struct NamedRow {
  char const *name, *event;
  std::vector<WarningCode> codes;
  std::vector<Coordinate> inside, outside;
  std::size_t regions = 1;
};

void PrintTo(NamedRow const& row, std::ostream* out) {
  *out << row.name;
}

/// XX1 and XX2 lie side by side, XX2 with a lake and an island in it; XXA is the same as XX1 for another
/// registry.
struct NamedRegions : testing::TestWithParam<NamedRow> {
  static std::string bytes() {
    auto set = outlineSetOf(
        {region("EMMA_ID", "XX1", {square(50, 10, 2)}),
         region("EMMA_ID", "XX2", {square(50, 12, 2), square(50.5, 12.5, 1), square(50.8, 12.8, 0.4)}),
         region("NUTS3", "XXA", {square(50, 10, 2)})},
        0);
    set.aliases = {{{"WARNCELLID", "7"}, "XX1"}, {{"WARNCELLID", "8"}, "XX1"}};
    return regionMapOf(set);
  }
};

TEST_P(NamedRegions, AreOutlinedEachOnce) {
  NamedRow const& row = GetParam();
  std::string const packed = bytes();
  auto const map = RegionMap::over(packed);
  ASSERT_TRUE(map);
  WeatherAlert alert;
  alert.event = row.event;
  alert.messages = {naming(row.codes)};
  EXPECT_EQ(regionOutlines(alert, &*map).size(), row.regions);
  EXPECT_TRUE(regionOutlines(alert, nullptr).empty());
  AlertOutlines const outlines = alertOutlines(alert, &*map);
  for (Coordinate const place : row.inside) EXPECT_TRUE(holds(outlines, place)) << formatCoordinate(place);
  for (Coordinate const place : row.outside) EXPECT_FALSE(holds(outlines, place)) << formatCoordinate(place);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, NamedRegions,
    testing::Values(
        NamedRow{"TheEvents", "XX|wind|EMMA_ID:XX1", {}, {{51, 11}}, {{51.9, 13.9}}},
        NamedRow{
            "TheMessages", "|", {{"EMMA_ID", "XX2"}}, {{50.2, 12.2}, {51, 13}}, {{50.6, 12.6}, {51, 11}}},
        NamedRow{"Both",
                 "XX|wind|EMMA_ID:XX1",
                 {{"EMMA_ID", "XX1"}, {"EMMA_ID", "XX2"}},
                 {{51, 11}, {50.2, 12.2}},
                 {},
                 2},
        NamedRow{"OneRegistryOnly",
                 "XX|wind|EMMA_ID:XX1",
                 {{"NUTS3", "XXA"}, {"WARNCELLID", "7"}},
                 {{51, 11}},
                 {}},
        NamedRow{"AliasesOfOneRegion", "|", {{"WARNCELLID", "7"}, {"WARNCELLID", "8"}}, {{51, 11}}, {}},
        NamedRow{"UnknownFirst", "1a2b", {{"UGC", "COZ038"}, {"NUTS3", "XXA"}}, {{51, 11}}, {}},
        NamedRow{"Unknown", "XX|wind|EMMA_ID:XX9", {{"FIPS", "US01"}}, {}, {{51, 11}}, 0}),
    [](auto const& row) { return std::string(row.param.name); });

TEST(PartsOfARegion, AreWithoutTheirLakesAndWithTheIslandsInThem) {
  WarningPolygon const land = square(50, 12, 2);
  WarningPolygon const lake = square(50.5, 12.5, 1);
  WarningPolygon const island = square(50.8, 12.8, 0.4);
  WarningPolygon const besides = square(50, 14, 1);
  EXPECT_EQ(partsOf({lake, land, besides, island}),
            (std::vector<OutlinedArea>{{land, {lake}}, {besides, {}}, {island, {}}}));
}

TEST(ShapeTexts, AreReadAsTheSameShapes) {
  WarningPolygon const polygon{{64.123456, -179.5}, {-0.00001, 2}, {3, 4}};
  EXPECT_EQ(parseWarningPolygon(shapeText(polygon)), polygon);
  WarningCircle const circle{{-33.25, 151}, 12.5};
  EXPECT_EQ(shapeText(circle), "-33.25,151 12.5");
  EXPECT_EQ(parseWarningCircle(shapeText(circle)), circle);
}

}  // namespace
}  // namespace nimbara
