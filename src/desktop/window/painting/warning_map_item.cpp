#include "desktop/window/painting/warning_map_item.h"

#include <QQuickWindow>
#include <algorithm>

namespace nimbara {

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

void WarningMapItem::paint(QPainter* painter) {
  if (isEmpty() || width() < 1 || height() < 1) return;
  AlertMap const& map = model_->openAlertMap();
  MapFrame const frame = frameOf(map, width() / std::max(1.0, height()));
  double const ratio = window() == nullptr ? 1 : window()->effectiveDevicePixelRatio();
  land_.paint(*painter, frame, size(), ratio, {sea_, landColour_, border_});
  painter->setClipRect(boundingRect());
  painter->setRenderHint(QPainter::Antialiasing);
  LineDrawer const drawer(frame, size());
  QPainterPath areas;
  for (WorldLine const& ring : map.rings) {
    drawer.add(ring, areas);
    areas.closeSubpath();
  }
  QColor inside = area_;
  inside.setAlpha(90);
  painter->fillPath(areas, inside);
  painter->strokePath(areas, QPen(area_, 1.4));
  paintPlaceMark(*painter, scaled(frame.at(map.place), size()), mark_);
}

}  // namespace nimbara
