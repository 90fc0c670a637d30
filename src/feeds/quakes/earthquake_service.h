// The earthquakes of the last 24 hours worldwide, from wherever feeds come. Keeps the list in memory for five
// minutes and on disk over restarts; never raises an error.
#pragma once

#include "feeds/feed_source.h"
#include "feeds/fetching/feed_reading.h"
#include "feeds/quakes/earthquake_event.h"
#include "platform/clock.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class EarthquakeService {
 public:
  static constexpr std::chrono::seconds kTTL{300};

  struct Options {
    std::filesystem::path cacheDirectory;  ///< "…/Nimbara/Earthquakes"; empty: nothing outlives the process
    bool isStandIn = false;  ///< what a stand-in told is never taken for the service's own list later
  };

  EarthquakeService(FeedSource& source, Clock const& clock, Options options);

  /// Newest first; the last known list, perhaps empty, when nothing newer can be had. A list of an earlier
  /// process has no `checkedAt`. Blocks for the request.
  FeedReading<std::vector<EarthquakeEvent>> fetchEarthquakes(std::stop_token const& stop = {});

 private:
  std::optional<ServiceFailure> renew(std::stop_token const& stop);
  void loadOnce();
  void save() const;
  std::filesystem::path file() const;
  std::filesystem::path standInMark() const;

  FeedSource& source_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;
  bool loaded_ = false;
  std::vector<EarthquakeEvent> cachedEvents_;
  std::optional<Instant> lastFetchDate_;
  std::optional<Instant> failedSince_;
};

}  // namespace nimbara
