#include "desktop/window/painting/flat_globe.h"

#include "desktop/window/globe_texture.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kMostDiscPixels = 300'000;
constexpr double kMovingDiscPixels = 90'000;  // what is painted within a frame, beside eleven thousand points
constexpr int kRestMs = 180;

/// Where a ray from the eye meets the earth; nothing when it passes by.
std::optional<Vector3> groundOf(Vector3 const& eye, Vector3 const& ray) {
  double const along = dot(eye, ray);
  double const root = along * along - dot(eye, eye) + 1;
  if (root < 0 || along > 0) return std::nullopt;
  double const t = -along - std::sqrt(root);
  return Vector3{eye[0] + t * ray[0], eye[1] + t * ray[1], eye[2] + t * ray[2]};
}

double smoothStep(double from, double to, double value) {
  double const t = std::clamp((value - from) / (to - from), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

/// Radians of the direction to (x, y), within 1.2e-5, a hundredth of a texel: the library's exact one takes a
/// quarter of a disc's time. The polynomial is 4.4.49 of Abramowitz and Stegun.
double angleOf(double y, double x) {
  double const across = std::abs(x), up = std::abs(y);
  double const t = std::min(across, up) / std::max({across, up, std::numeric_limits<double>::min()});
  double const s = t * t;
  double angle = t * (0.9998660 + s * (-0.3302995 + s * (0.1801410 + s * (-0.0851330 + s * 0.0208351))));
  if (up > across) angle = std::numbers::pi / 2 - angle;
  if (x < 0) angle = std::numbers::pi - angle;
  return std::copysign(angle, y);
}

/// The sun's way of some 15 seconds makes no difference to be seen.
Vector3 coarse(Vector3 const& direction) {
  constexpr double kSteps = 1000;
  return {std::round(direction[0] * kSteps), std::round(direction[1] * kSteps),
          std::round(direction[2] * kSteps)};
}

/// Day, the soft edge between, and the night with its lights; paler towards the rim.
QRgb shaded(QRgb texel, double height, double facing) {
  double const day = smoothStep(-0.12, 0.16, height);
  double const light = 0.09 + 0.91 * day * (0.72 + 0.28 * std::max(0.0, height));
  double const lamps = (1 - day) * qAlpha(texel) / 255.0;
  double const haze = (1 - facing) * (1 - facing) * (1 - facing) * (0.08 + 0.5 * day);
  auto const mix = [&](int channel, double lamp, double air) {
    double const value = channel * light + 255 * lamps * lamp + 13 * (1 - day) * air;
    return static_cast<int>(std::clamp(value + (255 * air - value) * haze, 0.0, 255.0));
  };
  return qRgb(mix(qRed(texel), 1.0, 0.45), mix(qGreen(texel), 0.8, 0.7), mix(qBlue(texel), 0.45, 1.0));
}

}  // namespace

QImage paintDisc(QImage const& earth, GlobeCamera const& camera, Vector3 const& sun, QSize size,
                 double shrink) {
  QImage disc(size, QImage::Format_ARGB32_Premultiplied);
  disc.fill(Qt::transparent);
  GlobeSight const sight(camera);
  double const reach = camera.earthRadius() / shrink + 1;
  double const middleX = size.width() / 2.0, middleY = size.height() / 2.0;
  for (int y = std::max(0, int(middleY - reach)); y < std::min(size.height(), int(middleY + reach) + 1);
       ++y) {
    auto* const row = reinterpret_cast<QRgb*>(disc.scanLine(y));
    double const half = std::sqrt(std::max(0.0, reach * reach - (y - middleY) * (y - middleY)));
    int const end = std::min(size.width(), int(middleX + half) + 1);
    for (int x = std::max(0, int(middleX - half)); x < end; ++x) {
      Vector3 const ray = sight.rayThrough({(x + 0.5) * shrink, (y + 0.5) * shrink});
      auto const ground = groundOf(sight.eye(), ray);
      if (!ground) continue;
      auto const [east, north, axis] = *ground;
      double const latitude = angleOf(axis, std::sqrt(east * east + north * north)) / kRadians;
      double const longitude = angleOf(north, east) / kRadians;
      row[x] = shaded(earthTexel(earth, latitude, longitude), dot(*ground, sun), -dot(*ground, ray));
    }
  }
  return disc;
}

FlatGlobe::FlatGlobe(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  rest_.setSingleShot(true);
  rest_.setInterval(kRestMs);
  connect(&rest_, &QTimer::timeout, this, [this] { update(); });
}

void FlatGlobe::setModel(GlobeModel* model) {
  if (model == model_) return;
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  if (model_ != nullptr) {
    connect(model_, &GlobeModel::shown, this, [this] { update(); });
    connect(model_, &GlobeModel::cameraChanged, this, [this] {
      rest_.start();
      update();
    });
  }
  Q_EMIT modelChanged();
}

void FlatGlobe::paint(QPainter* painter) {
  if (model_ == nullptr) return;
  GlobeCamera const& camera = model_->camera();
  paintStars(*painter);
  QPointF const middle(camera.width / 2, camera.height / 2);
  double const radius = camera.earthRadius();
  QRadialGradient air(middle, radius * 1.12);
  air.setColorAt(0.86, QColor(110, 180, 255, 120));
  air.setColorAt(1, QColor(110, 180, 255, 0));
  painter->setPen(Qt::NoPen);
  painter->setBrush(air);
  painter->drawEllipse(middle, radius * 1.12, radius * 1.12);
  if (!model_->earth().isNull()) paintEarth(*painter);
  paintGround(*painter);
  paintEarthquakes(*painter);
  paintOrbit(*painter);
  paintSatellites(*painter);
}

void FlatGlobe::paintEarth(QPainter& painter) {
  GlobeCamera const& camera = model_->camera();
  double const radius = camera.earthRadius();
  double const pixels = std::min(camera.width * camera.height, 4 * radius * radius);
  double const most = rest_.isActive() ? kMovingDiscPixels : kMostDiscPixels;
  double const shrink = std::max(1.0, std::sqrt(pixels / most));
  QSize const size(int(std::ceil(camera.width / shrink)), int(std::ceil(camera.height / shrink)));
  DiscView const view{camera, coarse(model_->state().sun), size, model_->earth().cacheKey()};
  if (disc_.isNull() || view != discView_) {
    disc_ = paintDisc(model_->earth(), camera, model_->state().sun, size, shrink);
    discView_ = view;
  }
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRectF(0, 0, size.width() * shrink, size.height() * shrink), disc_);
}

