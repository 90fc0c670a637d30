// Where an earthquake was, in the language and the units of a person. Pure.
#pragma once

#include "base/units.h"
#include "base/words/texts.h"
#include "feeds/quakes/earthquake_event.h"

#include <string>
#include <string_view>

namespace nimbara {

/// The service's words for where it was, "75 km SE of Parkfield, CA", with the distance in the unit and its
/// digits grouped as the language does.
std::string quakePlace(std::string_view place, DistanceUnit unit, Texts const& texts);

/// The same in English. The service has no other language: in another one its way from the nearest town of
/// the gazetteer, "75 km SO von Parkfield, Vereinigte Staaten".
std::string quakePlace(EarthquakeEvent const& event, DistanceUnit unit, Texts const& texts);

}  // namespace nimbara
