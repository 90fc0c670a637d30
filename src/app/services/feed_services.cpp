#include "app/services/feed_services.h"

#include "app/services/official_services.h"
#include "app/settings/service_directory.h"
#include "feeds/air/air_quality_service.h"
#include "feeds/climate/climate_service.h"
#include "feeds/feed_source.h"
#include "feeds/fires/wildfire_service.h"
#include "feeds/imagery/cloud_service.h"
#include "feeds/imagery/model_field_service.h"
#include "feeds/imagery/radar/radar_service.h"
#include "feeds/imagery/tile_service.h"
#include "feeds/nowcast/nowcast_service.h"
#include "feeds/outlook/outlook_service.h"
#include "feeds/quakes/earthquake_service.h"
#include "feeds/quakes/emsc_service.h"
#include "feeds/regions/region_update.h"
#include "feeds/regions/regions.h"
#include "feeds/source_feeds.h"
#include "feeds/space/geomagnetic_service.h"
#include "feeds/space/kp_forecast_service.h"
#include "feeds/stations/station_service.h"
#include "feeds/storms/lightning_source.h"
#include "feeds/storms/tropical_storm_service.h"
#include "feeds/storms/typhoon_service.h"
#include "feeds/travel/travel_advisory_service.h"

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

/// Advisories that a stand-in made up must never be taken for official ones.
std::filesystem::path advisoryDirectory(ServiceDirectory const& services,
                                        std::filesystem::path const& cacheDirectory) {
  if (cacheDirectory.empty()) return {};
  return (isStandIn(services) ? cacheDirectory / "stand-in" : cacheDirectory) / "TravelAdvisories";
}

AirQualityService::Options airQualityOptions(ServiceAddress address) {
  return {std::move(address.baseUrl), std::move(address.apiKey)};
}

/// What a stand-in made up is never kept for a place's climate.
ClimateService::Options climateOptions(ServiceDirectory const& services,
                                       std::filesystem::path const& cacheDirectory) {
  ServiceAddress archive = services.address(Service::openMeteoArchive);
  ServiceAddress forecast = services.address(Service::openMeteo);
  bool const keeps = !cacheDirectory.empty() && !isStandIn(services);
  return {std::move(archive.baseUrl), std::move(archive.apiKey), std::move(forecast.baseUrl),
          std::move(forecast.apiKey), keeps ? cacheDirectory / "Climate" : std::filesystem::path()};
}

NowcastService::Options nowcastOptions(ServiceDirectory const& services,
                                       std::filesystem::path const& cacheDirectory) {
  ServiceAddress openMeteo = services.address(Service::openMeteo);
  NowcastService::Options options{services.address(Service::yrNo).baseUrl,
                                  services.address(Service::brightSky).baseUrl, std::move(openMeteo.baseUrl),
                                  std::move(openMeteo.apiKey)};
  if (!cacheDirectory.empty())
    options.cacheDirectory = cacheDirectory / (isStandIn(services) ? "Nowcasts.stand-in" : "Nowcasts");
  return options;
}

OutlookService::Options outlookOptions(ServiceAddress address) {
  return {std::move(address.baseUrl), std::move(address.apiKey)};
}

RadarService::Bases radarBases(ServiceDirectory const& services) {
  RadarService::Bases bases;
  for (RadarSupplier const& supplier : radarSuppliers())
    bases[supplier.source] = services.address(supplier.service).baseUrl;
  return bases;
}

/// Rain that a stand-in made up must never be taken for real.
std::filesystem::path tileDirectory(ServiceDirectory const& services,
                                    std::filesystem::path const& cacheDirectory) {
  if (cacheDirectory.empty()) return {};
  return cacheDirectory / (isStandIn(services) ? "MapPictures.stand-in" : "MapPictures");
}

ModelFieldService::Options modelFieldOptions(ServiceDirectory const& services,
                                             std::filesystem::path const& cacheDirectory) {
  ServiceAddress address = services.address(Service::openMeteo);
  ModelFieldService::Options options{std::move(address.baseUrl), std::move(address.apiKey)};
  if (!cacheDirectory.empty())
    options.folder = cacheDirectory / (isStandIn(services) ? "ModelFields.stand-in" : "ModelFields");
  return options;
}

CloudService::Options cloudOptions(ServiceDirectory const& services,
                                   std::filesystem::path const& cacheDirectory) {
  CloudService::Options options{services.address(Service::nowCoast).baseUrl,
                                services.address(Service::eumetView).baseUrl};
  if (!cacheDirectory.empty())
    options.folder = cacheDirectory / (isStandIn(services) ? "Clouds.stand-in" : "Clouds");
  return options;
}

/// A station that a stand-in plays is never taken for the user's own.
StationService::Options stationOptions(ServiceDirectory const& services,
                                       FeedServices::Options const& options) {
  std::string const suffix = isStandIn(services) ? ".stand-in.json" : ".json";
  auto const below = [&](std::filesystem::path const& folder, std::string const& name) {
    return folder.empty() ? folder : folder / (name + suffix);
  };
  return {services.address(Service::netatmo).baseUrl, below(options.dataDirectory, "station"),
          below(options.cacheDirectory, "Station"), below(options.cacheDirectory, "StationHistory"),
          options.secrets};
}

/// A stand-in takes any key, so that it needs none of the user's.
WildfireService::Options wildfireOptions(ServiceDirectory const& services) {
  ServiceAddress address = services.address(Service::firms);
  if (isStandIn(services)) address.apiKey = "stand-in";
  return {std::move(address.baseUrl), std::move(address.apiKey)};
}

}  // namespace

