#include "feeds/alerts/alert_outlines.h"

#include "feeds/cap/warning_shape.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct OutlineRow {
  char const* name;
  std::vector<std::string> polygons;
  std::vector<std::string> circles;
  std::vector<Coordinate> inside;
  std::vector<Coordinate> outside;
  std::size_t rings = 1;
};

void PrintTo(OutlineRow const& row, std::ostream* out) {
  *out << row.name;
}

struct AlertOutlineRows : testing::TestWithParam<OutlineRow> {};

TEST_P(AlertOutlineRows, HoldWhatIsDrawn) {
  OutlineRow const& row = GetParam();
  WeatherAlert alert;
  alert.polygons = row.polygons;
  alert.circles = row.circles;
  AlertOutlines const outlines = alertOutlines(alert, nullptr);
  EXPECT_EQ(outlines.rings.size(), row.rings);
  for (Coordinate const place : row.inside) EXPECT_TRUE(holds(outlines, place)) << formatCoordinate(place);
  for (Coordinate const place : row.outside) EXPECT_FALSE(holds(outlines, place)) << formatCoordinate(place);
  for (auto const& ring : outlines.rings) {
    for (std::size_t i = 1; i < ring.size(); ++i)
      EXPECT_LE(std::abs(ring[i].longitude - ring[i - 1].longitude), 180) << "a line around the world";
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AlertOutlineRows,
    testing::Values(
        OutlineRow{"nothing", {}, {}, {}, {{0, 0}}, 0},
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
        OutlineRow{"unreadable", {"here", "10,20 10,22 12,22"}, {"there"}, {{10.5, 21.5}}, {{12, 20}}}),
    [](auto const& row) { return std::string(row.param.name); });

TEST(ShapeTexts, AreReadAsTheSameShapes) {
  WarningPolygon const polygon{{64.123456, -179.5}, {-0.00001, 2}, {3, 4}};
  EXPECT_EQ(parseWarningPolygon(shapeText(polygon)), polygon);
  WarningCircle const circle{{-33.25, 151}, 12.5};
  EXPECT_EQ(shapeText(circle), "-33.25,151 12.5");
  EXPECT_EQ(parseWarningCircle(shapeText(circle)), circle);
}

}  // namespace
}  // namespace nimbara
