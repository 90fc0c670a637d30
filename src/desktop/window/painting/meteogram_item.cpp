#include "desktop/window/painting/meteogram_item.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <ranges>

namespace nimbara {

namespace {

constexpr double kLeft = 44;
constexpr double kRight = 44;
constexpr double kHead = 22;
constexpr double kGap = 16;

/// The lanes from top to bottom and their shares of the height.
struct Lanes {
  QRectF clouds, temperature, precipitation, wind, pressure;
};

Lanes lanesOf(QRectF const& all, bool hasClouds, bool hasPressure) {
  double const clouds = hasClouds ? 14 : 0;
  double const rest = all.height() - kHead - clouds - (hasPressure ? 5 : 4) * kGap;
  double const parts = hasPressure ? 8.5 : 7;
  double top = all.top() + kHead;
  auto const lane = [&](double height) {
    QRectF const made(all.left() + kLeft, top, all.width() - kLeft - kRight, height);
    top += height + kGap;
    return made;
  };
  Lanes lanes;
  lanes.clouds = lane(clouds);
  lanes.temperature = lane(rest * 3.2 / parts);
  lanes.precipitation = lane(rest * 1.8 / parts);
  lanes.wind = lane(rest * 2 / parts);
  lanes.pressure = hasPressure ? lane(rest * 1.5 / parts) : QRectF();
  return lanes;
}

/// Paints values of one axis into one lane.
class Lane {
 public:
  Lane(QPainter& painter, QRectF const& area, Axis const& axis, Meteogram const& data)
      : painter_(painter), area_(area), axis_(axis), data_(data) {}

  QPointF at(double hours, double value) const {
    double const share = (value - axis_.from) / (axis_.to - axis_.from);
    return {area_.left() + area_.width() * hours / data_.hours, area_.bottom() - area_.height() * share};
  }

  void grid(QColor const& line, QColor const& text, std::string const& unit) const {
    int const steps = static_cast<int>(std::lround((axis_.to - axis_.from) / axis_.step));
    for (int step = 0; step <= steps; ++step) {
      double const value = axis_.from + step * axis_.step;
      double const y = at(0, value).y();
      painter_.setPen(QPen(line, 1));
      painter_.drawLine(QPointF(area_.left(), y), QPointF(area_.right(), y));
      painter_.setPen(text);
      painter_.drawText(QRectF(0, y - 8, kLeft - 6, 16), Qt::AlignRight | Qt::AlignVCenter,
                        QString::number(value, 'g', 6));
    }
    painter_.drawText(QRectF(area_.right() + 6, area_.top() - 8, kRight, 16),
                      Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(unit));
  }

  void curve(double MeteogramPoint::* value, QPen const& pen) const {
    QPainterPath path;
    for (MeteogramPoint const& point : data_.points) {
      QPointF const to = at(point.x, point.*value);
      if (path.elementCount() == 0) {
        path.moveTo(to);
      } else {
        path.lineTo(to);
      }
    }
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(pen);
    painter_.drawPath(path);
  }

  void areaBelow(double MeteogramPoint::* value, QColor const& colour) const {
    QPolygonF shape{at(data_.points.front().x, axis_.from)};
    for (MeteogramPoint const& point : data_.points) shape << at(point.x, point.*value);
    shape << at(data_.points.back().x, axis_.from);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(colour);
    painter_.drawPolygon(shape);
  }

  /// Between the lower and the upper of what is usual, as far as the lane goes.
  void usual(QColor const& colour) const {
    QPolygonF shape;
    for (UsualPoint const& point : data_.usual) shape << at(point.x, point.high);
    for (UsualPoint const& point : std::views::reverse(data_.usual)) shape << at(point.x, point.low);
    painter_.save();
    painter_.setClipRect(area_);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(colour);
    painter_.drawPolygon(shape);
    painter_.restore();
  }

