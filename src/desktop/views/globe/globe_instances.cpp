#include "desktop/views/globe/globe_instances.h"

#include "desktop/views/globe/globe_camera.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kStarRadius = 60;

InstanceRow rowAt(std::array<float, 3> const& at) {
  return {{1, 0, 0, at[0]}, {0, 1, 0, at[1]}, {0, 0, 1, at[2]}, {}, {}};
}

bool isDrawn(float const* position, float opacity) {
  float const square = position[0] * position[0] + position[1] * position[1] + position[2] * position[2];
  return std::isfinite(square) && square > 0 && opacity > 0;
}

/// Red while it is fresh, amber after a day.
std::array<float, 4> ageColour(double hours) {
  float const age = static_cast<float>(std::clamp(hours / 24, 0.0, 1.0));
  return {1.0F, 0.32F + 0.42F * age, 0.22F + 0.18F * age, 1.0F - 0.55F * age};
}

/// A quad that lies on the ground: its x to the east, its y to the north.
InstanceRow groundRow(Coordinate place, double degrees) {
  Vector3 const up = directionTo(place);
  double const longitude = place.longitude * kRadians;
  Vector3 const east{-std::sin(longitude), std::cos(longitude), 0};
  Vector3 const north{-up[2] * east[1], up[2] * east[0], up[0] * east[1] - up[1] * east[0]};
  // The renderer's quad reaches 50 units from its middle.
  auto const size = static_cast<float>(degrees * kRadians / 50);
  constexpr double kAboveGround = 1.004;
  auto const e = scenePoint(east), n = scenePoint(north), u = scenePoint(up);
  auto const at = scenePoint({up[0] * kAboveGround, up[1] * kAboveGround, up[2] * kAboveGround});
  auto const rowOf = [&](std::size_t i) {
    return std::array<float, 4>{e[i] * size, n[i] * size, u[i] * size, at[i]};
  };
  return {rowOf(0), rowOf(1), rowOf(2), {}, {}};
}

}  // namespace

std::array<float, 3> scenePoint(Vector3 const& v) {
  return {static_cast<float>(v[1] * kSceneRadius), static_cast<float>(v[2] * kSceneRadius),
          static_cast<float>(v[0] * kSceneRadius)};
}

std::vector<InstanceRow> satelliteRows(std::span<float const> positions, std::span<float const> colors,
                                       std::span<std::uint32_t const> indices, float pixels) {
  std::vector<InstanceRow> rows;
  rows.reserve(indices.size());
  for (std::uint32_t const index : indices) {
    float const* const position = &positions[std::size_t{3} * index];
    float const* const color = &colors[std::size_t{4} * index];
    if (!isDrawn(position, color[3])) continue;
    InstanceRow& row = rows.emplace_back(rowAt(scenePoint({position[0], position[1], position[2]})));
    row.color = {color[0], color[1], color[2], color[3]};
    row.data[0] = pixels;
  }
  return rows;
}

/// On the equator's side of a geodetic latitude's plumb line lies the earth's centre.
Vector3 spacePoint(OrbitPoint const& point) {
  constexpr double kEccentricitySquared = 0.00669437999;
  double const distance = 1 + point.altitudeKm / SGP4::kEarthRadiusKm;
  double const latitude = point.latitude * kRadians;
  double const geocentric =
      std::atan(std::tan(latitude) * (1 - kEccentricitySquared / std::max(1.0, distance)));
  Vector3 const up = directionTo({geocentric / kRadians, point.longitude});
  return {up[0] * distance, up[1] * distance, up[2] * distance};
}

std::vector<InstanceRow> orbitRows(std::span<OrbitPoint const> path, std::array<float, 3> const& color) {
  std::vector<InstanceRow> rows;
  for (std::size_t i = 1; i < path.size(); ++i) {
    auto const to = scenePoint(spacePoint(path[i]));
    float const passed = static_cast<float>(i) / static_cast<float>(path.size());
    InstanceRow& row = rows.emplace_back(rowAt(scenePoint(spacePoint(path[i - 1]))));
    row.color = {color[0], color[1], color[2], 0.95F - 0.75F * passed};
    row.data = {to[0], to[1], to[2], 0};
  }
  return rows;
}

std::vector<InstanceRow> earthquakeRows(std::span<EarthquakeEvent const> events, Instant now) {
  std::vector<InstanceRow> rows;
  for (EarthquakeEvent const& event : events) {
    if (!(event.magnitude >= kLeastShownMagnitude) || !isValid(event.coordinate())) continue;
    double const hours = std::chrono::duration<double, std::ratio<3600>>(now - event.time).count();
    double const reach = 1.2 + 1.1 * std::min(event.magnitude - kLeastShownMagnitude, 6.0);
    InstanceRow& row = rows.emplace_back(groundRow(event.coordinate(), reach));
    row.color = ageColour(hours);
    // Pulses of one moment would look like one event.
    row.data[0] = static_cast<float>(rows.size() % 7) / 7;
  }
  return rows;
}

std::vector<InstanceRow> starRows() {
  constexpr int kStars = 3000;
  std::mt19937 random(20'260'321);
  // Not the library's distributions, which differ between libraries.
  auto const draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
  std::vector<InstanceRow> rows;
  rows.reserve(kStars);
  for (int i = 0; i < kStars; ++i) {
    double const z = 2 * draw() - 1, angle = 2 * std::numbers::pi * draw(), flat = std::sqrt(1 - z * z);
    InstanceRow& row = rows.emplace_back(rowAt(scenePoint(
        {kStarRadius * flat * std::cos(angle), kStarRadius * flat * std::sin(angle), kStarRadius * z})));
    double const bright = std::pow(draw(), 4);
    auto const warmth = static_cast<float>(draw());
    row.color = {0.75F + 0.25F * warmth, 0.85F, 1.0F - 0.2F * warmth,
                 static_cast<float>(0.35 + 0.65 * bright)};
    row.data[0] = static_cast<float>(0.8 + 1.4 * bright);
  }
  return rows;
}

std::vector<InstanceRow> sunRows(Vector3 const& direction) {
  InstanceRow row =
      rowAt(scenePoint({direction[0] * kStarRadius, direction[1] * kStarRadius, direction[2] * kStarRadius}));
  row.color = {1.0F, 0.95F, 0.82F, 1.0F};
  row.data = {90, 1, 0, 0};  // wide, and a glow
  return {row};
}

}  // namespace nimbara
