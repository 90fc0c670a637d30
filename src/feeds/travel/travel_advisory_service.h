// The travel advisories of the government that the user has chosen, for all countries. Keeps its list for six
// hours, over restarts too; never raises an error. The United Kingdom has a page for each country in place of
// a list, and is asked for the one country.
#pragma once

#include "feeds/fetching/watched_feed.h"
#include "feeds/travel/advisory_parsers.h"
#include "feeds/travel/travel_advisory.h"

#include <array>
#include <filesystem>
#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class TravelAdvisoryService {
 public:
  static constexpr std::chrono::hours kLife{6};
  static constexpr std::size_t kMostPages = 32;

  struct Options {
    std::string baseUrl;                   ///< "https://cadataapi.state.gov"
    std::filesystem::path cacheDirectory;  ///< empty: nothing outlives the process
    std::string canadaBase = {};           ///< "https://data.international.gc.ca"
    std::string britainBase = {};          ///< "https://www.gov.uk"
    std::string germanyBase = {};          ///< "https://www.auswaertiges-amt.de"
    AdvisorySource chosen = AdvisorySource::us;
  };

  TravelAdvisoryService(HttpClient& http, Clock const& clock, Options options);

  using Reading = FeedReading<std::vector<TravelAdvisory>>;

  AdvisorySource chosen() const { return options_.chosen; }

  /// Of the chosen source, by country. Blocks for the request where the kept list is too old.
  Reading fetchAdvisories(std::stop_token const& stop = {}) {
    return fetchAdvisories(options_.chosen, {}, stop);
  }
  /// All countries that the source lists; of the United Kingdom that of `country` (two letters) alone, none
  /// without one.
  Reading fetchAdvisories(AdvisorySource source, std::string const& country,
                          std::stop_token const& stop = {});

 private:
  struct List {
    bool isLoaded = false;
    WatchedFeed<std::vector<TravelAdvisory>> feed;
  };

  std::filesystem::path fileOf(AdvisorySource source) const;
  void loadOnce(AdvisorySource source);
  void save(AdvisorySource source, std::vector<TravelAdvisory> const& advisories, Instant checkedAt) const;
  Reading fetchBritish(std::string const& country, std::stop_token const& stop);

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;
  std::array<List, enumNames<AdvisorySource>.size()> lists_;
  WatchedFeed<AdvisoryPages> britishPages_;
  WatchedFeeds<TravelAdvisory, kMostPages> british_;
};

}  // namespace nimbara
