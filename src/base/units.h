// The user's units. The system reckons in °C, km/h, hPa, mm and km; a unit only changes numbers that a person
// reads.
#pragma once

#include "base/enum_names.h"

#include <string>
#include <string_view>

namespace nimbara {

enum class TemperatureUnit { celsius, fahrenheit };
template <>
inline constexpr auto enumNames<TemperatureUnit> = std::to_array<std::string_view>({"celsius", "fahrenheit"});

enum class WindUnit { kmh, mph, ms, knots };
template <>
inline constexpr auto enumNames<WindUnit> = std::to_array<std::string_view>({"kmh", "mph", "ms", "knots"});

enum class PressureUnit { hPa, inHg, mmHg };
template <>
inline constexpr auto enumNames<PressureUnit> = std::to_array<std::string_view>({"hPa", "inHg", "mmHg"});

enum class PrecipitationUnit { mm, inch };
template <>
inline constexpr auto enumNames<PrecipitationUnit> = std::to_array<std::string_view>({"mm", "inch"});

enum class DistanceUnit { km, miles };
template <>
inline constexpr auto enumNames<DistanceUnit> = std::to_array<std::string_view>({"km", "miles"});

static_assert(enumNamesComplete(TemperatureUnit::fahrenheit) && enumNamesComplete(WindUnit::knots) &&
              enumNamesComplete(PressureUnit::mmHg) && enumNamesComplete(PrecipitationUnit::inch) &&
              enumNamesComplete(DistanceUnit::miles));

struct Units {
  TemperatureUnit temperature = TemperatureUnit::celsius;
  WindUnit wind = WindUnit::kmh;
  PressureUnit pressure = PressureUnit::hPa;
  PrecipitationUnit precipitation = PrecipitationUnit::mm;
  DistanceUnit distance = DistanceUnit::km;

  static Units metric() { return {}; }
  static Units imperial();
  bool operator==(Units const&) const = default;
};

double fahrenheitFromCelsius(double celsius);
double celsiusFromFahrenheit(double fahrenheit);

/// A value of the system in the user's unit, not rounded.
double convert(double celsius, TemperatureUnit unit);
double convert(double kmh, WindUnit unit);
double convert(double hPa, PressureUnit unit);
double convert(double mm, PrecipitationUnit unit);
double convert(double km, DistanceUnit unit);

/// "°C", "km/h", "hPa", "mm", "km" and their like.
std::string_view symbol(TemperatureUnit unit);
std::string_view symbol(WindUnit unit);
std::string_view symbol(PressureUnit unit);
std::string_view symbol(PrecipitationUnit unit);
std::string_view symbol(DistanceUnit unit);

/// The number that a person reads of a temperature that a record carries in both scales, so that it is
/// rounded once only.
std::string displayTemperature(double celsius, double fahrenheit, TemperatureUnit unit);

/// The number that a person reads: rounded half away from zero to the decimals that suit the unit (inches of
/// mercury and of rain two, millimetres of rain one, all else none), without the symbol, never "-0".
std::string display(double celsius, TemperatureUnit unit);
std::string display(double kmh, WindUnit unit);
std::string display(double hPa, PressureUnit unit);
std::string display(double mm, PrecipitationUnit unit);
std::string display(double km, DistanceUnit unit);

}  // namespace nimbara
