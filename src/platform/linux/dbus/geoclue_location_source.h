// The location from GeoClue, the desktop's location service on the system's bus: the accuracy of a city, a
// connection of its own for each call. The user's decision about the access is the service's.
#pragma once

#include "platform/location_source.h"

#include <string>

namespace nimbara {

class GeoclueLocationSource final : public LocationSource {
 public:
  /// The system's own bus for an empty address.
  explicit GeoclueLocationSource(std::string systemBus) : systemBus_(std::move(systemBus)) {}

  Result<LocationFix, LocationError> locate(std::chrono::milliseconds timeout,
                                            std::stop_token stop = {}) override;
  LocationError follow(std::uint32_t metres, Moved const& moved, std::stop_token stop) override;

 private:
  std::string systemBus_;
};

}  // namespace nimbara
