// The world, or the part of it around the place, with the earthquakes as points: the larger the stronger, the
// colour by age. An item of the window; what is shown comes from the model.
#pragma once

#include "desktop/window/models/hazards_model.h"
#include "desktop/window/painting/map/land_picture.h"

#include <QColor>
#include <QQuickPaintedItem>

namespace nimbara {

class QuakeMapItem : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(nimbara::HazardsModel* model READ model WRITE setModel NOTIFY changed)
  Q_PROPERTY(QColor sea MEMBER sea_ NOTIFY changed)
  Q_PROPERTY(QColor land MEMBER landColour_ NOTIFY changed)
  Q_PROPERTY(QColor border MEMBER border_ NOTIFY changed)
  Q_PROPERTY(QColor mark MEMBER mark_ NOTIFY changed)
  Q_PROPERTY(QColor ring MEMBER ring_ NOTIFY changed)
  Q_PROPERTY(QVariantList ages MEMBER ages_ NOTIFY changed)

 public:
  explicit QuakeMapItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

  HazardsModel* model() const { return model_; }
  void setModel(HazardsModel* model);
  /// The row of the earthquake at a place in the item; -1 for none.
  Q_INVOKABLE int rowAt(double x, double y) const;

 Q_SIGNALS:
  void changed();

 private:
  QuakeMap const& data() const;
  MapFrame frame() const;
  QPointF at(MapFrame const& frame, Coordinate place) const;
  double radiusOf(double magnitude) const;
  void paintLand(QPainter& painter, MapFrame const& frame);
  void paintCircle(QPainter& painter, MapFrame const& frame) const;
  void paintPlace(QPainter& painter, MapFrame const& frame) const;
  void paintQuake(QPainter& painter, MapFrame const& frame, QuakePoint const& point) const;

  HazardsModel* model_ = nullptr;
  QColor sea_, landColour_, border_, mark_, ring_;
  QVariantList ages_;
  LandPicture land_;
};

}  // namespace nimbara
