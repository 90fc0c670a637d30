#include "desktop/imagery/field_picture.h"

#include "feeds/imagery/radar/radar_palette.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <map>

namespace nimbara {

namespace {

/// From blue over white-green to red: each step of ten degrees is told from the next by those who are
/// colour-blind as well, since its lightness differs.
constexpr FieldStop kTemperature[] = {{-40, 0x3b1d6e}, {-30, 0x44439c}, {-20, 0x3f75b8}, {-10, 0x67a9cf},
                                      {0, 0xc7e2ee},   {10, 0xe6f0b8},  {20, 0xf8d36b},  {30, 0xee8a3a},
                                      {40, 0xc63327},  {50, 0x6f1020}};

/// Colours are made of one value for so many pixels' square, isobars of a coarser one.
constexpr int kColourStep = 4, kLineStep = 12, kArrowStep = 72;

/// Each value the mean of those around it, as far as they are known.
std::vector<float> smoothed(std::vector<float> const& raster, int columns, int reach) {
  int const rows = static_cast<int>(raster.size()) / columns;
  std::vector<float> made(raster.size(), std::numeric_limits<float>::quiet_NaN());
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; ++x) {
      auto const here =
          static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(x);
      if (std::isnan(raster[here])) continue;
      double sum = 0;
      int count = 0;
      for (int j = std::max(0, y - reach); j <= std::min(rows - 1, y + reach); ++j) {
        for (int i = std::max(0, x - reach); i <= std::min(columns - 1, x + reach); ++i) {
          float const value = raster[static_cast<std::size_t>(j) * static_cast<std::size_t>(columns) +
                                     static_cast<std::size_t>(i)];
          if (std::isnan(value)) continue;
          sum += value;
          ++count;
        }
      }
      made[here] = static_cast<float>(sum / count);
    }
  }
  return made;
}

class FieldPainter {
 public:
  FieldPainter(ModelFields const& fields, std::size_t hour, MapView const& view, FieldLook const& look)
      : fields_(fields), hour_(fields.hours[hour]), view_(view), look_(look) {}

