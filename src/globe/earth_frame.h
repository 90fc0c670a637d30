// From the propagator's frame (true equator, mean equinox) to the turning earth and to a place on it, and
// where the sun stands in that frame. Pure functions; vectors in km unless said otherwise.
#pragma once

#include "base/geodesy.h"
#include "globe/propagation/sat_rec.h"

#include <array>

namespace nimbara {

using Vector3 = std::array<double, 3>;

inline double dot(Vector3 const& a, Vector3 const& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// The turn of the earth at a moment, to rotate many vectors by.
struct EarthRotation {
  double sine = 0, cosine = 1;

  static EarthRotation at(SGP4::Moment moment);

  Vector3 toEarthFixed(Vector3 const& v) const {
    return {cosine * v[0] + sine * v[1], cosine * v[1] - sine * v[0], v[2]};
  }
};

/// The place above which a satellite stands.
struct GroundPosition {
  double latitude = 0;    ///< geodetic, degrees
  double longitude = 0;   ///< degrees, -180 to 180
  double altitudeKm = 0;  ///< distance from the earth's centre less the equatorial radius of 6378.135 km
};

GroundPosition groundPosition(Vector3 const& earthFixed);

/// Where an observer at sea level sees something.
struct LookAngles {
  double azimuth = 0;    ///< degrees from north through east, 0-360
  double elevation = 0;  ///< degrees above the horizon, without refraction
  double rangeKm = 0;
};

/// A place on the ellipsoid (WGS-84), to look from at many things.
class Observer {
 public:
  explicit Observer(Coordinate place);

  LookAngles look(Vector3 const& earthFixed) const;

 private:
  Vector3 position_, east_, north_, up_;
};

/// Unit vector from the earth to the sun in the propagator's frame, to 0.01° between 1950 and 2050.
/// Source: J. Meeus, "Astronomical Algorithms", 2nd edition, chapter 25, low accuracy.
Vector3 sunDirection(SGP4::Moment moment);

/// How much of the sun's disc a satellite sees, 0 (umbra) to 1. A spherical earth throws two cones, the umbra
/// and the penumbra; between them the light is taken to grow evenly with the distance from the axis.
double litFraction(Vector3 const& position, Vector3 const& sunDirection);

/// How the umbra narrows and the penumbra widens, km for each km behind the earth.
struct ShadowSlopes {
  double umbra, penumbra;
};
ShadowSlopes shadowSlopes();

/// At least half the disc is seen.
inline bool isSunlit(Vector3 const& position, Vector3 const& sunDirection) {
  return litFraction(position, sunDirection) >= 0.5;
}

}  // namespace nimbara
