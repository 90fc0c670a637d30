// From when until when an official warning is in force, and which of its areas are only near a place, in the
// words of a language. Pure; what every face and the notifications say of it.
#pragma once

#include "base/units.h"
#include "base/words/time_words.h"
#include "model/warnings/weather_alert.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// For whom and when it is said.
struct WarningWords {
  Texts const& texts;
  TimeWords words;
  Instant now;
  DistanceUnit distance = DistanceUnit::km;
};

/// How severe a warning is by those who issue it.
struct WarningGrade {
  AlertSeverity severity = AlertSeverity::info;
  std::string_view colour;  ///< empty where they do not grade by colours
  bool isStated = true;
};

WarningGrade gradeOf(WeatherAlert const& alert);
/// "Orange": the colour where there is one, else "Warning", or that no level is stated.
std::string gradeText(WarningGrade const& grade, Texts const& texts);
/// "Orange: Wind Warning", with the language's own colon.
std::string gradedTitle(WarningGrade const& grade, std::string_view title, Texts const& texts);
/// "Severity stated by the service: Advisory" where the colour stands for another severity; else empty. Some
/// services grade by both, each in its own way.
std::string statedSeverityText(WarningGrade const& grade, Texts const& texts);

/// "from 9:00 AM, until Sunday 9:00 PM"; a beginning that is past is left out.
std::string spanText(std::optional<Instant> onset, std::optional<Instant> end, WarningWords const& words);

/// "Innviertel (37 km: red, from 8:00 PM), Hills (12 km)": level and period where they differ from `own`,
/// what the warning says of the place itself. Empty without areas.
std::string nearAreasText(std::vector<NearArea> const& near, NearArea const& own, WarningWords const& words);

/// What the warning says of the place itself, in the form of a near area.
NearArea ownLevel(WeatherAlert const& alert);

/// Whether an official warning that nobody can locate names no area, or the whole country for one.
bool isCountryWide(WeatherAlert const& alert, std::string_view countryCode);
/// "For the country", "For: North Province, Lake District": whom such a warning is for.
std::string unplacedAreaText(WeatherAlert const& alert, std::string_view countryCode, Texts const& texts);

/// The areas that have the place in them; all where none has, as where a warning is only near.
std::string placeAreas(WeatherAlert const& alert);

}  // namespace nimbara
