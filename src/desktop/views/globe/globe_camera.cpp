#include "desktop/views/globe/globe_camera.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;

Vector3 sum(Vector3 const& a, double factor, Vector3 const& b) {
  return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

/// Right, up and back of the camera, unit vectors.
struct Axes {
  Vector3 right, up, back;
};

Axes axesOf(GlobeCamera const& camera) {
  double const latitude = camera.latitude * kRadians, longitude = camera.longitude * kRadians;
  double const sinLat = std::sin(latitude), cosLat = std::cos(latitude);
  double const sinLon = std::sin(longitude), cosLon = std::cos(longitude);
  return {{-sinLon, cosLon, 0},
          {-sinLat * cosLon, -sinLat * sinLon, cosLat},
          {cosLat * cosLon, cosLat * sinLon, sinLat}};
}

/// Distance of the picture's plane from the eye, in pixels.
double focalLength(GlobeCamera const& camera) {
  return camera.height / 2 / std::tan(GlobeCamera::kViewAngle / 2 * kRadians);
}

}  // namespace

double GlobeCamera::earthRadius() const {
  return 0.37 * std::max(1.0, std::min(width, height)) * zoom;
}

/// The rim is where a line of sight touches the earth.
double GlobeCamera::distance() const {
  double const ratio = focalLength(*this) / earthRadius();
  return std::sqrt(1 + ratio * ratio);
}

Vector3 GlobeCamera::eye() const {
  double const far = distance();
  Vector3 const back = axesOf(*this).back;
  return {far * back[0], far * back[1], far * back[2]};
}

GlobeSight::GlobeSight(GlobeCamera const& camera)
    : focalLength_(nimbara::focalLength(camera)),
      distance_(camera.distance()),
      eye_(camera.eye()),
      middle_{camera.width / 2, camera.height / 2} {
  Axes const axes = axesOf(camera);
  right_ = axes.right;
  up_ = axes.up;
  back_ = axes.back;
}

Vector3 GlobeSight::rayThrough(PicturePoint at) const {
  Vector3 ray = sum({}, -focalLength_, back_);
  ray = sum(ray, at.x - middle_.x, right_);
  ray = sum(ray, middle_.y - at.y, up_);
  double const length = std::sqrt(dot(ray, ray));
  return {ray[0] / length, ray[1] / length, ray[2] / length};
}

std::optional<PicturePoint> GlobeSight::project(Vector3 const& point) const {
  constexpr double kNearest = 0.02;
  double const depth = distance_ - dot(point, back_);
  if (!(depth > kNearest)) return std::nullopt;
  double const scale = focalLength_ / depth;
  return PicturePoint{middle_.x + scale * dot(point, right_), middle_.y - scale * dot(point, up_)};
}

bool GlobeSight::isHiddenByEarth(Vector3 const& point) const {
  // A hair less than the earth, so that what stands on the ground before us is not hidden by it.
  constexpr double kSquare = 0.999 * 0.999;
  Vector3 const way = sum(point, -1, eye_);
  double const along = -dot(eye_, way) / dot(way, way);
  if (along <= 0 || along >= 1) return dot(point, point) < kSquare;
  Vector3 const closest = sum(eye_, along, way);
  return dot(closest, closest) < kSquare;
}

GlobeCamera GlobeCamera::turned(double degreesNorth, double degreesEast) const {
  GlobeCamera camera = *this;
  camera.latitude = std::clamp(latitude + degreesNorth, -kHighestLatitude, kHighestLatitude);
  camera.longitude = std::remainder(longitude + degreesEast, 360.0);
  return camera;
}

GlobeCamera GlobeCamera::dragged(double right, double down) const {
  double const degreesPerPixel = (distance() - 1) / (kRadians * focalLength(*this));
  double const narrowing = std::max(0.25, std::cos(latitude * kRadians));
  return turned(down * degreesPerPixel, -right * degreesPerPixel / narrowing);
}

GlobeCamera GlobeCamera::zoomed(double factor) const {
  GlobeCamera camera = *this;
  camera.zoom = std::clamp(zoom * factor, kLeastZoom, kMostZoom);
  return camera;
}

Vector3 directionTo(Coordinate place) {
  return axesOf({place.latitude, place.longitude}).back;
}

std::optional<std::uint32_t> nearestInPicture(GlobeCamera const& camera, PicturePoint at, double reach,
                                              std::span<float const> positions,
                                              std::span<std::uint32_t const> indices) {
  GlobeSight const sight(camera);
  Vector3 const ray = sight.rayThrough(at);
  // The angle that the reach fills, as a tangent; the same all over the picture, near enough.
  double nearest = reach / sight.focalLength();
  std::optional<std::uint32_t> found;
  for (std::uint32_t const index : indices) {
    float const* const p = &positions[std::size_t{3} * index];
    Vector3 const point{p[0], p[1], p[2]};
    Vector3 const way = sum(point, -1, sight.eye());
    double const along = dot(way, ray);
    if (!(along > 0) || dot(point, point) == 0) continue;
    double const aside = std::sqrt(std::max(0.0, dot(way, way) - along * along)) / along;
    if (!(aside <= nearest) || sight.isHiddenByEarth(point)) continue;
    nearest = aside;
    found = index;
  }
  return found;
}

}  // namespace nimbara
