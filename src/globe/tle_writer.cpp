#include "base/text/number.h"
#include "globe/tle.h"

#include <cmath>
#include <numbers>

namespace nimbara::SGP4 {

namespace {

constexpr double kDegrees = 180 / std::numbers::pi;
constexpr double kTurnsPerDay = 1440 / (2 * std::numbers::pi);
constexpr double kUnixEpochJulianDate = 2440587.5;

std::string padded(std::string const& text, std::size_t width, char filling = ' ') {
  return text.size() < width ? std::string(width - text.size(), filling) + text : text;
}

/// An angle that rounding has brought to a full turn is 0.
std::string angle(double radians) {
  std::string const text = fixedDecimal(radians * kDegrees, 4);
  return padded(text == "360.0000" ? "0.0000" : text, 8);
}

/// "26325.25000000".
std::string epochText(TLE const& tle) {
  using namespace std::chrono;
  sys_days day{days(static_cast<int>(tle.epochDay - kUnixEpochJulianDate))};
  std::string fraction = fixedDecimal(tle.epochFraction, 8);
  if (fraction.starts_with('1')) {
    day += days(1);
    fraction = "0.00000000";
  }
  year_month_day const date(day);
  auto const dayOfYear = (day - sys_days(date.year() / 1 / 1)).count() + 1;
  return padded(std::to_string(int(date.year()) % 100), 2, '0') + padded(std::to_string(dayOfYear), 3, '0') +
         fraction.substr(1);
}

/// " .00012345" and "-.00012345".
std::string changeText(double change) {
  return (change < 0 ? "-" : " ") + fixedDecimal(std::abs(change), 8).substr(1);
}

/// " 36258-3" is 0.36258e-3.
std::string exponentialText(double value) {
  if (value == 0) return " 00000+0";
  double const size = std::abs(value);
  int exponent = static_cast<int>(std::floor(std::log10(size))) + 1;
  auto digits = std::llround(size / std::pow(10, exponent) * 1e5);
  if (digits == 100'000) {
    digits /= 10;
    ++exponent;
  }
  if (exponent < -9) return " 00000+0";
  return (value < 0 ? "-" : " ") + std::to_string(digits) + (exponent > 0 ? "+" : "-") +
         std::to_string(std::abs(exponent));
}

std::string sealed(std::string const& line) {
  return line + std::to_string(checksumOf(line)) + "\n";
}

std::string problemOf(TLE const& tle, double turns) {
  bool const finite = std::isfinite(tle.inclo + tle.nodeo + tle.argpo + tle.mo + tle.bstar + tle.nddot);
  if (!finite || tle.inclo < 0 || tle.inclo > std::numbers::pi) return "the angles cannot be written";
  for (double const each : {tle.nodeo, tle.argpo, tle.mo}) {
    if (each < 0 || each > 2 * std::numbers::pi) return "the angles cannot be written";
  }
  if (!(tle.ecco >= 0 && tle.ecco < 0.99999995)) return "the eccentricity cannot be written";
  if (!(turns > 0 && turns < 99.9)) return "the mean motion cannot be written";
  if (!(std::abs(tle.ndot) < 0.999999) || std::abs(tle.bstar) >= 1 || std::abs(tle.nddot) >= 1) {
    return "the changes of the mean motion cannot be written";
  }
  auto const year = int(std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(tle.epoch)).year());
  return year < 1957 || year > 2056 ? "the epoch cannot be written" : "";
}

}  // namespace

Result<std::string, std::string> writeElements(TLE const& tle) {
  auto const number = writeCatalogNumber(tle.satnum);
  if (!number) return number;
  double const turns = tle.no_kozai * kTurnsPerDay;
  if (auto problem = problemOf(tle, turns); !problem.empty()) return std::unexpected(std::move(problem));
  std::string designator = tle.intldesg.substr(0, 8);
  designator.resize(8, ' ');
  std::string const eccentricity = fixedDecimal(tle.ecco, 7).substr(2);
  std::string const line1 = "1 " + *number + "U " + designator + " " + epochText(tle) + " " +
                            changeText(tle.ndot) + " " + exponentialText(tle.nddot) + " " +
                            exponentialText(tle.bstar) + " 0  999";
  std::string const line2 = "2 " + *number + " " + angle(tle.inclo) + " " + angle(tle.nodeo) + " " +
                            eccentricity + " " + angle(tle.argpo) + " " + angle(tle.mo) + " " +
                            padded(fixedDecimal(turns, 8), 11) + "    0";
  std::string const name = tle.name.empty() ? "" : tle.name + "\n";
  return name + sealed(line1) + sealed(line2);
}

}  // namespace nimbara::SGP4
