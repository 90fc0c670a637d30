// Alerts that an event of the forecast says more truly: rain alerts count whatever falls, be it snow or rain
// that freezes. The alerts themselves stay as they are; faces show the event in their stead. Pure.
#pragma once

#include "analysis/event_detector.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "model/forecast_insight.h"

#include <span>

namespace nimbara {

/// By freezing rain where at least as much of it and of snow falls within the next twelve hours as of rain
/// and sleet; by snow where more of it falls than of rain and sleet.
std::vector<SupersededAlert> truerAlerts(std::span<WeatherAlert const> alerts,
                                         std::span<WeatherEvent const> events, WeatherData const& weather,
                                         Instant now, Units const& units, Texts const& texts,
                                         Calendar const& calendar);

}  // namespace nimbara
