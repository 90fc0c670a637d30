// Satellites' elements as the feed server answers them and as CelesTrak, its source, does. Pure functions;
// the satellites are made up.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/api/feed.php" with "f=satellites&p=GROUP"; a text that says so for a group that does not exist.
DemoAnswer satelliteFeed(DemoRequest const& request, Instant now);

/// "/NORAD/elements/gp.php" with "GROUP=" and "FORMAT=" CSV (also without a format), JSON or TLE; the last
/// leaves out the numbers above 99999.
DemoAnswer celestrakElements(DemoRequest const& request, Instant now);

}  // namespace nimbara
