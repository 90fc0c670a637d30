#include "analysis/weather_analysis_engine.h"
#include "support/forecasts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::mildForecast;
using Code = WeatherConditionCode;

Instant const kBegin = at("2026-01-21T00:00:00Z");

/// So much an hour in the hours 2 to 7, and rain in the two behind them.
WeatherData falling(double celsius, Code code, double mm, double rainBehind = 0) {
  WeatherData weather = mildForecast(kBegin, 24);
  for (std::size_t i = 2; i < 10; ++i) {
    HourlyForecast& hour = weather.allHourly[i];
    hour.chanceOfRain = 90;
    hour.precipMM = i < 8 ? mm : rainBehind;
    hour.condition = i < 8 ? code : Code::lightRain;
    hour.tempC = hour.feelsLikeC = i < 8 ? celsius : 5;
  }
  return weather;
}

/// "Flooding Rain Possible by snow: Heavy snow, Heavy snow from …".
std::string toldOf(WeatherData const& weather) {
  auto const insight = WeatherAnalysisEngine{}.analyze(weather, kBegin, Units::metric(), Texts::load("en"));
  if (insight.superseded.empty()) return {};
  SupersededAlert const& truer = insight.superseded.front();
  auto const alert = std::ranges::find(insight.alerts, truer.alert, &WeatherAlert::id);
  return alert->title + " by " + truer.by + ": " + truer.instead->title + ", " + truer.instead->message;
}

TEST(TruerAlerts, SaySnowForFloodingRain) {
  EXPECT_EQ(
      toldOf(falling(-8, Code::heavySnow, 6)),
      "Flooding Rain Possible by snow: Heavy snow, Heavy snow from 2 AM to 8 AM, about 25 cm of new snow.");
}

TEST(TruerAlerts, SayFreezingRainForHeavyRain) {
  EXPECT_EQ(
      toldOf(falling(-1, Code::heavyRain, 3)),
      "Heavy Rain Expected by freezingRain: Freezing rain, Freezing rain from 2 AM to 8 AM, about 18 mm.");
}

TEST(TruerAlerts, LeaveRainThatIsRain) {
  EXPECT_EQ(toldOf(falling(8, Code::heavyRain, 6)), "");
  // 12 mm of each, then more of the snow.
  EXPECT_EQ(toldOf(falling(-8, Code::heavySnow, 2, 6)), "");
  EXPECT_NE(toldOf(falling(-8, Code::heavySnow, 2, 5.9)), "");
  EXPECT_EQ(toldOf(falling(-1, Code::heavyRain, 2, 6.1)), "");
  EXPECT_NE(toldOf(falling(-1, Code::heavyRain, 2, 6)), "");
}

TEST(TruerAlerts, AreShownInTheStead) {
  auto const insight = WeatherAnalysisEngine{}.analyze(falling(-1, Code::heavyRain, 3), kBegin,
                                                       Units::metric(), Texts::load("en"));
  auto const shown = shownAlerts(insight.alerts, insight.superseded);
  EXPECT_EQ(shown.size(), insight.alerts.size());
  EXPECT_EQ(std::ranges::count(shown, WarningKind::rain, &WeatherAlert::kind), 0);
  EXPECT_EQ(shown.front().title, "Freezing rain");
}

}  // namespace
}  // namespace nimbara