  QImage colours(std::vector<float> const& values, FieldKind kind) const {
    QImage small((view_.width + kColourStep - 1) / kColourStep,
                 (view_.height + kColourStep - 1) / kColourStep, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < small.height(); ++y) {
      auto* const line = reinterpret_cast<QRgb*>(small.scanLine(y));
      for (int x = 0; x < small.width(); ++x) {
        auto const value = at(values, (x + 0.5) * kColourStep, (y + 0.5) * kColourStep);
        line[x] = value ? colourOf(kind, *value) : 0;
      }
    }
    return small.scaled(small.size() * kColourStep, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .copy(0, 0, view_.width, view_.height);
  }

  QImage isobars() const {
    QImage picture = blank();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    int const columns = view_.width / kLineStep + 2, rows = view_.height / kLineStep + 2;
    std::vector<float> raster;
    raster.reserve(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    for (int y = 0; y < rows; ++y) {
      for (int x = 0; x < columns; ++x) {
        auto const value = at(hour_.pressure, x * kLineStep, y * kLineStep);
        raster.push_back(value ? static_cast<float>(*value) : std::numeric_limits<float>::quiet_NaN());
      }
    }
    // Straight lines between a few values have corners that no field of pressure has.
    for (int pass = 0; pass < 2; ++pass)
      raster = smoothed(raster, columns, view_.width / fields_.grid.columns / kLineStep / 3);
    double const step = isobarStep(view_.zoom);
    constexpr double kLeast = 860, kMost = 1100;  // what has been measured on earth
    std::vector<QRectF> taken;
    for (double level = std::ceil(kLeast / step) * step; level < kMost; level += step)
      isobar(painter, contour(raster, columns, level), level, taken);
    return picture;
  }

  /// Longer and heavier the stronger; none where it is calm.
  QImage arrows() const {
    constexpr double kCalm = 2, kStorm = 90;  // km/h
    QImage picture = blank();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    // From round points of the world, so that they stay in their places while the map is moved.
    MapPoint const corner = pointAt(view_, {0, 0});
    double const side = view_.worldSide();
    double const left = -std::fmod(corner.x * side, kArrowStep),
                 top = -std::fmod(corner.y * side, kArrowStep);
    for (double y = top; y < view_.height + kArrowStep; y += kArrowStep) {
      for (double x = left; x < view_.width + kArrowStep; x += kArrowStep) {
        auto const east = at(hour_.windEast, x, y), north = at(hour_.windNorth, x, y);
        if (!east || !north) continue;
        double const speed = std::hypot(*east, *north);
        if (speed >= kCalm)
          arrow(painter, {x, y}, QPointF(*east, -*north) / speed, std::min(1.0, speed / kStorm));
        bool const isNumbered = (std::lround((corner.x * side + x) / kArrowStep) +
                                 std::lround((corner.y * side + y) / kArrowStep)) %
                                    2 ==
                                0;
        if (isNumbered) number(painter, {x, y + kArrowStep * 0.38}, display(speed, look_.units.wind));
      }
    }
    return picture;
  }

 private:
  QImage blank() const {
    QImage picture(view_.width, view_.height, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
  }

  std::optional<double> at(std::vector<float> const& values, double x, double y) const {
    MapPoint const point = pointAt(view_, {x, y});
    if (point.y < 0 || point.y > 1) return std::nullopt;
    return fieldAt(values, fields_.grid, coordinateOf(point));
  }

  static QRgb colourOf(FieldKind kind, double value) {
    if (kind == FieldKind::precipitation) {
      std::uint32_t const rgba = ownColourOf(value);
      return qPremultiply(
          qRgba(int(rgba >> 24), int(rgba >> 16 & 0xff), int(rgba >> 8 & 0xff), int(rgba & 0xff)));
    }
    return 0xff000000U | fieldColour(kTemperature, value);
  }

  /// Its value stands once on each stretch that has room for it.
  void isobar(QPainter& painter, std::vector<ContourPiece> const& pieces, double level,
              std::vector<QRectF>& taken) const {
    QPainterPath path;
    for (ContourPiece const& piece : pieces) {
      path.moveTo(piece.from.x * kLineStep, piece.from.y * kLineStep);
      path.lineTo(piece.to.x * kLineStep, piece.to.y * kLineStep);
    }
    painter.strokePath(path, QPen(look_.halo, 3.2));
    painter.strokePath(path, QPen(look_.ink, 1.3));
    QFont font;
    font.setPixelSize(look_.letters);
    painter.setFont(font);
    QString const text = QString::fromStdString(display(level, look_.units.pressure));
    QSizeF const size = QFontMetricsF(font).size(Qt::TextSingleLine, text) + QSizeF(6, 2);
    constexpr double kApart = 150;
    for (ContourPiece const& piece : pieces) {
      QPointF const middle((piece.from.x + piece.to.x) / 2 * kLineStep,
                           (piece.from.y + piece.to.y) / 2 * kLineStep);
      QRectF const box(middle - QPointF(size.width(), size.height()) / 2, size);
      QRectF const around = box.adjusted(-kApart, -kApart / 3, kApart, kApart / 3);
      bool const isFree =
          std::ranges::none_of(taken, [&](QRectF const& other) { return other.intersects(around); });
      if (!isFree || !QRectF(0, 0, view_.width, view_.height).contains(box)) continue;
      taken.push_back(box);
      painter.fillRect(box, look_.halo);
      painter.setPen(look_.ink);
      painter.drawText(box, Qt::AlignCenter, text);
    }
  }

  void number(QPainter& painter, QPointF at, std::string const& text) const {
    QFont font;
    font.setPixelSize(look_.letters - 1);
    QPainterPath path;
    QString const written = QString::fromStdString(text);
    path.addText(at - QPointF(QFontMetricsF(font).horizontalAdvance(written) / 2, 0), font, written);
    painter.strokePath(path, QPen(look_.halo, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(path, look_.ink);
  }

  void arrow(QPainter& painter, QPointF at, QPointF along, double strength) const {
    double const half = 7 + 17 * strength, wide = 1.2 + 1.8 * strength, head = 5 + 4 * strength;
    QPointF const across(-along.y(), along.x()), tip = at + along * half;
    QPainterPath path(at - along * half);
    path.lineTo(tip);
    path.moveTo(tip - along * head + across * head * 0.6);
    path.lineTo(tip);
    path.lineTo(tip - along * head - across * head * 0.6);
    painter.strokePath(path, QPen(look_.halo, wide + 2, Qt::SolidLine, Qt::RoundCap));
    painter.strokePath(path, QPen(look_.ink, wide, Qt::SolidLine, Qt::RoundCap));
  }

  ModelFields const& fields_;
  ModelHour const& hour_;
  MapView const& view_;
  FieldLook const& look_;
};

}  // namespace

QImage fieldPicture(ModelFields const& fields, FieldKind kind, std::size_t hour, MapView const& view,
                    FieldLook const& look) {
  FieldPainter const painter(fields, hour, view, look);
  switch (kind) {
    case FieldKind::pressure:
      return painter.isobars();
    case FieldKind::wind:
      return painter.arrows();
    case FieldKind::precipitation:
      return painter.colours(fields.hours[hour].precipitation, kind);
    case FieldKind::temperature:
      break;
  }
  return painter.colours(fields.hours[hour].temperature, kind);
}

std::span<FieldStop const> fieldColours(FieldKind kind) {
  if (kind == FieldKind::temperature) return kTemperature;
  return {};
}

std::uint32_t fieldColour(std::span<FieldStop const> stops, double value) {
  auto const above = std::ranges::upper_bound(stops, value, {}, &FieldStop::value);
  if (above == stops.begin()) return stops.front().rgb;
  if (above == stops.end()) return stops.back().rgb;
  FieldStop const& low = *(above - 1);
  double const part = (value - low.value) / (above->value - low.value);
  std::uint32_t mixed = 0;
  for (int const shift : {16, 8, 0}) {
    double const from = low.rgb >> shift & 0xff, to = above->rgb >> shift & 0xff;
    mixed |= static_cast<std::uint32_t>(std::lround(from + (to - from) * part)) << shift;
  }
  return mixed;
}

double isobarStep(double zoom) {
  return zoom < 4 ? 8 : zoom < 6 ? 4 : zoom < 8 ? 2 : 1;
}

}  // namespace nimbara
