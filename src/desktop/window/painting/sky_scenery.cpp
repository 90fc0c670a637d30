#include "desktop/window/painting/sky_scenery.h"

#include "desktop/window/painting/sky_items.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

namespace nimbara {

namespace {

/// A cloud of the picture: its middle as shares of width and height, its half width as a share of the height,
/// and how much of the sky must be covered for it to be there.
struct Cloud {
  double x;
  double y;
  double size;
  double from;
};

/// Far ones first.
constexpr std::array kClouds = std::to_array<Cloud>({{0.34, 0.20, 0.30, 0.60},
                                                     {0.97, 0.16, 0.36, 0.60},
                                                     {0.66, 0.13, 0.34, 0.85},
                                                     {0.82, 0.34, 0.44, 0.20},
                                                     {0.50, 0.44, 0.36, 0.35},
                                                     {0.22, 0.56, 0.30, 0.80},
                                                     {0.99, 0.62, 0.40, 0.70},
                                                     {0.70, 0.62, 0.50, 0.90}});

/// The same picture each time.
class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}
  double between(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
  }

 private:
  std::minstd_rand random_;
};

QPainterPath cloudPath(QPointF middle, double size) {
  struct Puff {
    double x, y, radius;
  };
  constexpr std::array kPuffs = std::to_array<Puff>(
      {{-0.62, 0.02, 0.30}, {-0.22, -0.24, 0.42}, {0.28, -0.14, 0.36}, {0.66, 0.06, 0.26}});
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  for (Puff const& puff : kPuffs) {
    path.addEllipse(middle + QPointF(puff.x, puff.y) * size, puff.radius * size, puff.radius * size);
  }
  // The outer two, which stand on the same line, are its round ends.
  path.addRect(QRectF(middle.x() - 0.62 * size, middle.y() - 0.04 * size, 1.28 * size, 0.36 * size));
  return path.simplified();
}

QColor faint(QColor colour, double opacity) {
  colour.setAlphaF(static_cast<float>(std::clamp(opacity, 0.0, 1.0)));
  return colour;
}

QColor blend(QColor const& from, QColor const& to, double share) {
  auto const mix = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

}  // namespace

SkyScenery::SkyScenery(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &SkyScenery::changed, this, [this] { update(); });
}

void SkyScenery::setModel(DesktopModel* model) {
  if (model == model_) return;
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  if (model_ != nullptr) {
    connect(model_, &DesktopModel::shown, this, [this] { show(model_->scene()); });
    show(model_->scene());
  }
  Q_EMIT changed();
}

void SkyScenery::show(SkyScene const& scene) {
  if (scene == scene_) return;
  scene_ = scene;
  update();
}

void SkyScenery::paint(QPainter* painter) {
  clipToCorners(*painter);
  painter->setPen(Qt::NoPen);
  paintStars(*painter);
  paintMoon(*painter);
  paintSun(*painter);
  paintClouds(*painter);
  paintLightning(*painter);
  paintRain(*painter);
  paintSnow(*painter);
  paintFog(*painter);
  fade(*painter);
}

/// Light on the clouds: none at night, all from a little above the horizon on.
double SkyScenery::dayShare() const {
  return std::clamp((scene_.sunAltitude + 8) / 16, 0.0, 1.0);
}

/// How much of sun and moon themselves is seen; their light still is when they are not.
double SkyScenery::discShare() const {
  return std::clamp((0.75 - scene_.clouds) / 0.35, 0.0, 1.0) * (1 - 0.92 * scene_.fog);
}

/// The horizon lies at the lower edge; the picture's upper edge is near 60 degrees.
QPointF SkyScenery::placeOf(double altitude, double along) const {
  double const up = std::sin(std::clamp(altitude, -10.0, 60.0) * std::numbers::pi / 180) /
                    std::sin(60 * std::numbers::pi / 180);
  return {width() * (0.34 + 0.5 * along), height() * (0.92 - 0.68 * up)};
}

void SkyScenery::clipToCorners(QPainter& painter) const {
  // The corners beside the texts are those of the whole, which goes on there.
  QRectF const whole = fadesToRight_ ? QRectF(0, 0, width() + 2 * radius_, height())
                                     : QRectF(-2 * radius_, 0, width() + 2 * radius_, height());
  QPainterPath path;
  path.addRoundedRect(whole, radius_, radius_);
  painter.setClipPath(path);
}

