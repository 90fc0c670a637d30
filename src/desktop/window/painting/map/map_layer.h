// A picture that lies on the map: radar, clouds, a field of a model. Made on a worker, drawn by the map's
// item.
#pragma once

#include "base/map_point.h"

#include <QImage>
#include <vector>

namespace nimbara {

/// In Web Mercator. A picture across the 180th meridian has its eastern corner beyond 1.
struct MapLayerPicture {
  QImage picture;
  MapPoint northWest;
  MapPoint southEast;
  double opacity = 1;
};

using MapLayerPictures = std::vector<MapLayerPicture>;

}  // namespace nimbara
