// What the page of the air and the climate shows, on the window's thread: display values of the latest
// snapshot. Owned by the window's model, which shows it each snapshot. Reads no file, asks no service.
#pragma once

#include "app/state/engine_snapshot.h"
#include "desktop/views/air/year_view.h"
#include "desktop/window/models/view_models.h"

#include <QObject>

namespace nimbara {

class AirModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* now READ now CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* steps READ steps CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* pollutants READ pollutants CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* pollen READ pollen CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* hours READ hours CONSTANT)

 public:
  explicit AirModel(QObject* parent);

  void show(EngineSnapshot const& snapshot, ViewContext const& context);

  RecordModel* words() { return words_; }
  RecordModel* now() { return now_; }
  RecordListModel* steps() { return steps_; }
  RecordListModel* pollutants() { return pollutants_; }
  RecordListModel* pollen() { return pollen_; }
  RecordListModel* hours() { return hours_; }
  YearCurve const& year() const { return year_; }

 Q_SIGNALS:
  void shown();

 private:
  RecordModel* words_;
  RecordModel* now_;
  RecordListModel* steps_;
  RecordListModel* pollutants_;
  RecordListModel* pollen_;
  RecordListModel* hours_;
  YearCurve year_;
};

}  // namespace nimbara
