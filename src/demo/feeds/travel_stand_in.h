// What the Department of State would answer: advisories of some sixty countries with its own codes and texts
// in HTML; nothing for a client that does not name itself.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/api/TravelAdvisories".
DemoAnswer travelAdvisories(DemoRequest const& request, Instant now);

}  // namespace nimbara
