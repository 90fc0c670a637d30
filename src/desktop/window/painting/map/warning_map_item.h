// Where the opened warning holds, on a map with the place. An item of the window; what is shown comes from
// the model.
#pragma once

#include "desktop/window/models/desktop_model.h"
#include "desktop/window/painting/map/land_picture.h"

#include <QColor>
#include <QQuickPaintedItem>

namespace nimbara {

class WarningMapItem : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(nimbara::DesktopModel* model READ model WRITE setModel NOTIFY changed)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(QColor sea MEMBER sea_ NOTIFY changed)
  Q_PROPERTY(QColor land MEMBER landColour_ NOTIFY changed)
  Q_PROPERTY(QColor border MEMBER border_ NOTIFY changed)
  Q_PROPERTY(QColor area MEMBER area_ NOTIFY changed)
  Q_PROPERTY(QColor mark MEMBER mark_ NOTIFY changed)
  Q_PROPERTY(QColor ink MEMBER ink_ NOTIFY changed)
  /// Of the place; stands beside its mark.
  Q_PROPERTY(QString name MEMBER name_ NOTIFY changed)
  Q_PROPERTY(int letters MEMBER letters_ NOTIFY changed)  // px

 public:
  explicit WarningMapItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

  DesktopModel* model() const { return model_; }
  void setModel(DesktopModel* model);
  /// The issuer draws no area.
  bool isEmpty() const { return model_ == nullptr || model_->openAlertMap().area.rings.empty(); }

 Q_SIGNALS:
  void changed();

 private:
  DesktopModel* model_ = nullptr;
  QColor sea_, landColour_, border_, area_, mark_, ink_;
  QString name_;
  int letters_ = 12;

  QImage areasOf(AlertMap const& map, MapFrame const& frame, double ratio) const;
  void paintName(QPainter& painter, QPointF mark) const;

  LandPicture land_;
};

}  // namespace nimbara
