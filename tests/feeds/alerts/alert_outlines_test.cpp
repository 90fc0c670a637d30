#include "feeds/alerts/alert_outlines.h"

#include "regions/region_map.h"

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
  char const* name;
  char const* event;
  std::vector<WarningCode> codes;
  std::vector<Coordinate> inside;
  std::vector<Coordinate> outside;
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
