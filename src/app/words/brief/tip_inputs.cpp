#include "app/words/brief/tip_inputs.h"

#include "feeds/air/air_index.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr double kPollenSteps[] = {1, 10, 50, 100};

std::optional<double> airLevel(AirLevels const& levels, AirScale scale) {
  auto const index = airIndexOf(levels, scale);
  if (!index) return std::nullopt;
  auto const bands = airBands(scale);
  auto const found = std::ranges::find(bands, index->band, &AirBandRow::band);
  return static_cast<double>(found - bands.begin()) + 1;
}

std::optional<double> pollenLevel(PollenValues const& pollen) {
  std::optional<double> const most = std::ranges::max(pollen);
  if (!most) return std::nullopt;
  return static_cast<double>(std::ranges::upper_bound(kPollenSteps, *most) - std::begin(kPollenSteps));
}

}  // namespace

TipPreferences tipPreferences(Settings const& settings) {
  auto const chosen = [&](std::string_view key) {
    return settings.choice<Sensitivity>(key).value_or(Sensitivity::usual);
  };
  return {chosen("advice_heat"), chosen("advice_cold"), chosen("advice_wind"),
          chosen("advice_rain"), chosen("advice_air"),  chosen("advice_pollen")};
}

std::vector<TipAir> tipAir(AirQualityForecast const& forecast, Coordinate place) {
  AirScale const scale = airScaleAt(place);
  std::vector<TipAir> air;
  air.reserve(forecast.hours.size());
  for (AirQualityHour const& hour : forecast.hours)
    air.push_back({hour.time, airLevel(hour.levels, scale), pollenLevel(hour.levels.pollen)});
  return air;
}

}  // namespace nimbara
