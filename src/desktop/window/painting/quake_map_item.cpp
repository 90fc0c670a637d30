#include "desktop/window/painting/quake_map_item.h"

#include "gazetteer/world_outlines.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <algorithm>
#include <array>
#include <cmath>
#include <ranges>

namespace nimbara {

namespace {

constexpr double kWorld = 360;
/// In picture points: bends below this are left out of lines.
constexpr double kFinest = 0.6;
/// How near a pointer has to come.
constexpr double kReach = 12;

QPointF scaled(MapPoint point, QSizeF size) {
  return {point.x * size.width(), point.y * size.height()};
}

/// The line as it lies in the frame, and whether any of it can be seen there.
class LineDrawer {
 public:
  LineDrawer(MapFrame const& frame, QSizeF size) : frame_(frame), size_(size) {}

  /// Adds a line, once for each way around the world on which it can be seen.
  void add(WorldLine const& line, QPainterPath& path) const {
    auto const [west, east] = std::ranges::minmax(line, {}, &Coordinate::longitude);
    for (double const turn : {-kWorld, 0.0, kWorld}) {
      double const shift = turn - frame_.centre.longitude;
      double const half = frame_.degreesWide / 2;
      if (east.longitude + shift >= -half && west.longitude + shift <= half) addShifted(line, shift, path);
    }
  }

 private:
  void addShifted(WorldLine const& line, double shift, QPainterPath& path) const {
    QPointF last;
    bool isFirst = true;
    for (Coordinate const& point : line) {
      QPointF const to = scaled(frame_.atOffset(point.longitude + shift, point.latitude), size_);
      if (isFirst) {
        path.moveTo(to);
      } else if ((to - last).manhattanLength() >= kFinest) {
        path.lineTo(to);
      } else {
        continue;
      }
      isFirst = false;
      last = to;
    }
  }

  MapFrame const& frame_;
  QSizeF size_;
};

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
  QSizeF const points = size();
  LandKey const key{(points * ratio).toSize(), frame, sea_, land_, border_};
  if (landPicture_.isNull() || key != landKey_) {
    landKey_ = key;
    landPicture_ = QImage(key.size, QImage::Format_RGB32);
    landPicture_.setDevicePixelRatio(ratio);
    landPicture_.fill(sea_);
    LineDrawer const drawer(frame, points);
    QPainter picture(&landPicture_);
    picture.setRenderHint(QPainter::Antialiasing);
    QPainterPath coasts;
    for (WorldLine const& ring : landOutlines()) drawer.add(ring, coasts);
    picture.fillPath(coasts, land_);
    QPainterPath borders;
    for (WorldLine const& line : borderLines()) drawer.add(line, borders);
    picture.strokePath(borders, QPen(border_, 0.7));
  }
  painter.drawImage(QPointF(0, 0), landPicture_);
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
  if (!data().place) return;
  QPointF const centre = at(frame, *data().place);
  painter.setPen(QPen(mark_, 1.8));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(centre, 4.5, 4.5);
  for (QPointF const& way : std::array<QPointF, 4>{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}}) {
    painter.drawLine(centre + 4.5 * way, centre + 8.5 * way);
  }
}

void QuakeMapItem::paintQuake(QPainter& painter, MapFrame const& frame, QuakePoint const& point) const {
  QColor colour = ages_.value(point.ageClass).value<QColor>();
  colour.setAlpha(190);
  painter.setPen(QPen(sea_, 0.8));
  painter.setBrush(colour);
  double const radius = radiusOf(point.magnitude);
  painter.drawEllipse(at(frame, point.place), radius, radius);
}

/// The newest on top, and what is pointed at above all.
void QuakeMapItem::paint(QPainter* painter) {
  if (width() < 1 || height() < 1) return;
  MapFrame const shown = frame();
  paintLand(*painter, shown);
  painter->setClipRect(boundingRect());
  painter->setRenderHint(QPainter::Antialiasing);
  paintCircle(*painter, shown);
  auto const& points = data().points;
  for (QuakePoint const& point : std::views::reverse(points)) paintQuake(*painter, shown, point);
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
