// The present planetary K index, the measure of geomagnetic activity. Keeps the last value and serves it for
// half an hour; never raises an error.
#pragma once

#include "feeds/space/planetary_k_index.h"
#include "platform/clock.h"
#include "platform/http_client.h"

#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class GeomagneticService {
 public:
  static constexpr std::chrono::seconds kLife{1800};

  /// `baseUrl` is that of the service's products ("https://services.swpc.noaa.gov").
  GeomagneticService(HttpClient& http, Clock const& clock, std::string baseUrl);

  /// 0 to 9; the last known value when no newer one can be had, nothing when there never was one. Blocks for
  /// the request.
  std::optional<double> currentKp(std::stop_token const& stop = {});

  /// Why the last call gave no fresh value: a sentence without a full stop; empty when it did.
  std::string problem() const;
  /// The last days of the answer that gave the value, oldest first; empty before.
  std::vector<KpReading> recent() const;
  /// When that answer came.
  std::optional<Instant> checkedAt() const;

 private:
  std::optional<std::string> renew(std::stop_token const& stop);

  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  mutable std::mutex turn_;
  std::optional<double> cachedKp_;
  std::optional<Instant> cacheExpiry_;
  std::string problem_;
  std::vector<KpReading> recent_;
  std::optional<Instant> checkedAt_;
};

}  // namespace nimbara
