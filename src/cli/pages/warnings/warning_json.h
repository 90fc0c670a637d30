// Warnings as scripts read them, with or without the areas for which they hold. Pure.
#pragma once

#include "base/enum_names.h"
#include "base/json/json.h"
#include "model/warnings/weather_alert.h"

#include <vector>

namespace nimbara {

class RegionMap;

enum class WarningGeometry { left, asGeoJson };

/// Where the area of a warning is from, or why there is none.
enum class GeometryState {
  drawn,    ///< by the issuer
  regions,  ///< outlines of the regions that it names by their codes
  codes,    ///< it names codes, and nobody has outlines of them here
  names,    ///< it names its areas in words, if at all
  place,    ///< from the forecast of the place, which is no area
};

template <>
inline constexpr auto enumNames<GeometryState> =
    std::to_array<std::string_view>({"drawn", "regions", "codes", "names", "place"});
static_assert(enumNamesComplete(GeometryState::place));

/// A list of the records, official ones with who passes them on: "direct", "wmo" or "fpas". The shapes as the
/// store keeps them are left out; with `asGeoJson` each warning has a "geometry": a MultiPolygon, with
/// circles a GeometryCollection in which they are points with "radiusKm", longitude first; null where there
/// is none, and a "geometryState", which says why. `outlines` may be null.
void writeWarnings(JsonWriter& json, std::vector<WeatherAlert> const& warnings,
                   WarningGeometry geometry = WarningGeometry::left, RegionMap const* outlines = nullptr);

}  // namespace nimbara
