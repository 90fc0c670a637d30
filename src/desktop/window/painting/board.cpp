#include "desktop/window/painting/board.h"

#include "desktop/views/board_layout.h"

#include <vector>

namespace nimbara {

Board::Board(QQuickItem* parent) : QQuickItem(parent) {
  connect(this, &Board::changed, this, &QQuickItem::polish);
}

void Board::follow(QQuickItem* child) {
  connect(child, &QQuickItem::heightChanged, this, &QQuickItem::polish);
  connect(child, &QQuickItem::visibleChanged, this, &QQuickItem::polish);
}

void Board::itemChange(ItemChange change, ItemChangeData const& data) {
  QQuickItem::itemChange(change, data);
  if (change == ItemChildAddedChange) follow(data.item);
  if (change == ItemChildRemovedChange) disconnect(data.item, nullptr, this, nullptr);
  if (change == ItemChildAddedChange || change == ItemChildRemovedChange || change == ItemVisibleHasChanged)
    polish();
}

void Board::geometryChange(QRectF const& now, QRectF const& before) {
  QQuickItem::geometryChange(now, before);
  if (now.width() != before.width()) polish();
}

/// Nothing moves on a page that is not shown.
void Board::updatePolish() {
  if (!isVisible()) return;
  std::vector<double> weights;
  for (QVariant const& weight : weights_) weights.push_back(weight.toDouble());
  std::vector<LaneSpan> const spans = laneSpans(weights, width(), spacing_);
  std::vector<QQuickItem*> shown;
  std::vector<BoardEntry> entries;
  for (QQuickItem* const child : childItems()) {
    if (!child->isVisible()) continue;
    int const lane = child->property("lane").toInt();
    LaneSpan const span = lane < 0 ? LaneSpan{0, width()} : spans[laneOf(lane, spans.size())];
    child->setWidth(span.width);
    child->setX(isMirrored_ ? width() - span.x - span.width : span.x);
    if (!(child->height() > 0)) continue;
    shown.push_back(child);
    entries.push_back({lane, child->height()});
  }
  BoardTops const placed = boardTops(entries, spans.size(), spacing_);
  for (std::size_t i = 0; i < shown.size(); ++i) shown[i]->setY(placed.tops[i]);
  setImplicitHeight(placed.height);
}

}  // namespace nimbara
