// What the window shows in its first minute and what is answered there, on the window's thread. Holds the
// display values of the latest snapshot; decides nothing. Owned by the window's model.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/state/engine_snapshot.h"
#include "desktop/views/view_context.h"
#include "desktop/window/models/view_models.h"

#include <QObject>

namespace nimbara {

class FirstModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* welcome READ welcome CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* sources READ sources CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* arrival READ arrival CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* background READ background CONSTANT)

 public:
  FirstModel(EngineActions& engine, QObject* parent);

  void show(EngineSnapshot const& snapshot, ViewContext const& context);

  RecordModel* words() { return words_; }
  RecordModel* welcome() { return welcome_; }
  RecordListModel* sources() { return sources_; }
  RecordModel* arrival() { return arrival_; }
  RecordModel* background() { return background_; }

  /// Notifications while the window is closed: installs the background service.
  Q_INVOKABLE void acceptBackground();
  /// The question is not asked again, or its outcome has been read.
  Q_INVOKABLE void closeBackground();

 Q_SIGNALS:
  void answered();

 private:
  EngineActions& engine_;
  bool isAnswered_ = false;
  RecordModel* words_;
  RecordModel* welcome_;
  RecordListModel* sources_;
  RecordModel* arrival_;
  RecordModel* background_;
};

}  // namespace nimbara
