// What the globe's renderer draws many times: tables of instances in the form that the graphics card reads,
// made of flat arrays. Pure; knows no renderer, only the layout of its table. Positions become scene units: a
// hundred to the equatorial radius, y north, z through 0°, 0°.
#pragma once

#include "feeds/quakes/earthquake_event.h"
#include "globe/satellite_info.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace nimbara {

/// A row of the table: a matrix of three rows, a colour, four numbers for the shader.
struct InstanceRow {
  std::array<float, 4> row0{}, row1{}, row2{};
  std::array<float, 4> color{};
  std::array<float, 4> data{};

  bool operator==(InstanceRow const&) const = default;
};
static_assert(sizeof(InstanceRow) == 80);

inline constexpr float kSceneRadius = 100;

/// A vector of the earth-fixed frame in scene units.
std::array<float, 3> scenePoint(Vector3 const& v);

/// A point for each index that is drawn: those in the earth's centre, without opacity or without numbers are
/// left out. `pixels` is its radius.
std::vector<InstanceRow> satelliteRows(std::span<float const> positions, std::span<float const> colors,
                                       std::span<std::uint32_t const> indices, float pixels);

/// The way as strokes from each point to the next, fading with time.
std::vector<InstanceRow> orbitRows(std::span<OrbitPoint const> path, std::array<float, 3> const& color);

/// Weaker ones are too many to be seen singly.
inline constexpr double kLeastShownMagnitude = 2.5;

/// A ring on the ground for each earthquake of at least `kLeastShownMagnitude`; the older, the paler.
std::vector<InstanceRow> earthquakeRows(std::span<EarthquakeEvent const> events, Instant now);

/// A backdrop that is the same in every run; nobody's real sky.
std::vector<InstanceRow> starRows();

/// The sun, as far off as the stars.
std::vector<InstanceRow> sunRows(Vector3 const& direction);

/// The point above which an orbit's place stands, in equatorial radii.
Vector3 spacePoint(OrbitPoint const& point);

}  // namespace nimbara
