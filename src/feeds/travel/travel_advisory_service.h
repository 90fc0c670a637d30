// The travel advisories of the United States Department of State for all countries. Keeps the list for six
// hours, over restarts too; never raises an error.
#pragma once

#include "feeds/fetching/watched_feed.h"
#include "feeds/travel/travel_advisory.h"

#include <filesystem>
#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class TravelAdvisoryService {
 public:
  static constexpr std::chrono::hours kLife{6};

  struct Options {
    std::string baseUrl;                   ///< "https://cadataapi.state.gov"
    std::filesystem::path cacheDirectory;  ///< empty: nothing outlives the process
  };

  TravelAdvisoryService(HttpClient& http, Clock const& clock, Options options);

  /// By country. Blocks for the request where the kept list is too old.
  FeedReading<std::vector<TravelAdvisory>> fetchAdvisories(std::stop_token const& stop = {});

 private:
  std::filesystem::path file() const { return options_.cacheDirectory / "advisories.json"; }
  void loadOnce();
  void save(std::vector<TravelAdvisory> const& advisories, Instant checkedAt) const;

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;
  bool loaded_ = false;
  WatchedFeed<std::vector<TravelAdvisory>> feed_;
};

}  // namespace nimbara
