// The air quality forecast of Open-Meteo for the places that are asked for. Keeps each place's forecast for
// an hour, of the places asked for last; never raises an error.
#pragma once

#include "base/geodesy.h"
#include "feeds/air/air_quality.h"
#include "feeds/fetching/watched_feed.h"

#include <mutex>
#include <stop_token>
#include <string>

namespace nimbara {

class AirQualityService {
 public:
  static constexpr std::chrono::seconds kLife{3600};
  static constexpr std::size_t kMostPlaces = 32;

  struct Options {
    std::string baseUrl;  ///< "https://air-quality-api.open-meteo.com"
    std::string apiKey;   ///< empty for the free service
  };

  AirQualityService(HttpClient& http, Clock const& clock, Options options);

  /// Blocks for the request where the cached forecast is too old.
  FeedReading<AirQualityForecast> fetchForecast(Coordinate place, std::stop_token const& stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;
  WatchedFeeds<AirQualityForecast, kMostPlaces> places_;  ///< by the coordinate's text in the request
};

}  // namespace nimbara
