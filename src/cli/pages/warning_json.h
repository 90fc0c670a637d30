// Warnings as scripts read them, with or without the areas for which they hold. Pure.
#pragma once

#include "base/json/json.h"
#include "model/weather_alert.h"

#include <vector>

namespace nimbara {

enum class WarningGeometry { left, asGeoJson };

/// A list of the records, official ones with who passes them on: "direct", "wmo" or "fpas". The shapes as the
/// store keeps them are left out; with `asGeoJson` each warning has a "geometry": a MultiPolygon, with
/// circles a GeometryCollection in which they are points with "radiusKm", longitude first; null where nothing
/// is drawn.
void writeWarnings(JsonWriter& json, std::vector<WeatherAlert> const& warnings,
                   WarningGeometry geometry = WarningGeometry::left);

}  // namespace nimbara