void SkyScenery::paintStars(QPainter& painter) const {
  double const dark =
      std::clamp(-(scene_.sunAltitude + 4) / 10, 0.0, 1.0) * (1 - scene_.clouds) * (1 - scene_.fog);
  if (dark <= 0) return;
  QPainterPath const covered = cloudsPath();
  Dice dice(7);
  int const count = static_cast<int>(width() * height() / 1500);
  for (int i = 0; i < count; ++i) {
    QPointF const at(dice.between(0, width()), dice.between(0, height()));
    double const size = dice.between(0.5, 1.3);
    painter.setBrush(faint(Qt::white, dark * dice.between(0.15, 0.85)));
    if (!covered.contains(at)) painter.drawEllipse(at, size, size);
  }
}

void SkyScenery::paintMoon(QPainter& painter) const {
  double const seen = (1 - 0.85 * scene_.clouds) * (1 - 0.8 * scene_.fog) * (1 - 0.75 * dayShare());
  if (scene_.moonAltitude < 0 || scene_.moonIllumination < 0.01) return;
  double const radius = 0.1 * height();
  QPointF const at = placeOf(scene_.moonAltitude, scene_.moonAlong);
  QRadialGradient glow(at, 5 * radius);
  glow.setColorAt(0, faint(QColor(200, 215, 255), 0.28 * seen * scene_.moonIllumination));
  glow.setColorAt(1, Qt::transparent);
  painter.fillRect(boundingRect(), glow);
  painter.save();
  painter.translate(at);
  // The side without sunlight hides the stars behind it.
  painter.setBrush(faint(QColor(54, 63, 92), 0.92 * discShare() * (1 - dayShare())));
  painter.drawEllipse(QPointF(0, 0), radius, radius);
  QColor const light(240, 240, 228);
  // Lit by the Earth alone: without it a moon that is nearly full looks like an egg.
  painter.setBrush(faint(light, 0.22 * discShare() * (1 - 0.6 * dayShare())));
  painter.drawEllipse(QPointF(0, 0), radius, radius);
  painter.setBrush(faint(light, discShare() * (1 - 0.75 * dayShare())));
  painter.drawPath(litMoon(radius, scene_.moonIllumination, scene_.moonLitOnRight));
  painter.restore();
}

void SkyScenery::paintSun(QPainter& painter) const {
  if (scene_.sunAltitude < -6) return;
  double const seen = (1 - 0.9 * scene_.clouds) * (1 - 0.7 * scene_.fog);
  double const low = 1 - std::clamp(scene_.sunAltitude / 20, 0.0, 1.0);
  QColor const light = blend(QColor(255, 226, 140), QColor(255, 170, 96), low);
  QPointF const at = placeOf(scene_.sunAltitude, scene_.sunAlong);
  double const radius = 0.115 * height();
  QRadialGradient glow(at, 1.15 * height());
  glow.setColorAt(0, faint(light, 0.62 * seen));
  glow.setColorAt(0.25, faint(light, 0.24 * seen));
  glow.setColorAt(1, faint(light, 0));
  painter.fillRect(boundingRect(), glow);
  if (scene_.sunAltitude < -1) return;
  painter.setBrush(faint(blend(light, Qt::white, 0.35), discShare()));
  painter.drawEllipse(at, radius, radius);
}

QPainterPath SkyScenery::cloudsPath() const {
  QPainterPath all;
  all.setFillRule(Qt::WindingFill);
  for (Cloud const& cloud : kClouds) {
    if (scene_.clouds < cloud.from) continue;
    QPointF const middle(width() * (fadesToRight_ ? 1 - cloud.x : cloud.x), height() * cloud.y);
    all.addPath(cloudPath(middle, cloud.size * std::min(height(), 0.6 * width())));
  }
  return all;
}

