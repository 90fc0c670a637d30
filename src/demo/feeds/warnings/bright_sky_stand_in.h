// What BrightSky would answer: the warnings of the demo's Germany for the municipality of a place.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/alerts?lat=&lon=": 404 for a place that is not in Germany.
DemoAnswer brightSkyAlerts(DemoRequest const& request, Instant now);

}  // namespace nimbara
