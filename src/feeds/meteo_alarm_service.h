// The official warnings of European countries, from MeteoAlarm's feed of each country. Owned by the
// application; keeps the feed of the country that was asked for last. Calls come one at a time, others wait
// their turn. Never throws; a failure leaves what was known before.
#pragma once

#include "base/texts.h"
#include "feeds/meteo_alarm_selection.h"
#include "platform/clock.h"
#include "platform/http_client.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The warnings of a place and how far they can be trusted.
struct MeteoAlarmAnswer {
  std::vector<WeatherAlert> alerts;
  std::optional<Instant> checkedAt;    ///< when the service confirmed them; never: nothing is known
  std::optional<std::string> failure;  ///< why they could not be confirmed just now; a sentence's beginning
};

class MeteoAlarmService {
 public:
  using RegionLookup = std::function<PlaceRegions(Coordinate)>;

  /// `baseUrl` is scheme and host of the feeds. `texts` outlives the service.
  MeteoAlarmService(HttpClient& http, Clock const& clock, std::string baseUrl, Texts const& texts,
                    RegionLookup regions);

  /// The warnings that concern a coordinate, one for each kind. A country without a feed has none.
  std::vector<WeatherAlert> fetchAlerts(double latitude, double longitude, std::string_view countryCode,
                                        std::stop_token const& stop = {});

  /// The same and whether it is fresh. `regions`, where given, stand in for the look-up.
  MeteoAlarmAnswer fetch(Coordinate place, std::string_view countryCode,
                         std::optional<PlaceRegions> const& regions = {}, std::stop_token const& stop = {});

 private:
  struct Validators {
    std::optional<std::string> etag;
    std::optional<std::string> lastModified;
  };

  using Outcome = Result<void, std::string>;

  bool hasFeedOf(std::string const& country) const { return feed_ && country == lastCountryCode_; }
  bool isFresh(std::string const& country, Instant now) const;
  Outcome refresh(std::string const& country, std::string_view feedName, std::stop_token const& stop);
  Outcome request(std::string const& country, std::string_view feedName, bool conditional,
                  std::stop_token const& stop);
  Outcome accept(std::string const& country, HttpResponse const& answer);
  HttpHeaders headersFor(std::string const& country, bool conditional) const;
  PlaceRegions const& regionsOf(Coordinate place);
  std::vector<WeatherAlert> select(Coordinate place, PlaceRegions const& regions, Instant now) const;

  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  Texts const& texts_;
  RegionLookup lookUpRegions_;

  std::mutex mutex_;
  std::optional<MeteoAlarmFeed> feed_;
  std::optional<Instant> lastFetchDate_;
  std::string lastCountryCode_;
  std::map<std::string, Validators> feedValidators_;
  std::map<std::string, Instant> missingFeeds_;  ///< until when a feed that was not found is not asked for
  PlaceRegions cachedUserRegions_;
  std::string lastGeocodeKey_;
};

}  // namespace nimbara
