#include "desktop/window/painting/map/map_tiles.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace nimbara {

QImage const& MapTiles::square(MapSquare const& at, double side, double ratio) {
  auto [found, isNew] = squares_.try_emplace(at);
  found->second.used = turn_;
  if (!isNew) return found->second.picture;
  int const pixels = static_cast<int>(std::ceil(kSide * ratio));
  QImage picture(pixels, pixels, format_);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(ratio, ratio);
  bool const isThere = paint_(painter, QPointF(at.x, at.y) * kSide, side);
  painter.end();
  if (isThere) found->second.picture = std::move(picture);
  return found->second.picture;
}

/// Keeps as many again as are shown.
void MapTiles::forget(std::size_t shown) {
  if (squares_.size() <= 2 * shown + 8) return;
  std::vector<std::pair<unsigned long, MapSquare>> ages;
  ages.reserve(squares_.size());
  for (auto const& [at, kept] : squares_) ages.emplace_back(kept.used, at);
  std::ranges::sort(ages);
  std::size_t const excess = squares_.size() - 2 * shown;
  for (std::size_t i = 0; i < excess && ages[i].first != turn_; ++i) squares_.erase(ages[i].second);
}

void MapTiles::paint(QPainter& painter, MapView const& view, double ratio) {
  if (ratio != ratio_) clear();
  ratio_ = ratio;
  ++turn_;
  int const halfSteps = static_cast<int>(std::lround(2 * view.zoom));
  double const side = kTileSide * std::exp2(halfSteps / 2.0);
  double const size = view.worldSide() / side * kSide;  // of a square as it is shown
  bool const isScaled = std::abs(size - kSide) > 1e-9;
  painter.setRenderHint(QPainter::SmoothPixmapTransform, isScaled);
  MapPoint const corner = pointAt(view, {0, 0});
  double const left = corner.x * view.worldSide(), top = corner.y * view.worldSide();
  int const west = static_cast<int>(std::floor(left / size));
  int const east = static_cast<int>(std::floor((left + view.width) / size));
  int const north = static_cast<int>(std::floor(top / size));
  int const south = static_cast<int>(std::floor((top + view.height) / size));
  // Whole pixels, so that neighbours meet.
  auto const edge = [](double at) { return std::round(at); };
  for (int y = north; y <= south; ++y) {
    for (int x = west; x <= east; ++x) {
      QImage const& picture = square({halfSteps, x, y}, side, ratio);
      if (picture.isNull()) continue;
      QPointF const from(edge(x * size - left), edge(y * size - top));
      QPointF const to(isScaled ? edge((x + 1) * size - left) : from.x() + kSide,
                       isScaled ? edge((y + 1) * size - top) : from.y() + kSide);
      painter.drawImage(QRectF(from, to), picture);
    }
  }
  forget(static_cast<std::size_t>(east - west + 1) * static_cast<std::size_t>(south - north + 1));
}

}  // namespace nimbara
