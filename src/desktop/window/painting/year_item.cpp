#include "desktop/window/painting/year_item.h"

#include <QPainter>
#include <cmath>
#include <ranges>

namespace nimbara {

namespace {

constexpr double kLeft = 34;
constexpr double kRight = 10;
constexpr double kHead = 26;
constexpr double kFoot = 20;
constexpr double kDays = 366;
constexpr double kMonths = 12;

QColor faded(QColor colour, int alpha) {
  colour.setAlpha(alpha);
  return colour;
}

}  // namespace

YearItem::YearItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &YearItem::changed, this, [this] { update(); });
}

void YearItem::setModel(AirModel* model) {
  if (model_ == model) return;
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  if (model_ != nullptr) connect(model_, &AirModel::shown, this, &YearItem::changed);
  Q_EMIT changed();
}

YearCurve const& YearItem::data() const {
  static YearCurve const kNone;
  return model_ == nullptr ? kNone : model_->year();
}

QPointF YearItem::at(double day, double value) const {
  Axis const& axis = data().axis;
  double const wide = width() / scale_ - kLeft - kRight;
  double const high = height() / scale_ - kHead - kFoot;
  double const share = (value - axis.from) / (axis.to - axis.from);
  return {kLeft + wide * (day + 0.5) / kDays, kHead + high * (1 - share)};
}

QPolygonF YearItem::between(double YearDay::* low, double YearDay::* high) const {
  QPolygonF shape;
  auto const& days = data().days;
  shape.reserve(2 * static_cast<qsizetype>(days.size()));
  for (YearDay const& day : days) shape << at(day.x, day.*high);
  for (YearDay const& day : std::views::reverse(days)) shape << at(day.x, day.*low);
  return shape;
}

void YearItem::paintGrid(QPainter& painter) const {
  Axis const& axis = data().axis;
  int const steps = static_cast<int>(std::lround((axis.to - axis.from) / axis.step));
  double const right = at(kDays - 0.5, 0).x();
  for (int step = 0; step <= steps; ++step) {
    double const value = axis.from + step * axis.step;
    double const y = at(0, value).y();
    painter.setPen(QPen(grid_, 1));
    painter.drawLine(QPointF(kLeft, y), QPointF(right, y));
    painter.setPen(text_);
    painter.drawText(QRectF(0, y - 8, kLeft - 6, 16), Qt::AlignRight | Qt::AlignVCenter,
                     QString::number(value, 'g', 6));
  }
  painter.drawText(QRectF(0, 0, kLeft - 6, 12), Qt::AlignRight | Qt::AlignTop,
                   QString::fromStdString(data().unit));
}

/// Whole names where all of them fit, else their beginnings.
void YearItem::paintMonths(QPainter& painter) const {
  constexpr qsizetype kShort = 3;
  double const slot = (at(kDays - 0.5, 0).x() - kLeft) / kMonths;
  bool fit = true;
  for (std::string const& name : data().months)
    fit = fit && painter.fontMetrics().horizontalAdvance(QString::fromStdString(name)) + 4 < slot;
  double const y = height() / scale_ - kFoot;
  painter.setPen(text_);
  for (std::size_t month = 0; month < data().months.size(); ++month) {
    QString const name = QString::fromStdString(data().months[month]);
    qsizetype const length = slot < 26 ? 1 : kShort;
    QString const shown = fit ? name : name.left(length);
    painter.drawText(QRectF(kLeft + slot * static_cast<double>(month), y, slot, kFoot),
                     Qt::AlignHCenter | Qt::AlignBottom, shown);
  }
}

void YearItem::paint(QPainter* painter) {
  if (isEmpty()) return;
  QFont font = painter->font();
  font.setPixelSize(11);
  painter->setFont(font);
  painter->scale(scale_, scale_);
  painter->setRenderHint(QPainter::Antialiasing);
  paintGrid(*painter);
  paintMonths(*painter);
  painter->setPen(Qt::NoPen);
  painter->setBrush(faded(band_, 55));
  painter->drawPolygon(between(&YearDay::p10, &YearDay::p90));
  painter->setBrush(faded(band_, 95));
  painter->drawPolygon(between(&YearDay::p20, &YearDay::p80));
  QPolygonF median;
  for (YearDay const& day : data().days) median << at(day.x, day.p50);
  painter->setBrush(Qt::NoBrush);
  painter->setPen(QPen(band_, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter->drawPolyline(median);
  if (data().todayX < 0) return;
  QPointF const today = at(data().todayX, data().today);
  painter->setPen(QPen(faded(mark_, 150), 1, Qt::DashLine));
  painter->drawLine(QPointF(today.x(), kHead), QPointF(today.x(), at(0, data().axis.from).y()));
  painter->setPen(QPen(mark_, 2));
  painter->setBrush(mark_);
  painter->drawEllipse(today, 4, 4);
}

}  // namespace nimbara
