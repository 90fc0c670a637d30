// Small drawings of the page of the present: the wind's compass, the sun's way over the day, the moon's disc.
// Items of the window that paint their properties and compute nothing about the weather.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QQuickPaintedItem>

namespace nimbara {

/// The lit part of the moon's disc around the origin; `illumination` is its share, 0-1.
QPainterPath litMoon(double radius, double illumination, bool isLitOnRight);

class WindCompass : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(double direction MEMBER direction_ NOTIFY changed)
  Q_PROPERTY(QColor lines MEMBER lines_ NOTIFY changed)
  Q_PROPERTY(QColor needle MEMBER needle_ NOTIFY changed)

 public:
  explicit WindCompass(QQuickItem* parent = nullptr);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void changed();

 private:
  double direction_ = 0;  // degrees from north where the wind comes from
  QColor lines_;
  QColor needle_;
};

class SunArc : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(double share MEMBER share_ NOTIFY changed)
  Q_PROPERTY(QColor lines MEMBER lines_ NOTIFY changed)
  Q_PROPERTY(QColor passed MEMBER passed_ NOTIFY changed)

 public:
  explicit SunArc(QQuickItem* parent = nullptr);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void changed();

 private:
  double share_ = -1;  // of the way from rise to set; beyond 0-1 the sun is not drawn
  QColor lines_;
  QColor passed_;
};

class MoonDisc : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(double illumination MEMBER illumination_ NOTIFY changed)
  Q_PROPERTY(bool litOnRight MEMBER litOnRight_ NOTIFY changed)
  Q_PROPERTY(QColor lit MEMBER lit_ NOTIFY changed)
  Q_PROPERTY(QColor shade MEMBER shade_ NOTIFY changed)

 public:
  explicit MoonDisc(QQuickItem* parent = nullptr);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void changed();

 private:
  double illumination_ = 0;  // 0-1
  bool litOnRight_ = true;
  QColor lit_;
  QColor shade_;
};

}  // namespace nimbara
