// The hazard feeds of one program, bound to their hosts and folders. Owned by the composition; each service
// is made with it and asks nobody until it is asked.
#pragma once

#include "app/settings/service_directory.h"
#include "feeds/air/air_quality_service.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/feed_source.h"
#include "feeds/fires/wildfire_service.h"
#include "feeds/meteoalarm/known_areas.h"
#include "feeds/meteoalarm/meteo_alarm_service.h"
#include "feeds/nws/nws_alert_service.h"
#include "feeds/quakes/earthquake_service.h"
#include "feeds/regions/regions.h"
#include "feeds/space/geomagnetic_service.h"
#include "feeds/space/kp_forecast_service.h"
#include "feeds/storms/lightning_source.h"
#include "feeds/storms/tropical_storm_service.h"
#include "feeds/travel/travel_advisory_service.h"
#include "globe/satellite_feed.h"
#include "platform/clock.h"
#include "platform/http_client.h"

#include <filesystem>
#include <memory>
#include <string>

namespace nimbara {

class FeedServices {
 public:
  struct Options {
    std::string contact;
    std::filesystem::path cacheDirectory;  ///< the program's; empty: nothing outlives the process
    std::filesystem::path dataDirectory;   ///< where the outlines of warning regions lie
    std::shared_ptr<Texts const> texts;
    std::string language;  ///< in which warnings are wanted; empty: that of the texts
  };

  FeedServices(HttpClient& http, Clock const& clock, ServiceDirectory const& services, Options options);
  FeedServices(FeedServices const&) = delete;
  FeedServices& operator=(FeedServices const&) = delete;

  NWSAlertService& nws() { return nws_; }
  EarthquakeService& earthquakes() { return earthquakes_; }
  GeomagneticService& geomagnetic() { return geomagnetic_; }
  KpForecastService& kpForecast() { return kpForecast_; }
  GovAlertService& govAlerts() { return govAlerts_; }
  AirQualityService& airQuality() { return airQuality_; }
  TropicalStormService& tropicalStorms() { return tropicalStorms_; }
  WildfireService& wildfires() { return wildfires_; }
  TravelAdvisoryService& travelAdvisories() { return travelAdvisories_; }
  LightningSource& lightning() { return lightning_; }
  Regions const& regions() const { return regions_; }
  /// Element sets by the name of their group, for a satellite feed. Must not outlive this.
  ElementSource elements();

 private:
  Options options_;
  Regions regions_;
  KnownAreas knownAreas_;
  NWSAlertService nws_;
  std::unique_ptr<FeedSource> source_;
  EarthquakeService earthquakes_;
  GeomagneticService geomagnetic_;
  KpForecastService kpForecast_;
  MeteoAlarmService meteoAlarm_;
  NWSAlertService nwsWaters_;  ///< of the points on the water off the places
  GovAlertService govAlerts_;
  AirQualityService airQuality_;
  TropicalStormService tropicalStorms_;
  WildfireService wildfires_;
  TravelAdvisoryService travelAdvisories_;
  HttpLightningSource lightning_;
};

}  // namespace nimbara
