// The present planetary K index, the measure of geomagnetic activity. Keeps the last value and serves it for
// half an hour; never raises an error.
#pragma once

#include "feeds/fetching/watched_feed.h"
#include "feeds/space/planetary_k_index.h"

#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

struct KIndex {
  std::optional<double> now;      ///< 0 to 9; nothing when it was never known
  std::vector<KpReading> recent;  ///< the last days, oldest first

  bool operator==(KIndex const&) const = default;
};

class GeomagneticService {
 public:
  static constexpr std::chrono::seconds kLife{1800};

  /// `baseUrl` is that of the service's products ("https://services.swpc.noaa.gov").
  GeomagneticService(HttpClient& http, Clock const& clock, std::string baseUrl);

  /// The last known value when no newer one can be had. Blocks for the request.
  FeedReading<KIndex> currentKp(std::stop_token const& stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::mutex turn_;
  WatchedFeed<KIndex> feed_;
};

}  // namespace nimbara
