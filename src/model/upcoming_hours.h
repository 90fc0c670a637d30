// The hours of a forecast that are still to come. Providers give steps of one hour, later ones of three or
// six: an entry stands until the next one begins. Pure.
#pragma once

#include "model/weather_data.h"

#include <span>
#include <vector>

namespace nimbara {

/// How long the entry at `index` of a list in time order stands: up to the next one, at most six hours; the
/// last one as long as the one before it, a single one an hour.
std::chrono::milliseconds stepLength(std::span<HourlyForecast const> entries, std::size_t index);

/// The entries from the one that contains `now` on.
std::span<HourlyForecast const> upcomingHours(std::span<HourlyForecast const> entries, Instant now);

/// The entry that contains `now`, or null.
HourlyForecast const* hourAt(std::span<HourlyForecast const> entries, Instant now);

}  // namespace nimbara
