// Where things lie on a flat picture of the world or of a part of it: degrees east and north are equally long
// in the middle of the picture, which may lie across the 180th meridian. Pure functions.
#pragma once

#include "base/geodesy.h"
#include "base/map_point.h"

#include <span>
#include <vector>

namespace nimbara {

/// The part of the world that a picture shows. A point of it is in parts of the picture's width and height
/// from its top left corner; beyond 0-1 outside of it.
struct MapFrame {
  Coordinate centre;
  double degreesWide = 360;
  double degreesHigh = 180;

  /// The nearest of the ways around the world to the point.
  MapPoint at(Coordinate point) const;
  /// As far east of the centre as given, without a look at the way around: lines stay in one piece.
  MapPoint atOffset(double degreesEast, double latitude) const;
  /// What lies there.
  Coordinate under(MapPoint point) const;

  bool operator==(MapFrame const&) const = default;
};

/// What holds the rings and the place, with some room around them, and is at least one degree high. `aspect`
/// is the picture's width in heights.
MapFrame frameHolding(std::span<std::vector<Coordinate> const> rings, Coordinate place, double aspect);

/// The points at that distance from a place, the first of them again at the end, each as degrees east of it
/// (-180 to 180) and latitude.
std::vector<Coordinate> circleAround(Coordinate place, double radiusKm);

}  // namespace nimbara
