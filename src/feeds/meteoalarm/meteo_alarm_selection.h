// Which entries of a country's feed concern a coordinate, and what they say together. Plain functions; the
// service around them fetches and keeps.
#pragma once

#include "feeds/meteoalarm/meteo_alarm_atom_parser.h"
#include "model/warnings/weather_alert.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// A feed made ready for selecting from it again and again.
struct MeteoAlarmFeed {
  std::vector<RawEntry> entries;
  std::vector<std::string> foldedAreas;  ///< of each entry; empty where its name is never looked at
};

MeteoAlarmFeed feedOf(std::vector<RawEntry> entries);

inline constexpr double kProximityRadiusKm = 50;

/// An entry that concerns a place.
struct SelectedEntry {
  RawEntry const* entry = nullptr;
  /// Of the place from the nearest of the entry's circles and corners, where it is in none of its areas;
  /// absent within, and where a code or a name decided.
  std::optional<double> distanceKm;
};

/// The entries that concern a place, in the feed's order. An entry is kept by the first of these rules that
/// holds: one of its codes is one of the place's; the place is within a circle or `radiusKm` beyond; it is in
/// a polygon or within `radiusKm` of one of its corners; the entry has neither circle nor polygon nor a code
/// of a registry in which the place's code is known, and its area's name has a region's name in it or stands
/// in one, by whole words. The code of a region at sea makes no registry known, nor does an entry's code that
/// the place's outlines do not have.
std::vector<SelectedEntry> selectedEntries(MeteoAlarmFeed const& feed, Coordinate place,
                                           PlaceRegions const& regions, double radiusKm = kProximityRadiusKm);

/// Even-odd rule with the latitude as the first axis.
bool isInside(WarningPolygon const& polygon, Coordinate place);

/// False for what says of itself that it warns of nothing: a green level, a test or exercise, a cancellation,
/// an end before or at `now` or not after the beginning.
bool isCurrentWarning(RawEntry const& entry, Instant now);

/// "extreme" is critical, "severe" a warning, "moderate" an advisory, everything else info.
AlertSeverity severityOfCap(std::string_view severity);

}  // namespace nimbara
