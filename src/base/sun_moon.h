// Sun and moon for a place, computed here so that no service is needed: directions, rises and settings, the
// moon's phase. Pure functions. Algorithms: J. Meeus, "Astronomical Algorithms", 2nd edition, low-accuracy
// chapters (sun chapter 25, moon chapter 47 with its leading terms, illumination chapter 48).
#pragma once

#include "base/enum_names.h"
#include "base/geodesy.h"
#include "base/time/instant.h"

#include <optional>
#include <string_view>

namespace nimbara {

struct HorizontalPosition {
  double altitude = 0;  ///< degrees above the horizon, without refraction, as seen from the place
  double azimuth = 0;   ///< degrees from north through east
};

HorizontalPosition sunPosition(Instant instant, Coordinate place);
HorizontalPosition moonPosition(Instant instant, Coordinate place);

/// Rise and setting of the upper limb with standard refraction. Either is absent when it does not happen
/// within the span; `alwaysUp` tells which side of the horizon the body keeps to when both are absent.
struct RiseSet {
  std::optional<Instant> rise;
  std::optional<Instant> set;
  bool alwaysUp = false;
};

/// Events within [begin, end), normally one local day (23 to 25 hours).
RiseSet sunRiseSet(Instant begin, Instant end, Coordinate place);
RiseSet moonRiseSet(Instant begin, Instant end, Coordinate place);

enum class MoonPhase {
  newMoon,
  waxingCrescent,
  firstQuarter,
  waxingGibbous,
  fullMoon,
  waningGibbous,
  lastQuarter,
  waningCrescent
};
/// The texts that forecast records carry.
template <>
inline constexpr auto enumNames<MoonPhase> =
    std::to_array<std::string_view>({"New Moon", "Waxing Crescent", "First Quarter", "Waxing Gibbous",
                                     "Full Moon", "Waning Gibbous", "Last Quarter", "Waning Crescent"});
static_assert(enumNamesComplete(MoonPhase::waningCrescent));

struct MoonState {
  double elongation = 0;    ///< ecliptic longitude of the moon minus that of the sun, 0-360°: 0 new, 180 full
  double illumination = 0;  ///< illuminated fraction of the disc, 0-1
};

MoonState moonState(Instant instant);

/// The phase that a calendar would print for the day [begin, end): a principal phase when its moment falls
/// into the day, else the phase between.
MoonPhase moonPhase(Instant begin, Instant end);

}  // namespace nimbara
