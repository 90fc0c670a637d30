#include "app/places/place_resolver.h"

#include "base/text/text.h"

namespace nimbara {

namespace {

std::unexpected<PlaceProblem> missing(std::string sentence) {
  return std::unexpected(PlaceProblem{false, std::move(sentence)});
}

Result<std::variant<Place, PlaceName>, PlaceProblem> selectedPlace(PlaceList const& places) {
  if (!places.selected) {
    return missing(
        "no place is selected; give one, such as 52.52,13.41 or Lisbon, or save one with: "
        "nimbara places add NAME");
  }
  if (SavedPlace const* const saved = places.find(*places.selected)) return placeOf(*saved);
  if (places.lastFix) return Place{places.lastFix->coordinate, "", "", ""};
  return missing("the current location is not known yet; try: nimbara places select --here");
}

}  // namespace

Place placeOf(SavedPlace const& saved) {
  std::string const& country = saved.countryName.empty() ? saved.country : saved.countryName;
  return {saved.coordinate, saved.name, country, saved.region};
}

Result<std::variant<Place, PlaceName>, PlaceProblem> resolvePlace(std::string_view text,
                                                                  PlaceList const& places) {
  if (trimmed(text).empty()) return selectedPlace(places);
  auto const parsed = parsePlace(text);
  if (parsed && std::holds_alternative<Coordinate>(*parsed)) {
    return Place{std::get<Coordinate>(*parsed), "", "", ""};
  }
  if (SavedPlace const* const saved = places.findNamed(text)) return placeOf(*saved);
  if (!parsed) return std::unexpected(PlaceProblem{true, parsed.error()});
  return std::get<PlaceName>(*parsed);
}

}  // namespace nimbara
