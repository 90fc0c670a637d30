// The layout of the file of warning regions, shared by who writes and who reads it: a header, then sections
// one after the other. Numbers are in the machine's order, which the header's mark tells.
#pragma once

#include "regions/region_outline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace nimbara::region_map {

inline constexpr std::array<char, 8> kMagic{'N', 'i', 'm', 'R', 'g', 'n', '2', '\n'};
inline constexpr std::uint32_t kByteOrder = 0x01020304;

struct Header {
  std::array<char, 8> magic = kMagic;
  std::uint32_t byteOrder = kByteOrder;
  std::uint32_t edition = 0;  ///< a place in the texts
  std::uint32_t regions = 0;
  std::uint32_t arcs = 0;
  std::uint32_t borders = 0;
  std::uint32_t cells = 0;
  std::uint32_t aliases = 0;
  std::uint32_t steps = 0;
  std::uint32_t nameBytes = 0;
  std::uint32_t textBytes = 0;
};

struct Box {
  OutlinePoint southWest;
  OutlinePoint northEast;
};

/// Sorted by registry and code.
struct RegionRecord {
  Box box;
  std::uint32_t firstBorder = 0;  ///< numbers of arcs (uint32)
  std::uint32_t borderCount = 0;
  std::uint32_t registry = 0;  ///< places in the texts, each of which ends with a zero
  std::uint32_t code = 0;
  std::uint32_t country = 0;
  std::uint32_t name = 0;
  std::uint32_t isSea = 0;
};

struct ArcRecord {
  Box box;
  OutlinePoint first;
  std::uint32_t firstStep = 0;
  std::uint32_t stepCount = 0;
};

/// From one point of an arc to the next.
struct Step {
  std::int16_t north = 0;
  std::int16_t east = 0;
};

/// That a region may be found from a cell. Sorted by cell, then region.
struct CellRecord {
  std::uint32_t cell = 0;
  std::uint32_t region = 0;

  auto operator<=>(CellRecord const&) const = default;
};

/// Another registry's code. Sorted by registry and code.
struct AliasRecord {
  std::uint32_t registry = 0;
  std::uint32_t code = 0;
  std::uint32_t region = 0;
};

inline constexpr std::uint32_t kColumns = 360;
/// For regions of too many cells; always looked at.
inline constexpr std::uint32_t kEverywhere = 180 * kColumns;

inline std::uint32_t row(double latitude) {
  return static_cast<std::uint32_t>(std::clamp(std::floor(latitude) + 90, 0.0, 179.0));
}
inline std::uint32_t column(double longitude) {
  return static_cast<std::uint32_t>(std::clamp(std::floor(longitude) + 180, 0.0, 359.0));
}
inline std::uint32_t cellOf(Coordinate place) {
  return row(place.latitude) * kColumns + column(place.longitude);
}

inline constexpr double kStepsPerKm = kOutlineStepsPerDegree * 180 / (std::numbers::pi * kEarthRadiusKm);

}  // namespace nimbara::region_map
