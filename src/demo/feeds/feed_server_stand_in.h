// What the own feed server would answer: one path, and a feed for each value of "f".
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/api/feed.php".
DemoAnswer feedServerFeed(DemoRequest const& request, Instant now);

}  // namespace nimbara
