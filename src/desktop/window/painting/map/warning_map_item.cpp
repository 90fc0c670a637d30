#include "desktop/window/painting/map/warning_map_item.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <algorithm>

namespace nimbara {

namespace {

constexpr double kInside = 0.35;

/// One for each area.
std::vector<QPainterPath> pathsOf(AlertMap const& map, MapFrame const& frame, QSizeF size) {
  LineDrawer const drawer(frame, size);
  std::vector<QPainterPath> paths;
  for (WorldLine const& ring : map.area.rings) {
    if (paths.empty() || map.area.isEachAnArea) paths.emplace_back();
    drawer.add(ring, paths.back());
    paths.back().closeSubpath();
  }
  return paths;
}

}  // namespace

WarningMapItem::WarningMapItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &WarningMapItem::changed, this, [this] { update(); });
}

void WarningMapItem::setModel(DesktopModel* model) {
  if (model_ == model) return;
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  if (model_ != nullptr) connect(model_, &DesktopModel::openAlertChanged, this, &WarningMapItem::changed);
  Q_EMIT changed();
}

/// Areas that lie over one another look like one.
QImage WarningMapItem::areasOf(AlertMap const& map, MapFrame const& frame, double ratio) const {
  QImage picture((size() * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  for (QPainterPath const& path : pathsOf(map, frame, size())) painter.fillPath(path, area_);
  return picture;
}

void WarningMapItem::paint(QPainter* painter) {
  if (isEmpty() || width() < 1 || height() < 1) return;
  AlertMap const& map = model_->openAlertMap();
  MapFrame const frame = frameOf(map, width() / std::max(1.0, height()));
  double const ratio = window() == nullptr ? 1 : window()->effectiveDevicePixelRatio();
  land_.paint(*painter, frame, size(), ratio, {sea_, landColour_, border_});
  painter->setClipRect(boundingRect());
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setOpacity(kInside);
  painter->drawImage(QPointF(0, 0), areasOf(map, frame, ratio));
  painter->setOpacity(1);
  for (QPainterPath const& line : pathsOf(map, frame, size())) painter->strokePath(line, QPen(area_, 1.4));
  QPointF const mark = scaled(frame.at(map.place), size());
  paintPlaceMark(*painter, mark, mark_);
  paintName(*painter, mark);
}

/// On the side of the mark that has more room, with a rim that parts it from lines and areas.
void WarningMapItem::paintName(QPainter& painter, QPointF mark) const {
  if (name_.isEmpty()) return;
  constexpr double kGap = 11, kRim = 3;
  bool const isOnRight = mark.x() <= width() / 2;
  double const room = (isOnRight ? width() - mark.x() : mark.x()) - 2 * kGap;
  QFont font;
  font.setPixelSize(letters_);
  font.setWeight(QFont::DemiBold);
  QFontMetricsF const metrics(font);
  QString const text = metrics.elidedText(name_, Qt::ElideRight, room);
  double const left = isOnRight ? mark.x() + kGap : mark.x() - kGap - metrics.horizontalAdvance(text);
  QPainterPath path;
  path.addText(QPointF(left, mark.y() + metrics.capHeight() / 2), font, text);
  painter.strokePath(path, QPen(landColour_, kRim, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.fillPath(path, ink_);
}

}  // namespace nimbara
