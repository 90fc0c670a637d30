// What lies on the globe's ground as strokes: tropical storms with the way that they came and are forecast to
// go, and the edges of where suppliers have radars. Both renderers draw the same strokes. Pure functions.
#pragma once

#include "app/state/globe_state.h"
#include "app/state/supplement_state.h"
#include "desktop/views/globe/globe_camera.h"
#include "desktop/views/globe/globe_instances.h"
#include "desktop/views/globe/globe_view.h"
#include "desktop/views/map/map_layers.h"
#include "feeds/imagery/radar/radar_suppliers.h"

#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace nimbara {

/// A short straight line just above the ground, in equatorial radii.
struct GlobeStroke {
  Vector3 from{}, to{};
  std::uint32_t rgba = 0;  ///< 0xRRGGBBAA

  bool operator==(GlobeStroke const&) const = default;
};

/// Edges of the boxes taken together; what lies within another box is none.
std::vector<GlobeStroke> extentStrokes(std::span<GeoBox const> boxes);
/// Of all suppliers that have radars in boxes; those of the whole world have no edge.
std::vector<GlobeStroke> radarExtent();

/// The way of each storm, whole where it came from, in dashes where it is forecast to go, its sign, and how
/// far gales reach now.
std::vector<GlobeStroke> stormStrokes(std::span<MapTrack const> tracks);

std::vector<InstanceRow> strokeRows(std::span<GlobeStroke const> strokes);
/// Both ends in the picture's pixels; nothing where either is behind the earth.
std::optional<std::pair<PicturePoint, PicturePoint>> seenStroke(GlobeStroke const& stroke,
                                                                GlobeSight const& sight);

/// The names of the storms that are shown; what is spoken says how strong each is and where.
std::vector<GlobeLabel> stormLabels(std::span<MapTrack const> tracks, GlobeCamera const& camera);

/// How many there are, or why that is not known. Without a state nobody has been asked yet.
LegendRow stormRow(GlobeState const& state, SupplementState const* supplement, ViewContext const& context);
/// Whose radars are outlined.
LegendRow radarRow(GlobeState const& state, ViewContext const& context);

}  // namespace nimbara
