// What the United States National Weather Service would answer: alerts that fit the generated weather of a
// point, with the service's habits: 403 without a User-Agent, 400 outside its territory, a new message
// every three hours that refers to the older ones (the last of which is still listed for a while), a
// cancellation after the end, messages that expire before their event, and a test among the rest.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/alerts/active" with "point=41.8500,-87.6500".
DemoAnswer nwsActiveAlerts(DemoRequest const& request, Instant now);

}  // namespace nimbara
