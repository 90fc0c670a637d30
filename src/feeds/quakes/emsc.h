// The earthquakes that the European-Mediterranean Seismological Centre lists, and how they become one list
// with those of another service. Pure; any bytes may be given.
#pragma once

#include "feeds/quakes/earthquake_event.h"

#include <string_view>
#include <vector>

namespace nimbara {

/// Newest first; an empty text, as the service sends when there are none, is an empty list.
Result<std::vector<EarthquakeEvent>, DecodeError> parseEmscEarthquakes(std::string_view body);

/// Within 100 km, 90 seconds and half a magnitude.
bool isSameQuake(EarthquakeEvent const& one, EarthquakeEvent const& other);

/// Each earthquake once: those that both list stay as `events` have them, with the other's magnitude beside
/// their own. Newest first.
std::vector<EarthquakeEvent> mergedEarthquakes(std::vector<EarthquakeEvent> events,
                                               std::vector<EarthquakeEvent> const& emsc);

}  // namespace nimbara
