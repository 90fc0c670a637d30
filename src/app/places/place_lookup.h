// Which of the saved places is meant: by the selection, by what somebody wrote, by a coordinate. Plain
// functions of the list.
#pragma once

#include "app/places/place.h"
#include "app/places/places.h"

#include <optional>
#include <string_view>
#include <vector>

namespace nimbara {

/// `here` is the current location with the name of the city in which it lies.
std::optional<Place> selectedPlace(PlaceList const& list, std::optional<Place> const& here);

/// By its identifier, its name, the key that notifications know it by, or a coordinate within it; null for
/// none.
SavedPlace const* savedPlaceMeant(PlaceList const& list, std::string_view text);

/// What a coordinate is saved as, the current location included.
std::optional<Uuid> identifierOf(PlaceList const& list, Coordinate coordinate);

std::vector<Uuid> identifiersOf(PlaceList const& list);

}  // namespace nimbara
