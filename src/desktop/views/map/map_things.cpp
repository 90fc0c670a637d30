#include "desktop/views/map/map_things.h"

#include "base/text/text.h"
#include "desktop/views/hazards/quakes_view.h"
#include "desktop/views/places/places_view.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/alerts/warning_words.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace nimbara {

namespace {

std::string joined(std::string const& first, std::string const& second) {
  if (first.empty() || second.empty()) return first + second;
  return first + ", " + second;
}

std::vector<MapPlace> placesOf(EngineSnapshot const& snapshot, ViewContext const& context) {
  std::vector<MapPlace> places;
  auto const views = placeViews(snapshot.places, snapshot.kept, false, snapshot.hazards->places, context);
  bool isSelectedSaved = false;
  for (std::size_t i = 0; i < views.size(); ++i) {
    PlaceView const& view = views[i];
    std::string const level = view.mark == "unchecked" ? std::string() : view.mark;
    std::string const mark = level.empty() ? std::string() : view.markText;
    Coordinate const at = snapshot.places.places[i].coordinate;
    // A place may be shown that is not the one selected among those saved.
    bool const isSelected = snapshot.place && snapshot.place->coordinate == at;
    places.push_back({view.id, view.name, view.temperature, level, joined(view.range, mark), at, isSelected});
    isSelectedSaved = isSelectedSaved || isSelected;
  }
  if (snapshot.place && !isSelectedSaved) {
    std::string const& name = snapshot.place->name;
    places.push_back({{},
                      name.empty() ? formatCoordinate(snapshot.place->coordinate) : name,
                      {},
                      {},
                      {},
                      snapshot.place->coordinate,
                      true});
  }
  std::ranges::stable_sort(places, {}, &MapPlace::isSelected);
  return places;
}

/// Takes each warning once, whichever places it was found for.
class AreaList {
 public:
  AreaList(RegionMap const* outlines, ViewContext const& context) : outlines_(outlines), context_(context) {}

  void add(std::vector<WeatherAlert> const& alerts, std::string const& place) {
    for (WeatherAlert const& alert : alerts) {
      std::string const event = alert.event.value_or(alert.id.text());
      if (hasEnded(alert, context_.now) || !seen_.insert(event).second) continue;
      AlertOutlines area = alertOutlines(alert, outlines_);
      if (area.rings.empty()) {
        ++unplaced_;
        continue;
      }
      rows_.push_back(
          {alert.severity,
           {alert.id.text(), place, std::string(enumName(alert.severity)), oneLine(alert.title, 100),
            gradeText(gradeOf(alert), context_.texts), std::move(area)}});
    }
  }

  void moveTo(MapThings& things) {
    std::ranges::stable_sort(rows_, {}, &Row::severity);
    for (Row& row : rows_) things.areas.push_back(std::move(row.area));
    things.unplaced = unplaced_;
  }

 private:
  struct Row {
    AlertSeverity severity;
    MapArea area;
  };

  RegionMap const* outlines_;
  ViewContext const& context_;
  std::set<std::string> seen_;
  std::vector<Row> rows_;
  std::size_t unplaced_ = 0;
};

std::vector<MapQuake> quakesOf(EngineSnapshot const& snapshot, ViewContext const& context) {
  HazardsState state = *snapshot.hazards;
  state.filter.radiusKm = 0;
  auto const events = shownQuakes(state, snapshot.place, QuakeOrder::significance, context);
  auto const views = quakeViews(events, snapshot.place, context);
  std::vector<MapQuake> quakes;
  for (std::size_t i = 0; i < events.size(); ++i) {
    if (!isValid(events[i].coordinate())) continue;
    quakes.push_back({events[i].coordinate(), events[i].magnitude, static_cast<int>(views[i].ageClass),
                      "M " + views[i].magnitude + ", " + views[i].place,
                      joined(views[i].age, views[i].note)});
  }
  std::ranges::stable_sort(quakes, std::ranges::greater{}, &MapQuake::magnitude);
  return quakes;
}

}  // namespace

MapThings mapThings(EngineSnapshot const& snapshot, RegionMap const* outlines, ViewContext const& context) {
  MapThings things;
  things.places = placesOf(snapshot, context);
  AreaList areas(outlines, context);
  areas.add(snapshot.weather->govAlerts, {});
  for (PlaceCoverage const& known : snapshot.hazards->places) {
    auto const saved = std::ranges::find(snapshot.places.places, known.coordinate, &SavedPlace::coordinate);
    bool const isSelected = snapshot.place && snapshot.place->coordinate == known.coordinate;
    if (saved == snapshot.places.places.end() || isSelected) continue;
    areas.add(known.alerts, saved->id.text());
  }
  areas.moveTo(things);
  things.quakes = quakesOf(snapshot, context);
  if (SupplementState const* const supplement = snapshot.weather->supplement.get(); supplement != nullptr) {
    things.tracks = mapTracks(*supplement, context);
    things.marks = mapMarks(*supplement, context);
  }
  return things;
}

MapThingView viewOf(MapThings const& things, MapThingKind kind, std::size_t number) {
  MapThingView view;
  view.kind = enumName(kind);
  view.number = static_cast<double>(number);
  if (kind == MapThingKind::place) {
    MapPlace const& place = things.places[number];
    view.title = place.name;
    view.note = joined(place.temperature, place.note);
    view.level = place.level;
  } else if (kind == MapThingKind::warning) {
    MapArea const& area = things.areas[number];
    view.title = area.title;
    view.note = area.note;
    view.level = area.level;
  } else if (kind == MapThingKind::storm) {
    view.title = things.tracks[number].title;
    view.note = things.tracks[number].note;
  } else if (kind == MapThingKind::mark) {
    view.title = things.marks[number].title;
    view.note = things.marks[number].note;
  } else if (kind == MapThingKind::station) {
    view.title = things.stations[number].title;
    view.note = things.stations[number].note;
  } else {
    view.title = things.quakes[number].title;
    view.note = things.quakes[number].note;
  }
  view.sentence = joined(view.title, view.note);
  return view;
}

std::vector<MapThingView> thingViews(MapThings const& things) {
  std::vector<MapThingView> views;
  for (std::size_t i = things.areas.size(); i-- > 0;)
    views.push_back(viewOf(things, MapThingKind::warning, i));
  for (std::size_t i = things.tracks.size(); i-- > 0;)
    views.push_back(viewOf(things, MapThingKind::storm, i));
  for (std::size_t i = things.places.size(); i-- > 0;)
    views.push_back(viewOf(things, MapThingKind::place, i));
  constexpr std::size_t kMostStations = 25;
  for (std::size_t i = 0; i < std::min(things.stations.size(), kMostStations); ++i)
    views.push_back(viewOf(things, MapThingKind::station, i));
  return views;
}

MapScale mapScale(double metresPerPixel, double most, ViewContext const& context) {
  constexpr double kFeet = 3.28084;
  bool const isMetric = context.units.distance == DistanceUnit::km;
  double const metres = metresPerPixel * most;
  double const whole = convert(metres / 1000, context.units.distance);
  bool const isSmall = whole < 1;
  double const fits = !isSmall ? whole : isMetric ? metres : metres * kFeet;
  double const ten = std::pow(10, std::floor(std::log10(std::max(1.0, fits))));
  double const length = fits >= 5 * ten ? 5 * ten : fits >= 2 * ten ? 2 * ten : ten;
  std::string const unit(isSmall ? (isMetric ? "m" : "ft") : symbol(context.units.distance));
  return {measured(std::to_string(std::lround(length)), unit), most * length / fits};
}

}  // namespace nimbara
