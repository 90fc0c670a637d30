// What a reader makes of the air's numbers: an index with its band and the pollutant that leads it, what is
// known of pollen, and the hours in which the skin needs protection. Plain functions over a forecast.
#pragma once

#include "base/geodesy.h"
#include "feeds/air/air_quality.h"

#include <span>
#include <string_view>

namespace nimbara {

/// The European index has the bands of 2024 of the European Environment Agency, from hourly values; that of
/// the United States the breakpoints of 2024 of its Environmental Protection Agency.
enum class AirScale { european, us };

template <>
inline constexpr auto enumNames<AirScale> = std::to_array<std::string_view>({"european", "us"});
static_assert(enumNamesComplete(AirScale::us));

enum class AirBand {
  good,
  fair,
  moderate,
  poor,
  veryPoor,
  extremelyPoor,
  unhealthyForSensitive,
  unhealthy,
  veryUnhealthy,
  hazardous
};

template <>
inline constexpr auto enumNames<AirBand> =
    std::to_array<std::string_view>({"good", "fair", "moderate", "poor", "veryPoor", "extremelyPoor",
                                     "unhealthyForSensitive", "unhealthy", "veryUnhealthy", "hazardous"});
static_assert(enumNamesComplete(AirBand::hazardous));

struct AirIndex {
  AirScale scale = AirScale::european;
  double value = 0;
  AirBand band = AirBand::good;
  std::optional<Pollutant> leading;  ///< the one with the highest index of its own

  bool operator==(AirIndex const&) const = default;
};

/// The European model's region, 25° W to 45° E and 30° to 72° N: the finer model, and the only one with
/// pollen.
bool isInEuropeanModel(Coordinate place);

AirScale airScaleAt(Coordinate place);

/// The European index of one pollutant, not rounded; beyond the last step it goes on as within it.
double europeanIndex(Pollutant pollutant, double concentration);

/// A band of a scale and the highest index in it; the last has no end of its own.
struct AirBandRow {
  double most;
  AirBand band;
};

/// The lowest first.
std::span<AirBandRow const> airBands(AirScale scale);

/// Of a value exactly between two bands the lower one.
AirBand airBand(AirScale scale, double index);

/// The European index is that of the worst pollutant; the service's own where no concentration is known. That
/// of the United States is the service's, or made of the means over the hours before where the service has
/// none
/// (`us_index.h`). Nothing where neither is known.
std::optional<AirIndex> airIndexOf(AirLevels const& levels, AirScale scale);

/// The index of one pollutant alone, not rounded; absent where it is not known.
std::optional<double> airPartOf(AirLevels const& levels, Pollutant pollutant, AirScale scale);

/// Three kinds of nothing beside the values themselves.
enum class PollenState { values, outOfSeason, outOfRegion, unknown };

template <>
inline constexpr auto enumNames<PollenState> =
    std::to_array<std::string_view>({"values", "outOfSeason", "outOfRegion", "unknown"});
static_assert(enumNamesComplete(PollenState::unknown));

struct PollenOutlook {
  PollenState state = PollenState::unknown;
  PollenValues now = {};
  PollenValues highest = {};  ///< in the next 48 hours
};

/// The hours from the present one on, 48 at most.
std::span<AirQualityHour const> airHoursAhead(AirQualityForecast const& forecast, Instant now);

PollenOutlook pollenOutlook(AirQualityForecast const& forecast, Coordinate place, Instant now);

/// Sun protection is wanted from an ultraviolet index of 3, after rounding: the World Health Organization's
/// step.
inline constexpr double kLeastUvToProtect = 2.5;

struct UvHours {
  Instant begin, end;
  double highest = 0;

  bool operator==(UvHours const&) const = default;
};

struct UvOutlook {
  std::optional<double> now;
  std::optional<double> highest;    ///< in the next 24 hours; absent where none is known
  std::vector<UvHours> protection;  ///< in the next 24 hours
};

UvOutlook uvOutlook(AirQualityForecast const& forecast, Instant now);

}  // namespace nimbara
