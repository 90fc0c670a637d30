#include "desktop/window/painting/map/map_labels.h"

#include "gazetteer/gazetteer.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kRim = 1.6;          // of the halo, pixels
constexpr qsizetype kMostKept = 400;  // names
constexpr int kMostTowns = 90;

/// What lies within `radius` pixels of the letters, in one colour: a tenth of the time that a stroke of their
/// outlines takes.
QImage haloOf(QImage const& letters, double radius, QColor const& colour) {
  struct Step {
    int right, down;
    double share;  ///< how much of that pixel the halo of one covers
  };
  std::vector<Step> steps;
  int const reach = static_cast<int>(std::ceil(radius));
  for (int down = -reach; down <= reach; ++down) {
    for (int right = -reach; right <= reach; ++right) {
      double const share = std::clamp(radius + 0.5 - std::hypot(right, down), 0.0, 1.0);
      if (share > 0) steps.push_back({right, down, share});
    }
  }
  QRgb const ink = colour.rgb();
  QRect const whole = letters.rect();
  QImage halo(letters.size(), letters.format());
  halo.setDevicePixelRatio(letters.devicePixelRatio());
  halo.fill(Qt::transparent);
  for (int y = 0; y < letters.height(); ++y) {
    auto const* const row = reinterpret_cast<QRgb const*>(letters.constScanLine(y));
    for (int x = 0; x < letters.width(); ++x) {
      if (qAlpha(row[x]) == 0) continue;
      for (Step const& step : steps) {
        if (!whole.contains(x + step.right, y + step.down)) continue;
        auto& pixel = reinterpret_cast<QRgb*>(halo.scanLine(y + step.down))[x + step.right];
        int const alpha = static_cast<int>(std::lround(qAlpha(row[x]) * step.share));
        if (alpha > qAlpha(pixel)) pixel = qPremultiply(qRgba(qRed(ink), qGreen(ink), qBlue(ink), alpha));
      }
    }
  }
  return halo;
}

}  // namespace

int leastPopulation(double zoom) {
  constexpr double kAtLeastZoom = 6'000'000, kStep = 2.6;
  return static_cast<int>(kAtLeastZoom / std::pow(kStep, std::max(0.0, zoom - kLeastMapZoom)));
}

namespace {

/// "New South Memphis", with a few more inhabitants than Memphis beside it: a part that was counted as the
/// whole.
bool isPartOfLesser(std::vector<City> const& cities, std::size_t part) {
  constexpr double kBesideKm = 15;
  std::string_view const name = cities[part].name;
  if (!name.contains(' ')) return false;
  for (std::size_t i = part + 1; i < cities.size() && cities[i].population > cities[part].population / 2;
       ++i) {
    std::string_view const whole = cities[i].name;
    if (name.size() > whole.size() + 1 && name.ends_with(whole) &&
        name[name.size() - whole.size() - 1] == ' ' &&
        haversineKm(cities[part].coordinate, cities[i].coordinate) < kBesideKm)
      return true;
  }
  return false;
}

}  // namespace

std::vector<MapTown> mapTowns(std::vector<City> const& cities) {
  constexpr double kBesideKm = 6;
  constexpr int kCounted = 20'000, kGreat = 200'000, kParts = 20;
  std::vector<MapTown> towns;
  towns.reserve(cities.size());
  for (City const& city : cities) towns.push_back({mercatorOf(city.coordinate), city.name, city.population});
  for (std::size_t i = 0; i < cities.size() && cities[i].population >= kCounted; ++i) {
    for (std::size_t j = i + 1; j < cities.size() && cities[j].population == cities[i].population; ++j) {
      if (haversineKm(cities[i].coordinate, cities[j].coordinate) > kBesideKm) continue;
      towns[i].population = towns[j].population = cities[i].population / kParts;
    }
  }
  for (std::size_t i = 0; i < cities.size() && cities[i].population >= kGreat; ++i) {
    if (isPartOfLesser(cities, i)) towns[i].population /= kParts;
  }
  std::ranges::stable_sort(towns, std::ranges::greater{}, &MapTown::population);
  return towns;
}

bool LabelRoom::take(QRectF const& wanted) {
  if (std::ranges::any_of(taken_, [&](QRectF const& one) { return one.intersects(wanted); })) return false;
  taken_.push_back(wanted);
  return true;
}

