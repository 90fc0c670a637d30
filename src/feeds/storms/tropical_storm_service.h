// The tropical cyclones of the Atlantic and the Pacific from the National Hurricane Center, each with its
// forecast track. Keeps the last list for a quarter of an hour, and a track until its storm is reported on
// again; never raises an error.
#pragma once

#include "feeds/fetching/watched_feed.h"
#include "feeds/storms/tropical_storm.h"

#include <map>
#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class TropicalStormService {
 public:
  static constexpr std::chrono::seconds kLife{900};

  struct Options {
    std::string baseUrl;     ///< "https://www.nhc.noaa.gov"
    std::string mapBaseUrl;  ///< "https://mapservices.weather.noaa.gov"
  };

  TropicalStormService(HttpClient& http, Clock const& clock, Options options);

  /// Blocks for the requests. A storm whose track is not available has none; that is no failure.
  FeedReading<std::vector<TropicalStorm>> fetchStorms(std::stop_token const& stop = {});

 private:
  struct KeptTrack {
    Instant lastUpdate;
    std::vector<TropicalTrackPoint> points;
  };

  void renewTracks(std::vector<TropicalStorm> const& storms, std::stop_token const& stop);
  void forgetOldTracks(std::vector<TropicalStorm> const& storms);
  bool hasTrackOf(TropicalStorm const& storm) const;
  std::vector<MapLayer> layers(std::stop_token const& stop) const;
  std::optional<std::string> mapAnswer(std::string const& path, std::stop_token const& stop) const;

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;
  WatchedFeed<std::vector<TropicalStorm>> list_;
  std::map<std::string, KeptTrack> tracks_;  ///< by the storm's identifier
  std::optional<Instant> tracksTriedAt_;
};

}  // namespace nimbara
