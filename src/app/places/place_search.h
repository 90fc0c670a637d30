// Places by name: from the gazetteer that comes with the program, else from the geocoding service.
#pragma once

#include "app/places/place.h"
#include "app/places/places.h"
#include "app/settings/service_directory.h"
#include "base/result.h"
#include "platform/http/http_client.h"
#include "providers/common/api_error.h"
#include "providers/geocoder.h"

#include <stop_token>
#include <string_view>
#include <vector>

namespace nimbara {

using FoundPlace = GeocodedPlace;

class PlaceSearch {
 public:
  PlaceSearch(HttpClient& http, ServiceDirectory const& services) : http_(http), services_(services) {}

  /// The best matches first, at most ten: what is known offline, and what the geocoding service knows where
  /// that is nothing or `online` asks for it, which also knows postal codes. A name that it does not know is
  /// asked for once more in its other spellings ("St." for "Saint"), and a town with its code by the code. No
  /// match is `noResults`.
  Result<std::vector<FoundPlace>, APIError> search(std::string_view text, std::string_view language,
                                                   bool online, std::stop_token const& stop = {});

 private:
  using Found = Result<std::vector<FoundPlace>, APIError>;

  Found searchOnline(std::string_view text, std::string_view language, std::stop_token const& stop);

  HttpClient& http_;
  ServiceDirectory const& services_;
};

/// "Lisboa (Lisbon)" where it was found by another name, else its name.
std::string foundName(FoundPlace const& found);

/// Cities of the gazetteer whose names are nearest to a misspelled `text`; none where nothing is near enough.
std::vector<FoundPlace> similarPlaces(std::string_view text, std::string_view language);

/// "did you mean Springfield, Missouri, United States or …?" for what a search did not find; empty where
/// nothing is similar.
std::string suggestionFor(std::string_view text, std::string_view language);

/// Why a search has no answer: "no place called 'zurch' was found".
std::string missingSentence(std::string_view text, APIError const& error);
/// The same, and what may have been meant instead.
std::string notFoundSentence(std::string_view text, APIError const& error, std::string_view language);

/// What a text means without the network, the best match first, with the countries' names in `language`: the
/// place at a coordinate, else cities of the gazetteer. Of a town with its postal code, which only the
/// service knows, the town.
std::vector<FoundPlace> searchOffline(std::string_view text, std::string_view language);

/// The coordinate with the name of the city in which it lies, where one is near, and of its region and
/// country.
Place describedPlace(Coordinate coordinate, std::string_view language);

/// The time zone of a coordinate from the gazetteer: for clients whose service does not tell it.
std::string offlineTimeZone(Coordinate coordinate);

/// With an identifier of its own.
SavedPlace savedPlaceOf(FoundPlace const& found);

}  // namespace nimbara
