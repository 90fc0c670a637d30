// Outlines of warning regions: how they come from outside (GeoJSON) and how they are kept, with every border
// once for the two regions that it parts. Plain functions.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "regions/region_code.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

inline constexpr double kOutlineStepsPerDegree = 1e4;

/// Steps of a ten thousandth of a degree, eleven metres from south to north.
struct OutlinePoint {
  std::int32_t latitude = 0;
  std::int32_t longitude = 0;

  auto operator<=>(OutlinePoint const&) const = default;
};

OutlinePoint outlinePoint(Coordinate coordinate);

/// A ring, open: its last corner is not the first again.
using OutlineRing = std::vector<OutlinePoint>;

/// A line between two points where borders meet, or a ring that meets no other: then its last point is the
/// first again.
using OutlineArc = std::vector<OutlinePoint>;

/// A region as it is published. Inside is what an odd number of its rings encloses, so islands and holes need
/// no difference.
struct RegionOutline {
  RegionCode code;
  std::string country;  ///< ISO 3166-1
  std::string name;     ///< in the service's own spelling
  std::vector<OutlineRing> rings;
};

struct OutlineReading {
  std::vector<RegionOutline> outlines;
  /// Features that are no region: without code, or with a shape that cannot be read.
  std::size_t skipped = 0;
  std::string edition;  ///< the latest that a feature names; empty when none does
};

/// Reads a FeatureCollection of Polygons and MultiPolygons. Properties "code", "type" (registry), "country",
/// "name" and "edition" as MeteoAlarm's regions have them; also "NUTS_ID", "LEVL_CODE", "CNTR_CODE" and
/// "NUTS_NAME" as Eurostat has them. The error says why it is none.
Result<OutlineReading, std::string> readOutlines(std::string_view geoJson);

/// A region whose border is made of arcs of its set, in no order and of no direction: an odd number of
/// crossings is all that counts.
struct OutlinedRegion {
  RegionCode code;
  std::string country;
  std::string name;  ///< empty where it names no region among others
  bool isSea = false;
  std::vector<std::uint32_t> arcs;
};

/// Another registry's code of a region.
struct RegionAlias {
  RegionCode code;
  std::string region;  ///< EMMA_ID

  auto operator<=>(RegionAlias const&) const = default;
};

struct OutlineSet {
  std::string edition;
  std::vector<OutlineArc> arcs;
  std::vector<OutlinedRegion> regions;  ///< by registry and code
  std::vector<RegionAlias> aliases;     ///< likewise
};

/// About 50 metres, half a step of most of the published outlines.
inline constexpr std::int32_t kOutlineTolerance = 5;

/// Cuts the outlines into arcs, simplifies these and tells sea from land.
OutlineSet outlineSetOf(std::vector<RegionOutline> const& outlines,
                        std::int32_t tolerance = kOutlineTolerance);

/// The arc with as few points as keep all others within `tolerance` of it; its ends stay. Empty for a closed
/// one of which less than a triangle is left.
OutlineArc simplified(OutlineArc const& arc, std::int32_t tolerance = kOutlineTolerance);

/// The rings that a region's arcs make, put end to end in whichever direction fits. Arcs that make no ring
/// are left out.
std::vector<OutlineRing> ringsOf(std::vector<OutlineArc> const& arcs);

/// Adds what an older set has and this one lacks: all regions of a country of which this one has fewer than
/// half as many, since some editions leave countries out, and other registries' codes.
void complete(OutlineSet& set, OutlineSet const& older);

/// What of the outlined area lies on land, 0 to 1; lakes count as land.
double landShare(std::vector<OutlineRing> const& rings);

/// The set as lines of text, to be kept under version control, and back. The error says which line is wrong.
std::string outlineText(OutlineSet const& set);
Result<OutlineSet, std::string> readOutlineText(std::string_view text);

/// Lines of registry, code and EMMA_ID code, parted by tabs; other lines are left out.
std::vector<RegionAlias> readAliases(std::string_view table);

}  // namespace nimbara
