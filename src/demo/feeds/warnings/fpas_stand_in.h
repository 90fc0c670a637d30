// What the free public alert server would answer for the demo's world: the identifiers of the messages of a
// box, the messages by way of a redirect, and which countries' feeds it reads. It reads mainland China's too,
// and has no message of it: they name their areas by codes that it cannot draw.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/alert/area": of the country in which the middle of the box lies. 400 for a box without an extent.
DemoAnswer fpasArea(DemoRequest const& request, Instant now);

/// "/alert/…": to the message's file.
DemoAnswer fpasAlert(DemoRequest const& request, Instant now);

/// "/cap/….xml".
DemoAnswer fpasMessage(DemoRequest const& request, Instant now);

/// "/sources/area_status": the feeds of `country_codes`, or all.
DemoAnswer fpasAreaStatus(DemoRequest const& request, Instant now);

}  // namespace nimbara
