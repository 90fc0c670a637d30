// Saved and found places as display values. Pure functions.
#pragma once

#include "app/places/place_search.h"
#include "app/state/hazards_state.h"
#include "app/state/places_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <vector>

namespace nimbara {

struct PlaceView {
  std::string id;
  std::string name;
  std::string area;
  bool isSelected = false;
  std::string temperature;  ///< as far as a forecast of the place is kept
  std::string range;
  std::string sky;
  bool isDay = true;
  std::string age;
  std::string localTime;      ///< "Sun 1:53 PM"
  std::string mark;           ///< the highest level of its official warnings; "unchecked", or empty
  std::string markText;       ///< the same in words: "Warning: Gale"
  std::string warnings;       ///< what is known of its official warnings; empty before anybody has asked
  std::string warningsState;  ///< "warnings", "none", "unchecked", "unplaced", "uncovered"
  std::string sentence;
  std::string notifications;  ///< the choice that holds, by its name

  bool operator==(PlaceView const&) const = default;
};

template <>
inline constexpr auto viewFields<PlaceView> = FieldList{
    viewField("placeId", &PlaceView::id),
    viewField("name", &PlaceView::name),
    viewField("area", &PlaceView::area),
    viewField("isSelected", &PlaceView::isSelected),
    viewField("temperature", &PlaceView::temperature),
    viewField("range", &PlaceView::range),
    viewField("sky", &PlaceView::sky),
    viewField("isDay", &PlaceView::isDay),
    viewField("age", &PlaceView::age),
    viewField("localTime", &PlaceView::localTime),
    viewField("mark", &PlaceView::mark),
    viewField("markText", &PlaceView::markText),
    viewField("warnings", &PlaceView::warnings),
    viewField("warningsState", &PlaceView::warningsState),
    viewField("sentence", &PlaceView::sentence),
    viewField("notifications", &PlaceView::notifications),
};

struct FoundView {
  std::string name;
  std::string area;
  bool isSaved = false;
  std::string sentence;
  std::string savedId = {};  ///< of the saved place that it is

  bool operator==(FoundView const&) const = default;
};

template <>
inline constexpr auto viewFields<FoundView> = FieldList{
    viewField("name", &FoundView::name),       viewField("area", &FoundView::area),
    viewField("isSaved", &FoundView::isSaved), viewField("sentence", &FoundView::sentence),
    viewField("savedId", &FoundView::savedId),
};

/// The current location: offered, being asked for, or why it is not known.
struct HereView {
  bool isOffered = false;  ///< it can be selected
  bool isSelected = false;
  bool isAsking = false;
  bool isTroubled = false;
  std::string note;  ///< what failed and what to do, or what asking means
  std::string name;
  std::string area;  ///< the coordinate and how old it is
  std::string temperature;
  std::string range;
  std::string sky;
  bool isDay = true;
  std::string sentence;

  bool operator==(HereView const&) const = default;
};

template <>
inline constexpr auto viewFields<HereView> =
    FieldList{viewField("isOffered", &HereView::isOffered), viewField("isSelected", &HereView::isSelected),
              viewField("isAsking", &HereView::isAsking),   viewField("isTroubled", &HereView::isTroubled),
              viewField("note", &HereView::note),           viewField("name", &HereView::name),
              viewField("area", &HereView::area),           viewField("temperature", &HereView::temperature),
              viewField("range", &HereView::range),         viewField("sky", &HereView::sky),
              viewField("isDay", &HereView::isDay),         viewField("sentence", &HereView::sentence)};

HereView hereView(PlaceList const& list, LocationState const& location, KeptForecasts const& kept,
                  ViewContext const& context);

/// What is said beside the answer of a search online.
std::string onlineNote(Result<std::vector<FoundPlace>, APIError> const& found, ViewContext const& context);

/// `everyPlace`: places of which nothing was chosen notify of danger though they are not selected.
std::vector<PlaceView> placeViews(PlaceList const& list, KeptForecasts const& kept, bool everyPlace,
                                  std::vector<PlaceCoverage> const& coverage, ViewContext const& context);
/// The saved place that a found one is: at the same spot, or a little beside it with the same name, as a
/// place from another catalogue is. Null where there is none.
SavedPlace const* savedAs(FoundPlace const& found, PlaceList const& list);
std::vector<FoundView> foundViews(std::vector<FoundPlace> const& found, PlaceList const& list);

}  // namespace nimbara
