#include "base/web_mercator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kRadians = kPi / 180;
/// Of the ellipsoid's radius at the equator, by which the projection is made.
constexpr double kEquatorMetres = 2 * kPi * 6'378'137;

int tilesAcross(int zoom) {
  return 1 << std::clamp(zoom, 0, 30);
}

int wrapped(int value, int count) {
  int const rest = value % count;
  return rest < 0 ? rest + count : rest;
}

}  // namespace

MapPoint mercatorOf(Coordinate place) {
  double const latitude = std::clamp(place.latitude, -kMercatorLimit, kMercatorLimit) * kRadians;
  double const y = 0.5 - std::asinh(std::tan(latitude)) / (2 * kPi);
  return {place.longitude / 360 + 0.5, std::clamp(y, 0.0, 1.0)};
}

Coordinate coordinateOf(MapPoint point) {
  double const latitude = std::atan(std::sinh((0.5 - point.y) * 2 * kPi)) / kRadians;
  return {latitude, std::remainder((point.x - 0.5) * 360, 360)};
}

MapPoint northWestOf(TileAddress tile) {
  double const across = tilesAcross(tile.zoom);
  return {tile.x / across, tile.y / across};
}

MapPoint southEastOf(TileAddress tile) {
  return northWestOf({tile.zoom, tile.x + 1, tile.y + 1});
}

TileAddress parentAt(TileAddress tile, int zoom) {
  int const steps = std::max(0, tile.zoom - zoom);
  return {tile.zoom - steps, tile.x >> steps, tile.y >> steps};
}

double MapView::worldSide() const {
  return kTileSide * std::exp2(zoom);
}

MapPoint pixelOf(MapView const& view, MapPoint point) {
  double const side = view.worldSide();
  return {view.width / 2.0 + (point.x - view.centre.x) * side,
          view.height / 2.0 + (point.y - view.centre.y) * side};
}

MapPoint pointAt(MapView const& view, MapPoint pixel) {
  double const side = view.worldSide();
  return {view.centre.x + (pixel.x - view.width / 2.0) / side,
          view.centre.y + (pixel.y - view.height / 2.0) / side};
}

WorldTurns turnsOf(MapView const& view, double west, double east) {
  double const left = pointAt(view, {0, 0}).x, right = pointAt(view, {double(view.width), 0}).x;
  return {static_cast<int>(std::ceil(left - east)), static_cast<int>(std::floor(right - west))};
}

MapView bounded(MapView view) {
  view.zoom = std::clamp(view.zoom, kLeastMapZoom, kGreatestMapZoom);
  view.centre.x -= std::floor(view.centre.x);
  double const half = view.height / 2.0 / view.worldSide();
  view.centre.y = half >= 0.5 ? 0.5 : std::clamp(view.centre.y, half, 1 - half);
  return view;
}

MapView panned(MapView view, double right, double down) {
  double const side = view.worldSide();
  view.centre.x += right / side;
  view.centre.y += down / side;
  return bounded(view);
}

MapView zoomedAbout(MapView view, double zoom, MapPoint pixel) {
  MapPoint const held = pointAt(view, pixel);
  view.zoom = std::clamp(zoom, kLeastMapZoom, kGreatestMapZoom);
  MapPoint const moved = pointAt(view, pixel);
  view.centre.x += held.x - moved.x;
  view.centre.y += held.y - moved.y;
  return bounded(view);
}

std::vector<TileAddress> tilesOf(MapView const& view, int zoom) {
  int const across = tilesAcross(zoom);
  MapPoint const first = pointAt(view, {0, 0});
  MapPoint const last = pointAt(view, {double(view.width), double(view.height)});
  auto const tileOf = [&](double part) { return static_cast<int>(std::floor(part * across)); };
  // A tile of which only the edge is touched is not seen.
  auto const endOf = [&](double part) { return static_cast<int>(std::ceil(part * across)); };
  int const west = tileOf(first.x), east = std::min(endOf(last.x), west + across);
  int const north = std::max(0, tileOf(first.y)), south = std::min(across, endOf(last.y));
  struct Seen {
    double away;
    TileAddress tile;
  };
  std::vector<Seen> seen;
  for (int y = north; y < south; ++y) {
    for (int x = west; x < east; ++x) {
      double const away = std::hypot((x + 0.5) / across - view.centre.x, (y + 0.5) / across - view.centre.y);
      seen.push_back({away, {zoom, wrapped(x, across), y}});
    }
  }
  std::ranges::stable_sort(seen, {}, &Seen::away);
  std::vector<TileAddress> tiles;
  tiles.reserve(seen.size());
  for (Seen const& one : seen) tiles.push_back(one.tile);
  return tiles;
}

double metresPerPixel(MapView const& view) {
  return kEquatorMetres * std::cos(coordinateOf(view.centre).latitude * kRadians) / view.worldSide();
}

}  // namespace nimbara
