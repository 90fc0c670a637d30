#include "app/feed_services.h"

#include "feeds/meteo_alarm_source.h"
#include "feeds/region_update.h"

namespace nimbara {

namespace {

bool isStandIn(ServiceDirectory const& services) {
  return !services.standIn().empty();
}

EarthquakeService::Options earthquakeOptions(ServiceDirectory const& services,
                                             std::filesystem::path const& cacheDirectory) {
  return {services.address(Service::feedServer).baseUrl,
          cacheDirectory.empty() ? cacheDirectory : cacheDirectory / "Earthquakes", isStandIn(services)};
}

/// Warnings that a stand-in made up must never be taken for official ones.
std::filesystem::path alertDirectory(ServiceDirectory const& services,
                                     std::filesystem::path const& cacheDirectory) {
  return cacheDirectory.empty() || !isStandIn(services) ? cacheDirectory : cacheDirectory / "stand-in";
}

}  // namespace

FeedServices::FeedServices(HttpClient& http, Clock const& clock, ServiceDirectory const& services,
                           Options options)
    : options_(std::move(options)),
      regions_(regionFileIn(options_.dataDirectory)),
      nws_(http, clock, {services.address(Service::nws).baseUrl, options_.contact}),
      earthquakes_(http, clock, earthquakeOptions(services, options_.cacheDirectory)),
      geomagnetic_(http, clock, services.address(Service::swpc).baseUrl),
      meteoAlarm_(http, clock, services.address(Service::meteoAlarm).baseUrl, *options_.texts,
                  [this](Coordinate place) { return regions_.at(place); }),
      govAlerts_(clock, {nwsAlertSource(nws_, clock), meteoAlarmSource(meteoAlarm_)},
                 alertDirectory(services, options_.cacheDirectory)) {}

}  // namespace nimbara
