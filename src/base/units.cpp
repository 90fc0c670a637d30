#include "base/units.h"

#include "base/text/number.h"

#include <cmath>

namespace nimbara {

namespace {

/// How a unit differs from the system's own, how it is written and with how many decimals a person reads it.
struct UnitRow {
  double factor;
  double offset;
  int decimals;
  std::string_view symbol;
};

constexpr std::array<UnitRow, 2> kTemperature{{{1, 0, 0, "°C"}, {1.8, 32, 0, "°F"}}};
constexpr std::array<UnitRow, 4> kWind{
    {{1, 0, 0, "km/h"}, {0.621371, 0, 0, "mph"}, {1 / 3.6, 0, 0, "m/s"}, {0.539957, 0, 0, "knots"}}};
constexpr std::array<UnitRow, 3> kPressure{
    {{1, 0, 0, "hPa"}, {0.02953, 0, 2, "inHg"}, {0.750062, 0, 0, "mmHg"}}};
constexpr std::array<UnitRow, 2> kPrecipitation{{{1, 0, 1, "mm"}, {1 / 25.4, 0, 2, "in"}}};
constexpr std::array<UnitRow, 2> kDistance{{{1, 0, 0, "km"}, {0.621371, 0, 0, "mi"}}};

constexpr UnitRow const& row(TemperatureUnit unit) {
  return kTemperature[static_cast<std::size_t>(unit)];
}
constexpr UnitRow const& row(WindUnit unit) {
  return kWind[static_cast<std::size_t>(unit)];
}
constexpr UnitRow const& row(PressureUnit unit) {
  return kPressure[static_cast<std::size_t>(unit)];
}
constexpr UnitRow const& row(PrecipitationUnit unit) {
  return kPrecipitation[static_cast<std::size_t>(unit)];
}
constexpr UnitRow const& row(DistanceUnit unit) {
  return kDistance[static_cast<std::size_t>(unit)];
}

double converted(double value, UnitRow const& unit) {
  return value * unit.factor + unit.offset;
}

std::string displayed(double value, UnitRow const& unit) {
  double const scale = std::pow(10.0, unit.decimals);
  return fixedDecimal(roundHalfAway(converted(value, unit) * scale) / scale, unit.decimals);
}

}  // namespace

Units Units::imperial() {
  return {TemperatureUnit::fahrenheit, WindUnit::mph, PressureUnit::inHg, PrecipitationUnit::inch,
          DistanceUnit::miles};
}

double fahrenheitFromCelsius(double celsius) {
  return celsius * 9 / 5 + 32;
}
double celsiusFromFahrenheit(double fahrenheit) {
  return (fahrenheit - 32) * 5 / 9;
}

double convert(double celsius, TemperatureUnit unit) {
  return converted(celsius, row(unit));
}
double convert(double kmh, WindUnit unit) {
  return converted(kmh, row(unit));
}
double convert(double hPa, PressureUnit unit) {
  return converted(hPa, row(unit));
}
double convert(double mm, PrecipitationUnit unit) {
  return converted(mm, row(unit));
}
double convert(double km, DistanceUnit unit) {
  return converted(km, row(unit));
}

std::string_view symbol(TemperatureUnit unit) {
  return row(unit).symbol;
}
std::string_view symbol(WindUnit unit) {
  return row(unit).symbol;
}
std::string_view symbol(PressureUnit unit) {
  return row(unit).symbol;
}
std::string_view symbol(PrecipitationUnit unit) {
  return row(unit).symbol;
}
std::string_view symbol(DistanceUnit unit) {
  return row(unit).symbol;
}

std::string displayTemperature(double celsius, double fahrenheit, TemperatureUnit unit) {
  return roundedText(unit == TemperatureUnit::fahrenheit ? fahrenheit : celsius);
}

std::string display(double celsius, TemperatureUnit unit) {
  return displayed(celsius, row(unit));
}
std::string display(double kmh, WindUnit unit) {
  return displayed(kmh, row(unit));
}
std::string display(double hPa, PressureUnit unit) {
  return displayed(hPa, row(unit));
}
std::string display(double mm, PrecipitationUnit unit) {
  return displayed(mm, row(unit));
}
std::string display(double km, DistanceUnit unit) {
  return displayed(km, row(unit));
}

}  // namespace nimbara
