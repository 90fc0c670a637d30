#include "app/places/places.h"

#include "base/text/search_text.h"
#include "base/text/text.h"
#include "feeds/alerts/routing/official_sources.h"
#include "feeds/alerts/routing/warning_route.h"

#include <algorithm>

namespace nimbara {

namespace {

auto placeWith(PlaceList& list, Uuid const& id) {
  return std::ranges::find(list.places, id, &SavedPlace::id);
}

std::unexpected<std::string> noSuchPlace() {
  return std::unexpected(std::string("that place is no longer saved"));
}

void selectFirst(PlaceList& list) {
  list.selected = list.places.empty() ? std::nullopt : std::optional(list.places.front().id);
}

}  // namespace

SavedPlace const* PlaceList::find(Uuid const& id) const {
  auto const found = std::ranges::find(places, id, &SavedPlace::id);
  return found == places.end() ? nullptr : &*found;
}

SavedPlace const* PlaceList::findNamed(std::string_view text) const {
  std::string const wanted = searchFolded(text);
  auto const isNamed = [&](SavedPlace const& place) { return searchFolded(place.name) == wanted; };
  auto const found = std::ranges::find_if(places, isNamed);
  return wanted.empty() || found == places.end() ? nullptr : &*found;
}

SavedPlace const* PlaceList::find(std::string_view text) const {
  if (auto const id = Uuid::parse(text)) return find(*id);
  if (SavedPlace const* const named = findNamed(text)) return named;
  std::string const wanted = searchFolded(text);
  auto const begins = [&](SavedPlace const& place) { return searchFolded(place.name).starts_with(wanted); };
  auto const found = std::ranges::find_if(places, begins);
  return wanted.empty() || found == places.end() ? nullptr : &*found;
}

SavedPlace const* PlaceList::findNear(Coordinate coordinate) const {
  auto const isNear = [coordinate](SavedPlace const& place) {
    return haversineKm(place.coordinate, coordinate) <= kSamePlaceKm;
  };
  auto const found = std::ranges::find_if(places, isNear);
  return found == places.end() ? nullptr : &*found;
}

PlaceResult addPlace(PlaceList& list, SavedPlace place) {
  if (!isValid(place.coordinate))
    return std::unexpected(std::string("the place's coordinates are not valid"));
  if (SavedPlace const* const other = list.findNear(place.coordinate)) {
    return std::unexpected("the place is already saved as " + other->name);
  }
  place.name = oneLine(place.name);
  if (place.name.empty()) place.name = formatCoordinate(place.coordinate);
  if (!list.selected) list.selected = place.id;
  list.places.push_back(std::move(place));
  return {};
}

PlaceResult removePlace(PlaceList& list, Uuid const& id) {
  auto const found = placeWith(list, id);
  if (found == list.places.end()) return noSuchPlace();
  list.places.erase(found);
  if (list.selected == id) selectFirst(list);
  return {};
}

PlaceResult renamePlace(PlaceList& list, Uuid const& id, std::string_view name) {
  auto const found = placeWith(list, id);
  if (found == list.places.end()) return noSuchPlace();
  std::string cleaned = oneLine(name);
  if (cleaned.empty()) return std::unexpected(std::string("a place needs a name"));
  found->name = std::move(cleaned);
  return {};
}

PlaceResult movePlace(PlaceList& list, Uuid const& id, int position) {
  auto const found = placeWith(list, id);
  if (found == list.places.end()) return noSuchPlace();
  int const count = static_cast<int>(list.places.size());
  if (position < 1 || position > count) {
    return std::unexpected("the position " + std::to_string(position) + " is outside 1 to " +
                           std::to_string(count));
  }
  auto const target = list.places.begin() + (position - 1);
  if (target < found) {
    std::rotate(target, found, found + 1);
  } else {
    std::rotate(found, found + 1, target + 1);
  }
  return {};
}

PlaceResult selectPlace(PlaceList& list, Uuid const& id) {
  if (list.find(id) == nullptr) return noSuchPlace();
  list.selected = id;
  return {};
}

PlaceResult chooseNotifications(PlaceList& list, Uuid const& id, std::optional<PlaceChoice> choice) {
  auto const found = placeWith(list, id);
  if (found == list.places.end()) return noSuchPlace();
  found->notifications = choice;
  return {};
}

PlaceResult chooseWarningSource(PlaceList& list, Uuid const& id, std::string_view name) {
  auto const found = placeWith(list, id);
  if (found == list.places.end()) return noSuchPlace();
  if (name.empty() || name == kUsualSource) {
    found->warningSource.reset();
    return {};
  }
  auto const possible = possibleSources(govAlertPlace(found->coordinate));
  if (std::ranges::find(possible, name) == possible.end()) {
    return std::unexpected("'" + oneLine(name) + "' has no official warnings for " + found->name +
                           "; choose from " + namesOf(possible) + ", " + std::string(kUsualSource));
  }
  found->warningSource = std::string(name);
  return {};
}

PlaceResult selectCurrentLocation(PlaceList& list, LocationFix const& fix) {
  list.offersCurrentLocation = true;
  list.lastFix = fix;
  list.selected = kCurrentLocation;
  return {};
}

PlaceResult moveCurrentLocation(PlaceList& list, LocationFix const& fix) {
  if (!list.offersCurrentLocation) {
    return std::unexpected(std::string("the current location is no longer among the places"));
  }
  list.lastFix = fix;
  return {};
}

PlaceResult removeCurrentLocation(PlaceList& list) {
  list.offersCurrentLocation = false;
  list.lastFix = std::nullopt;
  if (list.selected == kCurrentLocation) selectFirst(list);
  return {};
}

}  // namespace nimbara
