// Whom a map's radar is asked of. Both are the ones in use when they are asked, on any thread.
#pragma once

#include "app/services/in_use.h"

namespace nimbara {

class RadarService;
class TileService;

struct RadarSources {
  InUse<RadarService> radar;
  InUse<TileService> tiles;

  /// There is nobody to ask in a window that only shows.
  explicit operator bool() const { return static_cast<bool>(radar) && static_cast<bool>(tiles); }
};

}  // namespace nimbara
