// Whether it rains or snows, where a radar sees only that something falls. Pure.
#pragma once

#include "model/nowcast.h"
#include "model/weather_data.h"

#include <span>

namespace nimbara {

/// What falls at that temperature of the air near the ground. Below -0.4 °C snow, above 2.4 °C rain, between
/// them either or both: 95 of 100 stations of the northern hemisphere have as much snow as rain at a
/// temperature within those bounds (Jennings, Winchell, Livneh, Molotch: Spatial variation of the rain-snow
/// temperature threshold across the Northern Hemisphere, Nature Communications 9, 1148, 2018).
Fall fallAt(double celsius);

/// Says of the wet steps whose source does not say it what falls in them, by the temperature that `hours`
/// forecast for their middle. Where no hour covers that it stays unknown.
void nameFall(Nowcast& nowcast, std::span<HourlyForecast const> hours);

}  // namespace nimbara
