// The drawings of geomagnetic activity: the present value on its scale, and the days as bars with a cursor
// that pointer and keys move. Items of the window; the values and their words come from the model.
#pragma once

#include "desktop/window/models/hazards_model.h"

#include <QColor>
#include <QQuickPaintedItem>

namespace nimbara {

class KpGauge : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(double share MEMBER share_ NOTIFY changed)
  Q_PROPERTY(bool isKnown MEMBER isKnown_ NOTIFY changed)
  Q_PROPERTY(QVariantList levels MEMBER levels_ NOTIFY changed)
  Q_PROPERTY(QColor text MEMBER text_ NOTIFY changed)

 public:
  explicit KpGauge(QQuickItem* parent = nullptr);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void changed();

 private:
  double share_ = 0;  // of the scale
  bool isKnown_ = false;
  QVariantList levels_;  // the colours of the scale's steps
  QColor text_;
};

class KpBarsItem : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(nimbara::HazardsModel* model READ model WRITE setModel NOTIFY changed)
  Q_PROPERTY(int cursor READ cursor WRITE setCursor NOTIFY cursorChanged)
  Q_PROPERTY(QString reading READ reading NOTIFY cursorChanged)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(double enlargement MEMBER scale_ NOTIFY changed)
  Q_PROPERTY(QVariantList levels MEMBER levels_ NOTIFY changed)
  Q_PROPERTY(QColor text MEMBER text_ NOTIFY changed)
  Q_PROPERTY(QColor grid MEMBER grid_ NOTIFY changed)
  Q_PROPERTY(QColor mark MEMBER mark_ NOTIFY changed)

 public:
  explicit KpBarsItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

  HazardsModel* model() const { return model_; }
  void setModel(HazardsModel* model);
  /// The index of a bar; -1 for none.
  int cursor() const { return cursor_; }
  void setCursor(int cursor);
  QString reading() const;
  bool isEmpty() const { return data().bars.empty(); }
  /// The bar nearest to a place in the item.
  Q_INVOKABLE int barAt(double x) const;

 Q_SIGNALS:
  void changed();
  void cursorChanged();

 private:
  KpBars const& data() const;
  /// The item before it is enlarged; all is drawn in its coordinates.
  QSizeF area() const { return size() / scale_; }
  double xOf(double hours) const;
  void paintGrid(QPainter& painter) const;
  void paintBars(QPainter& painter) const;

  HazardsModel* model_ = nullptr;
  int cursor_ = -1;
  double scale_ = 1;
  QVariantList levels_;
  QColor text_, grid_, mark_;
};

}  // namespace nimbara
