#include "gazetteer/world_outlines.h"

#include "gazetteer/tables.h"
#include "tools/pack_gazetteer/world_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using gazetteer::cutAtDateLine;
using gazetteer::readWorldLines;
using gazetteer::Ring;

/// By the even-odd rule.
bool isWithin(std::vector<WorldLine> const& rings, Coordinate at) {
  bool odd = false;
  for (WorldLine const& ring : rings) {
    for (std::size_t i = 1; i < ring.size(); ++i) {
      Coordinate const& a = ring[i - 1];
      Coordinate const& b = ring[i];
      if ((a.latitude > at.latitude) == (b.latitude > at.latitude)) continue;
      double const share = (at.latitude - a.latitude) / (b.latitude - a.latitude);
      odd ^= at.longitude < a.longitude + share * (b.longitude - a.longitude);
    }
  }
  return odd;
}

struct PointRow {
  char const* name;
  Coordinate at;
  bool isLand;
};

TEST(WorldOutlines, DivideLandFromSea) {
  auto const land = landOutlines();
  for (PointRow const& row : {PointRow{"Berlin", {52.52, 13.4}, true},
                              {"Denver", {39.74, -104.99}, true},
                              {"Alice Springs", {-23.7, 133.88}, true},
                              {"Anadyr, beyond the 180th meridian", {66.8, -175}, true},
                              {"Siberia, before it", {67.5, 175}, true},
                              {"Antarctica", {-80, 0}, true},
                              {"the south pole", {-89.9, 77}, true},
                              {"the Atlantic", {0, -30}, false},
                              {"the Pacific on the meridian", {0, 180}, false},
                              {"the north pole", {89.9, 10}, false},
                              {"the Caspian Sea", {42, 51}, false}}) {
    EXPECT_EQ(isWithin(land, row.at), row.isLand) << row.name;
  }
}

TEST(WorldOutlines, AreClosedAndKeepToTheMap) {
  auto const land = landOutlines();
  EXPECT_GT(land.size(), 1000U);
  std::size_t points = 0;
  for (WorldLine const& ring : land) {
    ASSERT_GE(ring.size(), 4U);
    EXPECT_EQ(ring.front(), ring.back());
    points += ring.size();
    for (std::size_t i = 1; i < ring.size(); ++i) {
      ASSERT_TRUE(isValid(ring[i]));
      // Only Antarctica's edge, along the pole, is long.
      bool const isPole = ring[i].latitude == -90 && ring[i - 1].latitude == -90;
      ASSERT_TRUE(isPole || std::abs(ring[i].longitude - ring[i - 1].longitude) < 20);
    }
  }
  EXPECT_GT(points, 40'000U);
  EXPECT_LT(gazetteer::bytesOf(gazetteer::Section::coarsePoints).size(), 500'000U);
}

TEST(WorldOutlines, PassBordersBetweenNeighbours) {
  auto const borders = borderLines();
  EXPECT_GT(borders.size(), 250U);
  auto const passes = [&](Coordinate at) {
    return std::ranges::any_of(borders, [at](WorldLine const& line) {
      return std::ranges::any_of(line, [at](Coordinate point) { return haversineKm(at, point) < 30; });
    });
  };
  EXPECT_TRUE(passes({52.3, 14.6}));     // Germany and Poland
  EXPECT_FALSE(passes({43.3, -124.4}));  // a coast
}

TEST(DateLine, CutsWhatCrossesIt) {
  Ring const square{{10, 170}, {10, -170}, {20, -170}, {20, 170}};
  EXPECT_THAT(cutAtDateLine(square),
              testing::UnorderedElementsAre(
                  testing::UnorderedElementsAre(Coordinate{10, 170}, Coordinate{10, 180}, Coordinate{20, 180},
                                                Coordinate{20, 170}),
                  testing::UnorderedElementsAre(Coordinate{10, -180}, Coordinate{10, -170},
                                                Coordinate{20, -170}, Coordinate{20, -180})));
  Ring const elsewhere{{10, 0}, {10, 20}, {20, 20}};
  EXPECT_THAT(cutAtDateLine(elsewhere), testing::ElementsAre(elsewhere));
  EXPECT_THAT(cutAtDateLine({{1, 1}, {2, 2}}), testing::IsEmpty());
}

TEST(DateLine, LeavesAPoleWithItsCap) {
  std::vector<WorldLine> cap;
  for (Ring& part : cutAtDateLine({{-70, -100}, {-70, 0}, {-70, 100}, {-70, 170}, {-70, -170}})) {
    part.push_back(part.front());
    cap.push_back(part);
  }
  for (double const longitude : {-179.0, -120.0, 0.0, 99.0, 179.0}) {
    EXPECT_TRUE(isWithin(cap, {-75, longitude})) << longitude;
    EXPECT_FALSE(isWithin(cap, {-65, longitude})) << longitude;
  }
}

/// Two countries of one shore: a square, divided by the line that is written first.
constexpr char kTopology[] = R"({"type":"Topology","transform":{"scale":[2,1],"translate":[-10,-5]},
  "arcs":[[[5,0],[0,10]],[[5,10],[-5,0],[0,-10],[5,0]],[[5,0],[5,0],[0,10],[-5,0]]],
  "objects":{"land":{"type":"GeometryCollection","geometries":[{"type":"MultiPolygon","arcs":[[[1,2]]]}]},
  "countries":{"type":"GeometryCollection","geometries":[{"type":"Polygon","id":"276","arcs":[[0,1]]},
    {"type":"Polygon","id":"616","arcs":[[-1,2]]},{"type":null}]}}})";

