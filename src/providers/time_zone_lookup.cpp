#include "providers/time_zone_lookup.h"

#include "base/number.h"

namespace nimbara {

namespace {

Calendar nauticalCalendar(double longitude) {
  constexpr double kDegreesAnHour = 15;
  return Calendar::fixedOffset(
      std::chrono::hours(static_cast<int>(roundHalfAway(longitude / kDegreesAnHour))));
}

}  // namespace

Calendar placeCalendar(TimeZoneLookup const& lookup, Coordinate place) {
  std::string const zone = lookup ? lookup(place) : std::string();
  if (auto calendar = Calendar::forZone(zone)) return std::move(*calendar);
  return nauticalCalendar(place.longitude);
}

}  // namespace nimbara
