// The location from the portal (org.freedesktop.portal.Location), as programs in a sandbox ask for it: the
// accuracy of a city, a session for each call. Where there is no portal, another source is asked.
#pragma once

#include "platform/location_source.h"

#include <memory>
#include <string>

namespace nimbara {

class PortalLocationSource final : public LocationSource {
 public:
  /// The session's own bus for an empty address.
  PortalLocationSource(std::string sessionBus, std::unique_ptr<LocationSource> otherwise)
      : sessionBus_(std::move(sessionBus)), otherwise_(std::move(otherwise)) {}

  Result<LocationFix, LocationError> locate(std::chrono::milliseconds timeout,
                                            std::stop_token stop = {}) override;
  LocationError follow(std::uint32_t metres, Moved const& moved, std::stop_token stop) override;

 private:
  std::string sessionBus_;
  std::unique_ptr<LocationSource> otherwise_;
};

}  // namespace nimbara
