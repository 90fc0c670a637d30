// What Open-Meteo would answer, made from the generated weather: the forecast and the place search. Pure
// functions from a query and a moment to an answer, in the service's own shape and with its own habits (one
// fixed offset for all times, nulls nowhere, the day's bounds where the sun does not rise or set).
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/v1/forecast".
DemoAnswer openMeteoForecast(DemoRequest const& asked, Instant now);

/// "/v1/search".
DemoAnswer openMeteoSearch(DemoRequest const& request, Instant now);

}  // namespace nimbara
