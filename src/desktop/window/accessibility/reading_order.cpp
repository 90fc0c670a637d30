#include "desktop/window/accessibility/reading_order.h"

#include <QAccessible>
#include <QAccessibleInterface>

namespace nimbara {

QQuickItem* ReadingOrder::headingBelow(QQuickItem* page) const {
  if (page == nullptr || !page->isVisible()) return nullptr;
  auto* const seen = QAccessible::queryAccessibleInterface(page);
  if (seen != nullptr && seen->role() == QAccessible::Heading) return page;
  for (QQuickItem* const child : page->childItems()) {
    if (QQuickItem* const found = headingBelow(child)) return found;
  }
  return nullptr;
}

bool ReadingOrder::holds(QQuickItem* area, QQuickItem* item) const {
  return area != nullptr && item != nullptr && (item == area || area->isAncestorOf(item));
}

}  // namespace nimbara
