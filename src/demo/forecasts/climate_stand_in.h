// What Open-Meteo would answer to questions for past days: its archive, a little colder than the forecasts,
// as another model is, and without the newest days; and the forecast service's own past.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/v1/archive" with the daily extremes of temperature.
DemoAnswer openMeteoArchive(DemoRequest const& request, Instant now);

/// "/v1/forecast" with "past_days".
DemoAnswer openMeteoPastDays(DemoRequest const& request, Instant now);

}  // namespace nimbara
