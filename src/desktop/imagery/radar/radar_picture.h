// Tiles of the radar as one picture: coloured where they are bare values, put side by side, and checked for
// whether they show what they should. Plain functions over pictures.
#pragma once

#include "base/web_mercator.h"
#include "feeds/imagery/radar/radar_suppliers.h"

#include <QImage>
#include <optional>
#include <span>
#include <vector>

namespace nimbara {

/// A tile of the supplier's own zoom, or several in one picture; null where it has none.
struct TilePicture {
  TileAddress tile;
  QImage picture;
  int columns = 1, rows = 1;

  PictureArea area() const { return {tile, columns, rows}; }
};

/// A tile of bare values in our own colours; others as they are.
QImage inColours(QImage tile, RadarPalette palette);

/// All tiles in our own colours, those of a supplier by its legend. False, and nothing is changed, where too
/// much of what is drawn is no colour of that.
bool paintInOwnColours(std::span<TilePicture> tiles, RadarPalette palette);

/// One picture of tiles of one zoom, and where its corners lie; the way around the world is the one nearest
/// to `centre`. Nothing where it would be larger than 4096 pixels.
struct PlacedPicture {
  QImage picture;
  MapPoint northWest, southEast;
};
std::optional<PlacedPicture> sideBySide(std::span<TilePicture const> tiles, MapPoint centre, int pixels);

enum class PictureState {
  usable,
  uncovered,   ///< there is no radar at the place
  unreadable,  ///< a tile is no picture
  writing,     ///< the tiles say something instead of showing rain
  unknown      ///< nothing is drawn, and whether there is radar is not known
};

/// What tiles that were decoded show of a place. `coverage` is the tile that has the place; null where it
/// could not be had; it does not count for a supplier without one.
PictureState stateOf(std::span<TilePicture const> tiles, RadarSupplier const& supplier,
                     QImage const& coverage, TileAddress coverageTile, Coordinate place);

}  // namespace nimbara
