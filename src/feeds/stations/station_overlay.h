// Which values of the present the user's station gives instead of the forecast, and which of its values are
// not believed and why. A pure function; the forecast's hours and days stay as they are.
#pragma once

#include "feeds/stations/station_reading.h"
#include "model/weather_data.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// Why a value of the station is not shown as the present one.
enum class StationDoubt {
  unreachable,  ///< the module does not answer; there is no value
  old,          ///< measured more than half an hour ago
  future,       ///< measured later than now: one of the clocks is wrong
  farOff,       ///< too far from what the forecast has for the present
  inSun,        ///< the sensor seems to stand in the sun
  indoors,      ///< the outdoor module seems to be inside
  frozen        ///< an unheated gauge does not measure in frost
};

template <>
inline constexpr auto enumNames<StationDoubt> =
    std::to_array<std::string_view>({"unreachable", "old", "future", "farOff", "inSun", "indoors", "frozen"});
static_assert(enumNamesComplete(StationDoubt::frozen));

/// A value that is part of the present.
struct OverlaidValue {
  StationQuantity quantity = StationQuantity::temperature;
  double value = 0;
  std::string module;  ///< its name; may be empty
  Instant observedAt;

  bool operator==(OverlaidValue const&) const = default;
};

/// A value that is not, or a module without values.
struct DoubtedValue {
  StationDoubt doubt = StationDoubt::old;
  StationQuantity quantity = StationQuantity::temperature;
  std::optional<double> value;
  std::optional<double> expected;  ///< the forecast's
  std::string module;
  std::optional<Instant> observedAt;

  bool operator==(DoubtedValue const&) const = default;
};

struct StationOverlay {
  WeatherData data;
  std::vector<OverlaidValue> values;
  std::vector<DoubtedValue> doubts;
  bool isElsewhere = false;  ///< the station does not stand near the forecast's place, or nobody knows where

  /// Something of the present is the station's.
  bool isLive() const { return !values.empty(); }
  OverlaidValue const* find(StationQuantity quantity) const;
};

/// A station speaks for the places so near.
inline constexpr double kStationReachKm = 5;
inline constexpr std::chrono::minutes kStationLife{30};

StationOverlay stationOverlay(WeatherData const& data, StationReading const& station, Instant now);

/// What the station measures out of doors of it, by the modules that an overlay looks at: no older than
/// `kStationLife`, whether it is like the forecast or not.
std::optional<OverlaidValue> measuredNow(StationReading const& station, StationQuantity quantity,
                                         Instant now);
/// Whether any of its modules measures that out of doors, however long ago; so does one that went silent.
bool measures(StationReading const& station, StationQuantity quantity);

/// "tempC", "pressure" and the like: the members of the present's record that the quantity replaces.
std::vector<std::string_view> presentKeys(StationQuantity quantity);

}  // namespace nimbara
