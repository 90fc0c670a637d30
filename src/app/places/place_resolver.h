// Which place a PLACE of the command line means, as far as that is known without a search.
#pragma once

#include "app/places/place.h"
#include "app/places/places.h"
#include "base/result.h"

#include <string>
#include <string_view>
#include <variant>

namespace nimbara {

struct PlaceProblem {
  bool isMistake = false;  ///< of the command line; otherwise there is no such place now
  std::string sentence;
};

/// A coordinate, else a saved place by its name, else a name to search for; without a text the selected
/// place.
Result<std::variant<Place, PlaceName>, PlaceProblem> resolvePlace(std::string_view text,
                                                                  PlaceList const& places);

Place placeOf(SavedPlace const& saved);

}  // namespace nimbara
