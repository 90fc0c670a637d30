#include "desktop/window/models/switcher_model.h"

#include <algorithm>

namespace nimbara {

SwitcherModel::SwitcherModel(QObject* parent) : QObject(parent), rows_(new RecordListModel(this)) {}

void SwitcherModel::show(std::vector<SwitcherRow> const& rows) {
  auto const selected = std::ranges::find(rows, true, &SwitcherRow::isSelected);
  selectedRow_ = selected == rows.end() ? 0 : static_cast<int>(selected - rows.begin());
  rows_->show(rows);
}

void SwitcherModel::setOpen(bool isOpen) {
  if (isOpen_ == isOpen) return;
  isOpen_ = isOpen;
  Q_EMIT openChanged();
}

bool SwitcherModel::beginsSearch(QString const& typed) const {
  return typed.size() == 1 ? typed[0].isLetterOrNumber() : typed.size() == 2 && typed[0].isHighSurrogate();
}

}  // namespace nimbara
