// What the map's layers of hazards show beside warnings and earthquakes: tropical storms with the way that
// they came and are forecast to go, fires and lightning. Display values with their positions; pure functions.
#pragma once

#include "app/state/supplement_state.h"
#include "desktop/views/view_context.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The map's layers, the lowest first; their names are those of the switches.
enum class MapLayerKind {
  streets,
  clouds,
  temperature,
  precipitation,
  pressure,
  wind,
  radar,
  warnings,
  quakes,
  fires,
  lightning,
  storms,
  stations,
  places,
  towns
};
template <>
inline constexpr auto enumNames<MapLayerKind> = std::to_array<std::string_view>(
    {"streets", "clouds", "temperature", "precipitation", "pressure", "wind", "radar", "warnings", "quakes",
     "fires", "lightning", "storms", "stations", "places", "towns"});
static_assert(enumNamesComplete(MapLayerKind::towns));

/// A storm and its way in the order of time.
struct MapTrack {
  std::vector<Coordinate> points;
  std::vector<double> galesKm;    ///< for each point how far from it gales reach; 0 where that is not known
  std::size_t firstForecast = 1;  ///< the storm is at the point before
  int category = 0;               ///< as `StormCategory`
  std::string label;              ///< its name
  std::string title, note;

  Coordinate at() const { return points[firstForecast - 1]; }
  bool operator==(MapTrack const&) const = default;
};

/// By a storm's category, from a depression on: each darker and redder than the one before. 0xRRGGBB.
std::uint32_t stormColour(int category);

/// The storms whose position is on the globe, the strongest last.
std::vector<MapTrack> mapTracks(SupplementState const& state, ViewContext const& context);

enum class MapMarkKind { fire, lightning };
template <>
inline constexpr auto enumNames<MapMarkKind> = std::to_array<std::string_view>({"fire", "lightning"});
static_assert(enumNamesComplete(MapMarkKind::lightning));

/// The layer that has marks of a kind.
constexpr std::string_view layerOf(MapMarkKind kind) {
  return enumName(kind == MapMarkKind::fire ? MapLayerKind::fires : MapLayerKind::lightning);
}

struct MapMark {
  Coordinate at;
  MapMarkKind kind = MapMarkKind::fire;
  double strength = 0;  ///< from 0 to 1: how strong a fire, how new a strike is
  std::string title, note;

  bool operator==(MapMark const&) const = default;
};

/// Fires, the weakest first, then strikes, the oldest first.
std::vector<MapMark> mapMarks(SupplementState const& state, ViewContext const& context);

/// How many there are of a layer and when that was checked, or why that is not known; empty for other layers
/// and before anybody was asked.
std::string layerNote(MapLayerKind layer, SupplementState const& state, ViewContext const& context);

}  // namespace nimbara
