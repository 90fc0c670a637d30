#include "desktop/window/globe_texture.h"

#include "gazetteer/gazetteer.h"
#include "gazetteer/world_outlines.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

struct Stop {
  double latitude;
  QColor colour;
};

QLinearGradient gradientOf(std::initializer_list<Stop> stops, int height) {
  QLinearGradient gradient(0, 0, 0, height);
  for (Stop const& stop : stops) gradient.setColorAt((90 - stop.latitude) / 180, stop.colour);
  return gradient;
}

QLinearGradient seaColours(int height) {
  return gradientOf({{90, 0x1c3f5c},
                     {60, 0x123350},
                     {25, 0x0f3a5f},
                     {0, 0x114266},
                     {-25, 0x0f3a5f},
                     {-60, 0x123350},
                     {-90, 0x1c3f5c}},
                    height);
}

/// Broad belts of ice, forest, grass and desert: a likeness, no survey.
QLinearGradient landColours(int height) {
  return gradientOf({{90, 0xe8eff3},
                     {76, 0xdbe4e8},
                     {69, 0x9aa99c},
                     {60, 0x5f7c61},
                     {48, 0x6f8c62},
                     {36, 0x94996a},
                     {24, 0xb3a274},
                     {14, 0x96995f},
                     {3, 0x557f52},
                     {-8, 0x5b8555},
                     {-20, 0x939767},
                     {-30, 0xa2996c},
                     {-42, 0x738d64},
                     {-56, 0xb9c5c0},
                     {-66, 0xe4ebef},
                     {-90, 0xf2f6f8}},
                    height);
}

/// Plate carrée of lines.
class Projection {
 public:
  explicit Projection(int width) : perDegree_(width / 360.0) {}

  QPointF point(Coordinate at) const {
    return {(at.longitude + 180) * perDegree_, (90 - at.latitude) * perDegree_};
  }
  QPolygonF polygon(WorldLine const& line) const {
    QPolygonF polygon;
    polygon.reserve(static_cast<qsizetype>(line.size()));
    for (Coordinate const& at : line) polygon.append(point(at));
    return polygon;
  }
  double pixels(double degrees) const { return degrees * perDegree_; }

 private:
  double perDegree_;
};

QPainterPath landPath(Projection const& projection) {
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  for (WorldLine const& ring : landOutlines()) path.addPolygon(projection.polygon(ring));
  return path;
}

/// Paler towards the coast: the land, blurred. Outlines of wide pens would take a minute to paint.
void paintShelf(QPainter& painter, QPainterPath const& land, QSize size) {
  QColor const shallow(64, 150, 190, 130);
  for (int const shrink : {16, 48}) {
    QImage blurred(size / 8, QImage::Format_ARGB32_Premultiplied);
    blurred.fill(Qt::transparent);
    QPainter coarse(&blurred);
    coarse.setRenderHint(QPainter::Antialiasing);
    coarse.scale(1.0 / 8, 1.0 / 8);
    coarse.fillPath(land, shallow);
    coarse.end();
    blurred = blurred.scaled(size / shrink, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                  .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(0, 0, blurred);
  }
}

void paintBorders(QPainter& painter, Projection const& projection) {
  painter.setPen(QPen(QColor(250, 250, 240, 84), projection.pixels(0.1)));
  for (WorldLine const& line : borderLines()) painter.drawPolyline(projection.polygon(line));
  for (WorldLine const& line : disputedLines()) painter.drawPolyline(projection.polygon(line));
}

/// Smaller towns show no light from so far.
constexpr std::int32_t kSmallestLit = 10'000;

/// Brighter and wider the more people there are.
QImage paintLights(QSize size, Projection const& projection) {
  QImage lights(size, QImage::Format_RGB32);
  lights.fill(Qt::black);
  QPainter painter(&lights);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setCompositionMode(QPainter::CompositionMode_Plus);
  painter.setPen(Qt::NoPen);
  for (City const& city : allCities()) {
    if (city.population < kSmallestLit) continue;
    double const size10 = std::clamp(std::log10(std::max(1.0, double(city.population))) - 4, 0.0, 3.2);
    int const bright = static_cast<int>(60 + 60 * size10);
    double const radius = projection.pixels(0.07 + 0.085 * size10);
    QPointF const at = projection.point(city.coordinate);
    double const narrow = std::max(0.2, std::cos(city.coordinate.latitude * 0.0174533));
    for (double const share : {2.2, 1.0}) {
      int const light = static_cast<int>(bright / (share * share));
      painter.setBrush(QColor(light, light, light));
      painter.drawEllipse(at, radius * share / narrow, radius * share);
    }
  }
  return lights;
}

void putIntoAlpha(QImage& earth, QImage const& lights) {
  for (int y = 0; y < earth.height(); ++y) {
    uchar* const row = earth.scanLine(y);
    auto const* const light = reinterpret_cast<QRgb const*>(lights.constScanLine(y));
    for (int x = 0; x < earth.width(); ++x) row[4 * x + 3] = static_cast<uchar>(qRed(light[x]));
  }
}

}  // namespace

QImage paintEarth(int width) {
  QImage earth(width, width / 2, QImage::Format_RGB32);
  Projection const projection(width);
  {
    QPainter painter(&earth);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(earth.rect(), seaColours(earth.height()));
    QPainterPath const land = landPath(projection);
    paintShelf(painter, land, earth.size());
    painter.fillPath(land, landColours(earth.height()));
    paintBorders(painter, projection);
  }
  earth = earth.convertToFormat(QImage::Format_RGBA8888);
  putIntoAlpha(earth, paintLights(earth.size(), projection));
  return earth;
}

QRgb earthTexel(QImage const& earth, double latitude, double longitude) {
  int const x = static_cast<int>((longitude + 180) / 360 * earth.width()) % earth.width();
  int const y = std::clamp(static_cast<int>((90 - latitude) / 180 * earth.height()), 0, earth.height() - 1);
  uchar const* const texel = earth.constScanLine(y) + qsizetype{4} * (x < 0 ? x + earth.width() : x);
  return qRgba(texel[0], texel[1], texel[2], texel[3]);
}

}  // namespace nimbara
