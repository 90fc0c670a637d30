// The tropical cyclones of the western Pacific, the Indian Ocean and the southern hemisphere from the Joint
// Typhoon Warning Center, and what the Global Disaster Alert and Coordination System lists of all seas. Keeps
// each document for half an hour; never raises an error.
#pragma once

#include "feeds/fetching/watched_feed.h"
#include "feeds/storms/tropical_storm.h"

#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class TyphoonService {
 public:
  static constexpr std::chrono::seconds kLife{1800};
  static constexpr std::size_t kMostStorms = 40;

  /// `baseUrl` is "https://www.metoc.navy.mil".
  TyphoonService(HttpClient& http, Clock const& clock, std::string baseUrl);

  /// Blocks for the list and for the file of each storm. Current only when all of them are.
  FeedReading<std::vector<TropicalStorm>> fetchStorms(std::stop_token const& stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::mutex turn_;
  WatchedFeed<std::vector<std::string>> list_;
  WatchedFeeds<TropicalStorm, kMostStorms> storms_;  ///< by their files
};

class GdacsStormService {
 public:
  static constexpr std::chrono::seconds kLife{1800};

  /// `baseUrl` is "https://www.gdacs.org".
  GdacsStormService(HttpClient& http, Clock const& clock, std::string baseUrl);

  FeedReading<std::vector<TropicalStorm>> fetchStorms(std::stop_token const& stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::mutex turn_;
  WatchedFeed<std::vector<TropicalStorm>> list_;
};

}  // namespace nimbara
