#include "desktop/views/hazards/quakes_view.h"

#include "app/words/hazards/quake_place.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/grouped_text.h"
#include "base/words/list_text.h"
#include "desktop/views/problem_text.h"
#include "feeds/quakes/felt_intensity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr std::size_t kMost = 500;
constexpr double kStrong = 5;
constexpr double kKmPerMile = 1.609344;
/// In km; 0 is the whole world.
constexpr std::array kRadii{250.0, 500.0, 1000.0, 2500.0, 0.0};
constexpr std::array kMileRadii{150 * kKmPerMile, 300 * kKmPerMile, 600 * kKmPerMile, 1500 * kKmPerMile, 0.0};
constexpr std::array kMagnitudes{-10.0, 2.5, 4.5, 6.0};

double decimal(double magnitude) {
  return roundHalfAway(magnitude * 10) / 10;
}

std::string magnitudeText(double magnitude, ViewContext const& context) {
  std::string text = fixedDecimal(decimal(magnitude), 1);
  if (auto const point = text.find('.'); point != std::string::npos) {
    text.replace(point, 1, context.texts.decimalPoint());
  }
  return text;
}

std::string distanceText(double km, ViewContext const& context) {
  return measured(groupedText(display(std::max(0.0, km), context.units.distance), context.texts),
                  symbol(context.units.distance));
}

/// Two digits of it are as much as the rule knows.
std::string feltText(EarthquakeEvent const& event, ViewContext const& context) {
  double const km = feltDistanceKm(event.magnitude, event.depthKm);
  if (!(km >= 1)) return {};
  double const shown = convert(km, context.units.distance);
  double const step = std::pow(10, std::floor(std::log10(shown)) - 1);
  double const round = roundHalfAway(shown / step) * step;
  return context.texts.format(
      "desktop.quakes.feltWithin",
      measured(groupedText(roundedText(round), context.texts), symbol(context.units.distance)));
}

int ageClassOf(Instant time, Instant now) {
  auto const age = now - time;
  return age < hours(1) ? 0 : age < hours(6) ? 1 : 2;
}

using Radii = decltype(kRadii);

Radii const& radiiOf(DistanceUnit unit) {
  return unit == DistanceUnit::miles ? kMileRadii : kRadii;
}

/// A usual radius that was chosen in another unit is the one of this unit in its stead.
double radiusIn(DistanceUnit unit, double km) {
  for (Radii const* const radii : {&kRadii, &kMileRadii}) {
    auto const found =
        std::ranges::find_if(*radii, [km](double usual) { return std::abs(usual - km) < 1e-3; });
    if (found != radii->end()) return radiiOf(unit)[static_cast<std::size_t>(found - radii->begin())];
  }
  return km;
}

QuakeFilter inUnits(QuakeFilter filter, ViewContext const& context) {
  filter.radiusKm = radiusIn(context.units.distance, filter.radiusKm);
  return filter;
}

/// What the list is sorted by, the greatest first.
std::tuple<bool, double, Instant> significance(EarthquakeEvent const& event,
                                               std::optional<Place> const& place) {
  bool const isFelt = place && couldBeFelt(event.magnitude,
                                           haversineKm(place->coordinate, event.coordinate()), event.depthKm);
  return {isFelt, event.magnitude, event.time};
}

bool passes(EarthquakeEvent const& event, QuakeFilter const& filter, std::optional<Place> const& place) {
  if (decimal(event.magnitude) < filter.minMagnitude) return false;
  if (!place || !(filter.radiusKm > 0)) return true;
  return haversineKm(place->coordinate, event.coordinate()) <= filter.radiusKm;
}

QuakeView viewOf(EarthquakeEvent const& event, std::optional<Place> const& place,
                 ViewContext const& context) {
  QuakeView view;
  view.id = event.id;
  view.magnitude = magnitudeText(event.magnitude, context);
  view.place = quakePlace(event, context.units.distance, context.texts);
  view.age = ageText(event.time, context.now, context.texts);
  view.ageClass = ageClassOf(event.time, context.now);
  view.isStrong = event.magnitude >= kStrong;
  if (place) {
    double const km = haversineKm(place->coordinate, event.coordinate());
    view.note = context.texts.format("desktop.quakes.away", distanceText(km, context));
    view.isFelt = couldBeFelt(event.magnitude, km, event.depthKm);
  }
  appendClause(view.note, context.texts.format("desktop.quakes.deep", distanceText(event.depthKm, context)),
               context.texts);
  if (event.emscMagnitude) {
    std::string const theirs = magnitudeText(*event.emscMagnitude, context);
    appendClause(view.note, event.isOnlyByEmsc ? "EMSC" : context.texts.format("quakes.emsc", theirs),
                 context.texts);
  }
  if (std::string const reach = feltText(event, context); !reach.empty())
    appendClause(view.note, reach, context.texts);
  if (view.isFelt) appendClause(view.note, context.text("desktop.quakes.felt"), context.texts);
  view.sentence = context.texts.format("desktop.quakes.magnitude", view.magnitude);
  for (std::string const* const part : {&view.place, &view.note, &view.age})
    appendClause(view.sentence, *part, context.texts);
  return view;
}

std::string headlineOf(std::vector<EarthquakeEvent> const& shown, ViewContext const& context) {
  auto const greatest = std::ranges::max_element(
      shown, {}, [](EarthquakeEvent const& event) { return std::pair(event.magnitude, event.time); });
  if (greatest == shown.end()) return {};
  return context.texts.format("desktop.quakes.greatest", magnitudeText(greatest->magnitude, context),
                              quakePlace(*greatest, context.units.distance, context.texts),
                              ageText(greatest->time, context.now, context.texts));
}

