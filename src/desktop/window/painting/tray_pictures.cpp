#include "desktop/window/painting/tray_pictures.h"

#include "desktop/window/models/view_models.h"
#include "desktop/window/painting/condition_pictures.h"

#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <map>
#include <string>

namespace nimbara {

namespace {

/// Of panels at common scales.
constexpr int kSides[] = {22, 32, 48, 64};

void paintSky(QPainter& painter, TrayView const& view, double side) {
  QLinearGradient sky(0, 0, 0, side);
  sky.setColorAt(0, QColor(viewName(view.skyTop)));
  sky.setColorAt(1, QColor(viewName(view.skyBottom)));
  painter.setPen(Qt::NoPen);
  painter.setBrush(sky);
  painter.drawRoundedRect(QRectF(0, 0, side, side), 0.24 * side, 0.24 * side);
}

/// As large as it fits, long numbers a third higher than wide: in a panel every point counts.
void paintTemperature(QPainter& painter, QString number, double side) {
  number.replace(QChar(u'-'), QChar(u'\u2212'));
  number.remove(QChar(u'°'));
  QFont font = QGuiApplication::font();
  font.setPixelSize(100);
  font.setWeight(QFont::Bold);
  QPainterPath digits;
  digits.addText(0, 0, font, number);
  QRectF const extent = digits.boundingRect();
  if (extent.isEmpty()) return;
  double const highest = 0.56 * side / extent.height();
  double const across = std::min(0.88 * side / extent.width(), highest);
  double const up = std::min(highest, 1.33 * across);
  painter.translate(side / 2, side / 2);
  painter.scale(across, up);
  painter.translate(-extent.center());
  painter.fillPath(digits, Qt::white);
}

/// A dot in the lower corner, in the colours by which issuers grade their warnings.
void paintMark(QPainter& painter, std::string const& severity, double side) {
  static std::map<std::string, QColor, std::less<>> const kColours = {{"info", QColor(0x2f, 0x80, 0xed)},
                                                                      {"advisory", QColor(0xf2, 0xc9, 0x1c)},
                                                                      {"warning", QColor(0xf2, 0x7a, 0x1a)},
                                                                      {"critical", QColor(0xd3, 0x1d, 0x1d)}};
  auto const colour = kColours.find(severity);
  if (colour == kColours.end()) return;
  double const radius = 0.17 * side;
  painter.resetTransform();
  painter.setPen(QPen(Qt::white, 0.05 * side));
  painter.setBrush(colour->second);
  painter.drawEllipse(QPointF(side - 1.2 * radius, side - 1.2 * radius), radius, radius);
}

/// The four bytes of each point in the order that the tray wants, whatever the machine's.
TrayPicture pictureOf(QImage const& image) {
  TrayPicture picture{image.width(), {}};
  picture.argb.reserve(std::size_t{4} * static_cast<std::size_t>(image.width()) *
                       static_cast<std::size_t>(image.height()));
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      QRgb const point = image.pixel(x, y);
      for (int const byte : {qAlpha(point), qRed(point), qGreen(point), qBlue(point)}) {
        picture.argb.push_back(static_cast<std::uint8_t>(byte));
      }
    }
  }
  return picture;
}

}  // namespace

QImage trayImage(TrayView const& view, int side) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  paintSky(painter, view, side);
  if (view.temperature.empty()) {
    QString const sky = viewName(view.sky) + (view.isDay ? QStringLiteral("/day") : QStringLiteral("/night"));
    painter.drawImage(0, 0,
                      ConditionPictures().requestImage(sky + QStringLiteral("/dark"), nullptr, image.size()));
  } else {
    paintTemperature(painter, viewName(view.temperature), side);
  }
  paintMark(painter, view.mark, side);
  return image;
}

std::vector<TrayPicture> trayPictures(TrayView const& view) {
  std::vector<TrayPicture> pictures;
  for (int const side : kSides) pictures.push_back(pictureOf(trayImage(view, side)));
  return pictures;
}

QIcon programIcon() {
  TrayView fair;
  fair.sky = "partlyCloudy";
  fair.skyTop = "#1f64ab";
  fair.skyBottom = "#63b0ee";
  QIcon icon;
  for (int const side : {16, 32, 48, 128}) icon.addPixmap(QPixmap::fromImage(trayImage(fair, side)));
  return icon;
}

}  // namespace nimbara
