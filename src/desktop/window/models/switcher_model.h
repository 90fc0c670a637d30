// The menu of places of the window, on the window's thread: its rows while it is open. Owned by the window's
// model, which tells it what there is.
#pragma once

#include "desktop/views/places/switcher_view.h"
#include "desktop/window/models/view_models.h"

#include <QObject>
#include <algorithm>

namespace nimbara {

class SwitcherModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordListModel* rows READ rows CONSTANT)
  Q_PROPERTY(int selectedRow READ selectedRow NOTIFY openChanged)
  Q_PROPERTY(bool isOpen READ isOpen WRITE setOpen NOTIFY openChanged)

 public:
  explicit SwitcherModel(QObject* parent) : QObject(parent), rows_(new RecordListModel(this)) {}

  void show(std::vector<SwitcherRow> const& rows) {
    auto const selected = std::ranges::find(rows, true, &SwitcherRow::isSelected);
    selectedRow_ = selected == rows.end() ? 0 : static_cast<int>(selected - rows.begin());
    rows_->show(rows);
  }

  RecordListModel* rows() { return rows_; }
  bool isOpen() const { return isOpen_; }
  /// The row of the place that is shown; 0 where none is.
  int selectedRow() const { return selectedRow_; }
  void setOpen(bool isOpen) {
    if (isOpen_ == isOpen) return;
    isOpen_ = isOpen;
    Q_EMIT openChanged();
  }
  /// A letter or a digit: typing one opens the menu.
  Q_INVOKABLE bool beginsSearch(QString const& typed) const {
    return typed.size() == 1 ? typed[0].isLetterOrNumber() : typed.size() == 2 && typed[0].isHighSurrogate();
  }

 Q_SIGNALS:
  void openChanged();

 private:
  RecordListModel* rows_;
  bool isOpen_ = false;
  int selectedRow_ = 0;
};

}  // namespace nimbara
