// Where the keys go on a page: what screen readers call a heading is found where it stands. Holds nothing.
#pragma once

#include <QObject>
#include <QQuickItem>

namespace nimbara {

class ReadingOrder : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// The first that is shown; null where there is none.
  Q_INVOKABLE QQuickItem* headingBelow(QQuickItem* page) const;
  Q_INVOKABLE bool holds(QQuickItem* area, QQuickItem* item) const;
};

}  // namespace nimbara
