// The services of official warnings of one program, bound to their hosts and folders, and what puts their
// answers together. Owned by the feeds; asks nobody until it is asked.
#pragma once

#include "app/services/feed_services.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/brightsky/bright_sky_service.h"
#include "feeds/cap/cap_store.h"
#include "feeds/eccc/eccc_service.h"
#include "feeds/fpas/fpas_service.h"
#include "feeds/metalerts/met_alerts_service.h"
#include "feeds/meteoalarm/areas/known_areas.h"
#include "feeds/meteoalarm/meteo_alarm_service.h"
#include "feeds/nws/nws_alert_service.h"
#include "feeds/wmo/wmo_service.h"

namespace nimbara {

class OfficialServices {
 public:
  /// All must outlive the services.
  OfficialServices(HttpClient& http, Clock const& clock, ServiceDirectory const& services,
                   FeedServices::Options const& options, Regions const& regions);

  NWSAlertService& nws() { return nws_; }
  GovAlertService& alerts() { return alerts_; }

 private:
  std::vector<GovAlertSource> sources(Clock const& clock, std::string const& language);

  KnownAreas knownAreas_;
  NWSAlertService nws_;
  NWSAlertService nwsWaters_;  ///< of the points on the water off the places
  MeteoAlarmService meteoAlarm_;
  /// In one folder, but each rests by itself after a failure: the second must not wait for the first.
  CapStore wmoDocuments_;
  CapStore fpasDocuments_;
  WmoService wmo_;
  FpasService fpas_;
  EcccService eccc_;
  MetAlertsService metAlerts_;
  BrightSkyService brightSky_;
  GovAlertService alerts_;
};

}  // namespace nimbara
