// What the Joint Typhoon Warning Center and the Global Disaster Alert and Coordination System would answer:
// the generated storms of the seas that the National Hurricane Center does not watch, and all of them.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/jtwc/rss/jtwc.rss": a list of its own kind, with pieces of HTML that are not closed.
DemoAnswer jtwcList(DemoRequest const& request, Instant now);

/// "/jtwc/products/wp0126.tcw"; 404 for storms that there are not.
DemoAnswer jtwcWarning(DemoRequest const& request, Instant now);

/// "/gdacsapi/api/events/geteventlist/MAP".
DemoAnswer gdacsEvents(DemoRequest const& request, Instant now);

}  // namespace nimbara
