// The sky beside the present temperature: sun or stars and moon, clouds, and what falls from them. Painted
// once when the scene changes; nothing moves. Transparent towards the side where the texts stand.
#pragma once

#include "desktop/window/models/desktop_model.h"

#include <QColor>
#include <QPainterPath>
#include <QQuickPaintedItem>

namespace nimbara {

class SkyScenery : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(nimbara::DesktopModel* model READ model WRITE setModel NOTIFY changed)
  Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)
  Q_PROPERTY(bool fadesToRight MEMBER fadesToRight_ NOTIFY changed)

 public:
  explicit SkyScenery(QQuickItem* parent = nullptr);
  void paint(QPainter* painter) override;

  DesktopModel* model() const { return model_; }
  /// Shows the model's sky, now and whenever it changes.
  void setModel(DesktopModel* model);
  void show(SkyScene const& scene);

 Q_SIGNALS:
  void changed();

 private:
  double dayShare() const;
  double discShare() const;
  QPointF placeOf(double altitude, double along) const;
  void clipToCorners(QPainter& painter) const;
  QPainterPath cloudsPath() const;
  void paintStars(QPainter& painter) const;
  void paintMoon(QPainter& painter) const;
  void paintSun(QPainter& painter) const;
  void paintClouds(QPainter& painter) const;
  void paintFog(QPainter& painter) const;
  void paintLightning(QPainter& painter) const;
  void paintRain(QPainter& painter) const;
  void paintSnow(QPainter& painter) const;
  void fade(QPainter& painter) const;

  DesktopModel* model_ = nullptr;
  SkyScene scene_;
  double radius_ = 0;
  bool fadesToRight_ = false;
};

}  // namespace nimbara
