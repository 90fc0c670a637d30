// A frame of the radar as one picture of a view, and where there is no radar in it. Plain functions over
// pictures; any thread.
#pragma once

#include "desktop/imagery/radar/radar_picture.h"

#include <QImage>
#include <span>

namespace nimbara {

/// The view with what lies around it, so that a map that is moved a little has something to show.
MapView withMargin(MapView const& view);

/// Where there is no radar, as a veil over the view with its margin: by a supplier's tiles of that, else by
/// its boxes. `tiles` of coverage are opaque where there is none; they may be of any one zoom.
QImage veilOf(MapView const& view, RadarSupplier const& supplier, std::span<TilePicture const> tiles);
/// No radar has any of the view.
bool coversAll(QImage const& veil, MapView const& view);

struct ComposedFrame {
  PlacedPicture placed;
  bool isDry = false;  ///< nothing is drawn of the tiles in the view
};
/// The tiles, in the supplier's colours or our own, over the veil, which may be null.
ComposedFrame composed(MapView const& view, std::span<TilePicture const> tiles, QImage const& veil);

/// Two tiles are the same picture of more than one colour: they say something instead of showing rain.
bool isRepeated(std::span<TilePicture const> tiles);

/// Without what a supplier draws where it has no radars.
QImage withoutMask(QImage picture, PictureArea const& area, RadarSupplier const& supplier);

/// The tiles of coverage that a view wants: coarser than those of rain, as its edges are.
std::vector<TileAddress> coverageTilesWanted(MapView const& view);

}  // namespace nimbara
