// What a server of street tiles would answer: a made-up town's grid, for the map with an address of the
// user's.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/streets/{z}/{x}/{y}.png"
DemoAnswer streetTile(DemoRequest const& request, Instant now);

}  // namespace nimbara
