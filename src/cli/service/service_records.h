// What the service tells of a place, in the plain values that go over the bus. Temperatures are in °C and
// speeds in km/h beside texts in the user's units, moments in seconds since 1970; what is not known has no
// entry. Pure.
#pragma once

#include "cli/service/service_snapshot.h"
#include "platform/session/session_service.h"

namespace nimbara {

ServiceRecord placeRecord(ServicePlace const& place);
/// "state" is "current", "stale" or "unknown"; an unknown one has nothing beside it and the warnings' state.
ServiceRecord currentRecord(ServicePlace const& place, Wording const& wording, Instant now);
/// At most a day of hours from the present one on; none without a forecast.
ServiceRecords hourRecords(ServicePlace const& place, Wording const& wording, Instant now);
ServiceRecord warningRecord(WeatherAlert const& warning);
/// Those that have not ended. The state is that of the check that says least good.
ServiceWarnings warningsOf(ServicePlace const& place, Instant now);
ServiceNowcast nowcastOf(ServicePlace const& place, Wording const& wording, Instant now);
ServiceProperties propertiesOf(ServiceSnapshot const& snapshot, Instant now);

/// A name of the freedesktop icon naming specification.
std::string weatherIcon(WeatherConditionCode condition, bool isDay);

/// What a search shows of the place: its weather in the title, warnings and age below.
SearchHit searchHit(ServicePlace const& place, Wording const& wording, Instant now, double relevance);

}  // namespace nimbara
