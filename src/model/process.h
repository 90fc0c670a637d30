// From the interchange record to the forecast that the program reads. A pure function: texts become numbers
// (what is no number becomes 0), codes become conditions, local clock hours become moments.
#pragma once

#include "base/time/calendar.h"
#include "base/time/instant.h"
#include "model/weather_data.h"
#include "model/wttr_response.h"

namespace nimbara {

/// The calendar in which the record's days and hours are written: the record's own zone, else `fallback`.
Calendar calendarOf(WttrResponse const& response, Calendar const& fallback);

/// The calendar of a processed forecast: the place's, else `fallback`.
Calendar calendarOf(WeatherData const& data, Calendar const& fallback);

/// Days and hours are read in `calendarOf(response, fallback)`. `fetchedAt` becomes `now`, cut to the second.
WeatherData process(WttrResponse const& response, Calendar const& fallback, Instant now);

}  // namespace nimbara
