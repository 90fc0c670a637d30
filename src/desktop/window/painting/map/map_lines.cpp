#include "desktop/window/painting/map/map_lines.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

/// Pixels beyond the window at which lines are cut.
constexpr double kRim = 8;
constexpr double kEdge = 1e-6;

struct Cut {
  bool isAcross;  ///< at a vertical border
  double at;
  double side;  ///< 1 keeps what is greater
};

double reach(QPointF const& point, Cut const& cut) {
  return cut.side * ((cut.isAcross ? point.x() : point.y()) - cut.at);
}

void keepInside(std::vector<QPointF>& ring, Cut const& cut, std::vector<QPointF>& kept) {
  kept.clear();
  for (std::size_t i = 0; i < ring.size(); ++i) {
    QPointF const& from = ring[i];
    QPointF const& to = ring[i + 1 < ring.size() ? i + 1 : 0];
    double const before = reach(from, cut), after = reach(to, cut);
    if (before >= 0) kept.push_back(from);
    if ((before < 0) != (after < 0)) kept.push_back(from + (to - from) * (before / (before - after)));
  }
  std::swap(ring, kept);
}

bool isOnEdge(MapPoint point) {
  return point.x < kEdge || point.x > 1 - kEdge || point.y > 1 - kEdge;
}

bool isOff(MapLine const& line, MapWindow const& window) {
  return window.at({0, line.south}).y() < -kRim ||
         window.at({0, line.north}).y() > window.size.height() + kRim;
}

void addRingOnce(MapLine const& ring, MapWindow const& window, int turn, QPainterPath& path) {
  std::vector<QPointF> points, scratch;
  points.reserve(ring.points.size());
  for (MapPoint const& point : ring.points) points.push_back(window.at(point, turn));
  keepInside(points, {true, -kRim, 1}, scratch);
  keepInside(points, {true, window.size.width() + kRim, -1}, scratch);
  keepInside(points, {false, -kRim, 1}, scratch);
  keepInside(points, {false, window.size.height() + kRim, -1}, scratch);
  if (points.size() < 3) return;
  path.moveTo(points.front());
  for (std::size_t i = 1; i < points.size(); ++i) path.lineTo(points[i]);
  path.closeSubpath();
}

}  // namespace

MapLine mapLine(std::vector<Coordinate> const& line) {
  MapLine made;
  made.points.reserve(line.size());
  for (Coordinate const& corner : line) {
    MapPoint point = mercatorOf(corner);
    // A longitude just beyond the meridian is the next one, unless the line runs along the whole world.
    if (!made.points.empty()) {
      double const before = made.points.back().x;
      if (std::abs(point.x - before) > 0.5 && !isOnEdge(point)) point.x += std::round(before - point.x);
    }
    made.points.push_back(point);
  }
  if (made.points.empty()) return made;
  auto const [west, east] = std::ranges::minmax(made.points, {}, &MapPoint::x);
  auto const [north, south] = std::ranges::minmax(made.points, {}, &MapPoint::y);
  made.west = west.x, made.east = east.x, made.north = north.y, made.south = south.y;
  return made;
}

MapLine simplified(MapLine const& line, double least) {
  MapLine made;
  made.west = line.west, made.east = line.east, made.north = line.north, made.south = line.south;
  for (MapPoint const& point : line.points) {
    bool const isLast = &point == &line.points.back();
    if (!made.points.empty() && !isLast) {
      MapPoint const& before = made.points.back();
      if (std::abs(point.x - before.x) + std::abs(point.y - before.y) < least && !isOnEdge(point)) continue;
    }
    made.points.push_back(point);
  }
  return made;
}

WorldTurns MapWindow::turns(MapLine const& line) const {
  double const left = (corner.x() - kRim) / side, right = (corner.x() + size.width() + kRim) / side;
  return {static_cast<int>(std::ceil(left - line.east)), static_cast<int>(std::floor(right - line.west))};
}

void addRing(MapLine const& ring, MapWindow const& window, QPainterPath& path) {
  if (ring.points.size() < 3 || isOff(ring, window)) return;
  WorldTurns const turns = window.turns(ring);
  for (int turn = turns.first; turn <= turns.last; ++turn) addRingOnce(ring, window, turn, path);
}

void addLine(MapLine const& line, MapWindow const& window, QPainterPath& path) {
  if (isOff(line, window)) return;
  WorldTurns const turns = window.turns(line);
  QRectF const near = QRectF(QPointF(0, 0), window.size).adjusted(-kRim, -kRim, kRim, kRim);
  for (int turn = turns.first; turn <= turns.last; ++turn) {
    bool isDrawing = false;
    for (std::size_t i = 1; i < line.points.size(); ++i) {
      QPointF const from = window.at(line.points[i - 1], turn), to = window.at(line.points[i], turn);
      bool const isOut = (from.x() < near.left() && to.x() < near.left()) ||
                         (from.x() > near.right() && to.x() > near.right()) ||
                         (from.y() < near.top() && to.y() < near.top()) ||
                         (from.y() > near.bottom() && to.y() > near.bottom()) ||
                         (isOnEdge(line.points[i - 1]) && isOnEdge(line.points[i]));
      if (!isOut && !isDrawing) path.moveTo(from);
      if (!isOut) path.lineTo(to);
      isDrawing = !isOut;
    }
  }
}

}  // namespace nimbara
