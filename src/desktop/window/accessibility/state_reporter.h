// How a control stands, from the properties that a page gives it, and its changes as screen readers hear of
// them. Belongs to the item that it reports on.
#pragma once

#include <QAccessible>
#include <QObject>

class QQuickItem;

namespace nimbara {

/// Of its properties `isCheckable`, `isChecked`, `isExpandable`, `isExpanded`, `isSelectable` and
/// `isCurrent`; what it lacks is not so.
QAccessible::State reportedState(QObject const& item);

class StateReporter : public QObject {
  Q_OBJECT

 public:
  explicit StateReporter(QQuickItem& item);

 private Q_SLOTS:
  void report();

 private:  // NOLINT(readability-redundant-access-specifiers)
  QAccessible::State last_;
};

}  // namespace nimbara
