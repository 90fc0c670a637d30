// The hazard feeds of one program, bound to their hosts and folders. Owned by the composition; each service
// is made with it and asks nobody until it is asked.
#pragma once

#include "base/geodesy.h"
#include "globe/element_source.h"
#include "platform/secret_store.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace nimbara {

class AirQualityService;
class ClimateService;
class Clock;
class CloudService;
class EarthquakeService;
class EmscService;
class GdacsStormService;
class GeomagneticService;
class GovAlertService;
class HttpClient;
class KpForecastService;
class LightningSource;
class ModelFieldService;
class NWSAlertService;
class NowcastService;
class OutlookService;
class RadarService;
class Regions;
class ServiceDirectory;
class StationService;
class Texts;
class TileService;
class TravelAdvisoryService;
class TropicalStormService;
class TyphoonService;
class WildfireService;

class FeedServices {
 public:
  struct Options {
    std::string contact;
    std::filesystem::path cacheDirectory;  ///< the program's; empty: nothing outlives the process
    std::filesystem::path dataDirectory;   ///< where the outlines of warning regions lie
    std::shared_ptr<Texts const> texts;
    std::string language;  ///< in which warnings are wanted; empty: that of the texts
    /// The source of official warnings that the user has chosen for a place; empty: the usual one.
    std::function<std::string(Coordinate)> chosenSource = {};
    std::string advisorySource = "us";  ///< whose travel advisories the user has chosen
    MakeSecretStore secrets = {};       ///< empty: what is secret lies in files
  };

  FeedServices(HttpClient& http, Clock const& clock, ServiceDirectory const& services, Options options);
  ~FeedServices();
  FeedServices(FeedServices const&) = delete;
  FeedServices& operator=(FeedServices const&) = delete;

  NWSAlertService& nws();
  EarthquakeService& earthquakes();
  EmscService& emsc();
  GeomagneticService& geomagnetic();
  KpForecastService& kpForecast();
  GovAlertService& govAlerts();
  AirQualityService& airQuality();
  ClimateService& climate();
  TropicalStormService& tropicalStorms();
  TyphoonService& typhoons();
  GdacsStormService& gdacsStorms();
  WildfireService& wildfires();
  TravelAdvisoryService& travelAdvisories();
  LightningSource& lightning();
  NowcastService& nowcast();
  OutlookService& outlook();
  RadarService& radar();
  TileService& tiles();
  CloudService& clouds();
  ModelFieldService& modelFields();
  StationService& stations();
  Regions const& regions() const;
  /// Element sets by the name of their group, for a satellite feed. Must not outlive this.
  ElementSource elements();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace nimbara
