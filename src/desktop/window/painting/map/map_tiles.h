// The map's land and sea, and the areas of warnings, as square pictures that are painted once and kept while
// they are near what is shown. The zoom goes by half steps; between them pictures are enlarged or shrunk.
#pragma once

#include "base/web_mercator.h"

#include <QImage>
#include <QPainter>
#include <functional>
#include <map>

namespace nimbara {

/// A square of the map at a zoom of half steps.
struct MapSquare {
  int halfSteps = 0;  ///< twice the zoom
  int x = 0;          ///< squares from 180° W, beyond the world as well
  int y = 0;

  auto operator<=>(MapSquare const&) const = default;
};

class MapTiles {
 public:
  /// Paints a square whose top left corner lies at `corner` in a world of `side` pixels. False leaves it
  /// empty.
  using Paint = std::function<bool(QPainter&, QPointF corner, double side)>;
  static constexpr int kSide = 256;

  MapTiles(QImage::Format format, Paint paint) : format_(format), paint_(std::move(paint)) {}

  void clear() { squares_.clear(); }
  void paint(QPainter& painter, MapView const& view, double ratio);
  std::size_t count() const { return squares_.size(); }

 private:
  QImage const& square(MapSquare const& at, double side, double ratio);
  void forget(std::size_t shown);

  struct Kept {
    QImage picture;
    unsigned long used = 0;
  };

  QImage::Format format_;
  Paint paint_;
  double ratio_ = 1;
  unsigned long turn_ = 0;
  std::map<MapSquare, Kept> squares_;
};

}  // namespace nimbara
