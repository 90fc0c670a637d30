// What the services of the next two hours would answer, made from the generated weather of each moment: MET
// Norway's nowcast for the Nordic countries, Bright Sky's radar for Germany and around it, and the quarter
// hours of Open-Meteo, which it has for every place.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/weatherapi/nowcast/2.0/complete": 422 for a place that is in none of its countries. Beyond 69° N the
/// radar is "temporarily unavailable", and farther east than 25° there it has "no coverage".
DemoAnswer metNorwayNowcast(DemoRequest const& request, Instant now);

/// "/radar" with "format=plain": 404 for a place beyond the composite.
DemoAnswer brightSkyRadar(DemoRequest const& request, Instant now);

/// "/v1/forecast" with `minutely_15` alone, in unix time.
DemoAnswer openMeteoQuarters(DemoRequest const& request, Instant now);

}  // namespace nimbara
