// The earthquakes of the last 24 hours worldwide, from wherever feeds come. Keeps the list in memory for five
// minutes and on disk over restarts; never raises an error.
#pragma once

#include "feeds/feed_source.h"
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

  /// Newest first; the last known list, perhaps empty, when nothing newer can be had. Blocks for the request.
  std::vector<EarthquakeEvent> fetchEarthquakes(std::stop_token const& stop = {});

  /// Why the last call could not renew the list: a sentence without a full stop; empty when it is fresh.
  std::string problem() const;
  /// When the list that this process has was downloaded.
  std::optional<Instant> checkedAt() const;

 private:
  std::optional<std::string> renew(std::stop_token const& stop);
  void loadOnce();
  void save() const;
  std::filesystem::path file() const;
  std::filesystem::path standInMark() const;

  FeedSource& source_;
  Clock const& clock_;
  Options options_;
  mutable std::mutex turn_;
  bool loaded_ = false;
  std::vector<EarthquakeEvent> cachedEvents_;
  std::optional<Instant> lastFetchDate_;
  std::string problem_;
};

}  // namespace nimbara
