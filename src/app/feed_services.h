// The hazard feeds of one program, bound to their hosts and folders. Owned by the composition; each service
// is made with it and asks nobody until it is asked.
#pragma once

#include "app/service_directory.h"
#include "feeds/earthquake_service.h"
#include "feeds/geomagnetic_service.h"
#include "feeds/gov_alert_service.h"
#include "feeds/nws_alert_service.h"
#include "platform/clock.h"
#include "platform/http_client.h"

#include <filesystem>
#include <string>

namespace nimbara {

class FeedServices {
 public:
  /// `cacheDirectory` is the program's; empty: nothing outlives the process.
  FeedServices(HttpClient& http, Clock const& clock, ServiceDirectory const& services,
               std::string const& contact, std::filesystem::path const& cacheDirectory);
  FeedServices(FeedServices const&) = delete;
  FeedServices& operator=(FeedServices const&) = delete;

  NWSAlertService& nws() { return nws_; }
  EarthquakeService& earthquakes() { return earthquakes_; }
  GeomagneticService& geomagnetic() { return geomagnetic_; }
  GovAlertService& govAlerts() { return govAlerts_; }

 private:
  NWSAlertService nws_;
  EarthquakeService earthquakes_;
  GeomagneticService geomagnetic_;
  GovAlertService govAlerts_;
};

}  // namespace nimbara
