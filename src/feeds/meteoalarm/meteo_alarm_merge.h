// What the entries that concern a place say together: one alert for each kind of warning. Pure functions.
#pragma once

#include "base/words/texts.h"
#include "feeds/meteoalarm/meteo_alarm_details.h"
#include "feeds/meteoalarm/meteo_alarm_selection.h"

#include <span>
#include <string_view>
#include <vector>

namespace nimbara {

/// A selected entry with what its document says of it.
struct ToldEntry {
  SelectedEntry selected;
  std::optional<WarningDetails> details;
  std::string areaLanguage;  ///< of the entry's own area name; empty when not known

  RawEntry const& entry() const { return *selected.entry; }
  bool isNear() const { return selected.distanceKm.has_value(); }
};

/// By the document where it says so, else by the entry's own words.
MeteoAlarmType typeOf(ToldEntry const& told);

/// For whom alerts are made.
struct MergeContext {
  std::string_view country;
  PlaceRegions const& regions;  ///< of the place, its land region first
  std::string_view language;    ///< of the reader
  Texts const& texts;
};

/// In the order in which the kinds appear. Level, colour, beginning, end, texts and the time of issue come
/// from the entries that have the place in them; those that are only near are listed beside them, and decide
/// where there are no others: the highest level, the earliest onset, the latest end. The areas' names stand
/// in the feed's order, each area once, whether two entries name it by one name, by one code, by one outline
/// or in two languages.
std::vector<WeatherAlert> mergedAlerts(std::span<ToldEntry const> entries, MergeContext const& context);

/// The same of entries without documents.
std::vector<WeatherAlert> mergedAlerts(std::span<SelectedEntry const> entries, MergeContext const& context);

/// Of entries that nobody can place: one alert for each kind and area, the severest first. Two areas are two
/// events, and neither is one of a region that is known.
std::vector<WeatherAlert> unplacedAlerts(std::span<SelectedEntry const> entries, MergeContext const& context);

/// Those entries that decide something: of each kind the ones that have the place in them, or else the near
/// ones; the most severe first.
std::vector<SelectedEntry> decidingEntries(std::span<SelectedEntry const> entries);

}  // namespace nimbara
