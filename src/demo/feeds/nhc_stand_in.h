// What the National Hurricane Center would answer: made-up tropical storms that form, strengthen, follow
// their paths and fade within eight days, one in the Atlantic and one in the Pacific at any time of the year
// and more in the season, reported on every six hours; and the map service's layers with their forecast
// positions, whose numbers shift from day to day.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/CurrentStorms.json".
DemoAnswer currentStorms(DemoRequest const& request, Instant now);

/// "…/NHC_tropical_weather/MapServer".
DemoAnswer stormMapLayers(DemoRequest const& request, Instant now);

/// "…/NHC_tropical_weather/MapServer/27/query".
DemoAnswer stormMapQuery(DemoRequest const& request, Instant now);

}  // namespace nimbara
