#include "app/services/feed_services.h"

#include "feeds/meteoalarm/meteo_alarm_source.h"
#include "feeds/regions/region_update.h"
#include "feeds/source_feeds.h"

namespace nimbara {

namespace {

bool isStandIn(ServiceDirectory const& services) {
  return !services.standIn().empty();
}

/// The public sources themselves, unless the user has named a relay.
std::unique_ptr<FeedSource> feedSource(HttpClient& http, Clock const& clock, ServiceDirectory const& services,
                                       std::filesystem::path const& cacheDirectory) {
  std::string relay = services.address(Service::feedServer).baseUrl;
  if (services.isChosen(Service::feedServer)) {
    return std::make_unique<RelayFeedSource>(http, clock, std::move(relay));
  }
  SourceFeeds::Options options;
  options.usgsBase = services.address(Service::usgs).baseUrl;
  options.celestrakBase = services.address(Service::celestrak).baseUrl;
  if (!cacheDirectory.empty()) {
    options.folder = cacheDirectory / (isStandIn(services) ? "Sources.stand-in" : "Sources");
  }
  if (isStandIn(services)) options.relayBase = std::move(relay);
  return std::make_unique<SourceFeeds>(http, clock, std::move(options));
}

EarthquakeService::Options earthquakeOptions(ServiceDirectory const& services,
                                             std::filesystem::path const& cacheDirectory) {
  return {cacheDirectory.empty() ? cacheDirectory : cacheDirectory / "Earthquakes", isStandIn(services)};
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
      source_(feedSource(http, clock, services, options_.cacheDirectory)),
      earthquakes_(*source_, clock, earthquakeOptions(services, options_.cacheDirectory)),
      geomagnetic_(http, clock, services.address(Service::swpc).baseUrl),
      kpForecast_(http, clock, services.address(Service::swpc).baseUrl),
      meteoAlarm_(
          http, clock, meteoAlarmOptions(services, options_), *options_.texts,
          [this](Coordinate place) { return regions_.at(place); },
          [this](std::string_view country, RawEntry const& entry) {
            return knownAreas_.has(country, entry, regions_.outlines().get());
          }),
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

ElementSource FeedServices::elements() {
  return [this](std::string_view group, std::stop_token const& stop) -> Result<ElementSets, std::string> {
    auto body = source_->get({FeedKey::Kind::satellites, std::string(group)}, stop);
    if (!body) return std::unexpected(std::move(body.error()));
    return ElementSets{std::move(body->body), body->fetchedAt};
  };
}

}  // namespace nimbara
