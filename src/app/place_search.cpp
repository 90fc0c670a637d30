#include "app/place_search.h"

namespace nimbara {

namespace {

constexpr int kMostMatches = 10;

}  // namespace

PlaceSearch::PlaceSearch(HttpClient& http, ServiceDirectory const& services, Gazetteer gazetteer)
    : http_(http), services_(services), gazetteer_(std::move(gazetteer)) {}

Result<std::vector<FoundPlace>, APIError> PlaceSearch::search(std::string_view text,
                                                              std::string_view language, bool online,
                                                              std::stop_token stop) {
  if (gazetteer_ && !online) {
    auto found = gazetteer_(text);
    if (found.size() > kMostMatches) found.resize(kMostMatches);
    if (!found.empty()) return found;
  }
  OpenMeteoGeocoder geocoder(http_, services_.address(Service::openMeteoGeocoding));
  return geocoder.search(text, language, kMostMatches, std::move(stop));
}

SavedPlace savedPlaceOf(FoundPlace const& found) {
  return {Uuid::random(), found.name,       found.countryCode, found.country,
          found.region,   found.coordinate, found.timeZone};
}

}  // namespace nimbara
