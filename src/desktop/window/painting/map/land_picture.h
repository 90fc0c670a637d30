// The flat map under what the window marks on it: sea, land and borders. Drawn once for a size, a part of the
// world and a palette, and kept as a picture.
#pragma once

#include "desktop/views/globe/world_map.h"
#include "gazetteer/world_outlines.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

namespace nimbara {

struct LandColours {
  QColor sea, land, border;

  bool operator==(LandColours const&) const = default;
};

/// Draws lines of the world where they lie in a frame.
class LineDrawer {
 public:
  LineDrawer(MapFrame const& frame, QSizeF size) : frame_(frame), size_(size) {}

  /// Adds a line, once for each way around the world on which it can be seen.
  void add(WorldLine const& line, QPainterPath& path) const;

 private:
  void addShifted(WorldLine const& line, double shift, QPainterPath& path) const;

  MapFrame const& frame_;
  QSizeF size_;
};

/// Where the point lies in a picture of that size.
QPointF scaled(MapPoint point, QSizeF size);

class LandPicture {
 public:
  /// Paints over the whole of `size`, in a window of that device pixel ratio.
  void paint(QPainter& painter, MapFrame const& frame, QSizeF size, double ratio, LandColours const& colours);

 private:
  /// What the picture depends on.
  struct Key {
    QSize size;
    MapFrame frame;
    LandColours colours;
    bool operator==(Key const&) const = default;
  };

  Key key_;
  QImage picture_;
};

/// A ring with four short lines around it: the place.
void paintPlaceMark(QPainter& painter, QPointF centre, QColor const& colour);

}  // namespace nimbara
