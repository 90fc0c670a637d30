// Processed forecasts of tests: mild, dry, calm hours, of which a test changes what it is about.
#pragma once

#include "model/weather_data.h"
#include "support/instants.h"

namespace nimbara::test {

HourlyForecast mildHour(Instant date);

/// `count` hours from `begin` on in UTC, with a present to match and the days that they touch.
WeatherData mildForecast(Instant begin, int count);

}  // namespace nimbara::test
