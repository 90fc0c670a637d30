// The earthquakes of the last 24 hours from the European-Mediterranean Seismological Centre, by query. Keeps
// the list for five minutes; never raises an error.
#pragma once

#include "feeds/fetching/watched_feed.h"
#include "feeds/quakes/emsc.h"

#include <mutex>
#include <stop_token>
#include <string>

namespace nimbara {

class EmscService {
 public:
  static constexpr std::chrono::seconds kLife{300};

  /// `baseUrl` is "https://www.seismicportal.eu".
  EmscService(HttpClient& http, Clock const& clock, std::string baseUrl)
      : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)) {}

  /// Newest first. Blocks for the request.
  FeedReading<std::vector<EarthquakeEvent>> fetchEarthquakes(std::stop_token const& stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::mutex turn_;
  WatchedFeed<std::vector<EarthquakeEvent>> list_;
};

}  // namespace nimbara