void FlatGlobe::paintStars(QPainter& painter) const {
  static std::vector<InstanceRow> const kStars = starRows();
  GlobeSight const sight(model_->camera());
  for (InstanceRow const& star : kStars) {
    Vector3 const place{star.row2[3] / kSceneRadius, star.row0[3] / kSceneRadius,
                        star.row1[3] / kSceneRadius};
    auto const at = sight.project(place);
    float const side = 1.5F * star.data[0];
    auto const [red, green, blue, opacity] = star.color;
    if (at)
      painter.fillRect(QRectF(at->x, at->y, side, side), QColor::fromRgbF(red, green, blue, opacity * 0.8F));
  }
}

void FlatGlobe::paintEarthquakes(QPainter& painter) const {
  GlobeState const& state = model_->state();
  if (state.hidden.contains(kEarthquakeRow)) return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(255, 110, 70, 200), 1.5));
  GlobeSight const sight(model_->camera());
  for (EarthquakeEvent const& event : *state.earthquakes) {
    if (!(event.magnitude >= kLeastShownMagnitude) || !isValid(event.coordinate())) continue;
    Vector3 const ground = directionTo(event.coordinate());
    auto const at = sight.project(ground);
    if (!at || sight.isHiddenByEarth(ground)) continue;
    double const radius = 3 + 2.5 * (event.magnitude - kLeastShownMagnitude);
    painter.drawEllipse(QPointF(at->x, at->y), radius, radius);
  }
}

/// Strokes that follow each other and have one colour are one path, so that their joints are not seen.
void FlatGlobe::paintGround(QPainter& painter) const {
  GlobeSight const sight(model_->camera());
  QPainterPath path;
  std::uint32_t colour = 0;
  Vector3 end{};
  auto const finish = [&] {
    auto const part = [colour](int shift) { return static_cast<int>(colour >> shift & 0xff); };
    painter.strokePath(path, QPen(QColor(part(24), part(16), part(8), part(0)), 1.6));
    path.clear();
  };
  for (GlobeStroke const& stroke : model_->strokes()) {
    auto const seen = seenStroke(stroke, sight);
    if (!seen) continue;
    if (stroke.rgba != colour) finish();
    colour = stroke.rgba;
    if (path.isEmpty() || stroke.from != end) path.moveTo(seen->first.x, seen->first.y);
    path.lineTo(seen->second.x, seen->second.y);
    end = stroke.to;
  }
  finish();
}

void FlatGlobe::paintOrbit(QPainter& painter) const {
  if (!model_->state().chosen) return;
  GlobeSight const sight(model_->camera());
  painter.setPen(QPen(QColor(255, 237, 168, 200), 1.6));
  std::optional<PicturePoint> before;
  for (OrbitPoint const& point : model_->state().chosen->orbit) {
    Vector3 const place = spacePoint(point);
    auto const at = sight.isHiddenByEarth(place) ? std::nullopt : sight.project(place);
    if (before && at) painter.drawLine(QPointF(before->x, before->y), QPointF(at->x, at->y));
    before = at;
  }
}

void FlatGlobe::paintSatellites(QPainter& painter) const {
  GlobeState const& state = model_->state();
  GlobeSight const sight(model_->camera());
  bool const isSmall = model_->camera().earthRadius() < 180;
  painter.setPen(Qt::NoPen);
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (auto const& group : state.catalogue->groups) {
    auto const* const known = SatelliteCatalog::group(group.groupID);
    if (known == nullptr || state.hidden.contains(legendName(*known))) continue;
    int const side = (group.indices.size() > 500 ? 2 : 4) / (isSmall ? 2 : 1);
    for (std::uint32_t const entry : group.indices) {
      auto const place = satellitePosition(state, entry);
      auto const at = place && !sight.isHiddenByEarth(*place) ? sight.project(*place) : std::nullopt;
      if (!at) continue;
      float const* const c = &state.frame->colorData[std::size_t{4} * entry];
      painter.fillRect(QRectF(at->x - side / 2.0, at->y - side / 2.0, side, side),
                       QColor::fromRgbF(c[0], c[1], c[2]));
    }
  }
  painter.setRenderHint(QPainter::Antialiasing, true);
}

}  // namespace nimbara
