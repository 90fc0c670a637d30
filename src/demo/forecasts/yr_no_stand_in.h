// What MET Norway's Locationforecast would answer, made from the generated weather, with the service's
// habits: hourly steps for two and a half days, six-hourly ones behind them, the last with nothing but the
// moment; wind in m/s; 403 for requests without a name or with too many decimals; 304 for whoever has the
// answer.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/weatherapi/locationforecast/2.0/complete".
DemoAnswer yrNoForecast(DemoRequest const& request, Instant now);

}  // namespace nimbara
