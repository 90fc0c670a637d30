#include "app/feed_services.h"

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
                           std::string const& contact, std::filesystem::path const& cacheDirectory)
    : nws_(http, clock, {services.address(Service::nws).baseUrl, contact}),
      earthquakes_(http, clock, earthquakeOptions(services, cacheDirectory)),
      geomagnetic_(http, clock, services.address(Service::swpc).baseUrl),
      govAlerts_(clock, {nwsAlertSource(nws_, clock)}, alertDirectory(services, cacheDirectory)) {}

}  // namespace nimbara