TEST(WorldLines, AreJoinedFromWhatShapesShare) {
  auto const lines = readWorldLines(kTopology);
  EXPECT_THAT(lines.borders, testing::ElementsAre(Ring{{-5, 0}, {5, 0}}));
  EXPECT_THAT(lines.coasts,
              testing::ElementsAre(Ring{{5, 0}, {5, -10}, {-5, -10}, {-5, 0}, {-5, 10}, {5, 10}}));
}

TEST(WorldLines, OfATerritoryWithoutACodeAreDisputed) {
  std::string text = kTopology;
  text.replace(text.find("\"id\":\"616\","), 11, "");
  auto const lines = readWorldLines(text);
  EXPECT_THAT(lines.disputed, testing::ElementsAre(Ring{{-5, 0}, {5, 0}}));
  EXPECT_THAT(lines.borders, testing::IsEmpty());
}

/// A lake, and a river of two parts.
constexpr char kWaters[] = R"({"type":"Topology","transform":{"scale":[1,1],"translate":[0,0]},
  "arcs":[[[0,0],[4,0],[0,4],[-4,-4]],[[9,9],[1,1]],[[5,5],[2,0]]],
  "objects":{"lakes":{"geometries":[{"type":"Polygon","arcs":[[0]]}]},
  "rivers":{"geometries":[{"type":"MultiLineString","arcs":[[1],[-3]]},{"type":"LineString","arcs":[2]}]}}})";

TEST(WorldLines, HaveLakesAndRivers) {
  auto const waters = gazetteer::readWaters(kWaters);
  EXPECT_THAT(waters.lakes, testing::ElementsAre(Ring{{0, 0}, {0, 4}, {4, 4}}));
  EXPECT_THAT(waters.rivers,
              testing::ElementsAre(Ring{{9, 9}, {10, 10}}, Ring{{5, 5}, {5, 7}}, Ring{{5, 5}, {5, 7}}));
  EXPECT_THROW(gazetteer::readWaters(kTopology), std::runtime_error);
}

TEST(WorldOutlines, HaveLakesRiversAndDisputedBorders) {
  EXPECT_TRUE(isWithin(lakeOutlines(), {47.7, -87.5}));  // Lake Superior
  EXPECT_FALSE(isWithin(lakeOutlines(), {52.5, 13.4}));
  auto const passes = [](std::vector<WorldLine> const& lines, Coordinate at) {
    return std::ranges::any_of(lines, [at](WorldLine const& line) {
      return std::ranges::any_of(line, [at](Coordinate point) { return haversineKm(at, point) < 30; });
    });
  };
  EXPECT_TRUE(passes(riverLines(), {44.2, 28.0}));     // the Danube
  EXPECT_TRUE(passes(disputedLines(), {43.1, 20.9}));  // Kosovo's northern border
  EXPECT_FALSE(passes(disputedLines(), {52.3, 14.6}));
}

TEST(WorldLines, MustBeThere) {
  std::string const text = kTopology;
  for (std::string const& broken : {text.substr(0, 200), std::string("{}"), std::string()}) {
    EXPECT_THROW(readWorldLines(broken), std::runtime_error);
  }
}

}  // namespace
}  // namespace nimbara
