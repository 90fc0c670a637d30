// Hours in the order of time and their places in the local days of a calendar. Pure.
#pragma once

#include "base/time/calendar.h"
#include "providers/common/interchange.h"

#include <map>
#include <span>
#include <vector>

namespace nimbara {

/// The hours of each local day, as stretches of the list of all hours.
using HoursByDay = std::map<Date, std::span<HourlyEntry const>>;

/// Sets each hour's place in its day. `entries` are in the order of time and outlive the result.
HoursByDay hoursByDay(std::vector<HourlyEntry>& entries, Calendar const& calendar);

/// The hour that contains `instant`, or null.
HourlyEntry const* hourContaining(std::vector<HourlyEntry> const& entries, Instant instant);

/// Gives the present what only its hour knows. A feels-like of another temperature than the present one would
/// mislead, so the two are taken together.
void fillGaps(HourlyEntry& present, HourlyEntry const& hour);

}  // namespace nimbara
