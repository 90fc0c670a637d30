#include "desktop/window/painting/map/quake_map_item.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <algorithm>
#include <cmath>
#include <vector>

namespace nimbara {

namespace {

constexpr double kWorld = 360;
/// How near a pointer has to come.
constexpr double kReach = 12;

}  // namespace

QuakeMapItem::QuakeMapItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &QuakeMapItem::changed, this, [this] { update(); });
}

void QuakeMapItem::setModel(HazardsModel* model) {
  if (model_ == model) return;
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  if (model_ != nullptr) {
    connect(model_, &HazardsModel::shown, this, [this] { update(); });
    connect(model_, &HazardsModel::highlightedChanged, this, [this] { update(); });
  }
  Q_EMIT changed();
}

QuakeMap const& QuakeMapItem::data() const {
  static QuakeMap const kNone;
  return model_ == nullptr ? kNone : model_->quakeMap();
}

MapFrame QuakeMapItem::frame() const {
  return frameAround(data().place, data().radiusKm, width() / std::max(1.0, height()));
}

QPointF QuakeMapItem::at(MapFrame const& frame, Coordinate place) const {
  return scaled(frame.at(place), size());
}

double QuakeMapItem::radiusOf(double magnitude) const {
  double const zoom = std::clamp(width() / 640, 0.7, 1.3);
  double const strength = std::max(0.0, magnitude);
  return zoom * (2 + 0.22 * strength * strength);
}

void QuakeMapItem::paintLand(QPainter& painter, MapFrame const& frame) {
  double const ratio = window() == nullptr ? 1 : window()->effectiveDevicePixelRatio();
  land_.paint(painter, frame, size(), ratio, {sea_, landColour_, border_});
}

/// Its pieces: where it passes a pole or the far side of the world it is broken.
void QuakeMapItem::paintCircle(QPainter& painter, MapFrame const& frame) const {
  QuakeMap const& map = data();
  if (!map.place || !(map.radiusKm > 0)) return;
  double const east = std::remainder(map.place->longitude - frame.centre.longitude, kWorld);
  QPainterPath path;
  double last = 0;
  for (Coordinate const& point : circleAround(*map.place, map.radiusKm)) {
    QPointF const to = scaled(frame.atOffset(east + point.longitude, point.latitude), size());
    bool const isBroken = path.elementCount() == 0 || std::abs(point.longitude - last) > kWorld / 2;
    isBroken ? path.moveTo(to) : path.lineTo(to);
    last = point.longitude;
  }
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(mark_, 1.4, Qt::DashLine));
  painter.drawPath(path);
}

void QuakeMapItem::paintPlace(QPainter& painter, MapFrame const& frame) const {
  if (data().place) paintPlaceMark(painter, at(frame, *data().place), mark_);
}

void QuakeMapItem::paintQuake(QPainter& painter, MapFrame const& frame, QuakePoint const& point) const {
  QColor colour = ages_.value(point.ageClass).value<QColor>();
  colour.setAlpha(190);
  painter.setPen(QPen(sea_, 0.8));
  painter.setBrush(colour);
  double const radius = radiusOf(point.magnitude);
  painter.drawEllipse(at(frame, point.place), radius, radius);
}

/// The smallest on top, so that none is hidden, and what is pointed at above all.
void QuakeMapItem::paint(QPainter* painter) {
  if (width() < 1 || height() < 1) return;
  MapFrame const shown = frame();
  paintLand(*painter, shown);
  painter->setClipRect(boundingRect());
  painter->setRenderHint(QPainter::Antialiasing);
  paintCircle(*painter, shown);
  auto const& points = data().points;
  std::vector<QuakePoint const*> greatestFirst;
  greatestFirst.reserve(points.size());
  for (QuakePoint const& point : points) greatestFirst.push_back(&point);
  std::ranges::stable_sort(greatestFirst, std::ranges::greater{}, &QuakePoint::magnitude);
  for (QuakePoint const* const point : greatestFirst) paintQuake(*painter, shown, *point);
  paintPlace(*painter, shown);
  int const row = model_ == nullptr ? -1 : model_->highlighted();
  if (row < 0) return;
  QuakePoint const& point = points[static_cast<std::size_t>(row)];
  paintQuake(*painter, shown, point);
  painter->setBrush(Qt::NoBrush);
  painter->setPen(QPen(ring_, 2.2));
  double const radius = radiusOf(point.magnitude) + 4;
  painter->drawEllipse(at(shown, point.place), radius, radius);
}

int QuakeMapItem::rowAt(double x, double y) const {
  MapFrame const shown = frame();
  int best = -1;
  double bestGap = 0;
  auto const& points = data().points;
  for (std::size_t i = 0; i < points.size(); ++i) {
    QPointF const away = at(shown, points[i].place) - QPointF(x, y);
    double const gap = std::hypot(away.x(), away.y());
    bool const isReached = gap <= std::max(kReach, radiusOf(points[i].magnitude));
    if (!isReached || (best >= 0 && gap >= bestGap)) continue;
    best = static_cast<int>(i);
    bestGap = gap;
  }
  return best;
}

}  // namespace nimbara
