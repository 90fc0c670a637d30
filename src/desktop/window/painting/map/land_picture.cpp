#include "desktop/window/painting/map/land_picture.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr double kWorld = 360;
/// In picture points: bends below this are left out of lines.
constexpr double kFinest = 0.6;

}  // namespace

QPointF scaled(MapPoint point, QSizeF size) {
  return {point.x * size.width(), point.y * size.height()};
}

void LineDrawer::add(WorldLine const& line, QPainterPath& path) const {
  if (line.empty()) return;
  auto const [west, east] = std::ranges::minmax(line, {}, &Coordinate::longitude);
  for (double const turn : {-kWorld, 0.0, kWorld}) {
    double const shift = turn - frame_.centre.longitude;
    double const half = frame_.degreesWide / 2;
    if (east.longitude + shift >= -half && west.longitude + shift <= half) addShifted(line, shift, path);
  }
}

void LineDrawer::addShifted(WorldLine const& line, double shift, QPainterPath& path) const {
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

void LandPicture::paint(QPainter& painter, MapFrame const& frame, QSizeF size, double ratio,
                        LandColours const& colours) {
  Key const key{(size * ratio).toSize(), frame, colours};
  if (picture_.isNull() || key != key_) {
    key_ = key;
    picture_ = QImage(key.size, QImage::Format_RGB32);
    picture_.setDevicePixelRatio(ratio);
    picture_.fill(colours.sea);
    LineDrawer const drawer(frame, size);
    QPainter picture(&picture_);
    picture.setRenderHint(QPainter::Antialiasing);
    QPainterPath coasts;
    for (WorldLine const& ring : landOutlines()) drawer.add(ring, coasts);
    picture.fillPath(coasts, colours.land);
    QPainterPath borders;
    for (WorldLine const& line : borderLines()) drawer.add(line, borders);
    picture.strokePath(borders, QPen(colours.border, 0.7));
    QPainterPath disputed;
    for (WorldLine const& line : disputedLines()) drawer.add(line, disputed);
    picture.strokePath(disputed, QPen(colours.border, 0.7, Qt::DashLine));
  }
  painter.drawImage(QPointF(0, 0), picture_);
}

void paintPlaceMark(QPainter& painter, QPointF centre, QColor const& colour) {
  painter.setPen(QPen(colour, 1.8));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(centre, 4.5, 4.5);
  for (QPointF const& way : std::array<QPointF, 4>{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}}) {
    painter.drawLine(centre + 4.5 * way, centre + 8.5 * way);
  }
}

}  // namespace nimbara
