#include "app/place_search.h"

#include "base/country_names.h"
#include "gazetteer/gazetteer.h"

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

}  // namespace

std::vector<FoundPlace> searchOffline(std::string_view text, std::string_view language) {
  std::vector<FoundPlace> found;
  for (City const& city : searchCities(text, kMostMatches)) found.push_back(foundPlaceOf(city, language));
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
                                                              std::stop_token stop) {
  if (!online) {
    if (auto found = searchOffline(text, language); !found.empty()) return found;
  }
  OpenMeteoGeocoder geocoder(http_, services_.address(Service::openMeteoGeocoding));
  return geocoder.search(text, language, kMostMatches, std::move(stop));
}

SavedPlace savedPlaceOf(FoundPlace const& found) {
  return {Uuid::random(), found.name,       found.countryCode, found.country,
          found.region,   found.coordinate, found.timeZone};
}

}  // namespace nimbara
