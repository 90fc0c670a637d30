#include "desktop/window/accessibility/state_reporter.h"

#include <QMetaProperty>
#include <QQuickItem>

namespace nimbara {

namespace {

constexpr char const* kStates[] = {"isCheckable", "isChecked",    "isExpandable",
                                   "isExpanded",  "isSelectable", "isCurrent"};

bool is(QObject const& item, char const* name) {
  return item.property(name).toBool();
}

}  // namespace

QAccessible::State reportedState(QObject const& item) {
  QAccessible::State state;
  state.checkable = is(item, "isCheckable");
  state.checked = state.checkable && is(item, "isChecked");
  state.expandable = is(item, "isExpandable");
  state.expanded = state.expandable && is(item, "isExpanded");
  state.collapsed = state.expandable && !state.expanded;
  state.selectable = is(item, "isSelectable");
  state.selected = state.selectable && is(item, "isCurrent");
  return state;
}

StateReporter::StateReporter(QQuickItem& item) : QObject(&item), last_(reportedState(item)) {
  QMetaMethod const told = metaObject()->method(metaObject()->indexOfSlot("report()"));
  for (char const* const name : kStates) {
    int const index = item.metaObject()->indexOfProperty(name);
    if (index >= 0) connect(&item, item.metaObject()->property(index).notifySignal(), this, told);
  }
}

void StateReporter::report() {
  QAccessible::State const now = reportedState(*parent());
  QAccessible::State changed;
  changed.checked = now.checked != last_.checked;
  changed.expanded = now.expanded != last_.expanded;
  changed.collapsed = now.collapsed != last_.collapsed;
  changed.selected = now.selected != last_.selected;
  last_ = now;
  QAccessibleStateChangeEvent event(parent(), changed);
  QAccessible::updateAccessibility(&event);
}

}  // namespace nimbara
