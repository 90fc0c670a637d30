// What the page of sources shows and asks for, on the window's thread. Holds the display values of the latest
// snapshot, from when the page was opened on. Owned by the window's model.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/state/engine_snapshot.h"
#include "desktop/views/view_context.h"
#include "desktop/window/models/view_models.h"

#include <QObject>

namespace nimbara {

class SourcesModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* places READ places CONSTANT)

 public:
  SourcesModel(EngineActions& engine, QObject* parent);

  void show(EngineSnapshot const& snapshot, ViewContext const& context);

  RecordModel* words() { return words_; }
  RecordListModel* places() { return places_; }

  /// The page is shown: what is due is asked for, and from now on the list is kept.
  Q_INVOKABLE void open();
  /// Which source is asked first for a saved place.
  Q_INVOKABLE void choose(QString const& place, QString const& source);

 Q_SIGNALS:
  void opened();

 private:
  EngineActions& engine_;
  bool isOpen_ = false;
  RecordModel* words_;
  RecordListModel* places_;
};

}  // namespace nimbara
