#include "providers/time_zone_lookup.h"

#include "base/text/number.h"

namespace nimbara {

std::optional<Calendar> knownCalendar(TimeZoneLookup const& lookup, Coordinate place) {
  return lookup ? Calendar::forZone(lookup(place)) : std::nullopt;
}

Calendar placeCalendar(TimeZoneLookup const& lookup, Coordinate place) {
  if (auto known = knownCalendar(lookup, place)) return std::move(*known);
  return nauticalCalendar(place.longitude);
}

Calendar nauticalCalendar(double longitude) {
  constexpr double kDegreesAnHour = 15;
  return Calendar::fixedOffset(
      std::chrono::hours(static_cast<int>(roundHalfAway(longitude / kDegreesAnHour))));
}

bool standsAt(Calendar const& calendar, std::chrono::seconds offset, Instant moment) {
  constexpr std::chrono::hours kDay{24};
  return offset == calendar.offset(moment - kDay) || offset == calendar.offset(moment) ||
         offset == calendar.offset(moment + kDay);
}

}  // namespace nimbara
