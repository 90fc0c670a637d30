#include "app/engine/engine_places.h"

#include "app/places/place_lookup.h"
#include "app/places/place_resolver.h"
#include "app/places/place_search.h"
#include "app/services/forecasts/forecast_service.h"
#include "base/text/text.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

EnginePlaces::EnginePlaces(SettingsStore& store, InUse<ForecastService> forecasts,
                           EngineSettings const& settings)
    : stored_(store), removedRules_(store), forecasts_(std::move(forecasts)), settings_(settings) {}

PlacesState EnginePlaces::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

std::optional<Place> EnginePlaces::shown() const {
  std::lock_guard const lock(mutex_);
  return lookedAt_ ? lookedAt_ : selected();
}

/// With the lock held.
std::optional<Place> EnginePlaces::selected() const {
  auto const selected = selectedPlace(state_.list, state_.location.here);
  return selected || state_.list.selected ? selected : lastShown_;
}

std::vector<Place> EnginePlaces::saved() const {
  std::lock_guard const lock(mutex_);
  std::vector<Place> places;
  places.reserve(state_.list.places.size());
  std::ranges::transform(state_.list.places, std::back_inserter(places), placeOf);
  // The current location has its own row beside them, whose forecast grows old like theirs.
  if (state_.list.offersCurrentLocation && state_.location.here) places.push_back(*state_.location.here);
  return places;
}

std::vector<WatchedPlace> EnginePlaces::watched() const {
  std::lock_guard const lock(mutex_);
  auto const place = selected();
  return place ? watchedPlaces(*place, state_.list) : std::vector<WatchedPlace>();
}

bool EnginePlaces::read() {
  return keep(stored_.list());
}

void EnginePlaces::change(std::function<PlaceResult(PlaceList&)> const& apply) {
  auto const before = state().list.selected;
  std::ignore = keep(stored_.change(apply));
  std::lock_guard const lock(mutex_);
  state_.unknown.clear();
  if (state_.list.selected != before) lookedAt_.reset();
}

std::optional<Place> EnginePlaces::placeMeant(PlaceList const& list, std::string const& text) const {
  if (SavedPlace const* const saved = savedPlaceMeant(list, text)) return placeOf(*saved);
  std::string const language = settings_.wording()->texts->language();
  auto const wanted = parsePlace(text);
  if (!wanted) return std::nullopt;
  if (auto const* const coordinate = std::get_if<Coordinate>(&*wanted))
    return describedPlace(*coordinate, language);
  auto const found = searchOffline(std::get<PlaceName>(*wanted).name, language);
  return found.empty() ? std::nullopt : std::optional(placeOf(savedPlaceOf(found.front())));
}

bool EnginePlaces::look(std::string const& text) {
  auto place = placeMeant(state().list, text);
  std::lock_guard const lock(mutex_);
  state_.problem.reset();
  state_.unknown = place ? std::string() : oneLine(text);
  if (!place) return false;
  lookedAt_ = std::move(place);
  return true;
}

void EnginePlaces::lookAway() {
  std::lock_guard const lock(mutex_);
  lookedAt_.reset();
}

void EnginePlaces::begin(std::vector<SavedPlace> const& places,
                         std::function<std::optional<std::string>()> const& lastShown) {
  std::ignore = read();
  if (!places.empty() && state().list.places.empty()) {
    change([&places](PlaceList& list) -> PlaceResult {
      for (SavedPlace const& saved : places) std::ignore = addPlace(list, saved);
      return {};
    });
  }
  if (state().list.selected) return;
  auto const key = parsePlace(lastShown().value_or(""));
  Coordinate const* const shown = key ? std::get_if<Coordinate>(&*key) : nullptr;
  if (shown == nullptr) return;
  auto place = describedPlace(*shown, settings_.wording()->texts->language());
  std::lock_guard const lock(mutex_);
  lastShown_ = std::move(place);
}

/// The current location is named by the city in which it lies.
bool EnginePlaces::keep(Result<PlaceList, StoreError> list) {
  std::optional<Place> here;
  if (list && list->lastFix) {
    here = describedPlace(list->lastFix->coordinate, settings_.wording()->texts->language());
  }
  std::lock_guard const lock(mutex_);
  state_.problem = list ? std::nullopt : std::optional(list.error());
  if (!list) return false;
  bool const isOther = state_.list != *list;
  state_.list = std::move(*list);
  state_.location.here = std::move(here);
  return isOther;
}

bool EnginePlaces::isSaved(Uuid const& id) const {
  std::lock_guard const lock(mutex_);
  return state_.list.find(id) != nullptr;
}

void EnginePlaces::disableRulesOf(Uuid const& removed) {
  if (!isSaved(removed)) removedRules_.disable(removed, identifiersOf(state().list));
}

void EnginePlaces::enableRulesOf(Uuid const& restored) {
  if (isSaved(restored)) removedRules_.enable(restored);
}

void EnginePlaces::noteForecast(Coordinate coordinate, WeatherData const& data) {
  std::lock_guard const lock(mutex_);
  if (auto const id = identifierOf(state_.list, coordinate)) {
    state_.kept[*id] = std::make_shared<WeatherData const>(data);
  }
}

void EnginePlaces::readKept(Uuid id, Place const& place) {
  auto answer = forecasts_()->cached(place);
  if (!answer) return;
  std::lock_guard const lock(mutex_);
  state_.kept.try_emplace(id, std::make_shared<WeatherData const>(std::move(answer->data)));
}

void EnginePlaces::readAllKept() {
  PlaceList const list = state().list;
  for (SavedPlace const& saved : list.places) readKept(saved.id, placeOf(saved));
  if (list.lastFix) readKept(kCurrentLocation, Place{list.lastFix->coordinate, "", "", ""});
}

void EnginePlaces::noteLocation(LocationState::Phase phase, std::string message) {
  std::lock_guard const lock(mutex_);
  state_.location.phase = phase;
  state_.location.message = std::move(message);
}

}  // namespace nimbara
