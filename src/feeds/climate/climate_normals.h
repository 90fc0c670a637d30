// What temperature a day of the year usually has at a place, from thirty years of daily values, and how a day
// compares with it. Pure; any bytes may be given to the parser.
#pragma once

#include "base/enum_names.h"
#include "base/json/json.h"
#include "base/result.h"
#include "base/time/calendar.h"

#include <optional>
#include <string_view>
#include <vector>

namespace nimbara {

/// The mean of the highest and the lowest temperature of a day, °C.
struct DayTemperature {
  Date date;
  double mean = 0;
};

/// The date there.
inline Date dayAt(Calendar const& calendar, Instant now) {
  return Date(std::chrono::floor<std::chrono::days>(calendar.local(now)));
}

/// Of a daily answer of Open-Meteo, forecast or archive. Days without both values are left out, never taken
/// for 0.
Result<std::vector<DayTemperature>, DecodeError> parseDayTemperatures(std::string_view body);

/// °C.
struct ClimateDay {
  double mean = 0;
  double p10 = 0;
  double p20 = 0;
  double p50 = 0;
  double p80 = 0;
  double p90 = 0;

  bool operator==(ClimateDay const&) const = default;
};

template <>
inline constexpr auto jsonFields<ClimateDay> = FieldList{
    field("mean", &ClimateDay::mean), field("p10", &ClimateDay::p10), field("p20", &ClimateDay::p20),
    field("p50", &ClimateDay::p50),   field("p80", &ClimateDay::p80), field("p90", &ClimateDay::p90)};

/// One for each day of a leap year; absent where fewer than fifteen years have values.
using ClimateNormals = std::vector<std::optional<ClimateDay>>;

inline constexpr std::size_t kClimateDays = 366;

/// 0 for 1 January, 59 for 29 February, 365 for 31 December.
std::size_t climateIndex(Date date);

/// Each from the days within a week of it, in all years.
ClimateNormals climateNormals(std::vector<DayTemperature> const& days);

std::optional<ClimateDay> climateOf(ClimateNormals const& normals, Date date);

/// How much warmer the forecasts of the days that both have were than the archive, °C; nothing below 60 days.
std::optional<double> climateBias(std::vector<DayTemperature> const& forecasts,
                                  std::vector<DayTemperature> const& archive);

enum class ClimateWord { usual, warmer, colder, unusuallyWarm, unusuallyCold };

template <>
inline constexpr auto enumNames<ClimateWord> =
    std::to_array<std::string_view>({"usual", "warmer", "colder", "unusuallyWarm", "unusuallyCold"});
static_assert(enumNamesComplete(ClimateWord::unusuallyCold));

/// Other than usual only outside the middle three fifths of the years and by two degrees from their median;
/// unusual beyond nine in ten.
ClimateWord climateWord(ClimateDay const& usual, double mean);

}  // namespace nimbara
