// The layout of the file of warning regions, shared by who writes and who reads it: a header, then sections
// one after the other. Numbers are in the machine's order, which the header's mark tells.
#pragma once

#include "feeds/region_outline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace nimbara::region_map {

inline constexpr std::array<char, 8> kMagic{'N', 'i', 'm', 'R', 'g', 'n', '1', '\n'};
inline constexpr std::uint32_t kByteOrder = 0x01020304;

struct Header {
  std::array<char, 8> magic = kMagic;
  std::uint32_t byteOrder = kByteOrder;
  std::uint32_t regions = 0;
  std::uint32_t rings = 0;
  std::uint32_t points = 0;
  std::uint32_t cells = 0;
  std::uint32_t textBytes = 0;
};

struct Box {
  OutlinePoint southWest;
  OutlinePoint northEast;
};

struct RegionRecord {
  Box box;
  std::uint32_t firstRing = 0;
  std::uint32_t ringCount = 0;
  std::uint32_t registry = 0;  ///< places in the texts, each of which ends with a zero
  std::uint32_t code = 0;
  std::uint32_t country = 0;
  std::uint32_t name = 0;
};

struct RingRecord {
  std::uint32_t firstPoint = 0;
  std::uint32_t pointCount = 0;
};

/// That a region may be found from a cell. Sorted by cell, then region.
struct CellRecord {
  std::uint32_t cell = 0;
  std::uint32_t region = 0;

  auto operator<=>(CellRecord const&) const = default;
};

inline constexpr std::int32_t kStepsPerDegree = 100'000;
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

}  // namespace nimbara::region_map
