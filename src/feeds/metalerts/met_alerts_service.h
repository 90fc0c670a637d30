// The warnings of the Norwegian Meteorological Institute for a point on land or at sea, from its MetAlerts
// service 2.0. The service's terms are kept here: four decimals at most, an answer is used until it expires
// and then asked for again on the condition that it has changed. (The others, an own User-Agent with a
// contact and compression, are the HTTP client's.)
#pragma once

#include "feeds/cap/cap_message.h"
#include "feeds/fetching/feed_exchange.h"
#include "platform/clock.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class MetAlertsService {
 public:
  struct Options {
    std::string baseUrl;   ///< "https://api.met.no"
    std::string language;  ///< the reader's, as "nb_NO": the service answers in Norwegian or else in English
  };

  MetAlertsService(HttpClient& http, Clock const& clock, Options options);

  /// Degrees. Any thread; one question at a time. The list is blind where the service says that the point
  /// lies outside its area, and where it has nothing for a place in a country that is not Norway.
  CapListing fetch(Coordinate place, std::string_view countryCode, std::stop_token const& stop = {});

 private:
  struct Kept {
    std::vector<CapMessage> messages;
    Validators validators;
    Instant fetched;
    Instant expires;
    std::uint64_t asked = 0;
  };

  HttpRequest requestFor(Coordinate place) const;
  CapListing taken(std::string const& url, HttpResponse const& answer, std::string_view countryCode);
  Kept& keep(std::string const& url);

  HttpClient& http_;
  Clock const& clock_;
  std::string address_;
  std::string language_;
  std::mutex turn_;  // of who asks; guards the two below
  std::map<std::string, Kept> kept_;
  std::uint64_t questions_ = 0;
};

/// "no" for readers of Norwegian in either form, "en" for all others.
std::string_view metAlertsLanguage(std::string_view language);

}  // namespace nimbara
