// Hours of a service laid onto the hours of the place's clock. Services count in hours of UTC; where clocks
// stand half or three quarters of an hour off those, as in Delhi, Kathmandu and Eucla, an hour of the place
// gets its parts of two hours of the service. Pure.
#pragma once

#include "base/time/calendar.h"
#include "providers/common/interchange.h"

#include <vector>

namespace nimbara {

/// The moments in [`from`, `to`) at which an hour of the place's clock begins, from the hour that contains
/// `from` on. A clock change may shorten or lengthen an hour; one that skips the full hour begins it.
std::vector<Instant> localHours(Instant from, Instant to, Calendar const& calendar);

/// `entries` are hours in the order of time. They stay as they are where all begin with an hour of the place.
/// Else readings lie on the straight line between two hours, amounts are shared out by time, and the
/// condition is that of the longer part, with the higher of both probabilities.
std::vector<HourlyEntry> onLocalHours(std::vector<HourlyEntry> entries, Calendar const& calendar);

/// Rounds the precipitation to the tenths of a millimetre that are written, so that the sum over all hours
/// stays right although each is rounded.
void roundToTenths(std::vector<HourlyEntry>& entries);

/// Whole tenths for parts of an amount in order: each is rounded, and so is their sum.
class TenthsOf {
 public:
  double next(double part);

 private:
  double sum_ = 0;
  double written_ = 0;
};

/// `part` (0-1) of the way between two directions, in degrees, along the shorter arc.
double directionBetween(double from, double to, double part);

}  // namespace nimbara
