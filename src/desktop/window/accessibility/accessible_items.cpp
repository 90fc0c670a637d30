#include "desktop/window/accessibility/accessible_items.h"

#include "desktop/window/accessibility/state_reporter.h"

#include <QAccessibleObject>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QQuickItem>
#include <QQuickWindow>
#include <algorithm>

namespace nimbara {

namespace {

constexpr char kRole[] = "spokenRole";

QAccessible::Role roleOf(QObject const* object) {
  return static_cast<QAccessible::Role>(object->property(kRole).toInt());
}

/// What an accessible item has in common with others, as the toolkit describes it.
class ItemAccessible : public QAccessibleObject {
 public:
  explicit ItemAccessible(QQuickItem* item) : QAccessibleObject(item) {}

  QWindow* window() const override { return item()->window(); }
  QAccessible::Role role() const override { return roleOf(object()); }

  QAccessibleInterface* parent() const override {
    QQuickWindow* const window = item()->window();
    if (window == nullptr) return nullptr;
    for (QQuickItem* up = item()->parentItem(); up != nullptr && up != window->contentItem();
         up = up->parentItem()) {
      if (auto* const seen = QAccessible::queryAccessibleInterface(up)) return seen;
    }
    return QAccessible::queryAccessibleInterface(window);
  }

  QRect rect() const override {
    return QRectF(item()->mapToGlobal({0, 0}), QSizeF(item()->width(), item()->height())).toRect();
  }

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name) return attached("Accessible.name");
    return kind == QAccessible::Description ? attached("Accessible.description") : QString();
  }

  QAccessible::State state() const override {
    QAccessible::State state = reportedState(*item());
    state.disabled = !item()->isEnabled();
    state.focusable = item()->activeFocusOnTab();
    state.focused = item()->hasActiveFocus();
    QQuickWindow const* const window = item()->window();
    state.invisible = window == nullptr || !window->isVisible() || !item()->isVisible() || rect().isEmpty();
    state.offscreen = window != nullptr && !window->geometry().intersects(rect());
    return state;
  }

 protected:
  QQuickItem* item() const { return static_cast<QQuickItem*>(object()); }

 private:
  QString attached(char const* name) const {
    return QQmlProperty::read(item(), QLatin1String(name), qmlContext(item())).toString();
  }
};

/// A control or a list. Which of them is asked for each time: the toolkit may ask for the interface before
/// the item has said its role.
class SpokenAccessible : public ItemAccessible, public QAccessibleActionInterface {
 public:
  explicit SpokenAccessible(QQuickItem* item) : ItemAccessible(item) { new StateReporter(*item); }

  QAccessibleInterface* child(int index) const override {
    auto const all = entries();
    return index >= 0 && index < static_cast<int>(all.size()) ? all[static_cast<std::size_t>(index)].seen
                                                              : nullptr;
  }
  int childCount() const override { return static_cast<int>(entries().size()); }
  int indexOfChild(QAccessibleInterface const* child) const override {
    auto const all = entries();
    auto const found = std::ranges::find(all, child, &Entry::seen);
    return found == all.end() ? -1 : static_cast<int>(found - all.begin());
  }

  QStringList actionNames() const override {
    QStringList names{pressAction()};
    if (reportedState(*item()).checkable) names.append(toggleAction());
    if (item()->activeFocusOnTab()) names.append(setFocusAction());
    return names;
  }
  void doAction(QString const& name) override {
    if (!item()->isEnabled()) return;
    if (name == setFocusAction()) {
      item()->forceActiveFocus(Qt::TabFocusReason);
    } else if (name == pressAction() || name == toggleAction()) {
      QMetaObject::invokeMethod(item(), "press");
    }
  }
  QStringList keyBindingsForAction(QString const& /*name*/) const override { return {}; }

 protected:
  void* interface_cast(QAccessible::InterfaceType type) override {
    bool const isPressed = type == QAccessible::ActionInterface && role() != QAccessible::List;
    return isPressed ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }

 private:
  struct Entry {
    QAccessibleInterface* seen;
    bool isBar;
    double y, x;  ///< `x` grows in the direction of reading
    auto place() const { return std::tuple(isBar, y, x); }
  };

  /// Those of a list, in the order in which they stand; what a control holds is part of its name.
  std::vector<Entry> entries() const {
    std::vector<Entry> all;
    if (role() != QAccessible::List) return all;
    bool const isMirrored = item()->property("effectiveLayoutDirection").toInt() == Qt::RightToLeft;
    collect(item(), isMirrored ? -1 : 1, all);
    std::ranges::stable_sort(all, {}, &Entry::place);
    return all;
  }
  void collect(QQuickItem* below, double direction, std::vector<Entry>& all) const {
    for (QQuickItem* const child : below->childItems()) {
      if (!child->isVisible()) continue;
      if (auto* const seen = QAccessible::queryAccessibleInterface(child)) {
        QPointF const place = child->mapToItem(item(), {0, 0});
        all.push_back({seen, seen->role() == QAccessible::ScrollBar, place.y(), direction * place.x()});
      } else {
        collect(child, direction, all);
      }
    }
  }
};

QAccessibleInterface* accessibleOf(QString const& /*className*/, QObject* object) {
  auto* const item = qobject_cast<QQuickItem*>(object);
  if (item == nullptr || item->metaObject()->indexOfProperty(kRole) < 0) return nullptr;
  return new SpokenAccessible(item);
}

}  // namespace

void enrolAccessibleItems() {
  QAccessible::installFactory(accessibleOf);
}

}  // namespace nimbara