  /// What was measured, where it was; broken where nothing was for two hours.
  void observed(std::optional<double> ObservedPoint::* value, QColor const& colour) const {
    constexpr double kGapHours = 2;
    QPainterPath path;
    double last = -kGapHours;
    for (ObservedPoint const& point : data_.observed) {
      if (!(point.*value)) continue;
      QPointF const to = at(point.x, *(point.*value));
      bool const isNew = path.elementCount() == 0 || point.x - last > kGapHours;
      isNew ? path.moveTo(to) : path.lineTo(to);
      last = point.x;
    }
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(colour, 2, Qt::DotLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.drawPath(path);
  }

  /// Bars of the amounts; the paler behind them stand for the chance.
  void bars(QColor const& colour) const {
    double const slot = area_.width() / data_.hours;
    painter_.setPen(Qt::NoPen);
    for (MeteogramPoint const& point : data_.points) {
      double const x = at(point.x, 0).x();
      QColor pale = colour;
      pale.setAlpha(38);
      painter_.fillRect(
          QRectF(x, area_.bottom() - area_.height() * point.chance, slot, area_.height() * point.chance),
          pale);
      QPointF const top = at(point.x, point.precipitation);
      painter_.fillRect(QRectF(x + slot * 0.1, top.y(), slot * 0.8, area_.bottom() - top.y()), colour);
    }
  }

 private:
  QPainter& painter_;
  QRectF area_;
  Axis axis_;
  Meteogram const& data_;
};

QColor faded(QColor colour, int alpha) {
  colour.setAlpha(alpha);
  return colour;
}

void arrow(QPainter& painter, QPointF centre, double direction, QColor const& colour) {
  painter.save();
  painter.translate(centre);
  painter.rotate(direction + 180);
  painter.setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(0, 5), QPointF(0, -5));
  painter.drawLine(QPointF(0, -5), QPointF(-2.6, -1.6));
  painter.drawLine(QPointF(0, -5), QPointF(2.6, -1.6));
  painter.restore();
}

}  // namespace

MeteogramItem::MeteogramItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &MeteogramItem::changed, this, [this] { update(); });
  connect(this, &QQuickItem::widthChanged, this, &MeteogramItem::cursorChanged);
}

void MeteogramItem::setModel(DesktopModel* model) {
  if (model_ == model) return;
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  if (model_ != nullptr) {
    connect(model_, &DesktopModel::shown, this, [this] {
      Q_EMIT changed();
      Q_EMIT cursorChanged();
    });
  }
  Q_EMIT changed();
}

Meteogram const& MeteogramItem::data() const {
  static Meteogram const kNone;
  return model_ == nullptr ? kNone : model_->meteogram();
}

double MeteogramItem::xOf(double hours) const {
  return kLeft + (width() / scale_ - kLeft - kRight) * hours / std::max(1.0, data().hours);
}

MeteogramPoint const* MeteogramItem::pointAtCursor() const {
  auto const& points = data().points;
  bool const isInside = cursor_ >= 0 && cursor_ < static_cast<int>(points.size());
  return isInside ? &points[static_cast<std::size_t>(cursor_)] : nullptr;
}

void MeteogramItem::setCursor(int cursor) {
  int const last = static_cast<int>(data().points.size()) - 1;
  cursor = std::clamp(cursor, -1, last);
  if (cursor_ == cursor) return;
  cursor_ = cursor;
  Q_EMIT cursorChanged();
}

double MeteogramItem::cursorX() const {
  auto const* const point = pointAtCursor();
  return point == nullptr ? -1 : xOf(point->x) * scale_;
}

QString MeteogramItem::when() const {
  auto const* const point = pointAtCursor();
  return point == nullptr ? QString() : QString::fromStdString(point->when);
}

QString MeteogramItem::readings() const {
  auto const* const point = pointAtCursor();
  return point == nullptr ? QString() : QString::fromStdString(point->readings);
}

int MeteogramItem::pointAt(double x) const {
  auto const& points = data().points;
  x /= scale_;
  auto const nearest = std::ranges::min_element(
      points, {}, [&](MeteogramPoint const& point) { return std::abs(xOf(point.x) - x); });
  return nearest == points.end() ? -1 : static_cast<int>(nearest - points.begin());
}

/// Each night in one piece: pieces would show their seams.
void MeteogramItem::shadeNights(QPainter& painter, double top, double bottom) const {
  auto const& points = data().points;
  auto const isDay = [](MeteogramPoint const& point) { return point.isDay; };
  for (auto begin = std::ranges::find_if_not(points, isDay); begin != points.end();) {
    auto const end = std::find_if(begin, points.end(), isDay);
    double const from = xOf(begin->x);
    double const to = end == points.end() ? xOf(data().hours) : xOf(end->x);
    painter.fillRect(QRectF(from, top, to - from, bottom - top), night_);
    begin = std::find_if_not(end, points.end(), isDay);
  }
}

