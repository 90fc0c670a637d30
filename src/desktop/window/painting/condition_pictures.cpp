#include "desktop/window/painting/condition_pictures.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <string_view>

namespace nimbara {

namespace {

enum class Falls { nothing, drizzle, rain, lightSnow, snow, sleet, bolt, fog };

/// What a sky's picture is put together from.
struct PictureRow {
  std::string_view sky;
  bool hasBody;  ///< sun or moon
  bool hasCloud;
  bool isDark;  ///< the cloud
  Falls falls;
};

constexpr std::array kPictures = std::to_array<PictureRow>({
    {"clear", true, false, false, Falls::nothing},
    {"partlyCloudy", true, true, false, Falls::nothing},
    {"cloudy", false, true, false, Falls::nothing},
    {"fog", false, true, false, Falls::fog},
    {"lightRain", false, true, false, Falls::drizzle},
    {"heavyRain", false, true, true, Falls::rain},
    {"thunderstorm", false, true, true, Falls::bolt},
    {"lightSnow", false, true, false, Falls::lightSnow},
    {"heavySnow", false, true, true, Falls::snow},
    {"sleet", false, true, false, Falls::sleet},
});

/// Paints on a square of 64 units.
class Picture {
 public:
  Picture(QPainter& painter, bool isDay, bool liesOnDark)
      : painter_(painter), isDay_(isDay), liesOnDark_(liesOnDark) {}

  void paint(PictureRow const& row) {
    bool const isLow = row.falls == Falls::nothing;
    if (row.hasBody) body(row.hasCloud ? QPointF(40, 24) : QPointF(32, 32), row.hasCloud ? 11 : 13);
    if (row.hasCloud) cloud(isLow ? 8 : 0, row.isDark);
    falling(row.falls);
  }

  void unknown() {
    painter_.setPen(
        QPen(liesOnDark_ ? QColor(255, 255, 255, 150) : QColor(0x7a8794), 3.5, Qt::SolidLine, Qt::RoundCap));
    painter_.drawLine(QPointF(22, 32), QPointF(42, 32));
  }

 private:
  void body(QPointF centre, double radius) {
    if (isDay_) {
      sun(centre, radius);
    } else {
      moon(centre, radius + 2);
    }
  }

  void sun(QPointF centre, double radius) {
    painter_.setPen(QPen(QColor(0xf5a623), 3.2, Qt::SolidLine, Qt::RoundCap));
    for (int ray = 0; ray < 8; ++ray) {
      painter_.save();
      painter_.translate(centre);
      painter_.rotate(45 * ray);
      painter_.drawLine(QPointF(0, radius + 5), QPointF(0, radius + 9.5));
      painter_.restore();
    }
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(QColor(0xfbbf3a));
    painter_.drawEllipse(centre, radius, radius);
  }

  void moon(QPointF centre, double radius) {
    QPainterPath disc;
    disc.addEllipse(centre, radius, radius);
    QPainterPath shadow;
    shadow.addEllipse(centre + QPointF(radius * 0.5, -radius * 0.35), radius * 0.86, radius * 0.86);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(liesOnDark_ ? QColor(0xe8e4c9) : QColor(0x8d93b8));
    painter_.drawPath(disc.subtracted(shadow));
  }

  void cloud(double down, bool isDark) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addEllipse(QPointF(22, 30 + down), 10, 10);
    path.addEllipse(QPointF(34, 25 + down), 13, 13);
    path.addEllipse(QPointF(45, 31 + down), 9, 9);
    // The outer two, which stand on the same line, are its round ends.
    path.addRect(QRectF(22, 28 + down, 23, 12));
    QColor const light = liesOnDark_ ? QColor(0xeef2f7) : QColor(0xb7c3d0);
    QColor const dark = liesOnDark_ ? QColor(0xb4c0cf) : QColor(0x7d8b9b);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(isDark ? dark : light);
    painter_.drawPath(path.simplified());
  }

  void drops(std::initializer_list<QPointF> tops, double length) {
    painter_.setPen(QPen(liesOnDark_ ? QColor(0x7cc4ff) : QColor(0x2f80d0), 3, Qt::SolidLine, Qt::RoundCap));
    for (QPointF const top : tops) painter_.drawLine(top, top + QPointF(-length * 0.35, length));
  }

  void flakes(std::initializer_list<QPointF> centres) {
    painter_.setPen(
        QPen(liesOnDark_ ? QColor(Qt::white) : QColor(0x5b9bd5), 1.8, Qt::SolidLine, Qt::RoundCap));
    for (QPointF const centre : centres) {
      for (int arm = 0; arm < 3; ++arm) {
        painter_.save();
        painter_.translate(centre);
        painter_.rotate(60 * arm);
        painter_.drawLine(QPointF(0, -3.6), QPointF(0, 3.6));
        painter_.restore();
      }
    }
  }

  void bolt() {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(liesOnDark_ ? QColor(0xffd23f) : QColor(0xe39a00));
    painter_.drawPolygon(QPolygonF({{35, 36}, {26, 49}, {32, 49}, {28, 60}, {40, 45}, {33.5, 45}, {38, 36}}));
  }

  void mist() {
    painter_.setPen(
        QPen(liesOnDark_ ? QColor(255, 255, 255, 190) : QColor(0x8896a5), 3, Qt::SolidLine, Qt::RoundCap));
    painter_.drawLine(QPointF(14, 47), QPointF(50, 47));
    painter_.drawLine(QPointF(20, 54), QPointF(44, 54));
  }

  void falling(Falls falls) {
    switch (falls) {
      case Falls::nothing:
        return;
      case Falls::drizzle:
        return drops({{26, 46}, {40, 46}}, 7);
      case Falls::rain:
        return drops({{22, 45}, {33, 45}, {44, 45}}, 11);
      case Falls::lightSnow:
        return flakes({{25, 49}, {39, 52}});
      case Falls::snow:
        return flakes({{20, 48}, {32, 53}, {44, 48}});
      case Falls::sleet:
        drops({{26, 46}}, 9);
        return flakes({{41, 50}});
      case Falls::bolt:
        bolt();
        return drops({{22, 45}, {48, 45}}, 8);
      case Falls::fog:
        return mist();
    }
  }

  QPainter& painter_;
  bool isDay_;
  bool liesOnDark_;
};

}  // namespace

QImage ConditionPictures::requestImage(QString const& id, QSize* size, QSize const& requestedSize) {
  QStringList const parts = id.split(QLatin1Char('/'));
  int const side = std::clamp(std::max(requestedSize.width(), requestedSize.height()), 8, 1024);
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(side / 64.0, side / 64.0);
  Picture picture(painter, parts.value(1) != QLatin1String("night"), parts.value(2) == QLatin1String("dark"));
  std::string const sky = parts.value(0).toStdString();
  auto const row = std::ranges::find(kPictures, sky, &PictureRow::sky);
  if (row == kPictures.end()) {
    picture.unknown();
  } else {
    picture.paint(*row);
  }
  if (size != nullptr) *size = image.size();
  return image;
}

}  // namespace nimbara
