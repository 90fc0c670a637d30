// Where the official warnings of the saved places come from: which source serves each, how its last check
// went, what it cannot give and who is asked after it. Pure.
#pragma once

#include "app/places/places.h"
#include "base/time/calendar.h"
#include "base/words/texts.h"
#include "feeds/alerts/coverage.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct PlaceSources {
  std::string place;
  Coordinate coordinate;
  std::vector<std::string_view> route;     ///< in the order in which they are asked
  std::vector<std::string_view> possible;  ///< the usual one first
  SourceCoverage coverage;                 ///< as somebody found it last
};

struct SourceReportContext {
  Texts const& texts;
  Calendar const& calendar;  ///< of the reader
  Instant now;
  int width;  ///< in columns
};

/// As its warnings are asked for.
GovAlertPlace askedPlace(SavedPlace const& saved);

PlaceSources placeSources(SavedPlace const& saved, GovAlertService& service, Instant now);

std::string sourceReportJson(std::vector<PlaceSources> const& places, Texts const& texts);
std::string sourceReport(std::vector<PlaceSources> const& places, SourceReportContext const& context);

}  // namespace nimbara
