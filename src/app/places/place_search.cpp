#include "app/places/place_search.h"

#include "base/text/text.h"
#include "base/words/country_names.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr int kMostMatches = 10;
/// A coordinate farther from every city is named by itself.
constexpr double kWithinCityKm = 15;

FoundPlace foundPlaceOf(City const& city, std::string_view language) {
  FoundPlace found;
  found.name = city.name;
  found.countryCode = city.countryCode;
  found.country = countryName(city.countryCode, language);
  found.region = city.region;
  found.coordinate = city.coordinate;
  found.timeZone = city.timeZone;
  return found;
}

std::vector<FoundPlace> foundPlacesOf(std::vector<City> const& cities, std::string_view language) {
  std::vector<FoundPlace> found;
  found.reserve(cities.size());
  for (City const& city : cities) found.push_back(foundPlaceOf(city, language));
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
  std::string name = place.name;
  if (!place.region.empty() && place.region != place.name) name += ", " + place.region;
  if (!place.country.empty() && place.country != place.name) name += ", " + place.country;
  return name;
}

}  // namespace

std::vector<FoundPlace> similarPlaces(std::string_view text, std::string_view language) {
  return foundPlacesOf(similarCities(text, kMostMatches), language);
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

std::string notFoundSentence(std::string_view text, APIError const& error, std::string_view language) {
  std::string const quoted = "'" + oneLine(text, 100) + "'";
  std::string sentence = "no place called " + quoted + " was found";
  if (error.kind != APIError::Case::noResults) {
    std::string why = error.text();
    if (why.ends_with('.')) why.pop_back();
    sentence = quoted + " is not in the offline list, and the online search failed (" + why + ")";
  }
  std::string const suggestion = suggestionFor(text, language);
  return suggestion.empty() ? sentence : sentence + "; " + suggestion;
}

std::vector<FoundPlace> searchOffline(std::string_view text, std::string_view language) {
  return foundPlacesOf(searchCities(text, kMostMatches), language);
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
  if (!online) {
    if (auto found = searchOffline(text, language); !found.empty()) return found;
  }
  return searchOnline(text, language, stop);
}

Result<std::vector<FoundPlace>, APIError> PlaceSearch::searchOnline(std::string_view text,
                                                                    std::string_view language,
                                                                    std::stop_token const& stop) {
  OpenMeteoGeocoder geocoder(http_, services_.address(Service::openMeteoGeocoding));
  auto found = geocoder.search(text, language, kMostMatches, stop);
  for (std::string const& spelling : otherSpellings(text)) {
    if (found || found.error().kind != APIError::Case::noResults) break;
    found = geocoder.search(spelling, language, kMostMatches, stop);
  }
  return found;
}

SavedPlace savedPlaceOf(FoundPlace const& found) {
  return {Uuid::random(), found.name,       found.countryCode, found.country,
          found.region,   found.coordinate, found.timeZone};
}

}  // namespace nimbara
