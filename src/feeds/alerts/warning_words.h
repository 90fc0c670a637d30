// From when until when an official warning is in force, and which of its areas are only near a place, in the
// words of a language. Pure; what every face and the notifications say of it.
#pragma once

#include "base/units.h"
#include "base/words/time_words.h"
#include "model/weather_alert.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// For whom and when it is said.
struct WarningWords {
  Texts const& texts;
  TimeWords words;
  Instant now;
  DistanceUnit distance = DistanceUnit::km;
};

/// "from 9:00 AM, until Sunday 9:00 PM"; a beginning that is past is left out.
std::string spanText(std::optional<Instant> onset, std::optional<Instant> end, WarningWords const& words);

/// "Innviertel (37 km: red, from 8:00 PM), Hills (12 km)": level and period where they differ from `own`, what
/// the warning says of the place itself. Empty without areas.
std::string nearAreasText(std::vector<NearArea> const& near, NearArea const& own, WarningWords const& words);

/// What the warning says of the place itself, in the form of a near area.
NearArea ownLevel(WeatherAlert const& alert);

/// The areas that have the place in them; all where none has, as where a warning is only near.
std::string placeAreas(WeatherAlert const& alert);

}  // namespace nimbara
