// What NOAA's Space Weather Prediction Center would answer: the planetary K index of seven days in bins of
// three hours, quiet with a storm now and then, in the form sent since April 2026; the newest bin has no
// value in its first half hour.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// Of the bin that holds the moment: 0 to 9 in thirds.
double demoKp(Instant instant);

/// "/products/noaa-planetary-k-index.json".
DemoAnswer planetaryKIndex(DemoRequest const& request, Instant now);

/// "/products/noaa-planetary-k-index-forecast.json": the same week and the three days after it, which the
/// service foresees a little calmer than they come.
DemoAnswer planetaryKForecast(DemoRequest const& request, Instant now);

}  // namespace nimbara
