// The square world of the Web Mercator projection (EPSG 3857) and its tiles, and the part of it that a window
// shows. Pure functions; nothing here knows about pictures.
#pragma once

#include "base/geodesy.h"
#include "base/map_point.h"

#include <compare>
#include <vector>

namespace nimbara {

/// Where the square world ends, degrees north and south.
inline constexpr double kMercatorLimit = 85.0511287798066;
/// Pixels of a tile's side.
inline constexpr int kTileSide = 256;
inline constexpr double kLeastMapZoom = 2, kGreatestMapZoom = 12;

/// 0 to 1 from 180° W and 85.0511° N; what lies beyond the limit is put upon it. A longitude beyond ±180 is
/// not brought back, so that lines stay in one piece.
MapPoint mercatorOf(Coordinate place);
/// A point beyond 0-1 in x is the one of the next way around the world.
Coordinate coordinateOf(MapPoint point);

struct TileAddress {
  int zoom = 0;
  int x = 0;
  int y = 0;

  auto operator<=>(TileAddress const&) const = default;
};

/// Corners of a tile.
MapPoint northWestOf(TileAddress tile);
MapPoint southEastOf(TileAddress tile);
/// The tile of that zoom (not a deeper one) in which a tile lies.
TileAddress parentAt(TileAddress tile, int zoom);

/// What a window shows: `width` and `height` in pixels of which a tile of `zoom` has 256.
struct MapView {
  MapPoint centre{0.5, 0.5};
  double zoom = kLeastMapZoom;
  int width = 0;
  int height = 0;

  /// Pixels of the whole world's side.
  double worldSide() const;
  bool operator==(MapView const&) const = default;
};

/// From the view's top left corner, on the way around the world as given.
MapPoint pixelOf(MapView const& view, MapPoint point);
MapPoint pointAt(MapView const& view, MapPoint pixel);
/// By how many worlds a point may be moved east to be seen in the view: first to last, none where last is
/// before first. `west` and `east` are the ends of what is drawn.
struct WorldTurns {
  int first = 0;
  int last = -1;
};
WorldTurns turnsOf(MapView const& view, double west, double east);

/// Within the zooms, the centre between 0 and 1 in x, and no more beyond a pole than the window is higher
/// than the world.
MapView bounded(MapView view);
/// Moved by that many pixels to the right and down.
MapView panned(MapView view, double right, double down);
/// With another zoom; what lies under `pixel` stays there.
MapView zoomedAbout(MapView view, double zoom, MapPoint pixel);

/// The tiles of that zoom of which some is seen, each once, those next to the centre first. x goes around the
/// world, y does not.
std::vector<TileAddress> tilesOf(MapView const& view, int zoom);

/// Metres on the ground of one pixel at the view's centre.
double metresPerPixel(MapView const& view);

}  // namespace nimbara
