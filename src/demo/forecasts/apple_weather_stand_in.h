// What WeatherKit would answer, made from the generated weather, with the service's habits: 401 without a
// token, only the data sets that were asked for, fractions of 1, 24 hours unless more are asked for. The
// token's signature is not verified: nobody's public key is known here.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/api/v1/weather/en/52.52/13.41".
DemoAnswer appleWeatherForecast(DemoRequest const& request, Instant now);

}  // namespace nimbara
