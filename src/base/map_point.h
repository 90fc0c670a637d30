// A point of a flat map, in parts of its width and height from the top left corner.
#pragma once

namespace nimbara {

struct MapPoint {
  double x = 0;
  double y = 0;

  bool operator==(MapPoint const&) const = default;
};

}  // namespace nimbara
