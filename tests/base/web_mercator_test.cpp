#include "base/web_mercator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace nimbara {
namespace {

/// Tiles of well-known places, by the published formula of slippy maps.
struct TileRow {
  char const* name;
  Coordinate place;
  TileAddress tile;
};

class TileOf : public testing::TestWithParam<TileRow> {};

TEST_P(TileOf, liesWhereTheFormulaSays) {
  TileRow const& row = GetParam();
  MapView const view{mercatorOf(row.place), double(row.tile.zoom), 1, 1};
  EXPECT_EQ(tilesOf(view, row.tile.zoom).front(), row.tile);
  Coordinate const back = coordinateOf(mercatorOf(row.place));
  EXPECT_NEAR(back.latitude, std::clamp(row.place.latitude, -kMercatorLimit, kMercatorLimit), 1e-9);
  EXPECT_NEAR(back.longitude, row.place.longitude, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Rows, TileOf,
                         testing::Values(TileRow{"theWorld", {0, 0}, {0, 0, 0}},
                                         TileRow{"berlin", {52.5, 13.4}, {10, 550, 335}},
                                         TileRow{"greenwich", {51.4779, 0.0015}, {7, 64, 42}},
                                         TileRow{"newYork", {40.7128, -74.006}, {7, 37, 48}},
                                         TileRow{"sydney", {-33.8688, 151.2093}, {7, 117, 76}},
                                         TileRow{"westOfTheDateLine", {-16.8, 179.99}, {6, 63, 35}},
                                         TileRow{"eastOfTheDateLine", {-16.8, -179.99}, {6, 0, 35}},
                                         TileRow{"northOfTheLimit", {89, 10}, {4, 8, 0}},
                                         TileRow{"southOfTheLimit", {-89.9, 10}, {4, 8, 15}}),
                         [](auto const& info) { return info.param.name; });

TEST(WebMercator, meetsTheCornersOfTheSquare) {
  EXPECT_NEAR(mercatorOf({kMercatorLimit, -180}).y, 0, 1e-12);
  EXPECT_NEAR(mercatorOf({-kMercatorLimit, 180}).y, 1, 1e-12);
  EXPECT_EQ(mercatorOf({90, -180}), (MapPoint{0, 0}));
  EXPECT_NEAR(coordinateOf({1.25, 0.5}).longitude, -90, 1e-9);
  EXPECT_NEAR(coordinateOf(southEastOf({1, 0, 0})).longitude, 0, 1e-9);
}

TEST(WebMercator, tilesGoAroundTheWorldAndStopAtThePoles) {
  // Two tiles wide about the date line, at the northern edge.
  MapView const view = bounded({{0.999, 0}, 4, 512, 256});
  auto const tiles = tilesOf(view, 4);
  std::set<int> columns;
  for (TileAddress const tile : tiles) {
    columns.insert(tile.x);
    EXPECT_EQ(tile.y, 0);
  }
  EXPECT_EQ(columns, (std::set<int>{0, 14, 15}));
  EXPECT_EQ(tiles.front().x, 15);
}

TEST(WebMercator, aWindowWiderThanTheWorldNamesEachTileOnce) {
  auto const tiles = tilesOf(bounded({{0.5, 0.5}, 2, 3000, 2000}), 2);
  EXPECT_EQ(tiles.size(), 16U);
  EXPECT_EQ(std::set<TileAddress>(tiles.begin(), tiles.end()).size(), 16U);
}

TEST(WebMercator, parentsHoldTheirTiles) {
  EXPECT_EQ(parentAt({10, 550, 335}, 7), (TileAddress{7, 68, 41}));
  EXPECT_EQ(parentAt({3, 5, 2}, 6), (TileAddress{3, 5, 2}));
}

TEST(MapView, zoomKeepsWhatLiesUnderThePointer) {
  MapView const view{mercatorOf({52.5, 13.4}), 6, 800, 600};
  MapPoint const pointer{620, 130};
  MapPoint const held = pointAt(view, pointer);
  for (double const zoom : {2.5, 6.5, 12.0}) {
    MapPoint const now = pixelOf(zoomedAbout(view, zoom, pointer), held);
    EXPECT_NEAR(now.x, pointer.x, 1e-6) << zoom;
    EXPECT_NEAR(now.y, pointer.y, 1e-6) << zoom;
  }
  EXPECT_EQ(zoomedAbout(view, 40, pointer).zoom, kGreatestMapZoom);
  EXPECT_EQ(zoomedAbout(view, 0, pointer).zoom, kLeastMapZoom);
}

TEST(MapView, panGoesAroundTheWorldAndStopsAtThePoles) {
  MapView const view{mercatorOf({70, 179}), 4, 800, 600};
  EXPECT_NEAR(coordinateOf(panned(view, 4096 * 2 / 360.0, 0).centre).longitude, -180 + 1, 1e-6);
  MapView const top = panned(view, 0, -1e6);
  EXPECT_NEAR(pointAt(top, {0, 0}).y, 0, 1e-12);
  MapView const bottom = panned(view, 0, 1e6);
  EXPECT_NEAR(pointAt(bottom, {0, 600}).y, 1, 1e-12);
  // Where the window is higher than the world, that stays in the middle.
  EXPECT_EQ(panned({{0.5, 0.5}, 2, 800, 1200}, 0, 500).centre.y, 0.5);
}

TEST(MapView, aThingIsSeenOnEachWayAroundTheWorld) {
  auto const count = [](MapView const& view, double west, double east) {
    WorldTurns const turns = turnsOf(view, west, east);
    return std::max(0, turns.last - turns.first + 1);
  };
  EXPECT_EQ(count({{0.5, 0.5}, 2, 800, 600}, 0.5, 0.5), 1);
  EXPECT_EQ(count({{0.5, 0.5}, 2, 2100, 600}, 0.5, 0.5), 3);
  EXPECT_EQ(count({{0.99, 0.5}, 4, 400, 400}, 0.0, 0.01), 1);
  EXPECT_EQ(count({{0.5, 0.5}, 4, 400, 400}, 0.0, 0.01), 0);
}

TEST(MapView, aPixelIsShorterFarFromTheEquator) {
  EXPECT_NEAR(metresPerPixel({mercatorOf({0, 0}), 0, 256, 256}), 156543.034, 0.01);
  EXPECT_NEAR(metresPerPixel({mercatorOf({60, 0}), 10, 256, 256}), 156543.034 / 2048, 0.01);
}

}  // namespace
}  // namespace nimbara