/// A name that has no room before the next day is shortened to the weekday, or left out.
void MeteogramItem::nameDays(QPainter& painter, double top, double bottom) const {
  constexpr double kSpace = 4;
  auto const& days = data().days;
  for (std::size_t i = 0; i < days.size(); ++i) {
    double const x = xOf(days[i].x);
    double const room = xOf(i + 1 < days.size() ? days[i + 1].x : data().hours) - x - kSpace;
    painter.setPen(QPen(grid_, 1));
    painter.drawLine(QPointF(x, top), QPointF(x, bottom));
    QString name = QString::fromStdString(days[i].name);
    auto const fits = [&] { return painter.fontMetrics().horizontalAdvance(name) <= room; };
    if (!fits()) name = name.section(QLatin1Char(' '), 0, 0);
    painter.setPen(text_);
    if (fits()) painter.drawText(QRectF(x + kSpace, 2, room, 16), Qt::AlignLeft | Qt::AlignVCenter, name);
  }
}

void MeteogramItem::paint(QPainter* painter) {
  Meteogram const& shown = data();
  if (shown.points.empty()) return;
  QFont font = painter->font();
  font.setPixelSize(11);
  painter->setFont(font);
  painter->scale(scale_, scale_);
  QRectF const area(QPointF(), boundingRect().size() / scale_);
  Lanes const lanes = lanesOf(area, shown.hasClouds, shown.hasPressure);
  double const top = kHead, bottom = area.height() - 2;
  double const slot = (area.width() - kLeft - kRight) / shown.hours;
  painter->setRenderHint(QPainter::Antialiasing, false);
  for (MeteogramPoint const& point : shown.points) {
    double const x = xOf(point.x);
    if (shown.hasClouds) {
      QRectF const cell(x, lanes.clouds.top(), slot, lanes.clouds.height());
      painter->fillRect(cell, faded(cloud_, static_cast<int>(20 + 200 * point.clouds)));
    }
  }
  painter->setRenderHint(QPainter::Antialiasing);
  shadeNights(*painter, top, bottom);
  nameDays(*painter, top, bottom);
  Lane const warmth(*painter, lanes.temperature, shown.temperature, shown);
  warmth.grid(grid_, text_, shown.temperatureUnit);
  if (showsUsual_ && hasUsual()) warmth.usual(faded(warm_, 46));
  warmth.curve(&MeteogramPoint::feelsLike, QPen(felt_, 1.6, Qt::DashLine, Qt::RoundCap));
  warmth.curve(&MeteogramPoint::temperature, QPen(warm_, 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  warmth.observed(&ObservedPoint::temperature, observed_);
  Lane const rain(*painter, lanes.precipitation, shown.precipitation, shown);
  rain.grid(grid_, text_, shown.precipitationUnit);
  rain.bars(rain_);
  Lane const wind(*painter, lanes.wind, shown.wind, shown);
  wind.grid(grid_, text_, shown.windUnit);
  wind.areaBelow(&MeteogramPoint::gust, faded(wind_, 50));
  wind.curve(&MeteogramPoint::wind, QPen(wind_, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  wind.observed(&ObservedPoint::wind, observed_);
  if (!shown.observed.empty()) {
    painter->setPen(QPen(text_, 1, Qt::DashLine));
    painter->drawLine(QPointF(xOf(shown.now), top), QPointF(xOf(shown.now), bottom));
  }
  auto const stride = static_cast<std::size_t>(std::max(1.0, std::ceil(22 / slot)));
  for (std::size_t i = 0; i < shown.points.size(); i += stride) {
    MeteogramPoint const& point = shown.points[i];
    arrow(*painter, {xOf(point.x + 0.5), lanes.wind.top() - 2}, point.direction, text_);
  }
  if (!shown.hasPressure) return;
  Lane const air(*painter, lanes.pressure, shown.pressure, shown);
  air.grid(grid_, text_, shown.pressureUnit);
  air.curve(&MeteogramPoint::pressure, QPen(air_, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  air.observed(&ObservedPoint::pressure, observed_);
}

}  // namespace nimbara
