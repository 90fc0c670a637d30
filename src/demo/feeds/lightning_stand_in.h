// A source of lightning strikes in the form that docs/lightning-source.md tells: strikes around a place while
// its generated weather is a thunderstorm, and at no other time.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/lightning/strikes" of the last six hours. All strikes are within 30 km.
DemoAnswer lightningStrikes(DemoRequest const& request, Instant now);

}  // namespace nimbara
