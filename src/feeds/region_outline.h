// Outlines of warning regions: how they come from outside (GeoJSON) and how few corners are enough. Plain
// functions.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "feeds/region_code.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Steps of a hundred thousandth of a degree, about a metre.
struct OutlinePoint {
  std::int32_t latitude = 0;
  std::int32_t longitude = 0;

  bool operator==(OutlinePoint const&) const = default;
};

OutlinePoint outlinePoint(Coordinate coordinate);

/// A ring, open: its last corner is not the first again.
using OutlineRing = std::vector<OutlinePoint>;

/// A region. Inside is what an odd number of its rings encloses, so islands and holes need no difference.
struct RegionOutline {
  RegionCode code;
  std::string country;  ///< ISO 3166-1
  std::string name;
  std::vector<OutlineRing> rings;
};

struct OutlineReading {
  std::vector<RegionOutline> outlines;
  std::size_t skipped =
      0;  ///< features that are no region: without code, or with a shape that cannot be read
};

/// Reads a FeatureCollection of Polygons and MultiPolygons and simplifies it. Properties "code", "type"
/// (registry), "country" and "name" as MeteoAlarm has them; also "NUTS_ID", "LEVL_CODE", "CNTR_CODE" and
/// "NUTS_NAME" as Eurostat has them. The error says why it is none.
Result<OutlineReading, std::string> readOutlines(std::string_view geoJson);

/// About 200 metres.
inline constexpr std::int32_t kOutlineTolerance = 200;

/// The ring with as few corners as keep all others within `tolerance` of it; empty when less than a triangle
/// is left.
OutlineRing simplified(OutlineRing const& ring, std::int32_t tolerance = kOutlineTolerance);

}  // namespace nimbara
