// The official warnings of European countries, from MeteoAlarm's feeds of each country and the documents that
// their entries link to. Owned by the application; keeps the feed of every country that was asked for. Any
// thread may ask, and a country that does not answer delays no other. Never throws; a failure leaves what was
// known before.
#pragma once

#include "base/words/texts.h"
#include "feeds/cap/cap_store.h"
#include "feeds/meteoalarm/meteo_alarm_country_feed.h"
#include "feeds/meteoalarm/meteo_alarm_merge.h"

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
  std::vector<WeatherAlert> unplaced;     ///< in force in areas of the country that nobody here can place
  std::optional<Instant> checkedAt;       ///< when the service confirmed them; never: nothing is known
  std::optional<ServiceFailure> failure;  ///< why they could not be confirmed just now
};

class MeteoAlarmService {
 public:
  using RegionLookup = std::function<PlaceRegions(Coordinate)>;
  /// Whether an entry that has no shape could concern any place of the country that is known here.
  using AreaLookup = std::function<bool(std::string_view country, RawEntry const&)>;

  struct Options {
    std::string baseUrl;                        ///< scheme and host of the feeds
    std::filesystem::path documentsDirectory;   ///< empty: documents do not outlive the process
    std::string language;                       ///< of the reader; empty: that of the texts
    std::filesystem::path feedsDirectory = {};  ///< shared by processes; empty: feeds do not outlive this one
  };

  /// `texts` outlives the service. Without `isKnownArea` every area counts as known.
  MeteoAlarmService(HttpClient& http, Clock const& clock, Options options, Texts const& texts,
                    RegionLookup regions, AreaLookup isKnownArea = {});

  /// The warnings that concern a coordinate, one for each kind. A country without a feed has none.
  std::vector<WeatherAlert> fetchAlerts(double latitude, double longitude, std::string_view countryCode,
                                        std::stop_token const& stop = {});

  /// The same and whether it is fresh. `regions`, where given, stand in for the look-up.
  MeteoAlarmAnswer fetch(Coordinate place, std::string_view countryCode,
                         std::optional<PlaceRegions> const& regions = {}, std::stop_token const& stop = {});

 private:
  MeteoAlarmCountryFeed& feedOf(std::string const& country, std::string_view feedName);
  std::optional<std::string> addressOf(RawEntry const& entry) const;
  std::vector<ToldEntry> told(std::vector<SelectedEntry> const& entries, CapDocuments const& messages,
                              std::stop_token const& stop);
  std::vector<WeatherAlert> unplacedAlerts(MeteoAlarmFeed const& feed,
                                           std::vector<SelectedEntry> const& selected,
                                           MergeContext const& context) const;

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  Texts const& texts_;
  RegionLookup lookUpRegions_;
  AreaLookup isKnownArea_;
  CapStore documents_;

  std::mutex mutex_;  // of the map alone
  std::map<std::string, std::unique_ptr<MeteoAlarmCountryFeed>> feeds_;
};

}  // namespace nimbara