struct FeedServices::Parts {
  Parts(HttpClient& http, Clock const& clock, ServiceDirectory const& services, Options given)
      : options(std::move(given)),
        regions(regionFileIn(options.dataDirectory)),
        official(http, clock, services, options, regions),
        source(feedSource(http, clock, services, options.cacheDirectory)),
        earthquakes(*source, clock, earthquakeOptions(services, options.cacheDirectory)),
        emsc(http, clock, services.address(Service::emsc).baseUrl),
        geomagnetic(http, clock, services.address(Service::swpc).baseUrl),
        kpForecast(http, clock, services.address(Service::swpc).baseUrl),
        airQuality(http, clock, airQualityOptions(services.address(Service::airQuality))),
        climate(http, clock, climateOptions(services, options.cacheDirectory)),
        tropicalStorms(http, clock,
                       {services.address(Service::nhc).baseUrl, services.address(Service::nhcMaps).baseUrl}),
        typhoons(http, clock, services.address(Service::jtwc).baseUrl),
        gdacsStorms(http, clock, services.address(Service::gdacs).baseUrl),
        wildfires(http, clock, wildfireOptions(services)),
        travelAdvisories(http, clock,
                         {services.address(Service::travelAdvisories).baseUrl,
                          advisoryDirectory(services, options.cacheDirectory),
                          services.address(Service::advisoriesCanada).baseUrl,
                          services.address(Service::advisoriesBritain).baseUrl,
                          services.address(Service::advisoriesGermany).baseUrl,
                          enumFromName<AdvisorySource>(options.advisorySource).value_or(AdvisorySource::us)}),
        lightning(http, clock, services.address(Service::lightning).baseUrl),
        nowcast(http, clock, nowcastOptions(services, options.cacheDirectory)),
        outlook(http, clock, outlookOptions(services.address(Service::openMeteo))),
        imageryRequests(http, clock),
        radar(imageryRequests, clock, radarBases(services)),
        tiles(imageryRequests, clock, tileDirectory(services, options.cacheDirectory)),
        clouds(imageryRequests, clock, cloudOptions(services, options.cacheDirectory)),
        modelFields(imageryRequests, clock, modelFieldOptions(services, options.cacheDirectory)),
        stations(http, clock, stationOptions(services, options)) {}

  Options options;
  Regions regions;
  OfficialServices official;
  std::unique_ptr<FeedSource> source;
  EarthquakeService earthquakes;
  EmscService emsc;
  GeomagneticService geomagnetic;
  KpForecastService kpForecast;
  AirQualityService airQuality;
  ClimateService climate;
  TropicalStormService tropicalStorms;
  TyphoonService typhoons;
  GdacsStormService gdacsStorms;
  WildfireService wildfires;
  TravelAdvisoryService travelAdvisories;
  HttpLightningSource lightning;
  NowcastService nowcast;
  OutlookService outlook;
  ImageryRequests imageryRequests;
  RadarService radar;
  TileService tiles;
  CloudService clouds;
  ModelFieldService modelFields;
  StationService stations;
};

FeedServices::FeedServices(HttpClient& http, Clock const& clock, ServiceDirectory const& services,
                           Options options)
    : parts_(std::make_unique<Parts>(http, clock, services, std::move(options))) {}

FeedServices::~FeedServices() = default;

NWSAlertService& FeedServices::nws() {
  return parts_->official.nws();
}

EarthquakeService& FeedServices::earthquakes() {
  return parts_->earthquakes;
}

EmscService& FeedServices::emsc() {
  return parts_->emsc;
}

GeomagneticService& FeedServices::geomagnetic() {
  return parts_->geomagnetic;
}

KpForecastService& FeedServices::kpForecast() {
  return parts_->kpForecast;
}

GovAlertService& FeedServices::govAlerts() {
  return parts_->official.alerts();
}

AirQualityService& FeedServices::airQuality() {
  return parts_->airQuality;
}

ClimateService& FeedServices::climate() {
  return parts_->climate;
}

TropicalStormService& FeedServices::tropicalStorms() {
  return parts_->tropicalStorms;
}

TyphoonService& FeedServices::typhoons() {
  return parts_->typhoons;
}

GdacsStormService& FeedServices::gdacsStorms() {
  return parts_->gdacsStorms;
}

WildfireService& FeedServices::wildfires() {
  return parts_->wildfires;
}

TravelAdvisoryService& FeedServices::travelAdvisories() {
  return parts_->travelAdvisories;
}

LightningSource& FeedServices::lightning() {
  return parts_->lightning;
}

NowcastService& FeedServices::nowcast() {
  return parts_->nowcast;
}

OutlookService& FeedServices::outlook() {
  return parts_->outlook;
}

RadarService& FeedServices::radar() {
  return parts_->radar;
}

TileService& FeedServices::tiles() {
  return parts_->tiles;
}

CloudService& FeedServices::clouds() {
  return parts_->clouds;
}

ModelFieldService& FeedServices::modelFields() {
  return parts_->modelFields;
}

StationService& FeedServices::stations() {
  return parts_->stations;
}

Regions const& FeedServices::regions() const {
  return parts_->regions;
}

ElementSource FeedServices::elements() {
  return [this](std::string_view group, std::stop_token const& stop) -> Result<ElementSets, ServiceFailure> {
    auto body = parts_->source->get({FeedKey::Kind::satellites, std::string(group)}, stop);
    if (!body) return std::unexpected(std::move(body.error()));
    return ElementSets{std::move(body->body), body->fetchedAt};
  };
}

}  // namespace nimbara
