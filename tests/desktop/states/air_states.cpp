#include "air_states.h"

#include <cmath>

namespace nimbara::test {

SupplementState airOf(Coordinate place) {
  SupplementState state;
  state.place = {place, "Testville"};
  Instant const checked = kNow - std::chrono::minutes(5);
  AirQualityForecast air;
  for (int hour = 0; hour < 60; ++hour) {
    AirLevels levels;
    levels.pollutants = {22.1, 28.2, 11.2, 42.0 + hour, 1.0};
    levels.usParts = {65, 20, 10, 30.0 + hour, 1};
    levels.pollen = {0, 60.0 + hour, 12, 0, {}, 0};
    levels.uvIndex = std::max(0.0, 6 * std::sin(hour * 0.26));
    if (hour == 40) levels = {};
    air.hours.push_back({kNow + std::chrono::hours(hour), levels.pollutants[0], levels});
  }
  air.now = air.hours.front().levels;
  state.airQuality = {FeedState::current, std::move(air), checked, {}, {}};
  ClimateNormals normals;
  for (std::size_t day = 0; day < kClimateDays; ++day) {
    double const middle = 9 - 9 * std::cos(static_cast<double>(day) * 0.0172);
    normals.emplace_back(ClimateDay{middle, middle - 6, middle - 3, middle, middle + 3, middle + 6});
  }
  ClimateOutlook climate{"0.00,0.00", Date(std::chrono::year(2026) / 11 / 21), {}, {}, {}};
  climate.usual = climateOf(normals, climate.date);
  climate.bias = 0.5;
  climate.today = climate.usual->p50 + 5.5;
  climate.normals = std::make_shared<ClimateNormals const>(std::move(normals));
  state.climate = {FeedState::current, std::move(climate), checked, {}, {}};
  return state;
}

SupplementState failedAir(Coordinate place) {
  SupplementState state;
  state.place = {place, "Testville"};
  auto const failure = ServiceFailure::answered(503);
  state.airQuality.failure = state.climate.failure = failure;
  state.airQuality.failedSince = state.climate.failedSince = kNow - std::chrono::minutes(5);
  return state;
}

std::shared_ptr<EngineSnapshot> withAir(std::shared_ptr<EngineSnapshot> snapshot,
                                        SupplementState (*made)(Coordinate)) {
  WeatherState state = *snapshot->weather;
  state.supplement = std::make_shared<SupplementState const>(made(snapshot->place->coordinate));
  snapshot->weather = std::make_shared<WeatherState const>(std::move(state));
  return snapshot;
}

}  // namespace nimbara::test
