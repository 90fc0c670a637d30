#include "app/words/brief/tip_inputs.h"

#include "app/settings/settings_registry.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

TEST(TipInputs, AreWhatTheUserMinds) {
  EXPECT_EQ(tipPreferences(Settings(settingsRegistry())), TipPreferences{});
  Settings const chosen(settingsRegistry(),
                        {{"advice_heat", std::string("low")}, {"advice_pollen", std::string("high")}});
  EXPECT_EQ(tipPreferences(chosen), (TipPreferences{.heat = Sensitivity::low, .pollen = Sensitivity::high}));
}

struct Row {
  std::optional<double> grains;
  std::optional<double> level;
};

TEST(TipInputs, CountPollenInSteps) {
  for (Row const& row :
       {Row{{}, {}}, {0.9, 0}, {1, 1}, {9.9, 1}, {10, 2}, {49.9, 2}, {50, 3}, {99.9, 3}, {100, 4}}) {
    AirQualityForecast forecast;
    forecast.hours.resize(1);
    forecast.hours[0].levels.pollen[2] = row.grains;
    EXPECT_EQ(tipAir(forecast, {52, 13}).front().pollen, row.level) << row.grains.value_or(-1);
  }
}

/// In either scale the best band is 1.
TEST(TipInputs, CountTheBandsOfTheAir) {
  for (auto const& [index, place, level] : {std::tuple{50.0, Coordinate{40, -100}, 1.0},
                                            {51.0, Coordinate{40, -100}, 2.0},
                                            {301.0, Coordinate{40, -100}, 6.0}}) {
    AirQualityForecast forecast;
    forecast.hours.resize(2);
    forecast.hours[1].levels.usAqi = index;
    auto const air = tipAir(forecast, place);
    EXPECT_EQ(air[0].air, std::nullopt) << "not known";
    EXPECT_EQ(air[1].air, level);
  }
}

}  // namespace
}  // namespace nimbara