bool GreaterTowns::hidesAt(QPointF at, int population) {
  constexpr double kReach = 34;  // pixels
  constexpr int kTimes = 2;
  bool const isHidden = std::ranges::any_of(towns_, [&](Town const& town) {
    QPointF const gap = town.at - at;
    return town.population >= kTimes * population && std::hypot(gap.x(), gap.y()) < kReach;
  });
  if (!isHidden) towns_.push_back({at, population});
  return isHidden;
}

void MapLabels::setLook(Look const& look) {
  if (look == look_) return;
  look_ = look;
  names_.clear();
}

MapLabels::Name const& MapLabels::nameOf(QString const& text, bool isBold) {
  QString const key = (isBold ? QLatin1Char('b') : QLatin1Char('n')) + text;
  if (auto const found = names_.constFind(key); found != names_.constEnd()) return *found;
  if (names_.size() > kMostKept) names_.clear();
  QFont font;
  font.setPixelSize(isBold ? look_.letters + 1 : look_.letters);
  if (isBold) font.setWeight(QFont::DemiBold);
  QFontMetricsF const metrics(font);
  Name name;
  name.size = QSizeF(metrics.horizontalAdvance(text) + 2 * kRim, metrics.height() + 2 * kRim);
  QImage letters((name.size * look_.ratio).toSize() + QSize(1, 1), QImage::Format_ARGB32_Premultiplied);
  letters.setDevicePixelRatio(look_.ratio);
  letters.fill(Qt::transparent);
  QPainterPath path;
  path.addText(QPointF(kRim, kRim + metrics.ascent()), font, text);
  QPainter painter(&letters);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(path, look_.ink);
  painter.end();
  name.picture = haloOf(letters, kRim * look_.ratio, look_.halo);
  painter.begin(&name.picture);
  painter.drawImage(QPointF(0, 0), letters);
  painter.end();
  return *names_.insert(key, name);
}

bool MapLabels::paint(QPainter& painter, LabelRoom& room, QPointF point, double gap, QString const& name,
                      bool isBold) {
  Name const& label = nameOf(name, isBold);
  double const w = label.size.width(), h = label.size.height();
  std::array<QPointF, 4> const corners{
      {{gap, -h / 2}, {-gap - w, -h / 2}, {-w / 2, -gap - h}, {-w / 2, gap}}};
  for (QPointF const& corner : corners) {
    QPointF const at = point + corner;
    if (!room.take(QRectF(at, label.size))) continue;
    painter.drawImage(QPointF(std::round(at.x()), std::round(at.y())), label.picture);
    return true;
  }
  return false;
}

void MapLabels::readTowns() {
  if (towns_.empty()) towns_ = mapTowns(allCities());
}

void MapLabels::paintTowns(QPainter& painter, LabelRoom& room, MapView const& view) {
  readTowns();
  constexpr double kAround = 40, kDot = 2.2;
  int const least = leastPopulation(view.zoom);
  int painted = 0;
  GreaterTowns greater;
  painter.setPen(QPen(look_.halo, 1));
  painter.setBrush(look_.ink);
  double const side = view.worldSide();
  for (MapTown const& town : towns_) {
    if (town.population < least || painted >= kMostTowns) break;
    double const y = view.height / 2.0 + (town.at.y - view.centre.y) * side;
    if (y < -kAround || y > view.height + kAround) continue;
    WorldTurns const turns = turnsOf(view, town.at.x - kAround / side, town.at.x + kAround / side);
    for (int turn = turns.first; turn <= turns.last; ++turn) {
      QPointF const at(view.width / 2.0 + (town.at.x + turn - view.centre.x) * side, y);
      if (greater.hidesAt(at, town.population)) continue;
      double const dot = town.population >= 1'000'000 ? kDot + 1 : kDot;
      if (!room.take(QRectF(at.x() - dot, y - dot, 2 * dot, 2 * dot))) continue;
      auto const name = QString::fromUtf8(town.name.data(), static_cast<qsizetype>(town.name.size()));
      if (!paint(painter, room, at, dot + 1.5, name, false)) continue;
      painter.drawEllipse(at, dot, dot);
      ++painted;
    }
  }
}

}  // namespace nimbara
