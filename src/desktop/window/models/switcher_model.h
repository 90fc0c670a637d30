// The menu of places of the window, on the window's thread: its rows while it is open. Owned by the window's
// model, which tells it what there is.
#pragma once

#include "desktop/views/places/switcher_view.h"
#include "desktop/window/models/view_models.h"

#include <QObject>

namespace nimbara {

class SwitcherModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordListModel* rows READ rows CONSTANT)
  Q_PROPERTY(int selectedRow READ selectedRow NOTIFY openChanged)
  Q_PROPERTY(bool isOpen READ isOpen WRITE setOpen NOTIFY openChanged)

 public:
  explicit SwitcherModel(QObject* parent);

  void show(std::vector<SwitcherRow> const& rows);

  RecordListModel* rows() { return rows_; }
  bool isOpen() const { return isOpen_; }
  /// The row of the place that is shown; 0 where none is.
  int selectedRow() const { return selectedRow_; }
  void setOpen(bool isOpen);
  /// A letter or a digit: typing one opens the menu.
  Q_INVOKABLE bool beginsSearch(QString const& typed) const;

 Q_SIGNALS:
  void openChanged();

 private:
  RecordListModel* rows_;
  bool isOpen_ = false;
  int selectedRow_ = 0;
};

}  // namespace nimbara
