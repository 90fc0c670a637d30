// Official warnings as text for a person at a terminal: how severe, what, where, until when, and what to do.
// Pure functions; decides nothing about which warnings are shown.
#pragma once

#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "cli/pages/style.h"
#include "feeds/alerts/coverage.h"
#include "feeds/nws/nws_alert.h"
#include "model/warnings/weather_alert.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct WarningEntry {
  AlertSeverity severity = AlertSeverity::info;
  std::string title;
  std::string message;
  std::string area;
  std::string instruction;
  std::string source;
  std::optional<Instant> onset;
  std::optional<Instant> end;
  std::optional<double> distanceKm;  ///< absent where the warned area has the place in it
  std::vector<NearArea> near;        ///< further areas, where there is one that has the place in it
  std::string text;                  ///< the issuer's own, to the letter
  bool isTextMissing = false;        ///< offered, but not available
  std::string issuer;                ///< where `source` only passes it on
  std::string colour;                ///< of the awareness level: "orange"
  std::optional<Instant> issued;
  bool isLevelStated = true;  ///< the issuer names the severity
  bool isOnWater = false;     ///< of waters off the place's shore
  std::string map;            ///< lines that are drawn already
};

WarningEntry warningEntry(WeatherAlert const& alert);
/// Of a warning that is in effect somewhere in the country: for which areas of it, or for the country.
WarningEntry unplacedEntry(WeatherAlert const& alert, std::string_view countryCode, Texts const& texts);
/// With the message's status before its title where it is not meant for the public.
WarningEntry warningEntry(NWSAlert const& alert);

struct WarningPageContext {
  Texts const& texts;
  Style const& style;
  Calendar const& calendar;  ///< the place's
  Instant now;
  int width = 80;
  DistanceUnit distance = DistanceUnit::km;
};

/// Paragraphs divided by blank lines; empty without entries.
std::string warningPage(std::vector<WarningEntry> const& entries, WarningPageContext const& context);

/// A line for each source: how its warnings were checked.
std::string coveragePage(std::vector<SourceCoverage> const& coverage, WarningPageContext const& context);

}  // namespace nimbara
