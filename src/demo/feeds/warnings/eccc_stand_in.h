// What Environment and Climate Change Canada would answer: the alerts of the demo's Canada around the middle
// of a box, of one status at a time and ten unless more are asked for.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/collections/weather-alerts/items".
DemoAnswer ecccAlerts(DemoRequest const& request, Instant now);

}  // namespace nimbara
