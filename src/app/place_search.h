// Places by name: from the gazetteer that comes with the program where there is one, else from the geocoding
// service.
#pragma once

#include "app/places.h"
#include "app/service_directory.h"
#include "base/result.h"
#include "platform/http_client.h"
#include "providers/api_error.h"
#include "providers/geocoder.h"

#include <functional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace nimbara {

using FoundPlace = GeocodedPlace;

class PlaceSearch {
 public:
  /// Answers without a network, the best match first; none means that it does not know the name.
  using Gazetteer = std::function<std::vector<FoundPlace>(std::string_view text)>;

  PlaceSearch(HttpClient& http, ServiceDirectory const& services, Gazetteer gazetteer = nullptr);

  /// The best matches first, at most ten; `online` passes the gazetteer over. No match is `noResults`.
  Result<std::vector<FoundPlace>, APIError> search(std::string_view text, std::string_view language,
                                                   bool online, std::stop_token stop = {});

 private:
  HttpClient& http_;
  ServiceDirectory const& services_;
  Gazetteer gazetteer_;
};

/// With an identifier of its own.
SavedPlace savedPlaceOf(FoundPlace const& found);

}  // namespace nimbara
