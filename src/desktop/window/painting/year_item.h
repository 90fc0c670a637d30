// The usual temperatures of a year's days as bands, and today's among them. An item of the window; the values
// come from the model.
#pragma once

#include "desktop/window/models/air_model.h"

#include <QColor>
#include <QPolygonF>
#include <QQuickPaintedItem>

namespace nimbara {

class YearItem : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(nimbara::AirModel* model READ model WRITE setModel NOTIFY changed)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(double enlargement MEMBER scale_ NOTIFY changed)
  Q_PROPERTY(QColor text MEMBER text_ NOTIFY changed)
  Q_PROPERTY(QColor grid MEMBER grid_ NOTIFY changed)
  Q_PROPERTY(QColor band MEMBER band_ NOTIFY changed)
  Q_PROPERTY(QColor mark MEMBER mark_ NOTIFY changed)

 public:
  explicit YearItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

  AirModel* model() const { return model_; }
  void setModel(AirModel* model);
  bool isEmpty() const { return data().days.empty(); }

 Q_SIGNALS:
  void changed();

 private:
  YearCurve const& data() const;
  /// Not enlarged, as all that is painted.
  QPointF at(double day, double value) const;
  QPolygonF between(double YearDay::* low, double YearDay::* high) const;
  void paintGrid(QPainter& painter) const;
  void paintMonths(QPainter& painter) const;

  AirModel* model_ = nullptr;
  double scale_ = 1;
  QColor text_, grid_, band_, mark_;
};

}  // namespace nimbara
