#include "globe/earth_frame.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kJ2000 = 2451545.0;
/// WGS-84, on which maps and receivers stand.
constexpr double kEquatorKm = 6378.137;
constexpr double kFlattening = 1 / 298.257223563;
constexpr double kEccentricitySquared = kFlattening * (2 - kFlattening);
/// Terrestrial time less universal time; half a minute more or less does not show at 0.01°.
constexpr double kDeltaTDays = 69.2 / 86400;
/// Half-angles' sines of the shadow's cones, from the radii of sun and earth and the mean distance.
constexpr double kSunRadiusKm = 695'700;
constexpr double kSunDistanceKm = 149'597'871;
constexpr double kUmbraSlope = (kSunRadiusKm - SGP4::kEarthRadiusKm) / kSunDistanceKm;
constexpr double kPenumbraSlope = (kSunRadiusKm + SGP4::kEarthRadiusKm) / kSunDistanceKm;

/// Latitude on the ellipsoid, by Bowring's method; exact to 1e-9° at all heights of satellites.
double geodeticLatitude(double equatorial, double z) {
  constexpr double kPolarKm = kEquatorKm * (1 - kFlattening);
  constexpr double kSecondEccentricitySquared = kEccentricitySquared / (1 - kEccentricitySquared);
  double reduced = std::atan2(z * kEquatorKm, equatorial * kPolarKm);
  double latitude = 0;
  for (int i = 0; i < 3; ++i) {
    latitude = std::atan2(z + kSecondEccentricitySquared * kPolarKm * std::pow(std::sin(reduced), 3),
                          equatorial - kEccentricitySquared * kEquatorKm * std::pow(std::cos(reduced), 3));
    reduced = std::atan2((1 - kFlattening) * std::sin(latitude), std::cos(latitude));
  }
  return latitude;
}

}  // namespace

EarthRotation EarthRotation::at(SGP4::Moment moment) {
  double const angle = SGP4::siderealTime(moment);
  return {std::sin(angle), std::cos(angle)};
}

GroundPosition groundPosition(Vector3 const& earthFixed) {
  double const equatorial = std::hypot(earthFixed[0], earthFixed[1]);
  return {geodeticLatitude(equatorial, earthFixed[2]) / kRadians,
          std::atan2(earthFixed[1], earthFixed[0]) / kRadians,
          std::hypot(equatorial, earthFixed[2]) - SGP4::kEarthRadiusKm};
}

Observer::Observer(Coordinate place) {
  double const latitude = place.latitude * kRadians, longitude = place.longitude * kRadians;
  double const sinLat = std::sin(latitude), cosLat = std::cos(latitude);
  double const sinLon = std::sin(longitude), cosLon = std::cos(longitude);
  double const normal = kEquatorKm / std::sqrt(1 - kEccentricitySquared * sinLat * sinLat);
  position_ = {normal * cosLat * cosLon, normal * cosLat * sinLon,
               normal * (1 - kEccentricitySquared) * sinLat};
  east_ = {-sinLon, cosLon, 0};
  north_ = {-sinLat * cosLon, -sinLat * sinLon, cosLat};
  up_ = {cosLat * cosLon, cosLat * sinLon, sinLat};
}

LookAngles Observer::look(Vector3 const& earthFixed) const {
  Vector3 const line{earthFixed[0] - position_[0], earthFixed[1] - position_[1],
                     earthFixed[2] - position_[2]};
  double const range = std::sqrt(dot(line, line));
  double const azimuth = std::atan2(dot(line, east_), dot(line, north_)) / kRadians;
  return {azimuth < 0 ? azimuth + 360 : azimuth,
          std::asin(std::clamp(dot(line, up_) / range, -1.0, 1.0)) / kRadians, range};
}

Vector3 sunDirection(SGP4::Moment moment) {
  double const t = ((moment.day - kJ2000) + moment.fraction + kDeltaTDays) / 36525;
  double const meanLongitude = 280.46646 + t * (36000.76983 + t * 0.0003032);
  double const anomaly = (357.52911 + t * (35999.05029 - t * 0.0001537)) * kRadians;
  double const centre = (1.914602 - t * (0.004817 + t * 0.000014)) * std::sin(anomaly) +
                        (0.019993 - 0.000101 * t) * std::sin(2 * anomaly) + 0.000289 * std::sin(3 * anomaly);
  // Aberration belongs to the direction; nutation in longitude does not, as the frame's equinox is the mean
  // one.
  double const longitude = (meanLongitude + centre - 0.00569) * kRadians;
  double const node = (125.04 - 1934.136 * t) * kRadians;
  double const obliquity = (23.4392911 - 0.0130042 * t + 0.00256 * std::cos(node)) * kRadians;
  return {std::cos(longitude), std::cos(obliquity) * std::sin(longitude),
          std::sin(obliquity) * std::sin(longitude)};
}

ShadowSlopes shadowSlopes() {
  return {kUmbraSlope, kPenumbraSlope};
}

double litFraction(Vector3 const& position, Vector3 const& sun) {
  double const behind = -dot(position, sun);
  if (behind <= 0) return 1;
  double const fromAxis = std::sqrt(std::max(0.0, dot(position, position) - behind * behind));
  double const umbra = SGP4::kEarthRadiusKm - behind * kUmbraSlope;
  double const penumbra = SGP4::kEarthRadiusKm + behind * kPenumbraSlope;
  return std::clamp((fromAxis - umbra) / (penumbra - umbra), 0.0, 1.0);
}

}  // namespace nimbara
