#include "feeds/air/us_index.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace nimbara {

namespace {

/// Litres that a mole of gas takes at 25 °C and one atmosphere.
constexpr double kMolarVolume = 24.45;
constexpr double kHighestIndex = 500;

struct Step {
  double from, to;  ///< concentration, both ends included
  double low, high;
};

constexpr Step kPm25[] = {{0, 9, 0, 50},           {9.1, 35.4, 51, 100},     {35.5, 55.4, 101, 150},
                          {55.5, 125.4, 151, 200}, {125.5, 225.4, 201, 300}, {225.5, 325.4, 301, 500}};
constexpr Step kPm10[] = {{0, 54, 0, 50},       {55, 154, 51, 100},   {155, 254, 101, 150},
                          {255, 354, 151, 200}, {355, 424, 201, 300}, {425, 604, 301, 500}};
/// ppb
constexpr Step kNo2[] = {{0, 53, 0, 50},       {54, 100, 51, 100},    {101, 360, 101, 150},
                         {361, 649, 151, 200}, {650, 1249, 201, 300}, {1250, 2049, 301, 500}};
/// ppb of eight hours; beyond 200 the agency has an index of one hour alone.
constexpr Step kO3[] = {
    {0, 54, 0, 50}, {55, 70, 51, 100}, {71, 85, 101, 150}, {86, 105, 151, 200}, {106, 200, 201, 300}};
/// ppb
constexpr Step kSo2[] = {{0, 35, 0, 50},       {36, 75, 51, 100},    {76, 185, 101, 150},
                         {186, 304, 151, 200}, {305, 604, 201, 300}, {605, 1004, 301, 500}};

struct Row {
  std::span<Step const> steps;
  double molarMass;  ///< g; 0 for what is weighed
  double cut;        ///< to multiples of this
  int hours;         ///< of the mean
};

/// In the order of `Pollutant`.
constexpr Row kRows[] = {
    {kPm25, 0, 0.1, 24}, {kPm10, 0, 1, 24}, {kNo2, 46.01, 1, 1}, {kO3, 48, 1, 8}, {kSo2, 64.07, 1, 1},
};

constexpr double kLeastShare = 0.75;

/// Of the hours that end with the one at `last`.
std::optional<double> meanOf(std::span<AirQualityHour const> hours, std::size_t last, Pollutant pollutant,
                             int count) {
  Instant const begin = hours[last].time - std::chrono::hours(count);
  double sum = 0;
  int known = 0;
  for (std::size_t i = last + 1; i-- > 0 && hours[i].time > begin;) {
    auto const value = hours[i].levels.pollutants[static_cast<std::size_t>(pollutant)];
    if (!value) continue;
    sum += *value;
    ++known;
  }
  if (known < kLeastShare * count) return std::nullopt;
  return sum / known;
}

bool hasIndex(AirLevels const& levels) {
  bool const isAny = std::ranges::any_of(levels.usParts, [](auto const& part) { return part.has_value(); });
  return isAny || levels.usAqi.has_value();
}

PollutantValues partsOf(std::span<AirQualityHour const> hours, std::size_t last) {
  PollutantValues parts;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    auto const pollutant = static_cast<Pollutant>(i);
    auto const mean = meanOf(hours, last, pollutant, kRows[i].hours);
    if (mean) parts[i] = usIndex(pollutant, *mean);
  }
  return parts;
}

}  // namespace

double usIndex(Pollutant pollutant, double mean) {
  Row const& row = kRows[static_cast<std::size_t>(pollutant)];
  double const amount = row.molarMass > 0 ? mean * kMolarVolume / row.molarMass : mean;
  // A sum of tenths may lie a hair below the tenth that it is.
  constexpr double kHair = 1e-6;
  double const cut = std::floor(amount / row.cut + kHair) * row.cut;
  auto const step = std::ranges::find_if(row.steps, [cut](Step const& own) { return cut <= own.to + kHair; });
  if (step == row.steps.end()) return kHighestIndex;
  return std::round(step->low + (step->high - step->low) * (cut - step->from) / (step->to - step->from));
}

void fillUsParts(AirQualityForecast& forecast, std::optional<Instant> time) {
  auto& hours = forecast.hours;
  // The means are of concentrations alone, so that what was filled in before changes none.
  for (std::size_t i = 0; i < hours.size(); ++i) {
    if (!hasIndex(hours[i].levels)) hours[i].levels.usParts = partsOf(hours, i);
  }
  if (!time || hasIndex(forecast.now)) return;
  auto const after = std::ranges::upper_bound(hours, *time, {}, &AirQualityHour::time);
  if (after == hours.begin()) return;
  forecast.now.usParts = partsOf(hours, static_cast<std::size_t>(after - hours.begin()) - 1);
}

}  // namespace nimbara
