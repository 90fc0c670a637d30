// Lines of the world in Web Mercator, made simpler for each zoom, and cut to the part of a map that is
// painted. Plain functions over points; used on the window's thread.
#pragma once

#include "base/geodesy.h"
#include "base/web_mercator.h"

#include <QPainterPath>
#include <QRectF>
#include <vector>

namespace nimbara {

struct MapLine {
  std::vector<MapPoint> points;
  double west = 0, east = 0, north = 0, south = 0;
};

/// The line, with its longitudes continued beyond ±180° where it crosses that meridian.
MapLine mapLine(std::vector<Coordinate> const& line);

/// Without points that are closer together than that, in parts of the world's side; the ends stay.
MapLine simplified(MapLine const& line, double least);

/// Puts a world of `side` pixels so that the painted part has its top left corner at `corner` (pixels of the
/// world) and has `size`.
struct MapWindow {
  QPointF corner;
  QSizeF size;
  double side = 0;

  QPointF at(MapPoint point, int turn = 0) const {
    return {(point.x + turn) * side - corner.x(), point.y * side - corner.y()};
  }
  /// The turns on which something from `west` to `east` is seen, with some pixels around the window.
  WorldTurns turns(MapLine const& line) const;
};

/// Calls for a place in view, once for each way around the world on which some of `around` pixels is seen.
template <class Visit>
void visitSeen(MapView const& view, Coordinate place, double around, Visit const& visit) {
  MapPoint const point = mercatorOf(place);
  MapPoint const at = pixelOf(view, point);
  if (at.y < -around || at.y > view.height + around) return;
  double const part = around / view.worldSide();
  WorldTurns const turns = turnsOf(view, point.x - part, point.x + part);
  for (int turn = turns.first; turn <= turns.last; ++turn)
    visit(QPointF(at.x + turn * view.worldSide(), at.y));
}

/// Adds what of a ring is near the window: cut some pixels outside of it.
void addRing(MapLine const& ring, MapWindow const& window, QPainterPath& path);
/// Adds the parts of an open line that are near the window. Lines along the edges of the square world, where
/// outlines were cut, are left out.
void addLine(MapLine const& line, MapWindow const& window, QPainterPath& path);

}  // namespace nimbara
