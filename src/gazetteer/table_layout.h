// The gazetteer's file, as tools/pack_gazetteer writes it and this folder reads it in place: a directory of
// sections, then the sections. All records have a fixed width and little-endian numbers; coordinates count
// hundred-thousandths of a degree.
#pragma once

#include "base/geodesy.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>

namespace nimbara::gazetteer {

static_assert(std::endian::native == std::endian::little, "the tables are read in place");

enum class Section : std::uint8_t {
  texts,          // display texts: a length byte, then UTF-8
  cities,         // CityRecord, the most populous first
  cityKeys,       // folded names, city after city: see city_search.cpp
  cityTree,       // city numbers (uint16) as a balanced tree: see sphere_tree.h
  landmarks,      // LandmarkRecord as a balanced tree
  districtMarks,  // LandmarkRecord likewise, whose "region" is a district
  countries,      // CountryRecord, by code
  countryZones,   // zone numbers (uint16), country after country
  countryKeys,    // folded names of countries, "\n" around each
  regions,        // RegionRecord
  regionKeys,     // folded names and codes of regions, "\n" around each
  districts,      // text offsets (uint32)
  zones,          // text offsets (uint32); number 0 is the open sea
  zoneRows,       // row number -> first run (uint32), one more than there are rows
  zoneRuns,       // ZoneRun, from west to east
  outlines,       // OutlineRecord
  rings,          // RingRecord
  points,         // PointRecord
  coasts,         // RingRecord, of coarse points
  borders,        // RingRecord, of coarse points
  disputed,       // likewise: borders of what ISO 3166 has no code for
  lakes,          // likewise, closed
  rivers,         // likewise
  coarsePoints,   // CoarsePoint
  capitals,       // city numbers (uint16), ascending
  accents,        // own names of namesakes with accents: see city_search.cpp
  count
};

inline constexpr auto kSections = static_cast<std::size_t>(Section::count);
inline constexpr std::uint32_t kMagic = 0x345A474E;  // "NGZ4"

struct SectionEntry {
  std::uint32_t offset;
  std::uint32_t size;
};

struct Directory {
  std::uint32_t magic;
  std::array<SectionEntry, kSections> sections;
};

inline constexpr std::uint16_t kNone = 0xFFFF;

struct PointRecord {
  std::int32_t latitude;
  std::int32_t longitude;
};

struct CityRecord {
  PointRecord at;
  std::uint32_t name;
  std::uint32_t keys;
  std::int32_t population;
  std::uint16_t country;
  std::uint16_t region;
  std::uint16_t district;
  std::uint16_t zone;
};

/// A town, named or not, that tells which region its surroundings belong to.
struct LandmarkRecord {
  PointRecord at;
  std::uint16_t country;
  std::uint16_t region;
};

struct CountryRecord {
  std::array<char, 2> code;
  std::uint16_t zoneCount;
  std::uint32_t firstZone;
  std::uint32_t keys;
};

struct RegionRecord {
  std::uint32_t name;
  std::uint32_t keys;
};

/// Cells of one zone: 15 bits for the first column, 9 for the zone.
struct ZoneRun {
  std::array<std::uint8_t, 3> bits;
};

/// A country or a part of one; the rings count by the even-odd rule.
struct OutlineRecord {
  PointRecord southWest;
  PointRecord northEast;
  std::uint32_t firstRing;
  std::uint16_t ringCount;
  std::uint16_t country;
};

struct RingRecord {
  std::uint32_t firstPoint;
  std::uint32_t pointCount;
};

/// A point of a line to be drawn, in 1/180 degrees (600 m from north to south).
struct CoarsePoint {
  std::int16_t latitude;
  std::int16_t longitude;

  bool operator==(CoarsePoint const&) const = default;
};

inline constexpr double kCoarsePerDegree = 180;

/// The zone map's cells: squares of 1/48 degree, 2.3 km from north to south.
inline constexpr int kCellsPerDegree = 48;
inline constexpr int kZoneRows = 180 * kCellsPerDegree;
inline constexpr int kZoneColumns = 360 * kCellsPerDegree;

inline constexpr std::uint32_t kZones = 1U << 9;

inline ZoneRun zoneRun(std::uint32_t firstColumn, std::uint32_t zone) {
  std::uint32_t const bits = firstColumn * kZones + zone;
  return {{static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8),
           static_cast<std::uint8_t>(bits >> 16)}};
}

inline std::uint32_t bitsOf(ZoneRun run) {
  return static_cast<std::uint32_t>(run.bits[0] | run.bits[1] << 8 | run.bits[2] << 16);
}

inline std::uint32_t firstColumnOf(ZoneRun run) {
  return bitsOf(run) / kZones;
}

inline std::uint32_t zoneOf(ZoneRun run) {
  return bitsOf(run) % kZones;
}

inline constexpr double kPointsPerDegree = 1e5;

inline PointRecord pointRecord(Coordinate coordinate) {
  return {static_cast<std::int32_t>(std::lround(coordinate.latitude * kPointsPerDegree)),
          static_cast<std::int32_t>(std::lround(coordinate.longitude * kPointsPerDegree))};
}

inline Coordinate coordinateOf(PointRecord point) {
  return {point.latitude / kPointsPerDegree, point.longitude / kPointsPerDegree};
}

/// A point of the unit sphere, where neither poles nor the 180th meridian are special.
using SpherePoint = std::array<double, 3>;

inline SpherePoint spherePoint(PointRecord point) {
  constexpr double kRadians = std::numbers::pi / 180 / kPointsPerDegree;
  double const cosLatitude = std::cos(point.latitude * kRadians);
  return {cosLatitude * std::cos(point.longitude * kRadians),
          cosLatitude * std::sin(point.longitude * kRadians), std::sin(point.latitude * kRadians)};
}

}  // namespace nimbara::gazetteer
