#include "desktop/window/painting/kp_items.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

/// Where the scale's steps end: the values that are rounded to the next one, and the last by itself.
constexpr std::array<double, kKpLevels> kStepEnds{2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.83, 9};
constexpr double kHighest = 9;
/// Degrees, as the painter counts them: from the right, against the clock.
constexpr double kGaugeBegin = 210;
constexpr double kGaugeSpan = 240;

constexpr double kLeft = 22;
constexpr double kHead = 6;
constexpr double kFoot = 20;
constexpr double kStormBegins = 5;

QColor faded(QColor colour, int alpha) {
  colour.setAlpha(alpha);
  return colour;
}

void arc(QPainter& painter, QRectF const& area, double from, double to, QColor const& colour, double width) {
  if (to <= from) return;
  painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::FlatCap));
  double const begin = kGaugeBegin - kGaugeSpan * from / kHighest;
  double const span = -kGaugeSpan * (to - from) / kHighest;
  painter.drawArc(area, static_cast<int>(std::lround(begin * 16)), static_cast<int>(std::lround(span * 16)));
}

}  // namespace

KpGauge::KpGauge(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &KpGauge::changed, this, [this] { update(); });
}

void KpGauge::paint(QPainter* painter) {
  double const side = std::min(width(), height() / 0.78);
  double const stroke = side * 0.1;
  QRectF const area((width() - side) / 2 + stroke, stroke, side - 2 * stroke, side - 2 * stroke);
  double const value = isKnown_ ? share_ * kHighest : 0;
  double from = 0;
  for (std::size_t step = 0; step < kStepEnds.size(); ++step) {
    QColor const colour = levels_.value(static_cast<qsizetype>(step)).value<QColor>();
    double const to = kStepEnds[step];
    double const gap = 0.04;
    arc(*painter, area, from + gap, to - gap, faded(colour, 60), stroke);
    arc(*painter, area, from + gap, std::min(to - gap, value), colour, stroke);
    from = to;
  }
  if (!isKnown_) return;
  double const angle = (kGaugeBegin - kGaugeSpan * share_) * 3.14159265358979 / 180;
  QPointF const way(std::cos(angle), -std::sin(angle));
  painter->setPen(QPen(text_, std::max(2.0, side * 0.018), Qt::SolidLine, Qt::RoundCap));
  painter->drawLine(area.center() + way * (area.width() / 2 - stroke * 0.75),
                    area.center() + way * (area.width() / 2 + stroke * 0.75));
}

KpBarsItem::KpBarsItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &KpBarsItem::changed, this, [this] { update(); });
  connect(this, &KpBarsItem::cursorChanged, this, [this] { update(); });
}

void KpBarsItem::setModel(HazardsModel* model) {
  if (model_ == model) return;
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  if (model_ != nullptr) {
    connect(model_, &HazardsModel::shown, this, [this] {
      Q_EMIT changed();
      setCursor(cursor_);
      Q_EMIT cursorChanged();
    });
  }
  Q_EMIT changed();
}

KpBars const& KpBarsItem::data() const {
  static KpBars const kNone;
  return model_ == nullptr ? kNone : model_->kpBars();
}

void KpBarsItem::setCursor(int cursor) {
  cursor = std::clamp(cursor, -1, static_cast<int>(data().bars.size()) - 1);
  if (cursor_ == cursor) return;
  cursor_ = cursor;
  Q_EMIT cursorChanged();
}

QString KpBarsItem::reading() const {
  bool const isInside = cursor_ >= 0 && cursor_ < static_cast<int>(data().bars.size());
  return isInside ? QString::fromStdString(data().bars[static_cast<std::size_t>(cursor_)].reading)
                  : QString();
}

double KpBarsItem::xOf(double hours) const {
  return kLeft + (area().width() - kLeft) * hours / std::max(1.0, data().hours);
}

int KpBarsItem::barAt(double x) const {
  auto const& bars = data().bars;
  auto const nearest = std::ranges::min_element(
      bars, {}, [&](KpBar const& bar) { return std::abs(xOf(bar.x + 1.5) - x / scale_); });
  return nearest == bars.end() ? -1 : static_cast<int>(nearest - bars.begin());
}

/// A name that has no room before the next day is left out.
void KpBarsItem::paintGrid(QPainter& painter) const {
  double const bottom = area().height() - kFoot;
  for (double const value : {0.0, 3.0, kStormBegins, 7.0, 9.0}) {
    double const y = bottom - (bottom - kHead) * value / kHighest;
    bool const isStorm = value == kStormBegins;
    painter.setPen(QPen(isStorm ? text_ : grid_, 1, isStorm ? Qt::DashLine : Qt::SolidLine));
    painter.drawLine(QPointF(kLeft, y), QPointF(area().width(), y));
    painter.setPen(text_);
    painter.drawText(QRectF(0, y - 8, kLeft - 6, 16), Qt::AlignRight | Qt::AlignVCenter,
                     QString::number(static_cast<int>(value)));
  }
  auto const& days = data().days;
  for (std::size_t i = 0; i < days.size(); ++i) {
    double const x = xOf(days[i].x);
    double const room = xOf(i + 1 < days.size() ? days[i + 1].x : data().hours) - x - 6;
    painter.setPen(QPen(grid_, 1));
    painter.drawLine(QPointF(x, kHead), QPointF(x, area().height() - 4));
    QString name = QString::fromStdString(days[i].name);
    auto const fits = [&] { return painter.fontMetrics().horizontalAdvance(name) <= room; };
    if (!fits()) name = name.section(QLatin1Char(' '), -1);
    painter.setPen(text_);
    if (fits()) painter.drawText(QRectF(x + 4, bottom + 3, room, 16), Qt::AlignLeft | Qt::AlignVCenter, name);
  }
}

void KpBarsItem::paintBars(QPainter& painter) const {
  double const bottom = area().height() - kFoot;
  double const slot = xOf(3) - xOf(0);
  auto const& bars = data().bars;
  painter.setPen(Qt::NoPen);
  for (std::size_t i = 0; i < bars.size(); ++i) {
    KpBar const& bar = bars[i];
    double const tall = std::max(2.0, (bottom - kHead) * bar.kp / kHighest);
    QColor const colour = levels_.value(bar.level).value<QColor>();
    painter.setBrush(bar.isForecast ? faded(colour, 110) : colour);
    QRectF const shape(xOf(bar.x) + slot * 0.12, bottom - tall, slot * 0.76, tall);
    painter.drawRoundedRect(shape, 1.5, 1.5);
    if (static_cast<int>(i) == cursor_) painter.fillRect(shape.adjusted(-1, 0, 1, 0), faded(mark_, 90));
  }
}

void KpBarsItem::paint(QPainter* painter) {
  if (isEmpty()) return;
  QFont font = painter->font();
  font.setPixelSize(11);
  painter->setFont(font);
  painter->scale(scale_, scale_);
  paintGrid(*painter);
  paintBars(*painter);
  double const now = xOf(data().now);
  painter->setPen(QPen(mark_, 1.4));
  painter->drawLine(QPointF(now, kHead), QPointF(now, area().height() - kFoot));
}

}  // namespace nimbara
