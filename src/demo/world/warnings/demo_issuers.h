// Who issues official warnings in the demo's world, forty countries with one issuer each, and what the
// messages of each are like: in which languages, with which shapes, how they change and how they end. A
// table; the countries' weather and what follows from it are in `demo_world.h`.
#pragma once

#include "base/geodesy.h"

#include <chrono>
#include <optional>
#include <span>
#include <string_view>

namespace nimbara {

/// Who passes the country's warnings on where nothing else is chosen.
enum class DemoSource { nws, meteoAlarm, eccc, metAlerts, centre, nobody };

/// Whether the issuer has anything to say: what the weather brings, besides always something, or never.
enum class DemoTemper { weather, always, calm };

enum class DemoLanguages { ownAndEnglish, oneEach, ownOnly };

/// How messages say where they hold: outlines, the same parted by tabs and new lines, a circle, codes beside
/// an empty outline, codes alone, or nothing but the name of the country.
enum class DemoShape { polygon, tabs, circle, emptyPolygon, codes, country };

/// How an event is over: its time runs out, or it is called off before.
enum class DemoEnding { runsOut, cancel, past, allClear };

/// Other habits, each a bit.
enum DemoHabit : unsigned {
  kPlain = 0,
  kUpdates = 1U << 0U,        ///< later messages refer to earlier ones; level and end change
  kPrefixes = 1U << 1U,       ///< elements are cap:elements
  kSigned = 1U << 2U,         ///< with an XML signature
  kBuddhistYears = 1U << 3U,  ///< 2569 for 2026
  kNoZone = 1U << 4U,         ///< "-00:00"
  kFlat = 1U << 5U,           ///< altitude and ceiling of zero, which mean nothing
  kNamesItself = 1U << 6U,    ///< among the references
  kNoSeverity = 1U << 7U,     ///< "Unknown"
  kColours = 1U << 8U,        ///< awareness_level beside the severity
  kNoText = 1U << 9U,         ///< an empty description
  kDrills = 1U << 10U,        ///< a message of the highest severity that is a test
};

/// Where questions after the country's warnings are answered with status 200 and no data.
enum class DemoSilence { none, atCentre, everywhere };

struct DemoIssuer {
  std::string_view countryCode;  ///< this and the next two of ISO 3166-1
  std::string_view alpha3;
  int number = 0;
  std::string_view country;
  std::string_view town;
  Coordinate place;  ///< of the town
  DemoSource source = DemoSource::centre;
  DemoTemper temper = DemoTemper::always;
  std::string_view language = {};  // NOLINT(readability-redundant-member-init): its own; empty: English alone
  DemoLanguages languages = DemoLanguages::ownAndEnglish;
  DemoShape shape = DemoShape::polygon;
  DemoEnding ending = DemoEnding::runsOut;
  unsigned habits = kPlain;
  int zoneMinutes = 0;  ///< of the times in its messages, ahead of Greenwich
  DemoSilence silence = DemoSilence::none;
  bool isAtServer = true;  ///< the public alert server reads the feed that the centre mirrors

  bool has(DemoHabit habit) const { return (habits & habit) != 0; }
  /// The centre has the country's messages.
  bool isMirrored() const { return source != DemoSource::nobody; }
};

std::span<DemoIssuer const> demoIssuers();
/// Null for a country without one.
DemoIssuer const* demoIssuerOf(std::string_view countryCode);
/// Null on the open sea too.
DemoIssuer const* demoIssuerAt(Coordinate place);

}  // namespace nimbara