std::string countText(std::size_t count, ViewContext const& context) {
  if (count == 0) return context.text("desktop.quakes.none");
  return context.texts.format(count < kMost ? "desktop.quakes.count" : "desktop.quakes.newest", count);
}

std::string noticeOf(FeedReading<std::vector<EarthquakeEvent>> const& quakes, ViewContext const& context) {
  if (!quakes.failure) return {};
  std::string const because = " " + becauseText(*quakes.failure, context);
  if (!quakes.checkedAt) {
    return context.text(quakes.data.empty() ? "desktop.quakes.neverChecked" : "desktop.quakes.unchecked") +
           because;
  }
  TimeWords const words(context.texts, context.fallback);
  return context.texts.format("desktop.quakes.uncheckedSince", words.moment(*quakes.checkedAt, context.now)) +
         because;
}

std::string sourceOf(std::optional<Instant> checkedAt, ViewContext const& context) {
  std::string source = context.standIn.empty() ? context.text("desktop.quakes.source")
                                               : context.texts.format("report.standIn", context.standIn);
  if (!checkedAt) return source;
  return source + "  ·  " +
         context.texts.format("desktop.checked", ageText(*checkedAt, context.now, context.texts));
}

template <std::size_t count, class Text>
std::vector<ChoiceView> choices(std::array<double, count> const& values, double chosen, Text const& text) {
  std::vector<ChoiceView> views;
  views.reserve(count + 1);
  for (double const value : values) views.push_back({value, text(value), value == chosen});
  if (std::ranges::find(values, chosen) == values.end()) views.push_back({chosen, text(chosen), true});
  return views;
}

}  // namespace

bool couldBeFelt(double magnitude, double km, double depthKm) {
  return feltIntensity(magnitude, km, depthKm) >= kFeltIntensity;
}

std::vector<EarthquakeEvent> shownQuakes(HazardsState const& state, std::optional<Place> const& place,
                                         QuakeOrder order, ViewContext const& context) {
  QuakeFilter const filter = inUnits(state.filter, context);
  std::vector<EarthquakeEvent> shown;
  for (EarthquakeEvent const& event : state.quakes.data) {
    bool const isRecent = context.now - event.time <= hours(24);
    if (isRecent && passes(event, filter, place)) shown.push_back(event);
  }
  if (order == QuakeOrder::significance) {
    std::ranges::stable_sort(shown, std::ranges::greater{},
                             [&](EarthquakeEvent const& event) { return significance(event, place); });
  }
  if (shown.size() > kMost) shown.resize(kMost);
  return shown;
}

std::vector<QuakeView> quakeViews(std::vector<EarthquakeEvent> const& shown,
                                  std::optional<Place> const& place, ViewContext const& context) {
  std::vector<QuakeView> views;
  views.reserve(shown.size());
  for (EarthquakeEvent const& event : shown) views.push_back(viewOf(event, place, context));
  return views;
}

QuakesView quakesView(HazardsState const& state, std::vector<EarthquakeEvent> const& shown,
                      std::optional<Place> const& place, ViewContext const& context) {
  QuakesView view;
  view.hasPlace = place.has_value();
  view.notice = noticeOf(state.quakes, context);
  view.source = sourceOf(state.quakes.checkedAt, context);
  view.headline = headlineOf(shown, context);
  bool const isKnown = state.quakes.checkedAt || !state.quakes.data.empty();
  if (isKnown) {
    view.count = countText(shown.size(), context);
  } else if (view.notice.empty()) {
    view.count = context.text("desktop.quakes.asking");
  }
  return view;
}

QuakeMap quakeMap(std::vector<EarthquakeEvent> const& shown, HazardsState const& state,
                  std::optional<Place> const& place, ViewContext const& context) {
  QuakeMap map;
  map.points.reserve(shown.size());
  for (EarthquakeEvent const& event : shown) {
    map.points.push_back({event.coordinate(), event.magnitude, ageClassOf(event.time, context.now)});
  }
  if (place) map.place = place->coordinate;
  map.radiusKm = place ? inUnits(state.filter, context).radiusKm : 0;
  return map;
}

std::vector<ChoiceView> radiusChoices(QuakeFilter const& filter, ViewContext const& context) {
  return choices(radiiOf(context.units.distance), inUnits(filter, context).radiusKm, [&](double km) {
    return km > 0 ? distanceText(km, context) : context.text("desktop.quakes.world");
  });
}

std::vector<ChoiceView> magnitudeChoices(QuakeFilter const& filter, ViewContext const& context) {
  return choices(kMagnitudes, filter.minMagnitude, [&](double least) {
    return least == kMagnitudes.front()
               ? context.text("desktop.quakes.all")
               : context.texts.format("desktop.quakes.from", magnitudeText(least, context));
  });
}

std::vector<ChoiceView> orderChoices(QuakeOrder chosen, ViewContext const& context) {
  std::vector<ChoiceView> views;
  for (auto const& [order, key] : {std::pair(QuakeOrder::significance, "desktop.quakes.bySignificance"),
                                   {QuakeOrder::time, "desktop.quakes.byTime"}}) {
    views.push_back({static_cast<double>(order), context.text(key), order == chosen});
  }
  return views;
}

}  // namespace nimbara
