// What the United States Geological Survey would answer: the earthquakes of the last 24 hours, drawn along
// the boundaries of the plates, ten times fewer for each step of magnitude; small ones in the United States
// only, and with them a quarry blast, a magnitude below zero, and one event whose magnitude is not known yet.
#pragma once

#include "demo/demo_exchange.h"

#include <string>

namespace nimbara {

/// The collection as the service writes it. Changes once a minute.
std::string demoQuakes(Instant now);

/// "/fdsnws/event/1/query" of the European-Mediterranean Seismological Centre: most of the same earthquakes,
/// measured a little differently.
DemoAnswer emscQuery(DemoRequest const& request, Instant now);

/// "/earthquakes/feed/v1.0/summary/all_day.geojson".
DemoAnswer usgsDayFeed(DemoRequest const& request, Instant now);

}  // namespace nimbara
