// What the analysis of a forecast says to people, as the window's cards show it. Pure.
#pragma once

#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "feeds/nowcast/nowcast_service.h"
#include "model/weather_data.h"

#include <string>
#include <vector>

namespace nimbara {

/// "Today: light rain …", "Tonight: …", "Tomorrow: …"; the present is left to whoever shows it already. In
/// the forecast's own zone, else in that of `fallback`. The nowcast may be null.
std::vector<std::string> briefLines(WeatherData const& weather, NowcastReading const* nowcast, Instant now,
                                    Units const& units, Texts const& texts, Calendar const& fallback);

/// "Running: Today 7 AM to 9 AM: 14 °C, dry": the next good hours of each activity that has some.
std::vector<std::string> adviceLines(WeatherData const& weather, Instant now, Units const& units,
                                     Texts const& texts, Calendar const& fallback);

}  // namespace nimbara
