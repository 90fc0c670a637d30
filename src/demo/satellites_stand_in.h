// What the feed server would answer for satellites: element sets of every group, made up around the present
// moment. A pure function; none of these satellites is where a real one is.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/api/feed.php" with "f=satellites&p=GROUP"; a text that says so for a group that does not exist.
DemoAnswer satelliteFeed(DemoRequest const& request, Instant now);

}  // namespace nimbara
