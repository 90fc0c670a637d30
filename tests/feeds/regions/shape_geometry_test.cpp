#include "feeds/cap/shape_geometry.h"

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

class Lies : public testing::TestWithParam<Row> {};

TEST_P(Lies, InAnOutlineOrSoFarFromIt) {
  Row const& row = GetParam();
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

INSTANTIATE_TEST_SUITE_P(
    Geometry, Lies,
    testing::Values(Row{"AcrossTheCutWestOfIt", kFiji, {-17, 179.9}, true},
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
                    Row{"TheNorthPole", kArctic, {90, 0}, true}, Row{"SouthOfTheArctic", kArctic, {79, 10}},
                    Row{"AllRoundTheEarth", kTropics, {10, 20}, true},
                    Row{"NorthOfAllRoundTheEarth", kTropics, {20.1, 20}, false, 11.12},
                    Row{"BelowTheCrossing", kBowTie, {0.2, 1}}, Row{"InTheLeftWing", kBowTie, {1, 0.5}, true},
                    Row{"InTheRightWing", kBowTie, {0.5, 1.7}, true},
                    Row{"BetweenTheRings", kRing, {0.5, 2}, true},
                    Row{"InTheHole", kRing, {1.1, 2}, false, 11.12}, Row{"NoCorners", {}, {1, 1}},
                    Row{"OneCornerThrice", {{10, 10}, {10, 10}, {10, 10}}, {10, 10}, false, 0},
                    Row{"ALine", {{10, 10}, {10, 11}, {10, 12}}, {10.1, 11}, false, 11.12}),
    [](auto const& row) { return row.param.name; });

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

}  // namespace
}  // namespace nimbara
