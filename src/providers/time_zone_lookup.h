// The time zone of a place, for services whose answers do not say it. Whoever composes the program plugs the
// lookup in.
#pragma once

#include "base/calendar.h"
#include "base/geodesy.h"

#include <functional>
#include <string>

namespace nimbara {

/// The IANA name of a place's zone, or an empty text when nobody knows it.
using TimeZoneLookup = std::function<std::string(Coordinate)>;

/// The calendar of the place's zone; without a known zone that of its nautical one, whole hours by longitude.
Calendar placeCalendar(TimeZoneLookup const& lookup, Coordinate place);

}  // namespace nimbara
