// Places that somebody looks for in the desktop's search: saved ones by the beginning of their name, any city
// of the gazetteer when the weather is asked for ("weather lisbon", in any of the program's languages) or
// when the text is just its name. Pure, and without the network.
#pragma once

#include "cli/service/service_snapshot.h"
#include "platform/session/session_service.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct PlaceQuery {
  std::string place;         ///< as it was written; empty when only the weather is asked for
  bool asksWeather = false;  ///< by a word for it
};

PlaceQuery placeQuery(std::string_view text);

/// The most relevant first, at most six; none for a text that names no place.
std::vector<SearchHit> searchPlaces(std::string_view text, ServiceSnapshot const& snapshot, Instant now);

/// What a search has found under the identifier: a saved place or a coordinate. Nothing for others.
std::optional<SearchHit> foundPlace(std::string const& id, ServiceSnapshot const& snapshot, Instant now);

}  // namespace nimbara
