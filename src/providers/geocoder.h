// Places by name, from the Open-Meteo geocoding service. One request a call; no state.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "platform/http/http_client.h"
#include "providers/common/api_error.h"
#include "providers/common/service_address.h"

#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

struct GeocodedPlace {
  std::string name;
  std::string country;      ///< empty when the service does not say
  std::string countryCode;  ///< ISO 3166, two letters, or empty
  std::string region;
  Coordinate coordinate;
  std::string timeZone;
  std::string otherName = {};  ///< by which a search found it ("Lisboa"), where that is not `name`

  bool operator==(GeocodedPlace const&) const = default;
};

class OpenMeteoGeocoder {
 public:
  OpenMeteoGeocoder(HttpClient& http, ServiceAddress address);

  /// The best matches first, at most `count` (1-100). No match is `noResults`.
  Result<std::vector<GeocodedPlace>, APIError> search(std::string_view name, std::string_view language,
                                                      int count = 10, std::stop_token stop = {});

 private:
  HttpClient& http_;
  ServiceAddress address_;
};

/// The matches of a geocoding answer; one whose name or coordinate is missing or impossible is left out.
Result<std::vector<GeocodedPlace>, DecodeError> parseGeocoding(std::string_view body);

}  // namespace nimbara
