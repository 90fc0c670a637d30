// What a personal weather station tells: its modules, each with what it measured, when, and how it is.
// Metric. Plain values; nothing here decides what of it is shown.
#pragma once

#include "base/geodesy.h"
#include "base/json/json.h"
#include "base/time/instant.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class StationQuantity {
  temperature,       ///< °C
  humidity,          ///< %
  pressure,          ///< hPa at sea level
  absolutePressure,  ///< hPa where the sensor is
  windSpeed,         ///< km/h
  windDirection,     ///< degrees from which it blows
  gustSpeed,         ///< km/h
  gustDirection,     ///< degrees
  rainLastHour,      ///< mm
  rainLastDay,       ///< mm within 24 hours, or since midnight where the station counts so
  carbonDioxide,     ///< ppm
  noise              ///< dB
};

template <>
inline constexpr auto enumNames<StationQuantity> = std::to_array<std::string_view>(
    {"temperature", "humidity", "pressure", "absolutePressure", "windSpeed", "windDirection", "gustSpeed",
     "gustDirection", "rainLastHour", "rainLastDay", "carbonDioxide", "noise"});
static_assert(enumNamesComplete(StationQuantity::noise));

/// "°C", "km/h" and their like: in which the quantity is kept.
std::string_view unitOf(StationQuantity quantity);
/// Whether a sensor on the ground can have measured it.
bool isPossible(StationQuantity quantity, double value);

enum class StationModuleKind { base, outdoor, wind, rain, indoor };

template <>
inline constexpr auto enumNames<StationModuleKind> =
    std::to_array<std::string_view>({"base", "outdoor", "wind", "rain", "indoor"});
static_assert(enumNamesComplete(StationModuleKind::indoor));

struct StationValue {
  StationQuantity quantity = StationQuantity::temperature;
  double value = 0;

  bool operator==(StationValue const&) const = default;
};

template <>
inline constexpr auto jsonFields<StationValue> =
    FieldList{field("quantity", &StationValue::quantity), field("value", &StationValue::value)};

struct StationModule {
  std::string id = {};
  std::string name = {};  ///< as its owner calls it; may be empty
  StationModuleKind kind = StationModuleKind::outdoor;
  bool isReachable = true;
  std::optional<int> battery = {};         ///< %
  std::optional<Instant> observedAt = {};  ///< of `values`; none where it tells nothing
  std::vector<StationValue> values = {};   ///< possible ones only

  /// What it measured; nothing where it did not.
  std::optional<double> value(StationQuantity quantity) const;
  /// Keeps a value that is there and possible.
  void add(StationQuantity quantity, std::optional<double> value);

  bool operator==(StationModule const&) const = default;
};

template <>
inline constexpr auto jsonFields<StationModule> =
    FieldList{field("id", &StationModule::id),           fieldOr("name", &StationModule::name),
              field("kind", &StationModule::kind),       fieldOr("reachable", &StationModule::isReachable),
              field("battery", &StationModule::battery), field("observedAt", &StationModule::observedAt),
              fieldOr("values", &StationModule::values)};

struct StationReading {
  std::string id = {};
  std::string name = {};
  std::optional<double> latitude = {};  ///< degrees; where the station stands, if that is known
  std::optional<double> longitude = {};
  std::optional<double> altitude = {};  ///< m above the sea
  std::vector<StationModule> modules = {};

  std::optional<Coordinate> place() const;
  /// The last measurement of any of its modules.
  std::optional<Instant> lastUpload() const;

  bool operator==(StationReading const&) const = default;
};

template <>
inline constexpr auto jsonFields<StationReading> = FieldList{field("id", &StationReading::id),
                                                             fieldOr("name", &StationReading::name),
                                                             field("latitude", &StationReading::latitude),
                                                             field("longitude", &StationReading::longitude),
                                                             field("altitude", &StationReading::altitude),
                                                             fieldOr("modules", &StationReading::modules)};

/// A module of that kind, or null; the first of several.
StationModule const* moduleOf(StationReading const& station, StationModuleKind kind);

/// Bounds on what a service may make the program keep.
inline constexpr std::size_t kMostStations = 200;
inline constexpr std::size_t kMostModules = 20;

}  // namespace nimbara
