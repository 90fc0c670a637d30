#include "desktop/views/places/places_view.h"

#include "app/state/weather_state.h"
#include "app/words/coverage_text.h"
#include "app/words/failure_text.h"
#include "base/geodesy.h"
#include "base/text/search_text.h"
#include "base/words/country_names.h"
#include "base/words/list_text.h"
#include "base/words/time_words.h"
#include "feeds/alerts/warning_words.h"
#include "gazetteer/gazetteer.h"
#include "model/present.h"

#include <algorithm>

namespace nimbara {

namespace {

std::string areaText(std::string const& region, std::string const& country, std::string const& name) {
  std::string area = region == name ? std::string() : region;
  if (!country.empty() && country != name) area += (area.empty() ? "" : ", ") + country;
  return area;
}

Calendar calendarAt(Coordinate coordinate, ViewContext const& context) {
  return Calendar::forZone(std::string(timeZoneAt(coordinate))).value_or(context.fallback);
}

/// Of a saved place or of the current location.
template <class View>
void fillWeather(View& view, WeatherData const& data, ViewContext const& context) {
  view.isDay = isDayAt(data, context.now);
  if (auto const present = presentAt(data, context.now)) {
    view.temperature = context.degrees(present->tempC, present->tempF);
    view.sky = skyName(present->condition);
    appendClause(view.sentence, view.temperature, context.texts);
    appendClause(view.sentence, context.condition(present->condition, view.isDay), context.texts);
  }
  if (DailyForecast const* const day = dayAt(data, context.now)) {
    view.range = context.texts.format("desktop.range", context.degrees(day->maxTempC, day->maxTempF),
                                      context.degrees(day->minTempC, day->minTempF));
    appendClause(view.sentence, view.range, context.texts);
  }
}

/// A warning that has not ended marks its place also where a later check failed.
void fillMark(PlaceView& view, PlaceCoverage const& place, CoverageState state, ViewContext const& context) {
  auto const lasts = [&](WeatherAlert const& alert) {
    return !alert.expires || *alert.expires > context.now;
  };
  auto const severest = std::ranges::find_if(place.alerts, lasts);
  if (severest != place.alerts.end()) {
    view.mark = enumName(severest->severity);
    view.markText = gradedTitle(gradeOf(*severest), severest->title, context.texts);
  } else if (state == CoverageState::unchecked) {
    view.mark = enumName(state);
    view.markText = view.warnings;
  }
}

/// Of a place that nobody has asked for, nothing is said. In the reader's time, as of all in the list.
void fillWarnings(PlaceView& view, Coordinate coordinate, std::vector<PlaceCoverage> const& all,
                  ViewContext const& context) {
  auto const found = std::ranges::find(all, coordinate, &PlaceCoverage::coordinate);
  if (found == all.end() || found->coverage.empty()) return;
  auto const aged = agedCoverage(found->coverage, context.now);
  SourceCoverage const& coverage = mostPressing(aged);
  view.warningsState = enumName(coverage.state);
  view.warnings = coverageText(coverage, context.texts, context.fallback, context.now);
  appendClause(view.sentence, view.warnings, context.texts);
  fillMark(view, *found, coverage.state, context);
}

/// Of the place's own clock.
std::string localTimeOf(Calendar const& calendar, ViewContext const& context) {
  TimeWords const words(context.texts, calendar);
  return words.format(context.now, context.texts.text("desktop.places.localTime"));
}

std::string noteOf(LocationState const& location, ViewContext const& context) {
  switch (location.phase) {
    case LocationState::Phase::idle:
      return context.text("desktop.here.hint");
    case LocationState::Phase::asking:
      return context.text("desktop.here.asking");
    case LocationState::Phase::found:
      return {};
    case LocationState::Phase::denied:
      return context.text("desktop.here.denied");
    case LocationState::Phase::unavailable:
      return context.text("desktop.here.unavailable");
  }
  return {};
}

/// A place that was saved in English has its country's English name.
std::string countryOf(SavedPlace const& place, std::string const& language) {
  bool const isEnglish = place.countryName.empty() || place.countryName == countryName(place.country, "en");
  std::string const local = isEnglish ? countryName(place.country, language) : place.countryName;
  return local.empty() ? place.country : local;
}

}  // namespace

std::vector<PlaceView> placeViews(PlaceList const& list, KeptForecasts const& kept, bool everyPlace,
                                  std::vector<PlaceCoverage> const& coverage, ViewContext const& context) {
  std::vector<PlaceView> views;
  views.reserve(list.places.size());
  for (SavedPlace const& place : list.places) {
    PlaceView& view = views.emplace_back();
    view.id = place.id.text();
    view.name = place.name;
    view.area = areaText(place.region, countryOf(place, context.texts.language()), place.name);
    view.isSelected = list.selected == place.id;
    view.notifications = enumName(effectiveChoice(place.notifications, view.isSelected, everyPlace));
    view.sky = "unknown";
    view.sentence = place.name;
    auto const found = kept.find(place.id);
    bool const isKept = found != kept.end() && found->second;
    if (isKept) fillWeather(view, *found->second, context);
    view.localTime = localTimeOf(calendarAt(place.coordinate, context), context);
    fillWarnings(view, place.coordinate, coverage, context);
    if (!isKept) continue;
    view.age = ageText(found->second->fetchedAt, context.now, context.texts);
  }
  return views;
}

HereView hereView(PlaceList const& list, LocationState const& location, KeptForecasts const& kept,
                  ViewContext const& context) {
  using Phase = LocationState::Phase;
  HereView view;
  view.sky = "unknown";
  view.isAsking = location.phase == Phase::asking;
  view.isTroubled = location.phase == Phase::denied || location.phase == Phase::unavailable;
  view.note = noteOf(location, context);
  view.isOffered = list.offersCurrentLocation && list.lastFix.has_value();
  if (!view.isOffered) return view;
  if (location.phase == Phase::idle) view.note.clear();  // it is known what asking means
  view.isSelected = list.selected == kCurrentLocation;
  view.name =
      location.here && !location.here->name.empty() ? location.here->name : context.text("desktop.here");
  view.area =
      formatCoordinate(list.lastFix->coordinate) + "  ·  " +
      context.texts.format("desktop.here.age", ageText(list.lastFix->time, context.now, context.texts));
  view.sentence = context.text("desktop.here");
  appendClause(view.sentence, view.name, context.texts);
  auto const found = kept.find(kCurrentLocation);
  if (found != kept.end() && found->second) fillWeather(view, *found->second, context);
  return view;
}

std::string onlineNote(Result<std::vector<FoundPlace>, APIError> const& found, ViewContext const& context) {
  if (found) return context.text("desktop.search.online.answered");
  if (found.error().kind == APIError::Case::noResults) return context.text("desktop.search.none");
  AppError const error = AppError::of(found.error());
  if (error.kind == AppError::Case::offline) return context.text("desktop.search.online.offline");
  return context.texts.format("desktop.search.online.failed", failureText(found.error(), context.texts));
}

SavedPlace const* savedAs(FoundPlace const& found, PlaceList const& list) {
  if (SavedPlace const* const saved = list.findNear(found.coordinate)) return saved;
  constexpr double kSameNameKm = 5;
  auto const isIt = [&](SavedPlace const& saved) {
    bool const isAbroad =
        !saved.country.empty() && !found.countryCode.empty() && saved.country != found.countryCode;
    return !isAbroad && searchFolded(saved.name) == searchFolded(found.name) &&
           haversineKm(saved.coordinate, found.coordinate) <= kSameNameKm;
  };
  auto const saved = std::ranges::find_if(list.places, isIt);
  return saved == list.places.end() ? nullptr : &*saved;
}

std::vector<FoundView> foundViews(std::vector<FoundPlace> const& found, PlaceList const& list) {
  std::vector<FoundView> views;
  views.reserve(found.size());
  for (FoundPlace const& place : found) {
    std::string const name = foundName(place);
    std::string const area = areaText(place.region, place.country, place.name);
    SavedPlace const* const saved = savedAs(place, list);
    views.push_back({name, area, saved != nullptr, name + (area.empty() ? "" : ", " + area),
                     saved == nullptr ? std::string() : saved->id.text()});
  }
  return views;
}

}  // namespace nimbara
