#include "desktop/core/desktop_places.h"

#include "app/places/place_resolver.h"
#include "base/text/text.h"
#include "desktop/core/place_lookup.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

DesktopPlaces::DesktopPlaces(SettingsStore& store, ForecastService& forecasts,
                             DesktopSettings const& settings)
    : stored_(store), removedRules_(store), forecasts_(forecasts), settings_(settings) {}

PlacesState DesktopPlaces::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

std::optional<Place> DesktopPlaces::selected() const {
  std::lock_guard const lock(mutex_);
  return selectedPlace(state_.list, state_.location.here);
}

std::vector<Place> DesktopPlaces::saved() const {
  std::lock_guard const lock(mutex_);
  std::vector<Place> places;
  places.reserve(state_.list.places.size());
  std::ranges::transform(state_.list.places, std::back_inserter(places), placeOf);
  return places;
}

std::vector<WatchedPlace> DesktopPlaces::watched() const {
  std::lock_guard const lock(mutex_);
  auto const selected = selectedPlace(state_.list, state_.location.here);
  return selected ? watchedPlaces(*selected, state_.list) : std::vector<WatchedPlace>();
}

void DesktopPlaces::read() {
  keep(stored_.list());
}

void DesktopPlaces::change(std::function<PlaceResult(PlaceList&)> const& apply) {
  keep(stored_.change(apply));
  std::lock_guard const lock(mutex_);
  state_.unknown.clear();
}

void DesktopPlaces::choose(std::string const& text) {
  bool isKnown = true;
  change([&](PlaceList& list) -> PlaceResult {
    SavedPlace const* const place = savedPlaceMeant(list, text);
    isKnown = place != nullptr;
    if (!isKnown) return std::unexpected("no saved place is called " + oneLine(text));
    return selectPlace(list, place->id);
  });
  if (isKnown) return;
  std::lock_guard const lock(mutex_);
  state_.problem.reset();
  state_.unknown = oneLine(text);
}

void DesktopPlaces::begin(std::vector<SavedPlace> const& places) {
  read();
  if (places.empty() || !state().list.places.empty()) return;
  change([&places](PlaceList& list) -> PlaceResult {
    for (SavedPlace const& saved : places) std::ignore = addPlace(list, saved);
    return {};
  });
}

/// The current location is named by the city in which it lies.
void DesktopPlaces::keep(Result<PlaceList, StoreError> list) {
  std::optional<Place> here;
  if (list && list->lastFix) {
    here = describedPlace(list->lastFix->coordinate, settings_.wording()->texts->language());
  }
  std::lock_guard const lock(mutex_);
  state_.problem = list ? std::nullopt : std::optional(list.error());
  if (!list) return;
  state_.list = std::move(*list);
  state_.location.here = std::move(here);
}

bool DesktopPlaces::isSaved(Uuid const& id) const {
  std::lock_guard const lock(mutex_);
  return state_.list.find(id) != nullptr;
}

void DesktopPlaces::disableRulesOf(Uuid const& removed) {
  if (!isSaved(removed)) removedRules_.disable(removed, identifiersOf(state().list));
}

void DesktopPlaces::enableRulesOf(Uuid const& restored) {
  if (isSaved(restored)) removedRules_.enable(restored);
}

void DesktopPlaces::noteForecast(Coordinate coordinate, WeatherData const& data) {
  std::lock_guard const lock(mutex_);
  if (auto const id = identifierOf(state_.list, coordinate)) {
    state_.kept[*id] = std::make_shared<WeatherData const>(data);
  }
}

void DesktopPlaces::readKept(Uuid id, Place const& place) {
  auto answer = forecasts_.cached(place);
  if (!answer) return;
  std::lock_guard const lock(mutex_);
  state_.kept.try_emplace(id, std::make_shared<WeatherData const>(std::move(answer->data)));
}

void DesktopPlaces::readAllKept() {
  PlaceList const list = state().list;
  for (SavedPlace const& saved : list.places) readKept(saved.id, placeOf(saved));
  if (list.lastFix) readKept(kCurrentLocation, Place{list.lastFix->coordinate, "", "", ""});
}

void DesktopPlaces::noteLocation(LocationState::Phase phase, std::string message) {
  std::lock_guard const lock(mutex_);
  state_.location.phase = phase;
  state_.location.message = std::move(message);
}

}  // namespace nimbara
