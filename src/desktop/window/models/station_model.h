// What the page of the weather station shows and asks for, on the window's thread. Holds what the engine told
// last, from when the page was opened on. Owned by the window's model.
#pragma once

#include "app/engine/station_actions.h"
#include "app/state/engine_snapshot.h"
#include "desktop/views/view_context.h"
#include "desktop/window/models/view_models.h"

#include <QObject>

namespace nimbara {

class StationModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* now READ now CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* modules READ modules CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* choices READ choices CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* around READ around CONSTANT)

 public:
  StationModel(StationActions& stations, QObject* parent);

  void show(EngineSnapshot const& snapshot, ViewContext const& context);
  /// What the engine tells; the consent page is opened once.
  void take(StationDesk desk);
  StationDesk const& desk() const { return desk_; }

  RecordModel* words() { return words_; }
  RecordModel* now() { return now_; }
  RecordListModel* modules() { return modules_; }
  RecordListModel* choices() { return choices_; }
  RecordListModel* around() { return around_; }

  /// The page is shown: what is due is asked for, and from now on it is followed.
  Q_INVOKABLE void open();
  Q_INVOKABLE void refresh();
  Q_INVOKABLE void linkAccount(QString const& id, QString const& secret, QString const& token);
  Q_INVOKABLE void linkAddress(QString const& address, QString const& name);
  Q_INVOKABLE void cancel();
  Q_INVOKABLE void choose(QString const& station);
  Q_INVOKABLE void lookAround();
  /// One of the public stations; the median of all with none.
  Q_INVOKABLE void chooseAround(QString const& station);
  Q_INVOKABLE void unlink();
  Q_INVOKABLE void openConsent();

 Q_SIGNALS:
  void changed();
  /// The secrets that were typed are not needed any more.
  void linked();

 private:
  StationActions& stations_;
  bool isOpen_ = false;
  StationDesk desk_;
  RecordModel* words_;
  RecordModel* now_;
  RecordListModel* modules_;
  RecordListModel* choices_;
  RecordListModel* around_;
};

}  // namespace nimbara
