// The fires around a place, from the satellites' hot spots that NASA FIRMS lists. Needs the user's own key,
// which is part of the address and never of a sentence. Keeps each area's list for a quarter of an hour;
// never raises an error.
#pragma once

#include "feeds/fetching/watched_feed.h"
#include "feeds/fires/fire_detection.h"

#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class WildfireService {
 public:
  static constexpr std::chrono::seconds kLife{900};
  static constexpr std::size_t kMostAreas = 16;
  static constexpr double kLargestRadiusKm = 500;

  struct Options {
    std::string baseUrl;  ///< "https://firms.modaps.eosdis.nasa.gov"
    std::string mapKey;   ///< empty: there is no source
  };

  WildfireService(HttpClient& http, Clock const& clock, Options options);

  /// The fires of the last 24 hours, the nearest first. Radii beyond the largest count as that. Blocks for
  /// the request.
  FeedReading<std::vector<FireDetection>> fetchFires(Coordinate place, double radiusKm,
                                                     std::stop_token const& stop = {});

 private:
  FeedReading<std::vector<HotSpot>> hotSpots(std::string const& area, std::stop_token const& stop);
  std::string withoutKey(std::string text) const;

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;
  WatchedFeeds<std::vector<HotSpot>, kMostAreas> areas_;  ///< by the area's text in the request
  std::vector<FireDetection> known_;                      ///< of the last day, for their identifiers
};

/// The boxes around a circle as the service wants them, "west,south,east,north", in tenths of a degree: two
/// where the circle crosses 180°.
std::vector<std::string> fireAreas(Coordinate place, double radiusKm);

}  // namespace nimbara
