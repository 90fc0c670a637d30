// What the hazards page shows and asks for, on the window's thread. Owned by the window's model, which shows
// it each snapshot. Reads no file, asks no service.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/state/engine_snapshot.h"
#include "desktop/views/hazards/kp_view.h"
#include "desktop/views/hazards/quakes_view.h"
#include "desktop/window/models/view_models.h"

#include <QObject>
#include <functional>
#include <string>
#include <vector>

namespace nimbara {

class HazardsModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* official READ official CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* warnings READ warnings CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* about READ about CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* quakes READ quakes CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* radii READ radii CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* magnitudes READ magnitudes CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* orders READ orders CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* kp READ kp CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* supplement READ supplement CONSTANT)
  Q_PROPERTY(int highlighted READ highlighted WRITE setHighlighted NOTIFY highlightedChanged)
  Q_PROPERTY(QString highlightedText READ highlightedText NOTIFY highlightedChanged)

 public:
  HazardsModel(EngineActions& engine, QObject* parent);

  void show(EngineSnapshot const& snapshot, ViewContext const& context);

  RecordModel* words() { return words_; }
  RecordModel* official() { return official_; }
  RecordListModel* warnings() { return warnings_; }
  RecordModel* about() { return about_; }
  RecordListModel* quakes() { return quakes_; }
  RecordListModel* radii() { return radii_; }
  RecordListModel* magnitudes() { return magnitudes_; }
  RecordListModel* orders() { return orders_; }
  RecordModel* kp() { return kp_; }
  RecordListModel* supplement() { return supplement_; }
  QuakeMap const& quakeMap() const { return quakeMap_; }
  KpBars const& kpBars() const { return kpBars_; }
  /// The row of the earthquake that is pointed at; -1 for none.
  int highlighted() const { return highlighted_; }
  void setHighlighted(int row);
  QString highlightedText() const;

  Q_INVOKABLE void look();
  Q_INVOKABLE void setRadius(double km);
  Q_INVOKABLE void setMagnitude(double least);
  /// One of the values of `orders`.
  Q_INVOKABLE void setOrder(double order);

 Q_SIGNALS:
  void shown();
  void highlightedChanged();
  void reordered();  ///< the list is to be shown anew

 private:
  void showQuakes(EngineSnapshot const& snapshot, ViewContext const& context);

  EngineActions& engine_;
  RecordModel* words_;
  RecordModel* official_;
  RecordListModel* warnings_;
  RecordModel* about_;
  RecordListModel* quakes_;
  RecordListModel* radii_;
  RecordListModel* magnitudes_;
  RecordListModel* orders_;
  RecordModel* kp_;
  RecordListModel* supplement_;
  QuakeMap quakeMap_;
  KpBars kpBars_;
  QuakeOrder order_ = QuakeOrder::significance;
  int highlighted_ = -1;
  std::vector<QuakeView> shownQuakes_;
};

}  // namespace nimbara
