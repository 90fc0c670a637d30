// The planetary K index as it is expected of the next three days, in steps of three hours. Keeps the last
// forecast and serves it for an hour; never raises an error.
#pragma once

#include "feeds/fetching/watched_feed.h"
#include "feeds/space/planetary_k_index.h"

#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class KpForecastService {
 public:
  static constexpr std::chrono::hours kLife{1};

  /// `baseUrl` is that of the service's products ("https://services.swpc.noaa.gov").
  KpForecastService(HttpClient& http, Clock const& clock, std::string baseUrl);

  /// What is predicted, by time; of the past nothing. Blocks for the request where one is due.
  FeedReading<std::vector<KpReading>> fetchForecast(std::stop_token const& stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::mutex turn_;
  WatchedFeed<std::vector<KpReading>> feed_;
};

}  // namespace nimbara
