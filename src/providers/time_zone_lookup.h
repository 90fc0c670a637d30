// The time zone of a place, for services whose answers do not say it. Whoever composes the program plugs the
// lookup in.
#pragma once

#include "base/geodesy.h"
#include "base/time/calendar.h"

#include <functional>
#include <optional>
#include <string>

namespace nimbara {

/// The IANA name of a place's zone, or an empty text when it is unknown.
using TimeZoneLookup = std::function<std::string(Coordinate)>;

/// The calendar of the place's zone, when the lookup knows one.
std::optional<Calendar> knownCalendar(TimeZoneLookup const& lookup, Coordinate place);

/// Without a known zone that of the nautical one: whole hours by longitude.
Calendar placeCalendar(TimeZoneLookup const& lookup, Coordinate place);
Calendar nauticalCalendar(double longitude);

/// Whether the zone's clocks are `offset` ahead of UTC within a day of that moment: an answer that was made
/// on the day of a clock change states the offset before or behind it.
bool standsAt(Calendar const& calendar, std::chrono::seconds offset, Instant moment);

}  // namespace nimbara
