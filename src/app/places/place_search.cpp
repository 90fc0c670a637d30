#include "app/places/place_search.h"

#include "app/places/postal_town.h"
#include "base/text/search_text.h"
#include "base/text/text.h"
#include "base/words/country_names.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr int kMostMatches = 10;
/// A coordinate farther from every city is named by itself.
constexpr double kWithinCityKm = 15;

/// A city's other name as the person writes it, with the accents that were typed: the gazetteer has it
/// without.
std::string otherNameOf(City const& city, std::string_view typed) {
  std::string other(city.otherName);
  bool const isAsWritten = std::ranges::any_of(other, [](char c) { return c >= 'A' && c <= 'Z'; });
  if (other.empty() || isAsWritten) return other;
  typed = trimmed(typed.substr(0, typed.find(',')));
  std::string const folded = searchFolded(typed);
  bool const isTyped = !folded.empty() && other.starts_with(folded);
  return capitalized(isTyped ? std::string(typed) + other.substr(folded.size()) : other);
}

FoundPlace foundPlaceOf(City const& city, std::string_view typed, std::string_view language) {
  FoundPlace found;
  found.name = city.name;
  found.countryCode = city.countryCode;
  found.country = countryName(city.countryCode, language);
  found.region = city.region;
  found.coordinate = city.coordinate;
  found.timeZone = city.timeZone;
  found.otherName = otherNameOf(city, typed);
  return found;
}

std::vector<FoundPlace> foundPlacesOf(std::vector<City> const& cities, std::string_view typed,
                                      std::string_view language) {
  std::vector<FoundPlace> found;
  found.reserve(cities.size());
  for (City const& city : cities) found.push_back(foundPlaceOf(city, typed, language));
  return found;
}

/// The place at a text that is a coordinate.
std::optional<FoundPlace> placeAt(std::string_view text, std::string_view language) {
  auto const parsed = parsePlace(text);
  auto const* const coordinate = parsed ? std::get_if<Coordinate>(&*parsed) : nullptr;
  if (coordinate == nullptr) return std::nullopt;
  Place const here = describedPlace(*coordinate, language);
  FoundPlace found;
  found.name = here.name.empty() ? formatCoordinate(*coordinate) : here.name;
  found.country = here.country;
  found.countryCode = describePlace(*coordinate).countryCode;
  found.region = here.region;
  found.coordinate = *coordinate;
  found.timeZone = offlineTimeZone(*coordinate);
  return found;
}

/// Those of a postal code's places that lie in or near the town that was named with it.
std::vector<FoundPlace> inTown(std::vector<FoundPlace> const& places, std::string_view town) {
  constexpr double kNearKm = 50;
  auto const cities = searchCities(town, 1);
  std::string const wanted = searchFolded(town.substr(0, town.find(',')));
  std::vector<FoundPlace> found;
  std::ranges::copy_if(places, std::back_inserter(found), [&](FoundPlace const& place) {
    bool const isNear = !cities.empty() && haversineKm(cities[0].coordinate, place.coordinate) <= kNearKm;
    return isNear || searchFolded(place.name) == wanted;
  });
  return found;
}

/// "St. Moritz" as "Saint Moritz" and "Sankt Moritz", as the geocoding service may have it.
std::vector<std::string> otherSpellings(std::string_view text) {
  std::vector<std::string> spellings;
  for (std::string_view const abbreviation : {"St. ", "St "}) {
    bool const begins = asciiLowered(text).starts_with(asciiLowered(abbreviation));
    if (!begins) continue;
    for (std::string_view const word : {"Saint ", "Sankt "}) {
      spellings.push_back(std::string(word) + std::string(text.substr(abbreviation.size())));
    }
    break;
  }
  return spellings;
}

std::string fullName(FoundPlace const& place) {
  std::string name = foundName(place);
  if (!place.region.empty() && place.region != place.name) name += ", " + place.region;
  if (!place.country.empty() && place.country != place.name) name += ", " + place.country;
  return name;
}

}  // namespace

std::string foundName(FoundPlace const& found) {
  return found.otherName.empty() ? found.name : found.otherName + " (" + found.name + ")";
}

