// What Open-Meteo's air quality service would answer: fine dust that comes and goes with the day's traffic,
// that wind and rain of the generated weather carry off, and that hazy spells of some days raise. The last
// hours have no values, as beyond the end of a model.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// Fine dust (PM2.5) in µg/m³.
double demoFineDust(Coordinate place, Instant instant);

/// "/v1/air-quality" with `hourly` and `current`.
DemoAnswer airQualityForecast(DemoRequest const& request, Instant now);

}  // namespace nimbara
