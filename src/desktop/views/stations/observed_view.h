// What the user's station has measured, over the forecast in the chart. Pure functions.
#pragma once

#include "desktop/views/hours_view.h"
#include "feeds/stations/station_history.h"

namespace nimbara {

/// Widens the meteogram to the left, two days at most, puts the samples into it and says them beside the
/// values of the hours. `data` gave `meteogram`. Nothing without samples or without a forecast.
void addObserved(Meteogram& meteogram, WeatherData const& data, std::vector<StationSample> const& samples,
                 ViewContext const& context);

}  // namespace nimbara
