// The sky beside the present temperature: sun or stars and moon, clouds, and what falls from them. Painted
// once when its properties change; nothing moves. Transparent towards the side where the texts stand.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace nimbara {

class SkyScenery : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(double sunAltitude MEMBER sunAltitude_ NOTIFY changed)
  Q_PROPERTY(double sunAlong MEMBER sunAlong_ NOTIFY changed)
  Q_PROPERTY(double moonAltitude MEMBER moonAltitude_ NOTIFY changed)
  Q_PROPERTY(double moonAlong MEMBER moonAlong_ NOTIFY changed)
  Q_PROPERTY(double moonIllumination MEMBER moonIllumination_ NOTIFY changed)
  Q_PROPERTY(bool moonLitOnRight MEMBER moonLitOnRight_ NOTIFY changed)
  Q_PROPERTY(double clouds MEMBER clouds_ NOTIFY changed)
  Q_PROPERTY(double fog MEMBER fog_ NOTIFY changed)
  Q_PROPERTY(double rain MEMBER rain_ NOTIFY changed)
  Q_PROPERTY(double snow MEMBER snow_ NOTIFY changed)
  Q_PROPERTY(bool hasLightning MEMBER hasLightning_ NOTIFY changed)
  Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)
  Q_PROPERTY(bool fadesToRight MEMBER fadesToRight_ NOTIFY changed)

 public:
  explicit SkyScenery(QQuickItem* parent = nullptr);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void changed();

 private:
  double dayShare() const;
  double discShare() const;
  QPointF placeOf(double altitude, double along) const;
  void clipToCorners(QPainter& painter) const;
  void paintStars(QPainter& painter) const;
  void paintMoon(QPainter& painter) const;
  void paintSun(QPainter& painter) const;
  void paintClouds(QPainter& painter) const;
  void paintFog(QPainter& painter) const;
  void paintLightning(QPainter& painter) const;
  void paintRain(QPainter& painter) const;
  void paintSnow(QPainter& painter) const;
  void fade(QPainter& painter) const;

  double sunAltitude_ = -90;
  double sunAlong_ = 0.5;
  double moonAltitude_ = -90;
  double moonAlong_ = 0.5;
  double moonIllumination_ = 0;
  bool moonLitOnRight_ = true;
  double clouds_ = 0;
  double fog_ = 0;
  double rain_ = 0;
  double snow_ = 0;
  bool hasLightning_ = false;
  double radius_ = 0;
  bool fadesToRight_ = false;
};

}  // namespace nimbara
