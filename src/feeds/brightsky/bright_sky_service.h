// The warnings of Germany's weather service for the municipality of a place, through Bright Sky.
#pragma once

#include "feeds/cap/cap_message.h"

#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

class BrightSkyService {
 public:
  /// `baseUrl` as "https://api.brightsky.dev".
  BrightSkyService(HttpClient& http, std::string baseUrl);

  /// Degrees. Any thread; one question at a time. The list is blind where the service says that the place has
  /// no municipality of Germany, whatever country it is said to be in.
  CapListing fetch(Coordinate place, std::string_view countryCode, std::stop_token const& stop = {});

 private:
  HttpClient& http_;
  std::string address_;
  std::mutex turn_;  // of who asks
};

}  // namespace nimbara
