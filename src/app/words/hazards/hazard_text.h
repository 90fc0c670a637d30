// What is said of fires, lightning and travel advisories, in the words and units of the user: how a check
// ended, and a line for each of what was found. Every face shows these. Pure.
#pragma once

#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "feeds/fetching/feed_reading.h"
#include "feeds/fires/fire_detection.h"
#include "feeds/storms/lightning_strike.h"
#include "feeds/travel/travel_advisory.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// How the check of a hazard ended: four answers that must never be taken for one another, and `uncovered`
/// where the source has nothing about such a place.
enum class HazardState { listed, none, unchecked, notConfigured, uncovered };

template <>
inline constexpr auto enumNames<HazardState> =
    std::to_array<std::string_view>({"listed", "none", "unchecked", "notConfigured", "uncovered"});
static_assert(enumNamesComplete(HazardState::uncovered));

/// A reading without its data.
struct HazardCheck {
  HazardState state = HazardState::unchecked;
  std::optional<Instant> checkedAt;
  std::optional<Instant> failedSince;
  std::optional<ServiceFailure> failure;
};

template <class T>
HazardCheck hazardCheck(FeedReading<T> const& reading, bool isAny) {
  HazardState state = isAny ? HazardState::listed : HazardState::none;
  if (!reading.isCurrent()) state = HazardState::unchecked;
  if (reading.state == FeedState::notConfigured) state = HazardState::notConfigured;
  return {state, reading.checkedAt, reading.failedSince, reading.failure};
}

struct HazardWords {
  Texts const& texts;
  Units units;
  Calendar calendar;
  Instant now;

  std::string distance(double km) const;
  /// "120 km NE": how far and in which direction `to` is from `from`.
  std::string away(Coordinate from, Coordinate to) const;
  std::string speed(double metresASecond) const;
  std::string moment(Instant instant) const;
};

/// One thing that was found.
struct HazardLine {
  std::string title;
  std::string detail;
};

/// "Wildfires could not be checked since 3:20 PM: the service did not answer in time"; "" for a state that is
/// known. `kind` is "storms", "fires", "lightning", "advisories", "air" or "climate".
std::string uncheckedText(std::string_view kind, HazardCheck const& check, HazardWords const& words);

std::string fireStateText(HazardCheck const& check, std::size_t count, double radiusKm,
                          HazardWords const& words);
HazardLine fireLine(FireDetection const& fire, Coordinate place, HazardWords const& words);

std::string lightningStateText(HazardCheck const& check, std::size_t count, double radiusKm,
                               HazardWords const& words);
HazardLine strikeLine(LightningStrike const& strike, Coordinate place, HazardWords const& words);

/// `country` is of two letters; empty for the whole world.
std::string advisoryStateText(HazardCheck const& check, std::size_t count, std::string const& country,
                              HazardWords const& words);
/// "Canada" for "ca": whose advisories a choice of the setting means.
std::string advisoryCountryText(std::string_view source, Texts const& texts);
/// Who writes those advisories, and for whom.
std::string advisorySourceText(AdvisorySource source, Texts const& texts);
HazardLine advisoryLine(TravelAdvisory const& advisory, HazardWords const& words);

}  // namespace nimbara
