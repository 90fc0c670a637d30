// What the page of settings shows and asks for, on the window's thread. Holds the display values of the
// latest snapshot; decides nothing. Owned by the window's model.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/state/engine_snapshot.h"
#include "desktop/views/view_context.h"
#include "desktop/window/models/view_models.h"

#include <QObject>
#include <functional>

namespace nimbara {

class SettingsModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* now READ now CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* look READ look CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* units READ units CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* advice READ advice CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* window READ window CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* keys READ keys CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* addresses READ addresses CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* providers READ providers CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* folders READ folders CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* credits READ credits CONSTANT)
  Q_PROPERTY(QString version READ version CONSTANT)

 public:
  SettingsModel(EngineActions& engine, QObject* parent);

  /// Before the first snapshot, the defaults hold.
  void show(SettingsState const* state, ViewContext const& context);

  RecordModel* now() { return now_; }
  RecordModel* words() { return words_; }
  RecordListModel* look() { return look_; }
  RecordListModel* units() { return units_; }
  RecordListModel* advice() { return advice_; }
  RecordListModel* window() { return window_; }
  RecordListModel* keys() { return keys_; }
  RecordListModel* addresses() { return addresses_; }
  RecordListModel* providers() { return providers_; }
  RecordListModel* folders() { return folders_; }
  RecordListModel* credits() { return credits_; }
  static QString version();

  /// The page is shown: from now on the lists are kept.
  Q_INVOKABLE void open();
  /// An empty text takes the default.
  Q_INVOKABLE void change(QString const& key, QString const& text);
  Q_INVOKABLE void setStartAtLogin(bool wanted);
  /// In whatever the desktop opens folders with.
  Q_INVOKABLE void openFolder(QString const& path);

 Q_SIGNALS:
  void opened();

 private:
  EngineActions& engine_;
  bool isOpen_ = false;
  RecordModel* now_;
  RecordModel* words_;
  RecordListModel* look_;
  RecordListModel* units_;
  RecordListModel* advice_;
  RecordListModel* window_;
  RecordListModel* keys_;
  RecordListModel* addresses_;
  RecordListModel* providers_;
  RecordListModel* folders_;
  RecordListModel* credits_;
};

}  // namespace nimbara
