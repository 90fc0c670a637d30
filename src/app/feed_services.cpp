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

std::filesystem::path advisoryDirectory(ServiceDirectory const& services,
                                        std::filesystem::path const& cacheDirectory) {
  auto const directory = alertDirectory(services, cacheDirectory);
  return directory.empty() ? directory : directory / "TravelAdvisories";
}

MeteoAlarmService::Options meteoAlarmOptions(ServiceDirectory const& services,
                                             FeedServices::Options const& options) {
  auto const directory = alertDirectory(services, options.cacheDirectory);
  return {services.address(Service::meteoAlarm).baseUrl,
          directory.empty() ? directory : directory / "WarningDocuments", options.language};
}

AirQualityService::Options airQualityOptions(ServiceAddress address) {
  return {std::move(address.baseUrl), std::move(address.apiKey)};
}

/// A stand-in takes any key, so that it needs none of the user's.
WildfireService::Options wildfireOptions(ServiceDirectory const& services) {
  ServiceAddress address = services.address(Service::firms);
  if (isStandIn(services)) address.apiKey = "stand-in";
  return {std::move(address.baseUrl), std::move(address.apiKey)};
}

}  // namespace

FeedServices::FeedServices(HttpClient& http, Clock const& clock, ServiceDirectory const& services,
                           Options options)
    : options_(std::move(options)),
      regions_(regionFileIn(options_.dataDirectory)),
      nws_(http, clock, {services.address(Service::nws).baseUrl, options_.contact}),
      earthquakes_(http, clock, earthquakeOptions(services, options_.cacheDirectory)),
      geomagnetic_(http, clock, services.address(Service::swpc).baseUrl),
      kpForecast_(http, clock, services.address(Service::swpc).baseUrl),
      meteoAlarm_(http, clock, meteoAlarmOptions(services, options_), *options_.texts,
                  [this](Coordinate place) { return regions_.at(place); }),
      nwsWaters_(http, clock, {services.address(Service::nws).baseUrl, options_.contact}),
      govAlerts_(clock, {nwsAlertSource(nws_, clock, &nwsWaters_), meteoAlarmSource(meteoAlarm_)},
                 alertDirectory(services, options_.cacheDirectory)),
      airQuality_(http, clock, airQualityOptions(services.address(Service::airQuality))),
      tropicalStorms_(http, clock,
                      {services.address(Service::nhc).baseUrl, services.address(Service::nhcMaps).baseUrl}),
      wildfires_(http, clock, wildfireOptions(services)),
      travelAdvisories_(http, clock,
                        {services.address(Service::travelAdvisories).baseUrl,
                         advisoryDirectory(services, options_.cacheDirectory)}),
      lightning_(http, clock, services.address(Service::lightning).baseUrl) {}

}  // namespace nimbara
