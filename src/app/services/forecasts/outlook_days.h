// The days beyond a forecast as records like its own, for faces to show below it. Pure.
#pragma once

#include "base/time/calendar.h"
#include "feeds/outlook/outlook_service.h"
#include "model/weather_data.h"

#include <vector>

namespace nimbara {

/// Those after the last day of `forecast`; `calendar` is the place's. They have no hours, sun or moon.
std::vector<DailyForecast> outlookDays(std::vector<OutlookDay> const& days, WeatherData const& forecast,
                                       Calendar const& calendar);

}  // namespace nimbara
