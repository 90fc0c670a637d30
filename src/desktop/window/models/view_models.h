// What the window reads: records and lists of display values as read-only models of the toolkit. Live on the
// window's thread. Hold what they were given last; compute nothing.
#pragma once

#include "desktop/views/view_fields.h"

#include <QAbstractListModel>
#include <QHash>
#include <QQmlPropertyMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <string>
#include <vector>

namespace nimbara {

inline QVariant viewValue(std::string const& text) {
  return QString::fromStdString(text);
}
inline QVariant viewValue(bool value) {
  return value;
}
inline QVariant viewValue(double value) {
  return value;
}
inline QVariant viewValue(std::vector<std::string> const& texts) {
  QStringList list;
  for (std::string const& text : texts) list.append(QString::fromStdString(text));
  return list;
}

inline QString viewName(std::string_view name) {
  return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

/// One record; its members are properties by their names.
class RecordModel : public QQmlPropertyMap {
  Q_OBJECT

 public:
  explicit RecordModel(QObject* parent) : QQmlPropertyMap(this, parent) {}

  template <class Record>
  void show(Record const& record) {
    QVariantHash added;
    forEachViewField<Record>(
        [&](auto const& field) { put(viewName(field.name), viewValue(record.*field.member), added); });
    if (!added.isEmpty()) insert(added);
  }

  /// Changes a property that there is. One that there is not goes to `added`, to be inserted with the others:
  /// the toolkit describes the whole record anew with each insertion of a name.
  void put(QString const& name, QVariant const& shown, QVariantHash& added) {
    QVariant const held = value(name);
    if (!held.isValid()) {
      added.insert(name, shown);
    } else if (held != shown) {
      insert(name, shown);
    }
  }

 protected:
  /// The window cannot change what is so.
  QVariant updateValue(QString const& key, QVariant const& /*input*/) override { return value(key); }
};

/// A list of records; their members are roles by their names. A list of the same length changes in place, so
/// that nothing jumps when new data arrive.
class RecordListModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  using QAbstractListModel::QAbstractListModel;

  template <class Record>
  void show(std::vector<Record> const& records) {
    Rows rows;
    rows.reserve(records.size());
    for (Record const& record : records) {
      std::vector<QVariant>& row = rows.emplace_back();
      forEachViewField<Record>([&](auto const& field) { row.push_back(viewValue(record.*field.member)); });
    }
    if (names_.isEmpty()) {
      forEachViewField<Record>([this](auto const& field) { addRole(field.name); });
    }
    replace(std::move(rows));
  }

  int count() const { return static_cast<int>(rows_.size()); }
  int rowCount(QModelIndex const& parent = {}) const override { return parent.isValid() ? 0 : count(); }
  QVariant data(QModelIndex const& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override { return names_; }

 Q_SIGNALS:
  void countChanged();

 private:
  using Rows = std::vector<std::vector<QVariant>>;

  void addRole(std::string_view name);
  void replace(Rows rows);

  Rows rows_;
  QHash<int, QByteArray> names_;
};

}  // namespace nimbara
