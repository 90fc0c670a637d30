// What MET Norway's service of warnings would answer for Norway, Svalbard and the seas around them.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/weatherapi/metalerts/2.0/current.json": 422 for a place beyond its area.
DemoAnswer metAlertsCurrent(DemoRequest const& request, Instant now);

}  // namespace nimbara
