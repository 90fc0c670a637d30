// What stands on the map beside land and sea: the user's places with their temperature, the areas of official
// warnings, earthquakes, storms, fires and lightning. Display values with their positions; pure functions.
#pragma once

#include "app/state/engine_snapshot.h"
#include "base/map_point.h"
#include "desktop/views/map/map_layers.h"
#include "desktop/views/map/map_stations.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"
#include "feeds/alerts/alert_outlines.h"

#include <string>
#include <vector>

namespace nimbara {

enum class MapThingKind { place, warning, quake, storm, mark, station };
template <>
inline constexpr auto enumNames<MapThingKind> =
    std::to_array<std::string_view>({"place", "warning", "quake", "storm", "mark", "station"});
static_assert(enumNamesComplete(MapThingKind::station));

struct MapPlace {
  std::string id;  ///< of a saved place; empty for one that is only shown
  std::string name;
  std::string temperature;  ///< as far as a forecast of it is kept
  std::string level;        ///< the highest of its official warnings; empty without any
  std::string note;
  Coordinate at;
  bool isSelected = false;
  bool operator==(MapPlace const&) const = default;
};

/// Where an official warning is in force.
struct MapArea {
  std::string warning;  ///< its identifier
  std::string place;    ///< of the saved place that it was found for; empty for the selected one
  std::string level;
  std::string title;
  std::string note;
  AlertOutlines outlines;
  bool operator==(MapArea const&) const = default;
};

struct MapQuake {
  Coordinate at;
  double magnitude = 0;
  int ageClass = 0;
  std::string title, note;
  bool operator==(MapQuake const&) const = default;
};

struct MapThings {
  std::vector<MapPlace> places;  ///< the selected one last, so that it lies on top
  std::vector<MapArea> areas;    ///< the least severe first
  std::size_t unplaced = 0;      ///< warnings of which no area is known
  std::vector<MapQuake> quakes;  ///< the greatest first
  std::vector<MapTrack> tracks;  ///< the strongest storm last
  std::vector<MapMark> marks;
  std::vector<MapStation> stations;  ///< the nearest first; for whoever wants them
  bool operator==(MapThings const&) const = default;
};

/// `outlines` of warning regions may be null.
MapThings mapThings(EngineSnapshot const& snapshot, RegionMap const* outlines, ViewContext const& context);

/// A thing in a list, or on the card.
struct MapThingView {
  bool isShown = true;
  std::string kind;   ///< of MapThingKind
  double number = 0;  ///< among those of its kind
  std::string title;
  std::string note;
  std::string level;  ///< of a warning or of a place's; else empty
  std::string sentence;
  bool operator==(MapThingView const&) const = default;
};

template <>
inline constexpr auto viewFields<MapThingView> = FieldList{
    viewField("isShown", &MapThingView::isShown),   viewField("kind", &MapThingView::kind),
    viewField("number", &MapThingView::number),     viewField("title", &MapThingView::title),
    viewField("note", &MapThingView::note),         viewField("level", &MapThingView::level),
    viewField("sentence", &MapThingView::sentence),
};

MapThingView viewOf(MapThings const& things, MapThingKind kind, std::size_t number);
/// Warnings, the most severe first, then storms, then places, the selected one first, then the nearest of the
/// stations.
std::vector<MapThingView> thingViews(MapThings const& things);

/// A layer and its switch.
struct MapLayerView {
  std::string name;
  std::string title;
  std::string note;
  bool isOn = true;
  bool operator==(MapLayerView const&) const = default;
};

template <>
inline constexpr auto viewFields<MapLayerView> = FieldList{
    viewField("name", &MapLayerView::name),
    viewField("title", &MapLayerView::title),
    viewField("note", &MapLayerView::note),
    viewField("isOn", &MapLayerView::isOn),
};

/// A length on the ground to read distances by.
struct MapScale {
  std::string text;  ///< "200 km"
  double width = 0;  ///< pixels
  bool operator==(MapScale const&) const = default;
};

template <>
inline constexpr auto viewFields<MapScale> =
    FieldList{viewField("caption", &MapScale::text), viewField("length", &MapScale::width)};

/// The longest of 1, 2, 5, 10, … of the user's unit that is no longer than `most` pixels; below one unit in
/// metres or feet.
MapScale mapScale(double metresPerPixel, double most, ViewContext const& context);

}  // namespace nimbara
