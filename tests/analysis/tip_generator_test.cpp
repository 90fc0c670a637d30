#include "analysis/tips/tip_generator.h"

#include "support/forecasts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace nimbara {
namespace {

using test::at;
using test::mildForecast;
using testing::ElementsAre;
using testing::HasSubstr;

/// A long day near Greenwich.
Instant const kBegin = at("2026-06-20T00:00:00Z");

WeatherData summerDay() {
  WeatherData weather = mildForecast(kBegin, 24);
  weather.location.latitude = 51;
  for (HourlyForecast& hour : weather.allHourly) hour.cloudCover = 40;
  return weather;
}

Tip tipOf(Activity activity, WeatherData const& weather, TipPreferences const& preferences = {},
          std::vector<TipAir> const& air = {}) {
  return TipGenerator{}.tip(activity, weather, kBegin, preferences, air);
}

std::vector<std::string> linesOf(Tip const& tip) {
  return tipLines(tip, kBegin, Units::metric(), Texts::load("en"), Calendar::utc());
}

TEST(Rules, GoFromIdealToImpossible) {
  TipRule const rule{Activity::walking, TipQuantity::temperature, -10, 0, 20, 30};
  for (auto const& [value, expected] :
       {std::pair{-10.0, 0.0}, {-5, 0.5}, {0, 1}, {20, 1}, {25, 0.5}, {30, 0}})
    EXPECT_DOUBLE_EQ(suitability(rule, value), expected) << value;
}

TEST(Tips, NameTheDryHoursOfTheDay) {
  WeatherData weather = summerDay();
  for (std::size_t i = 0; i < 24; ++i) {
    HourlyForecast& hour = weather.allHourly[i];
    if (i >= 9 && i < 12) continue;
    hour.precipMM = 3;
    hour.chanceOfRain = 90;
    hour.condition = WeatherConditionCode::heavyRain;
  }
  Tip const tip = tipOf(Activity::running, weather);
  EXPECT_THAT(linesOf(tip), ElementsAre("Today 9 AM to noon: 15 °C, dry, light wind"));
  EXPECT_EQ(tip.windows.front().score, 100);
}

struct Row {
  std::string what;
  Activity activity;
  std::function<void(HourlyForecast&)> change;  ///< of all hours
  std::string expected;
};

TEST(Tips, SayWhatStandsInTheWay) {
  using enum Activity;
  for (Row const& row :
       {Row{"cold water", swimming, [](HourlyForecast&) {},
            "No good hours in the next three days: cold, 15 °C"},
        {"a clouded night", stargazing, [](HourlyForecast& hour) { hour.cloudCover = 100; },
         "No good hours in the next three days: cloudy"},
        {"a storm", cycling, [](HourlyForecast& hour) { hour.windSpeedKmph = 45; },
         "No good hours in the next three days: wind 45 km/h"},
        {"an unknown sky", stargazing,
         [](HourlyForecast& hour) {
           hour.availableDetailFields = DetailFields{WeatherDetailField::humidity};
         },
         "Not known: the forecast lacks what this depends on"},
        {"an unknown wind", cycling,
         [](HourlyForecast& hour) { hour.unknownValues = ForecastValues{ForecastValue::windSpeed}; },
         "Not known: the forecast lacks what this depends on"}}) {
    WeatherData weather = summerDay();
    for (HourlyForecast& hour : weather.allHourly) row.change(hour);
    EXPECT_THAT(linesOf(tipOf(row.activity, weather)), ElementsAre(row.expected)) << row.what;
  }
}

TEST(Tips, HeedWhoMindsWhat) {
  WeatherData weather = summerDay();
  for (HourlyForecast& hour : weather.allHourly) hour.tempC = hour.feelsLikeC = 24;
  EXPECT_EQ(tipOf(Activity::running, weather).state, Tip::State::none);
  EXPECT_EQ(tipOf(Activity::running, weather, {.heat = Sensitivity::low}).state, Tip::State::windows);
}

TEST(Tips, HeedTheAirWhereItIsKnown) {
  WeatherData const weather = summerDay();
  std::vector<TipAir> air;
  for (HourlyForecast const& hour : weather.allHourly) air.push_back({hour.date, 5, std::nullopt});
  Tip const tip = tipOf(Activity::running, weather, {}, air);
  ASSERT_TRUE(tip.against);
  EXPECT_EQ(tip.against->quantity, TipQuantity::air);
}

TEST(Tips, AreWholeInEveryLanguage) {
  for (Texts::Language const& language : Texts::languages()) {
    Texts const texts = Texts::load(language.code);
    for (TipRule const& rule : tipRules()) {
      for (bool const isFor : {true, false}) {
        std::string const text =
            reasonText({rule.quantity, 30, isFor, false}, rule.activity, Units::metric(), texts);
        EXPECT_THAT(text, testing::Not(testing::AnyOf(HasSubstr("advice."), HasSubstr("%@")))) << text;
      }
    }
  }
}

}  // namespace
}  // namespace nimbara
