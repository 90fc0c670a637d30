// The globe's legend, card, labels and list of names as display values. Pure functions.
#pragma once

#include "app/places/place.h"
#include "app/state/globe_state.h"
#include "desktop/views/globe/globe_camera.h"
#include "desktop/views/globe/globe_instances.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// What is switched together: groups of one text, or the earthquakes.
struct LegendRow {
  std::string name;
  std::string title;
  std::string count;   ///< "–" where it is not known
  std::string colour;  ///< "#ffd64d"
  bool isOn = true;
  std::string note;  ///< why it is old or missing
  std::string sentence;

  bool operator==(LegendRow const&) const = default;
};

template <>
inline constexpr auto viewFields<LegendRow> = FieldList{
    viewField("name", &LegendRow::name),         viewField("title", &LegendRow::title),
    viewField("count", &LegendRow::count),       viewField("colour", &LegendRow::colour),
    viewField("isOn", &LegendRow::isOn),         viewField("note", &LegendRow::note),
    viewField("sentence", &LegendRow::sentence),
};

std::vector<LegendRow> legendRows(GlobeState const& state, ViewContext const& context);
/// The clouds'; `note` says how old they are or why there are none.
LegendRow cloudRow(GlobeState const& state, std::string note, ViewContext const& context);

struct SatelliteCard {
  bool isShown = false;
  std::string title;
  std::string subtitle;
  std::string colour;
  std::string sentence;  ///< the whole card for those who listen

  bool operator==(SatelliteCard const&) const = default;
};

template <>
inline constexpr auto viewFields<SatelliteCard> = FieldList{
    viewField("isShown", &SatelliteCard::isShown),   viewField("title", &SatelliteCard::title),
    viewField("subtitle", &SatelliteCard::subtitle), viewField("colour", &SatelliteCard::colour),
    viewField("sentence", &SatelliteCard::sentence),
};

struct CardRow {
  std::string label;
  std::string value;

  bool operator==(CardRow const&) const = default;
};

template <>
inline constexpr auto viewFields<CardRow> =
    FieldList{viewField("label", &CardRow::label), viewField("value", &CardRow::value)};

SatelliteCard satelliteCard(GlobeState const& state, ViewContext const& context);
std::vector<CardRow> satelliteCardRows(GlobeState const& state, ViewContext const& context);

/// A name beside its point in the picture.
struct GlobeLabel {
  std::string text;
  bool isPlace = false;  ///< the selected place
  bool isStorm = false;  ///< whose sign is drawn on the ground; else a satellite
  double x = 0, y = 0;
  bool isShown = false;  ///< not beyond the earth, not outside the picture
  std::string spoken;    ///< for those who listen

  bool operator==(GlobeLabel const&) const = default;
};

template <>
inline constexpr auto viewFields<GlobeLabel> = FieldList{
    viewField("text", &GlobeLabel::text),       viewField("isPlace", &GlobeLabel::isPlace),
    viewField("isStorm", &GlobeLabel::isStorm), viewField("at_x", &GlobeLabel::x),
    viewField("at_y", &GlobeLabel::y),          viewField("isShown", &GlobeLabel::isShown),
    viewField("spoken", &GlobeLabel::spoken),
};

GlobeLabel globeLabel(std::string text, Vector3 const& point, GlobeCamera const& camera);
/// The selected place, the named satellites, the chosen one.
std::vector<GlobeLabel> globeLabels(GlobeState const& state, std::optional<Place> const& place,
                                    GlobeCamera const& camera);

struct SatelliteMatch {
  std::string name;
  std::string group;
  std::string colour;
  double entry = 0;

  bool operator==(SatelliteMatch const&) const = default;
};

template <>
inline constexpr auto viewFields<SatelliteMatch> = FieldList{
    viewField("name", &SatelliteMatch::name),
    viewField("group", &SatelliteMatch::group),
    viewField("colour", &SatelliteMatch::colour),
    viewField("entry", &SatelliteMatch::entry),
};

/// At most `most` satellites whose names have the text in them: names that are the text before those that
/// begin with it, those before the others. Without a text those with labels, then the catalogue's first.
std::vector<SatelliteMatch> satelliteMatches(GlobeState const& state, std::string_view text, std::size_t most,
                                             ViewContext const& context);

/// What there is to say about all satellites together; empty when they are there.
std::string globeStatus(GlobeState const& state, ViewContext const& context);

/// The satellite among those shown that a place in the picture points at.
std::optional<std::uint32_t> satelliteAt(GlobeState const& state, GlobeCamera const& camera, PicturePoint at);

/// The entry's place in equatorial radii; nothing while it is not drawn.
std::optional<Vector3> satellitePosition(GlobeState const& state, std::uint32_t entry);

}  // namespace nimbara
