#include "desktop/window/models/view_models.h"

#include <algorithm>

namespace nimbara {

QVariant RecordListModel::data(QModelIndex const& index, int role) const {
  int const column = role - Qt::UserRole;
  if (!index.isValid() || index.row() >= count() || column < 0 || column >= names_.size()) return {};
  return rows_[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(column)];
}

void RecordListModel::addRole(std::string_view name) {
  names_.insert(Qt::UserRole + static_cast<int>(names_.size()), viewName(name).toUtf8());
}

void RecordListModel::replace(Rows rows) {
  auto const kept = static_cast<int>(std::min(rows.size(), rows_.size()));
  for (int row = 0; row < kept; ++row) {
    auto const at = static_cast<std::size_t>(row);
    if (rows_[at] == rows[at]) continue;
    rows_[at] = std::move(rows[at]);
    Q_EMIT dataChanged(index(row), index(row));
  }
  int const before = count();
  auto const wanted = static_cast<int>(rows.size());
  if (wanted == before) return;
  if (wanted < before) {
    beginRemoveRows({}, wanted, before - 1);
    rows_.resize(rows.size());
    endRemoveRows();
  } else {
    beginInsertRows({}, before, wanted - 1);
    std::move(rows.begin() + kept, rows.end(), std::back_inserter(rows_));
    endInsertRows();
  }
  Q_EMIT countChanged();
}

}  // namespace nimbara
