#include "desktop/window/painting/warning_map_item.h"

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
  paintPlaceMark(*painter, scaled(frame.at(map.place), size()), mark_);
}

}  // namespace nimbara