/// Brighter above, where the light comes from; heavy rain darkens them.
void SkyScenery::paintClouds(QPainter& painter) const {
  double const day = dayShare();
  double const heavy = std::max(scene_.rain, scene_.snow);
  QColor const top = blend(QColor(122, 138, 176), blend(Qt::white, QColor(190, 202, 214), 0.7 * heavy), day);
  for (Cloud const& cloud : kClouds) {
    if (scene_.clouds < cloud.from) continue;
    QPointF const middle(width() * (fadesToRight_ ? 1 - cloud.x : cloud.x), height() * cloud.y);
    double const size = cloud.size * std::min(height(), 0.6 * width());
    QLinearGradient body(0, middle.y() - 0.6 * size, 0, middle.y() + 0.34 * size);
    double const opacity = (0.34 + 0.16 * day) * (1 - 0.35 * heavy);
    body.setColorAt(0, faint(top, opacity));
    body.setColorAt(1, faint(top, 0.06 * opacity));
    painter.setBrush(body);
    painter.drawPath(cloudPath(middle, size));
  }
}

void SkyScenery::paintFog(QPainter& painter) const {
  if (scene_.fog <= 0) return;
  Dice dice(3);
  for (int i = 0; i < 9; ++i) {
    double const tall = height() * dice.between(0.10, 0.20);
    QRectF const band(width() * dice.between(0.0, 0.4), height() * (0.1 + 0.1 * i),
                      width() * dice.between(0.5, 0.8), tall);
    // A round glow, drawn out: soft on all sides.
    QRadialGradient mist(0, 0, 1);
    mist.setColorAt(0, faint(Qt::white, scene_.fog * (0.14 + 0.08 * dayShare())));
    mist.setColorAt(1, faint(Qt::white, 0));
    painter.save();
    painter.translate(band.center());
    painter.scale(band.width() / 2, band.height());
    painter.setBrush(mist);
    painter.drawEllipse(QPointF(0, 0), 1, 1);
    painter.restore();
  }
}

void SkyScenery::paintLightning(QPainter& painter) const {
  if (!scene_.hasLightning) return;
  double const unit = height() / 10;
  painter.save();
  painter.translate(width() * (fadesToRight_ ? 0.3 : 0.7), 5.4 * unit);
  painter.setBrush(faint(QColor(255, 214, 102), 0.9));
  painter.drawPolygon(QPolygonF({{0.5 * unit, 0},
                                 {-0.75 * unit, 1.9 * unit},
                                 {0.05 * unit, 1.9 * unit},
                                 {-0.45 * unit, 3.6 * unit},
                                 {1.05 * unit, 1.3 * unit},
                                 {0.2 * unit, 1.3 * unit},
                                 {0.95 * unit, 0}}));
  painter.restore();
}

void SkyScenery::paintRain(QPainter& painter) const {
  if (scene_.rain <= 0) return;
  Dice dice(11);
  int const count = static_cast<int>(scene_.rain * width() * height() / 900);
  for (int i = 0; i < count; ++i) {
    QPointF const at(dice.between(0, width() + 40), dice.between(0.35 * height(), height()));
    double const length = dice.between(9, 20);
    painter.setPen(QPen(faint(QColor(190, 220, 250), dice.between(0.12, 0.42)), dice.between(1, 1.8),
                        Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(at, at + QPointF(-0.28 * length, length));
  }
  painter.setPen(Qt::NoPen);
}

void SkyScenery::paintSnow(QPainter& painter) const {
  if (scene_.snow <= 0) return;
  Dice dice(5);
  int const count = static_cast<int>(scene_.snow * width() * height() / 1000);
  for (int i = 0; i < count; ++i) {
    QPointF const at(dice.between(0, width()), dice.between(0.3 * height(), height()));
    double const size = dice.between(1, 2.8);
    painter.setBrush(faint(Qt::white, dice.between(0.25, 0.85)));
    painter.drawEllipse(at, size, size);
  }
}

/// Nothing stands behind the texts.
void SkyScenery::fade(QPainter& painter) const {
  QLinearGradient mask(fadesToRight_ ? width() : 0, 0, fadesToRight_ ? 0 : width(), 0);
  mask.setColorAt(0, Qt::transparent);
  mask.setColorAt(0.45, Qt::black);
  mask.setColorAt(1, Qt::black);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  painter.fillRect(boundingRect(), mask);
}

}  // namespace nimbara
