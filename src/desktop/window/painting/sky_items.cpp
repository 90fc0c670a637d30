#include "desktop/window/painting/sky_items.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

void repaintOnChange(auto* item) {
  item->setAntialiasing(true);
  QObject::connect(item, &std::remove_pointer_t<decltype(item)>::changed, item, [item] { item->update(); });
}

}  // namespace

QPainterPath litMoon(double radius, double illumination, bool isLitOnRight) {
  // The terminator is half an ellipse, whose width follows from the lit share of the disc.
  double const bulge = radius * (1 - 2 * std::clamp(illumination, 0.0, 1.0));
  QPainterPath lit;
  lit.moveTo(0, -radius);
  lit.arcTo(QRectF(-radius, -radius, 2 * radius, 2 * radius), 90, -180);
  QRectF const terminator(-std::abs(bulge), -radius, 2 * std::abs(bulge), 2 * radius);
  lit.arcTo(terminator, -90, bulge > 0 ? 180 : -180);
  lit.closeSubpath();
  return isLitOnRight ? lit : QTransform::fromScale(-1, 1).map(lit);
}

WindCompass::WindCompass(QQuickItem* parent) : QQuickPaintedItem(parent) {
  repaintOnChange(this);
}

void WindCompass::paint(QPainter* painter) {
  double const radius = std::min(width(), height()) / 2 - 1.5;
  painter->translate(width() / 2, height() / 2);
  painter->setPen(QPen(lines_, 1.5));
  painter->drawEllipse(QPointF(0, 0), radius, radius);
  for (int tick = 0; tick < 8; ++tick) {
    painter->drawLine(QPointF(0, -radius), QPointF(0, -radius + (tick % 2 == 0 ? 5 : 2.5)));
    painter->rotate(45);
  }
  // The needle flies with the wind: away from where it comes from.
  painter->rotate(direction_ + 180);
  painter->setPen(Qt::NoPen);
  painter->setBrush(needle_);
  double const tip = radius * 0.68;
  painter->drawPolygon(
      QPolygonF({{0, -tip}, {tip * 0.46, tip * 0.72}, {0, tip * 0.4}, {-tip * 0.46, tip * 0.72}}));
}

SunArc::SunArc(QQuickItem* parent) : QQuickPaintedItem(parent) {
  repaintOnChange(this);
}

void SunArc::paint(QPainter* painter) {
  constexpr double kSun = 7, kMargin = 10;
  double const base = height() - kMargin;
  double const radiusX = width() / 2 - kMargin;
  double const radiusY = base - kMargin;
  QRectF const oval(kMargin, base - radiusY, 2 * radiusX, 2 * radiusY);
  painter->setPen(QPen(lines_, 1.5, Qt::DashLine, Qt::RoundCap));
  painter->drawArc(oval, 0, 180 * 16);
  painter->setPen(QPen(lines_, 1.5));
  painter->drawLine(QPointF(0, base), QPointF(width(), base));
  double const share = std::clamp(share_, 0.0, 1.0);
  painter->setPen(QPen(passed_, 3, Qt::SolidLine, Qt::RoundCap));
  if (share > 0) painter->drawArc(oval, 180 * 16, -static_cast<int>(180 * 16 * share));
  if (share_ < 0 || share_ > 1) return;
  double const angle = std::numbers::pi * (1 - share);
  QPointF const sun(width() / 2 + radiusX * std::cos(angle), base - radiusY * std::sin(angle));
  painter->setPen(Qt::NoPen);
  QColor glow = passed_;
  glow.setAlpha(70);
  painter->setBrush(glow);
  painter->drawEllipse(sun, kSun + 3, kSun + 3);
  painter->setBrush(passed_);
  painter->drawEllipse(sun, kSun, kSun);
}

MoonDisc::MoonDisc(QQuickItem* parent) : QQuickPaintedItem(parent) {
  repaintOnChange(this);
}

void MoonDisc::paint(QPainter* painter) {
  double const radius = std::min(width(), height()) / 2 - 1;
  painter->translate(width() / 2, height() / 2);
  painter->setPen(Qt::NoPen);
  painter->setBrush(shade_);
  painter->drawEllipse(QPointF(0, 0), radius, radius);
  painter->setBrush(lit_);
  painter->drawPath(litMoon(radius, illumination_, litOnRight_));
}

}  // namespace nimbara