std::vector<FoundPlace> similarPlaces(std::string_view text, std::string_view language) {
  auto found = foundPlacesOf(similarCities(text, kMostMatches), {}, language);
  auto const postal = found.empty() ? postalTownIn(text) : std::nullopt;
  return postal ? similarPlaces(postal->town, language) : found;
}

std::string suggestionFor(std::string_view text, std::string_view language) {
  constexpr std::size_t kMostNamed = 3;
  auto const similar = similarPlaces(text, language);
  if (similar.empty()) return {};
  std::string names;
  std::size_t const count = std::min(similar.size(), kMostNamed);
  for (std::size_t i = 0; i < count; ++i) {
    bool const isLast = i + 1 == count;
    names += (i == 0 ? "" : isLast ? " or " : "; ") + fullName(similar[i]);
  }
  return "did you mean " + names + "?";
}

std::string missingSentence(std::string_view text, APIError const& error) {
  std::string const quoted = "'" + oneLine(text, 100) + "'";
  if (error.kind == APIError::Case::noResults) return "no place called " + quoted + " was found";
  std::string why = error.text();
  if (why.ends_with('.')) why.pop_back();
  return quoted + " is not in the offline list, and the online search failed (" + why + ")";
}

std::string notFoundSentence(std::string_view text, APIError const& error, std::string_view language) {
  std::string sentence = missingSentence(text, error);
  std::string const suggestion = suggestionFor(text, language);
  return suggestion.empty() ? sentence : sentence + "; " + suggestion;
}

std::vector<FoundPlace> searchOffline(std::string_view text, std::string_view language) {
  if (auto here = placeAt(text, language)) return std::vector{std::move(*here)};
  auto found = foundPlacesOf(searchCities(text, kMostMatches), text, language);
  auto const postal = found.empty() ? postalTownIn(text) : std::nullopt;
  if (postal) found = foundPlacesOf(searchCities(postal->town, kMostMatches), postal->town, language);
  return found;
}

Place describedPlace(Coordinate coordinate, std::string_view language) {
  PlaceFacts const facts = describePlace(coordinate);
  Place place;
  place.coordinate = coordinate;
  place.country = countryName(facts.countryCode, language);
  if (!facts.regionNames.empty()) place.region = facts.regionNames.back();
  if (facts.nearest && facts.nearest->km <= kWithinCityKm) place.name = facts.nearest->city.name;
  return place;
}

std::string offlineTimeZone(Coordinate coordinate) {
  return std::string(timeZoneAt(coordinate));
}

Result<std::vector<FoundPlace>, APIError> PlaceSearch::search(std::string_view text,
                                                              std::string_view language, bool online,
                                                              std::stop_token const& stop) {
  if (auto here = placeAt(text, language)) return std::vector{std::move(*here)};
  if (!online) {
    if (auto found = searchOffline(text, language); !found.empty()) return found;
  }
  return searchOnline(text, language, stop);
}

PlaceSearch::Found PlaceSearch::searchOnline(std::string_view text, std::string_view language,
                                             std::stop_token const& stop) {
  OpenMeteoGeocoder geocoder(http_, services_.address(Service::openMeteoGeocoding));
  auto const ask = [&](std::string_view name) { return geocoder.search(name, language, kMostMatches, stop); };
  auto const isMissing = [](Found const& found) {
    return !found && found.error().kind == APIError::Case::noResults;
  };
  Found found = ask(text);
  for (std::string const& spelling : otherSpellings(text)) {
    if (isMissing(found)) found = ask(spelling);
  }
  auto const postal = isMissing(found) ? postalTownIn(text) : std::nullopt;
  if (!postal) return found;
  Found const coded = ask(postal->code);
  auto there = coded ? inTown(*coded, postal->town) : std::vector<FoundPlace>();
  if (!there.empty()) return there;
  return isMissing(coded) || coded ? ask(postal->town) : coded;
}

SavedPlace savedPlaceOf(FoundPlace const& found) {
  return {Uuid::random(), found.name,       found.countryCode, found.country,
          found.region,   found.coordinate, found.timeZone};
}

}  // namespace nimbara
