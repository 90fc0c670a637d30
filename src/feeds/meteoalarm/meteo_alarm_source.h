// MeteoAlarm as one of the aggregator's sources.
#pragma once

#include "feeds/alerts/gov_alert_service.h"
#include "feeds/meteoalarm/meteo_alarm_service.h"

namespace nimbara {

/// Covers the countries that have a feed. `service` must outlive the source.
GovAlertSource meteoAlarmSource(MeteoAlarmService& service);

}  // namespace nimbara
