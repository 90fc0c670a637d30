// What the analysis of a forecast says to people, as the window's cards show it. Pure.
#pragma once

#include "app/words/hazards/hazard_text.h"
#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "feeds/air/air_quality.h"
#include "feeds/climate/climate_service.h"
#include "feeds/nowcast/nowcast_service.h"
#include "model/weather_data.h"
#include "platform/settings/settings.h"

#include <string>
#include <vector>

namespace nimbara {

/// What a brief of the window knows beside the forecast. Anything may be null.
struct CardBeside {
  NowcastReading const* nowcast = nullptr;
  ClimateOutlook const* climate = nullptr;
};

/// "Today: light rain …", "Tonight: …", "Tomorrow: …", and how the day compares with what is usual, where
/// that is worth a word; the present is left to whoever shows it already. In the forecast's own zone, else in
/// that of `words`.
std::vector<std::string> briefLines(WeatherData const& weather, CardBeside const& beside,
                                    HazardWords const& words);

/// "Running: Today 7 AM to 9 AM: 14 °C, dry": the next good hours of each activity that has some, for the
/// person of these settings, in the air of the place where it is known. Both may be null.
std::vector<std::string> adviceLines(WeatherData const& weather, Settings const* settings,
                                     AirQualityForecast const* air, HazardWords const& words);

}  // namespace nimbara
