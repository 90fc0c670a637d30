#include "desktop/window/painting/map/map_layers_painter.h"

#include "desktop/window/painting/map/map_lines.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <ranges>

namespace nimbara {

namespace {

constexpr QRgb kFire = 0xffe2581b, kStrike = 0xffd9a400;
constexpr double kStorm = 8, kStation = 4;  // pixels

QColor colourOf(MapTrack const& track) {
  return QColor::fromRgb(stormColour(track.category));
}

/// A drop that stands on its point.
QPainterPath flame(double size) {
  QPainterPath path(QPointF(0, -1.6 * size));
  path.cubicTo(1.3 * size, -0.5 * size, size, size, 0, size);
  path.cubicTo(-size, size, -1.3 * size, -0.5 * size, 0, -1.6 * size);
  return path;
}

QPolygonF flash(double size) {
  QPolygonF shape;
  for (auto const& [x, y] :
       {std::pair{0.2, -1.5}, {-0.8, 0.3}, {-0.1, 0.3}, {-0.4, 1.5}, {0.8, -0.4}, {0.1, -0.4}})
    shape.append(QPointF(x * size, y * size));
  return shape;
}

}  // namespace

void MapLayersPainter::paintMarks(std::vector<MapMark> const& marks,
                                  std::function<bool(MapMarkKind)> const& isShown) const {
  for (MapMark const& mark : marks) {
    if (!isShown(mark.kind)) continue;
    bool const isFire = mark.kind == MapMarkKind::fire;
    double const size = isFire ? 3 + 5 * mark.strength : 6;
    QColor colour = QColor::fromRgb(isFire ? kFire : kStrike);
    if (!isFire) colour.setAlphaF(static_cast<float>(0.35 + 0.65 * mark.strength));
    painter_.setPen(QPen(look_.halo, 1));
    painter_.setBrush(colour);
    visitSeen(view_, mark.at, 2 * size, [&](QPointF at) {
      painter_.translate(at);
      if (isFire) {
        painter_.drawPath(flame(size));
      } else {
        painter_.drawPolygon(flash(size));
      }
      painter_.translate(-at);
    });
  }
}

/// How far from the centre gales reach, now and at each point of the forecast.
void MapLayersPainter::paintGales(MapTrack const& track, QColor const& colour) const {
  constexpr double kKmAround = 2 * std::numbers::pi * kEarthRadiusKm;
  QPainterPath all;
  all.setFillRule(Qt::WindingFill);
  for (std::size_t i = track.firstForecast - 1; i < track.points.size(); ++i) {
    double const narrower = std::cos(track.points[i].latitude * std::numbers::pi / 180);
    double const radius = track.galesKm[i] / (kKmAround * std::max(0.05, narrower)) * view_.worldSide();
    if (radius < 1) continue;
    visitSeen(view_, track.points[i], radius, [&](QPointF at) { all.addEllipse(at, radius, radius); });
  }
  QColor pale = colour;
  pale.setAlpha(46);
  painter_.fillPath(all.simplified(), pale);
}

/// Solid where it came from, dashed where it is forecast to go.
void MapLayersPainter::paintWay(MapTrack const& track, QColor const& colour) const {
  auto const middle = track.points.begin() + static_cast<std::ptrdiff_t>(track.firstForecast);
  MapPoint const corner = pointAt(view_, {0, 0});
  double const side = view_.worldSide();
  MapWindow const window{{corner.x * side, corner.y * side}, QSizeF(view_.width, view_.height), side};
  QPainterPath past, forecast;
  addLine(mapLine({track.points.begin(), middle}), window, past);
  addLine(mapLine({middle - 1, track.points.end()}), window, forecast);
  painter_.strokePath(past, QPen(look_.halo, 4));
  painter_.strokePath(past, QPen(colour, 2));
  QPen dashes(colour, 2);
  dashes.setDashPattern({3, 2.5});
  painter_.strokePath(forecast, QPen(look_.halo, 4));
  painter_.strokePath(forecast, dashes);
  painter_.setPen(QPen(colour, 1.5));
  painter_.setBrush(look_.halo);
  for (std::size_t i = 0; i < track.points.size(); ++i) {
    double const radius = i < track.firstForecast ? 1.5 : 3;
    visitSeen(view_, track.points[i], radius, [&](QPointF at) { painter_.drawEllipse(at, radius, radius); });
  }
}

/// An eye with two arms, turned as on maps of the northern half of the world.
void MapLayersPainter::paintStorm(QPointF at, QColor const& colour) const {
  QPainterPath sign;
  sign.setFillRule(Qt::WindingFill);
  sign.addEllipse(QPointF(0, 0), kStorm * 0.75, kStorm * 0.75);
  for (double const turn : {1.0, -1.0}) {
    QPainterPath arm(QPointF(turn * kStorm * 0.75, 0));
    arm.quadTo(turn * kStorm * 0.75, -turn * kStorm * 1.1, -turn * kStorm * 0.5, -turn * kStorm * 1.5);
    arm.quadTo(turn * kStorm * 0.1, -turn * kStorm, -turn * kStorm * 0.2, -turn * kStorm * 0.5);
    arm.closeSubpath();
    sign.addPath(arm);
  }
  painter_.translate(at);
  painter_.strokePath(sign, QPen(look_.halo, 3));
  painter_.fillPath(sign, colour);
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(look_.halo);
  painter_.drawEllipse(QPointF(0, 0), kStorm * 0.3, kStorm * 0.3);
  painter_.translate(-at);
}

void MapLayersPainter::paintTracks(std::vector<MapTrack> const& tracks) const {
  for (MapTrack const& track : tracks) paintGales(track, colourOf(track));
  for (MapTrack const& track : tracks) paintWay(track, colourOf(track));
  for (MapTrack const& track : tracks)
    visitSeen(view_, track.at(), 2 * kStorm, [&](QPointF at) { paintStorm(at, colourOf(track)); });
}

void MapLayersPainter::paintStations(std::vector<MapStation> const& stations, MapLabels& labels,
                                     LabelRoom& room) const {
  for (MapStation const& station : stations) {
    visitSeen(view_, station.at, 2 * kStation, [&](QPointF at) {
      painter_.setPen(QPen(station.isLeftOut ? look_.ink : look_.halo, 1));
      painter_.setBrush(station.isLeftOut ? look_.halo : look_.ink);
      painter_.drawEllipse(at, kStation, kStation);
      room.take(QRectF(at.x() - kStation, at.y() - kStation, 2 * kStation, 2 * kStation));
    });
  }
  for (MapStation const& station : stations) {
    if (station.value.empty()) continue;
    visitSeen(view_, station.at, 2 * kStation, [&](QPointF at) {
      labels.paint(painter_, room, at, kStation + 3, QString::fromStdString(station.value), false);
    });
  }
}

void MapLayersPainter::nameTracks(std::vector<MapTrack> const& tracks, MapLabels& labels,
                                  LabelRoom& room) const {
  for (MapTrack const& track : tracks | std::views::reverse) {
    visitSeen(view_, track.at(), 2 * kStorm, [&](QPointF at) {
      room.take(QRectF(at.x() - kStorm, at.y() - kStorm, 2 * kStorm, 2 * kStorm));
      labels.paint(painter_, room, at, kStorm + 5, QString::fromStdString(track.label), true);
    });
  }
}

}  // namespace nimbara
