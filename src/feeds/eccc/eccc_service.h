// The weather alerts in force around a place in Canada, from Environment and Climate Change Canada's GeoMet.
// Keeps nothing; never throws. Any thread may ask: the service is asked one question at a time.
#pragma once

#include "base/geodesy.h"
#include "feeds/cap/cap_message.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"

#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

class EcccService {
 public:
  /// "https://api.weather.gc.ca"
  EcccService(HttpClient& http, Clock const& clock, std::string baseUrl);

  /// Alerts whose zones reach into a box of some kilometres around the place; whether they have the place in
  /// them is told by their polygons. Blocks for two requests, with a failure where one of them failed.
  CapListing fetch(Coordinate place, std::string_view countryCode, std::stop_token const& stop = {});

 private:
  void ask(std::string_view state, std::string const& box, CapListing& listing, std::stop_token const& stop);

  HttpClient& http_;
  std::string itemsUrl_;
  std::mutex turn_;
};

}  // namespace nimbara
