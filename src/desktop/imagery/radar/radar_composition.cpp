#include "desktop/imagery/radar/radar_composition.h"

#include "desktop/imagery/picture_decoder.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr int kMargin = 160;
constexpr QColor kVeil{0x80, 0x84, 0x8a, 0x48};

/// Each way around the world on which a square is seen, in whole pixels, so that neighbours have no seams.
template <class Visit>
void visitSeen(MapView const& view, MapPoint northWest, MapPoint southEast, Visit const& visit) {
  WorldTurns const turns = turnsOf(view, northWest.x, southEast.x);
  for (int turn = turns.first; turn <= turns.last; ++turn) {
    MapPoint const from = pixelOf(view, {northWest.x + turn, northWest.y});
    MapPoint const to = pixelOf(view, {southEast.x + turn, southEast.y});
    QPoint const corner(static_cast<int>(std::lround(from.x)), static_cast<int>(std::lround(from.y)));
    QPoint const end(static_cast<int>(std::lround(to.x)), static_cast<int>(std::lround(to.y)));
    QRect const at(corner, end - QPoint(1, 1));
    if (at.intersects(QRect(0, 0, view.width, view.height))) visit(at);
  }
}

QImage emptyOf(MapView const& view, QColor const& colour = Qt::transparent) {
  QImage picture(view.width, view.height, QImage::Format_ARGB32_Premultiplied);
  picture.fill(colour);
  return picture;
}

void drawTiles(QPainter& painter, MapView const& view, std::span<TilePicture const> tiles) {
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  for (TilePicture const& tile : tiles) {
    if (tile.picture.isNull()) continue;
    visitSeen(view, northWestOf(tile.area()), southEastOf(tile.area()),
              [&](QRect const& at) { painter.drawImage(at, tile.picture); });
  }
}

/// The view without its margin.
QRect innerOf(QImage const& picture, MapView const& view) {
  return {(picture.width() - view.width) / 2, (picture.height() - view.height) / 2, view.width, view.height};
}

bool isClear(QImage const& picture, QRect const& part) {
  for (int y = part.top(); y <= part.bottom(); ++y) {
    auto const* const line = reinterpret_cast<QRgb const*>(picture.constScanLine(y)) + part.left();
    if (std::any_of(line, line + part.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; })) return false;
  }
  return true;
}

}  // namespace

MapView withMargin(MapView const& view) {
  MapView wide = view;
  wide.width += 2 * kMargin;
  wide.height += 2 * kMargin;
  return wide;
}

QImage veilOf(MapView const& view, RadarSupplier const& supplier, std::span<TilePicture const> tiles) {
  MapView const wide = withMargin(view);
  if (supplier.boxes.empty()) {
    QImage veil = emptyOf(wide);
    QPainter painter(&veil);
    drawTiles(painter, wide, tiles);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(veil.rect(), kVeil);
    return veil;
  }
  QImage veil = emptyOf(wide, kVeil);
  QPainter painter(&veil);
  painter.setCompositionMode(QPainter::CompositionMode_Clear);
  for (GeoBox const& box : supplier.boxes) {
    visitSeen(wide, mercatorOf({box.north, box.west}), mercatorOf({box.south, box.east}),
              [&](QRect const& at) { painter.fillRect(at, Qt::transparent); });
  }
  return veil;
}

bool coversAll(QImage const& veil, MapView const& view) {
  constexpr int kStep = 16, kHalf = 0x24;
  QRect const inner = innerOf(veil, view);
  for (int y = inner.top() + kStep / 2; y <= inner.bottom(); y += kStep) {
    for (int x = inner.left() + kStep / 2; x <= inner.right(); x += kStep) {
      if (qAlpha(veil.pixel(x, y)) < kHalf) return false;
    }
  }
  return true;
}

ComposedFrame composed(MapView const& view, std::span<TilePicture const> tiles, QImage const& veil) {
  MapView const wide = withMargin(view);
  QImage picture = emptyOf(wide);
  QPainter painter(&picture);
  drawTiles(painter, wide, tiles);
  bool const isDry = isClear(picture, innerOf(picture, view));
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
  if (!veil.isNull()) painter.drawImage(0, 0, veil);
  painter.end();
  MapPoint const end{static_cast<double>(wide.width), static_cast<double>(wide.height)};
  return {{std::move(picture), pointAt(wide, {0, 0}), pointAt(wide, end)}, isDry};
}

bool isRepeated(std::span<TilePicture const> tiles) {
  for (std::size_t i = 0; i < tiles.size(); ++i) {
    if (isOneColour(tiles[i].picture)) continue;
    bool const isAgain = std::ranges::any_of(
        tiles.subspan(i + 1), [&](TilePicture const& other) { return other.picture == tiles[i].picture; });
    if (isAgain) return true;
  }
  return false;
}

QImage withoutMask(QImage picture, PictureArea const& area, RadarSupplier const& supplier) {
  if (supplier.palette != RadarPalette::dwd || picture.isNull()) return picture;
  MapPoint const from = northWestOf(area), to = southEastOf(area);
  MapView const view{{(from.x + to.x) / 2, (from.y + to.y) / 2},
                     std::log2(picture.width() / (to.x - from.x) / kTileSide),
                     picture.width(),
                     picture.height()};
  QImage clear(picture.size(), QImage::Format_ARGB32);
  clear.fill(Qt::transparent);
  QPainter painter(&clear);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  for (GeoBox const& box : supplier.boxes) {
    visitSeen(view, mercatorOf({box.north, box.west}), mercatorOf({box.south, box.east}),
              [&](QRect const& at) { painter.drawImage(at.topLeft(), picture, at); });
  }
  painter.end();
  return clear;
}

std::vector<TileAddress> coverageTilesWanted(MapView const& view) {
  constexpr int kCoarser = 2, kDeepest = 6;
  return tilesOf(view, std::clamp(static_cast<int>(std::lround(view.zoom)) - kCoarser, 0, kDeepest));
}

}  // namespace nimbara
