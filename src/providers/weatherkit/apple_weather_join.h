// From a WeatherKit answer to the interchange record. Pure.
#pragma once

#include "base/geodesy.h"
#include "base/time/calendar.h"
#include "providers/common/api_error.h"
#include "providers/weatherkit/apple_weather_parser.h"

namespace nimbara {

/// At most seven days of `calendar`. Data sets that the answer lacks are done without: days come from the
/// hours then, the present from the hour of `now`. `noData` when it has none of the three, `noResults` when
/// nothing in them can be shown.
Result<WttrResponse, APIError> joinAppleWeather(AppleWeatherResponse const& response, Coordinate place,
                                                Calendar const& calendar, Instant now);

}  // namespace nimbara
