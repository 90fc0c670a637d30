// How the globe is looked at: a camera that circles the earth's centre, north up, and what follows from it:
// where a point of space stands in the picture, what is hidden, what is pointed at. Pure. Lengths are
// equatorial radii in the earth-fixed frame (x through 0°, 0°, z north); places in the picture are pixels
// from its upper left.
#pragma once

#include "globe/earth_frame.h"

#include <cstdint>
#include <optional>
#include <span>

namespace nimbara {

struct PicturePoint {
  double x = 0, y = 0;

  bool operator==(PicturePoint const&) const = default;
};

struct GlobeCamera {
  static constexpr double kViewAngle = 30;   ///< degrees from the lower to the upper edge
  static constexpr double kLeastZoom = 0.1;  ///< the ring of geostationary satellites fits in
  static constexpr double kMostZoom = 8;
  static constexpr double kHighestLatitude = 88;

  double latitude = 20;  ///< of the place in the middle, degrees
  double longitude = 10;
  double zoom = 1;  ///< at 1 the earth takes three quarters of the shorter side
  double width = 800;
  double height = 600;

  bool operator==(GlobeCamera const&) const = default;

  /// Of the earth in the picture, pixels.
  double earthRadius() const;
  double distance() const;
  Vector3 eye() const;

  GlobeCamera turned(double degreesNorth, double degreesEast) const;
  /// So that the surface follows a pointer that moves by so many pixels.
  GlobeCamera dragged(double right, double down) const;
  GlobeCamera zoomed(double factor) const;
};

/// What a camera sees, with all that follows from it alone computed once: for many points.
class GlobeSight {
 public:
  explicit GlobeSight(GlobeCamera const& camera);

  Vector3 const& eye() const { return eye_; }
  /// Distance of the picture's plane from the eye, pixels.
  double focalLength() const { return focalLength_; }
  /// Unit vector from the eye through a place in the picture.
  Vector3 rayThrough(PicturePoint at) const;
  /// Nothing for what lies behind the eye.
  std::optional<PicturePoint> project(Vector3 const& point) const;
  bool isHiddenByEarth(Vector3 const& point) const;

 private:
  Vector3 right_, up_, back_;  // unit vectors of the picture
  double focalLength_;
  double distance_;
  Vector3 eye_;
  PicturePoint middle_;
};

/// The unit vector to a place on a spherical earth.
Vector3 directionTo(Coordinate place);

/// The point that stands nearest to a place in the picture among those given by `indices` (three floats each
/// in `positions`), as far as it is within `reach` pixels and not behind the earth. Points in the earth's
/// centre and points that are no numbers are nowhere.
std::optional<std::uint32_t> nearestInPicture(GlobeCamera const& camera, PicturePoint at, double reach,
                                              std::span<float const> positions,
                                              std::span<std::uint32_t const> indices);

}  // namespace nimbara
