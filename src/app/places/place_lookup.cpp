#include "app/places/place_lookup.h"

#include "app/places/place_resolver.h"
#include "model/weather_cache.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

std::optional<Place> selectedPlace(PlaceList const& list, std::optional<Place> const& here) {
  if (list.selected == kCurrentLocation && here) return here;
  auto const wanted = resolvePlace("", list);
  Place const* const place = wanted ? std::get_if<Place>(&*wanted) : nullptr;
  return place == nullptr ? std::nullopt : std::optional(*place);
}

SavedPlace const* savedPlaceMeant(PlaceList const& list, std::string_view text) {
  if (SavedPlace const* const named = list.find(text)) return named;
  auto const tagged = std::ranges::find(list.places, text,
                                        [](SavedPlace const& saved) { return cacheKey(saved.coordinate); });
  if (tagged != list.places.end()) return &*tagged;
  auto const wanted = resolvePlace(text, list);
  Place const* const place = wanted ? std::get_if<Place>(&*wanted) : nullptr;
  return place == nullptr ? nullptr : list.findNear(place->coordinate);
}

std::optional<Uuid> identifierOf(PlaceList const& list, Coordinate coordinate) {
  if (SavedPlace const* const saved = list.findNear(coordinate)) return saved->id;
  bool const isHere = list.lastFix && haversineKm(list.lastFix->coordinate, coordinate) < kSamePlaceKm;
  return isHere ? std::optional(kCurrentLocation) : std::nullopt;
}

std::vector<Uuid> identifiersOf(PlaceList const& list) {
  std::vector<Uuid> ids;
  ids.reserve(list.places.size());
  std::ranges::transform(list.places, std::back_inserter(ids), &SavedPlace::id);
  return ids;
}

}  // namespace nimbara
