#include "feeds/air/air_index.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr hours kUvAhead{24};

/// The concentrations at which the European index is 20, 40, 60, 80 and 100, in µg/m³.
constexpr std::array<std::array<double, 5>, enumNames<Pollutant>.size()> kEuropeanSteps{{
    {5, 15, 50, 90, 140},
    {15, 45, 120, 195, 270},
    {10, 25, 60, 100, 150},
    {60, 100, 120, 160, 180},
    {20, 40, 125, 190, 275},
}};

constexpr std::array kEuropeanBands = std::to_array<AirBandRow>({{20, AirBand::good},
                                                                 {40, AirBand::fair},
                                                                 {60, AirBand::moderate},
                                                                 {80, AirBand::poor},
                                                                 {100, AirBand::veryPoor},
                                                                 {1e9, AirBand::extremelyPoor}});
constexpr std::array kUsBands = std::to_array<AirBandRow>({{50, AirBand::good},
                                                           {100, AirBand::moderate},
                                                           {150, AirBand::unhealthyForSensitive},
                                                           {200, AirBand::unhealthy},
                                                           {300, AirBand::veryUnhealthy},
                                                           {1e9, AirBand::hazardous}});

/// The highest of the pollutants' own indices.
std::optional<AirIndex> worstOf(PollutantValues const& parts, AirScale scale) {
  std::optional<AirIndex> worst;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (!parts[i] || (worst && worst->value >= *parts[i])) continue;
    worst = AirIndex{scale, *parts[i], {}, static_cast<Pollutant>(i)};
  }
  return worst;
}

PollutantValues europeanParts(PollutantValues const& concentrations) {
  PollutantValues parts;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (concentrations[i]) parts[i] = europeanIndex(static_cast<Pollutant>(i), *concentrations[i]);
  }
  return parts;
}

void raise(std::optional<double>& highest, std::optional<double> value) {
  if (value && (!highest || *value > *highest)) highest = value;
}

}  // namespace

bool isInEuropeanModel(Coordinate place) {
  return place.latitude >= 30 && place.latitude <= 72 && place.longitude >= -25 && place.longitude <= 45;
}

AirScale airScaleAt(Coordinate place) {
  return isInEuropeanModel(place) ? AirScale::european : AirScale::us;
}

double europeanIndex(Pollutant pollutant, double concentration) {
  constexpr double kStep = 20;
  auto const& steps = kEuropeanSteps[static_cast<std::size_t>(pollutant)];
  std::size_t above = 0;
  while (above + 1 < steps.size() && concentration > steps[above]) ++above;
  double const low = above == 0 ? 0 : steps[above - 1];
  return kStep * (static_cast<double>(above) + (concentration - low) / (steps[above] - low));
}

std::span<AirBandRow const> airBands(AirScale scale) {
  if (scale == AirScale::european) return kEuropeanBands;
  return kUsBands;
}

AirBand airBand(AirScale scale, double index) {
  auto const bands = airBands(scale);
  auto const row = std::ranges::find_if(bands, [&](AirBandRow const& band) { return index <= band.most; });
  return row == bands.end() ? bands.back().band : row->band;
}

std::optional<AirIndex> airIndexOf(AirLevels const& levels, AirScale scale) {
  bool const isEuropean = scale == AirScale::european;
  auto index = worstOf(isEuropean ? europeanParts(levels.pollutants) : levels.usParts, scale);
  auto const served = isEuropean ? levels.europeanAqi : levels.usAqi;
  // Carbon monoxide is part of the American index and no pollutant of ours.
  bool const isServed = served && (!index || (!isEuropean && *served > index->value));
  if (isServed) index = AirIndex{scale, *served, {}, {}};
  if (!index) return std::nullopt;
  index->value = std::round(index->value);
  index->band = airBand(scale, index->value);
  return index;
}

std::span<AirQualityHour const> airHoursAhead(AirQualityForecast const& forecast, Instant now) {
  static constexpr hours kAhead{48};
  auto const begin = std::ranges::find_if(
      forecast.hours, [now](AirQualityHour const& hour) { return hour.time + hours(1) > now; });
  auto const end = std::find_if(begin, forecast.hours.end(),
                                [now](AirQualityHour const& hour) { return hour.time >= now + kAhead; });
  return {begin, end};
}

std::optional<double> airPartOf(AirLevels const& levels, Pollutant pollutant, AirScale scale) {
  auto const at = static_cast<std::size_t>(pollutant);
  if (scale == AirScale::us) return levels.usParts[at];
  auto const concentration = levels.pollutants[at];
  return concentration ? std::optional(europeanIndex(pollutant, *concentration)) : std::nullopt;
}

PollenOutlook pollenOutlook(AirQualityForecast const& forecast, Coordinate place, Instant now) {
  PollenOutlook outlook{PollenState::unknown, forecast.now.pollen, forecast.now.pollen};
  if (!isInEuropeanModel(place)) return {PollenState::outOfRegion, {}, {}};
  for (AirQualityHour const& hour : airHoursAhead(forecast, now)) {
    for (std::size_t i = 0; i < outlook.highest.size(); ++i) raise(outlook.highest[i], hour.levels.pollen[i]);
  }
  bool const isKnown =
      std::ranges::any_of(outlook.highest, [](auto const& most) { return most.has_value(); });
  bool const isAny = std::ranges::any_of(outlook.highest, [](auto const& most) { return most && *most > 0; });
  if (isKnown) outlook.state = isAny ? PollenState::values : PollenState::outOfSeason;
  return outlook;
}

UvOutlook uvOutlook(AirQualityForecast const& forecast, Instant now) {
  UvOutlook outlook;
  outlook.now = forecast.now.uvIndex;
  for (AirQualityHour const& hour : airHoursAhead(forecast, now)) {
    if (hour.time >= now + kUvAhead || !hour.levels.uvIndex) continue;
    double const uv = *hour.levels.uvIndex;
    raise(outlook.highest, uv);
    if (uv < kLeastUvToProtect) continue;
    bool const goesOn = !outlook.protection.empty() && outlook.protection.back().end == hour.time;
    if (!goesOn) outlook.protection.push_back({hour.time, hour.time, 0});
    UvHours& span = outlook.protection.back();
    span.end = hour.time + hours(1);
    span.highest = std::max(span.highest, uv);
  }
  return outlook;
}

}  // namespace nimbara
