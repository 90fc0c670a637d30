// Earthquakes as display values: the list, the points of the map, the filters. Pure functions.
#pragma once

#include "app/state/hazards_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct QuakeView {
  std::string id;
  std::string magnitude;  ///< "5.2"
  std::string place;      ///< where, in the user's language and unit
  std::string note;       ///< distance and depth, and that it could be felt
  std::string age;
  double ageClass = 0;    ///< 0 of this hour, 1 of the last six, 2 older
  bool isStrong = false;  ///< enough to do damage
  bool isFelt = false;    ///< it could be felt at the place
  std::string sentence;

  bool operator==(QuakeView const&) const = default;
};

template <>
inline constexpr auto viewFields<QuakeView> = FieldList{
    viewField("quakeId", &QuakeView::id),        viewField("magnitude", &QuakeView::magnitude),
    viewField("place", &QuakeView::place),       viewField("note", &QuakeView::note),
    viewField("age", &QuakeView::age),           viewField("ageClass", &QuakeView::ageClass),
    viewField("isStrong", &QuakeView::isStrong), viewField("isFelt", &QuakeView::isFelt),
    viewField("sentence", &QuakeView::sentence),
};

/// What stands beside the list.
struct QuakesView {
  std::string headline;  ///< the greatest: "M 8.3, 12 km W of Iquique, Chile, 38 min ago"; empty without any
  std::string count;     ///< "12 earthquakes in the last 24 hours", or that there are none or none known
  std::string notice;    ///< why the list may be old or is missing; empty when all is well
  std::string source;
  bool hasPlace = false;

  bool operator==(QuakesView const&) const = default;
};

template <>
inline constexpr auto viewFields<QuakesView> = FieldList{
    viewField("headline", &QuakesView::headline), viewField("count", &QuakesView::count),
    viewField("notice", &QuakesView::notice),     viewField("source", &QuakesView::source),
    viewField("hasPlace", &QuakesView::hasPlace),
};

/// A value of a filter.
struct ChoiceView {
  double value = 0;
  std::string text;
  bool isChosen = false;

  bool operator==(ChoiceView const&) const = default;
};

template <>
inline constexpr auto viewFields<ChoiceView> = FieldList{
    viewField("value", &ChoiceView::value),
    viewField("caption", &ChoiceView::text),
    viewField("isChosen", &ChoiceView::isChosen),
};

/// An earthquake on the map, in the list's order.
struct QuakePoint {
  Coordinate place;
  double magnitude = 0;
  int ageClass = 0;

  bool operator==(QuakePoint const&) const = default;
};

struct QuakeMap {
  std::vector<QuakePoint> points;
  std::optional<Coordinate> place;
  double radiusKm = 0;

  bool operator==(QuakeMap const&) const = default;
};

/// By significance: what could be felt at the place first, then by magnitude; else the newest first.
enum class QuakeOrder { significance, time };

/// Whether somebody at that distance may have felt it, by the usual decay of intensity with the way from the
/// focus.
bool couldBeFelt(double magnitude, double km, double depthKm);

/// Those of the last 24 hours that the filter lets through, in that order; the first 500 where there are
/// more. One of the usual radii is the user's unit's.
std::vector<EarthquakeEvent> shownQuakes(HazardsState const& state, std::optional<Place> const& place,
                                         QuakeOrder order, ViewContext const& context);

std::vector<QuakeView> quakeViews(std::vector<EarthquakeEvent> const& shown,
                                  std::optional<Place> const& place, ViewContext const& context);
QuakesView quakesView(HazardsState const& state, std::vector<EarthquakeEvent> const& shown,
                      std::optional<Place> const& place, ViewContext const& context);
QuakeMap quakeMap(std::vector<EarthquakeEvent> const& shown, HazardsState const& state,
                  std::optional<Place> const& place, ViewContext const& context);

/// The usual values and the chosen one.
std::vector<ChoiceView> radiusChoices(QuakeFilter const& filter, ViewContext const& context);
std::vector<ChoiceView> magnitudeChoices(QuakeFilter const& filter, ViewContext const& context);
std::vector<ChoiceView> orderChoices(QuakeOrder chosen, ViewContext const& context);

}  // namespace nimbara
