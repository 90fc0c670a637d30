#include "analysis/alerts/alert_generator.h"

#include "analysis/felt_temperature.h"
#include "support/forecasts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::mildForecast;
using testing::HasSubstr;

// A quarter past five, so that the first hour of the horizons is the running one.
Instant const kNow = at("2026-11-21T05:15:00Z");
Instant const kHour = at("2026-11-21T05:00:00Z");

std::vector<WeatherAlert> alertsOf(WeatherData const& weather, Units const& units = Units::metric(),
                                   std::string_view language = "en") {
  Texts const texts = Texts::load(language);
  return AlertGenerator{}.generate(weather, kNow, units, texts);
}

/// "critical Extreme Heat: Feels-like …", one line an alert.
std::string linesOf(std::vector<WeatherAlert> const& alerts) {
  std::string out;
  for (WeatherAlert const& alert : alerts) {
    out += std::string(enumName(alert.severity)) + " " + alert.title + ": " + alert.message + "\n";
  }
  return out;
}

struct Row {
  std::string what;
  std::function<void(WeatherData&)> change;
  std::string expected;  ///< how the only line begins; empty for no alert
};

void PrintTo(Row const& row, std::ostream* out) {
  *out << row.what;
}

class AlertRows : public testing::TestWithParam<Row> {};

TEST_P(AlertRows, GiveTheAlertOfTheirThreshold) {
  WeatherData weather = mildForecast(kHour, 24);
  GetParam().change(weather);
  std::string const lines = linesOf(alertsOf(weather));
  if (GetParam().expected.empty()) {
    EXPECT_EQ(lines, "") << GetParam().what;
  } else {
    EXPECT_THAT(lines, testing::StartsWith(GetParam().expected)) << GetParam().what;
    EXPECT_EQ(std::ranges::count(lines, '\n'), 1) << GetParam().what;
  }
}

/// The entry `ahead` hours behind the running one.
template <class Member, class Value>
auto hour(std::size_t ahead, Member HourlyForecast::* member, Value value) {
  return [=](WeatherData& weather) { weather.allHourly[ahead].*member = static_cast<Member>(value); };
}

auto feels(std::size_t ahead, double celsius) {
  return [=](WeatherData& weather) {
    weather.allHourly[ahead].tempC = weather.allHourly[ahead].feelsLikeC = celsius;
    weather.allHourly[ahead].humidity = 20;
    weather.allHourly[ahead].windSpeedKmph = 0;
  };
}

template <class... Changes>
auto all(Changes... changes) {
  return [=](WeatherData& weather) { (changes(weather), ...); };
}

auto snowToday(double cm) {
  return [=](WeatherData& weather) { weather.daily.front().totalSnowCm = cm; };
}

using H = HourlyForecast;

INSTANTIATE_TEST_SUITE_P(
    Temperature, AlertRows,
    testing::Values(
        Row{"mild", [](WeatherData&) {}, ""},  //
        Row{"just below heat", feels(3, 32.9), ""},
        Row{"heat", feels(3, 33.0),
            "warning High Temperature: Feels-like temperature reaches 33 °C around 8 AM. Take"},
        Row{"below extreme heat", feels(3, 37.9), "warning High Temperature"},
        Row{"extreme heat", feels(3, 38.0), "critical Extreme Heat: Feels-like temperature reaches 38 °C"},
        Row{"last hour of the horizon", feels(11, 34), "warning High Temperature"},
        Row{"behind the horizon", feels(12, 34), ""},
        Row{"the earlier of equals", all(feels(4, 35), feels(6, 35)),
            "warning High Temperature: Feels-like temperature reaches 35 °C around 9 AM."},
        Row{"hotter now than later",
            [](WeatherData& w) { w.current.tempC = w.current.feelsLikeC = 36, w.current.humidity = 20; },
            "warning High Temperature: Feels-like temperature reaches 36 °C. Take"},
        Row{"no present", all(feels(2, 34), [](WeatherData& w) { w.current = {}; }),
            "warning High Temperature"},
        Row{"just above cold", feels(3, -4.9), ""},
        Row{"cold", feels(3, -5.0),
            "warning Very Cold: Feels-like temperature drops to -5 °C around 8 AM. Bundle"},
        Row{"above extreme cold", feels(3, -14.9), "warning Very Cold"},
        Row{"extreme cold", feels(3, -15.0), "critical Extreme Cold"},
        Row{"wind makes it cold", all(feels(3, -1), hour(3, &H::windSpeedKmph, 20)), "warning Very Cold"},
        Row{"humid heat", all(feels(3, 31), hour(3, &H::humidity, 75)), "critical Extreme Heat"},
        Row{"heat without a humidity",
            all(feels(3, 31), hour(3, &H::humidity, 75), hour(3, &H::availableDetailFields, DetailFields{})),
            ""}));

INSTANTIATE_TEST_SUITE_P(
    ThunderAndRain, AlertRows,
    testing::Values(
        Row{"chance 49", hour(3, &H::chanceOfThunder, 49), ""},
        Row{"chance 50", hour(3, &H::chanceOfThunder, 50),
            "advisory Thunderstorm Risk: Thunderstorms peak around 8 AM with 50% thunder risk."},
        Row{"chance 69", hour(3, &H::chanceOfThunder, 69), "advisory Thunderstorm Risk"},
        Row{"chance 70", hour(3, &H::chanceOfThunder, 70), "warning Thunderstorm Risk"},
        Row{"eighth entry", hour(7, &H::chanceOfThunder, 70), "warning Thunderstorm Risk"},
        Row{"ninth entry", hour(8, &H::chanceOfThunder, 70), ""},
        Row{"rain 69 %", hour(3, &H::chanceOfRain, 69), ""},
        Row{"rain 70 %", hour(3, &H::chanceOfRain, 70),
            "advisory Heavy Rain Expected: Rain peaks around 8 AM with 0.0 mm in that period and 0 mm "
            "possible over 12 hours."},
        Row{"4.9 mm count as 65 %", hour(3, &H::precipMM, 4.9), ""},
        Row{"5 mm count as 80 %", hour(3, &H::precipMM, 5.0), "advisory Heavy Rain Expected"},
        Row{"7.9 mm", hour(3, &H::precipMM, 7.9), "advisory Heavy Rain Expected"},
        Row{"8 mm", hour(3, &H::precipMM, 8.0), "warning Heavy Rain Expected"},
        Row{"heavy rain by its condition", hour(3, &H::condition, WeatherConditionCode::heavyRain),
            "advisory Heavy Rain Expected"},
        Row{"heavy showers by their condition", hour(3, &H::condition, WeatherConditionCode::heavyShowers),
            "advisory Heavy Rain Expected"},
        Row{"19.8 mm in small portions",
            [](WeatherData& w) {
              for (std::size_t i = 0; i < 12; ++i) w.allHourly[i].precipMM = 1.65;
            },
            ""},
        Row{"20.4 mm in small portions",
            [](WeatherData& w) {
              for (std::size_t i = 0; i < 12; ++i) w.allHourly[i].precipMM = 1.7;
            },
            "advisory Heavy Rain Expected: Rain peaks around 5 AM with 1.7 mm in that period and 20 mm"},
        Row{"30 mm flood", all(hour(2, &H::precipMM, 4), hour(4, &H::precipMM, 26)),
            "warning Flooding Rain Possible: Rain peaks around 9 AM with 26.0 mm in that period and 30 mm"},
        Row{"2 mm name the hour",
            all(hour(6, &H::precipMM, 2.0), hour(6, &H::chanceOfRain, 10), hour(2, &H::chanceOfRain, 64),
                hour(4, &H::condition, WeatherConditionCode::heavyRain)),
            "advisory Heavy Rain Expected: Rain peaks around 9 AM"}));

INSTANTIATE_TEST_SUITE_P(
    WinterAndFog, AlertRows,
    testing::Values(
        Row{"2.9 cm", snowToday(2.9), ""},
        Row{"3 cm", snowToday(3), "advisory Snow Expected: 3 cm of snow possible today."},
        Row{"10 cm", snowToday(10), "advisory Snow Expected: 10 cm of snow possible today."},
        Row{"10.1 cm", snowToday(10.1), "warning Heavy Snow: 10 cm of snow expected today."},
        Row{"snow of tomorrow", [](WeatherData& w) { w.daily.back().totalSnowCm = 20; }, ""},
        Row{"snow of yesterday",
            [](WeatherData& w) {
              DailyForecast yesterday;
              yesterday.date = w.daily.front().date - std::chrono::days(1);
              yesterday.totalSnowCm = 20;
              w.daily.insert(w.daily.begin(), yesterday);
            },
            ""},
        Row{"snow chance 59", hour(3, &H::chanceOfSnow, 59), ""},
        Row{"snow chance 60", hour(3, &H::chanceOfSnow, 60),
            "advisory Snow Expected: Snow chance peaks around 8 AM."},
        Row{"ice at 2 degrees", all(feels(3, 2), hour(3, &H::precipMM, 0.3)),
            "advisory Icy Surfaces Possible: Moisture and near-freezing temperatures overlap around 8 AM."},
        Row{"no ice at 2.1 degrees", all(feels(3, 2.1), hour(3, &H::precipMM, 0.3)), ""},
        Row{"ice at -2 degrees", all(feels(3, -2), hour(3, &H::chanceOfRain, 41)),
            "advisory Icy Surfaces Possible"},
        Row{"no ice at -2.1 degrees", all(feels(3, -2.1), hour(3, &H::chanceOfRain, 41)), ""},
        Row{"dry frost",
            all(feels(3, 0), hour(3, &H::precipMM, 0.2), hour(3, &H::chanceOfRain, 40),
                hour(3, &H::chanceOfSnow, 40)),
            ""},
        Row{"ice by snow", all(feels(3, 0), hour(3, &H::chanceOfSnow, 41)), "advisory Icy Surfaces Possible"},
        Row{"fog chance 69", hour(3, &H::chanceOfFog, 69), ""},
        Row{"fog chance 70", hour(3, &H::chanceOfFog, 70),
            "advisory Dense Fog: Dense fog or very low visibility possible around 8 AM."},
        Row{"1.0 km in an hour", hour(3, &H::visibilityKm, 1.0), "advisory Dense Fog"},
        Row{"1.1 km in an hour", hour(3, &H::visibilityKm, 1.1), ""},
        Row{"no reading in an hour", hour(3, &H::visibilityKm, 0), ""},
        Row{"fog behind the horizon", hour(8, &H::visibilityKm, 0.5), ""},
        Row{"1.0 km now", [](WeatherData& w) { w.current.visibility = 1; }, ""},
        Row{"0 km now", [](WeatherData& w) { w.current.visibility = 0; },
            "advisory Dense Fog: Visibility below 1 km."},
        Row{"no visibility known now",
            [](WeatherData& w) {
              w.current.visibility = 0;
              w.current.availableDetailFields = DetailFields{WeatherDetailField::humidity};
            },
            ""}));

INSTANTIATE_TEST_SUITE_P(
    SunAndWind, AlertRows,
    testing::Values(Row{"index 7", hour(3, &H::uvIndex, 7), ""},
                    Row{"index 8", hour(3, &H::uvIndex, 8),
                        "advisory Very High UV Index: UV index reaches 8 around 8 AM."},
                    Row{"index 10", hour(3, &H::uvIndex, 10), "advisory Very High UV Index"},
                    Row{"index 11", hour(3, &H::uvIndex, 11), "warning Very High UV Index"},
                    Row{"higher now",
                        all(hour(3, &H::uvIndex, 8), [](WeatherData& w) { w.current.uvIndex = 9; }),
                        "advisory Very High UV Index: UV index reaches 9 around 8 AM."},
                    Row{"without hours",
                        [](WeatherData& w) {
                          w.allHourly.clear();
                          w.current.uvIndex = 8;
                        },
                        "advisory Very High UV Index: UV index is 8. Apply"},
                    Row{"39.9 km/h", hour(3, &H::windSpeedKmph, 39.9), ""},
                    Row{"40 km/h", hour(3, &H::windSpeedKmph, 40),
                        "advisory Strong Winds: Wind or gusts up to 40 km/h around 8 AM."},
                    Row{"59.9 km/h is shown cut off", hour(3, &H::windGustKmph, 59.9),
                        "advisory Strong Winds: Wind or gusts up to 59 km/h around 8 AM."},
                    Row{"gusts of 61", all(hour(3, &H::windSpeedKmph, 59), hour(3, &H::windGustKmph, 61)),
                        "warning High Winds: Wind or gusts up to 61 km/h around 8 AM. Secure"},
                    Row{"the present wind, named by the peak hour",
                        [](WeatherData& w) { w.current.windSpeedKmph = 60; },
                        "warning High Winds: Wind or gusts up to 60 km/h around 5 AM."},
                    Row{"wind without hours",
                        [](WeatherData& w) {
                          w.allHourly.clear();
                          w.current.windSpeedKmph = 45;
                        },
                        "advisory Strong Winds: Wind or gusts up to 45 km/h."}));

TEST(AlertGenerator, NamesAnHourOfTomorrow) {
  WeatherData weather = mildForecast(at("2026-11-21T18:00:00Z"), 24);
  weather.allHourly[8].chanceOfSnow = 80;
  Texts const texts = Texts::load("en");
  auto const alerts = AlertGenerator{}.generate(weather, at("2026-11-21T18:30:00Z"), Units::metric(), texts);
  EXPECT_THAT(linesOf(alerts), HasSubstr("peaks around 2 AM tomorrow."));
}

TEST(AlertGenerator, OrdersBySeverityAndKeepsTheOrderOfItsChecks) {
  WeatherData weather = mildForecast(kHour, 24);
  HourlyForecast& storm = weather.allHourly[2];
  storm.chanceOfThunder = 80;
  storm.windGustKmph = 100;
  storm.chanceOfFog = 90;
  storm.chanceOfRain = 75;
  auto const alerts = alertsOf(weather);
  std::vector<std::string> titles;
  for (auto const& alert : alerts) titles.push_back(alert.title);
  EXPECT_THAT(titles, testing::ElementsAre("Tornado-Favorable Storm Setup", "Thunderstorm Risk", "High Winds",
                                           "Heavy Rain Expected", "Dense Fog"));
  EXPECT_NE(alerts[0].id, alerts[1].id);
  EXPECT_FALSE(alerts[0].isGovAlert);
}

TEST(AlertGenerator, AsksForBothThunderAndWindBeforeItSpeaksOfTornadoes) {
  struct Case {
    int thunder;
    double gust, wind;
    bool expected;
  };
  for (auto const& row : {Case{79, 120, 90, false}, Case{80, 99.9, 79.9, false}, Case{80, 100, 50, true},
                          Case{80, 50, 80, true}}) {
    WeatherData weather = mildForecast(kHour, 24);
    weather.allHourly[7].chanceOfThunder = row.thunder;
    weather.allHourly[7].windGustKmph = row.gust;
    weather.allHourly[7].windSpeedKmph = row.wind;
    EXPECT_EQ(alertsOf(weather).front().kind == WarningKind::tornado, row.expected)
        << row.thunder << ' ' << row.gust;
  }
}

TEST(AlertGenerator, WritesTheUsersUnitsAndLanguage) {
  WeatherData weather = mildForecast(kHour, 24);
  feels(3, 34)(weather);
  weather.allHourly[3].windGustKmph = 61;
  weather.allHourly[3].uvIndex = 9;
  std::string const imperial = linesOf(alertsOf(weather, Units::imperial()));
  EXPECT_THAT(imperial, HasSubstr("reaches 93 °F around 8 AM."));
  EXPECT_THAT(imperial, HasSubstr("up to 37 mph around 8 AM."));
  Units knots;
  knots.wind = WindUnit::knots;
  EXPECT_THAT(linesOf(alertsOf(weather, knots)), HasSubstr("up to 32 knots around"));
  EXPECT_THAT(linesOf(alertsOf(weather, {}, "pt")), HasSubstr("chega a 34 °C por volta de 8 AM."));
  // Two arguments by position, in reverse order.
  EXPECT_THAT(linesOf(alertsOf(weather, {}, "zh")), HasSubstr("前后紫外线指数将达到9。"));
}

TEST(AlertGenerator, TakesNothingFromAForecastWithoutContents) {
  EXPECT_EQ(linesOf(alertsOf(WeatherData{})), "");
  WeatherData past = mildForecast(kHour - std::chrono::days(3), 24);
  for (auto& hour : past.allHourly) hour.windGustKmph = 150;
  past.current.windSpeedKmph = 150;
  EXPECT_EQ(linesOf(alertsOf(past)), "");
}

TEST(FeltTemperature, FollowsThePublishedFormulas) {
  EXPECT_NEAR(heatIndex(32.22, 70), 40.9, 0.5);  // 90 °F at 70 %: 106 °F in the service's table
  EXPECT_NEAR(windChill(-10, 30), -19.5, 0.1);   // the meteorological service's table: -20
  EXPECT_EQ(feltTemperature(26, 26.5, 90, 0), 26.5);
  EXPECT_LT(feltTemperature(10, 10, 50, 4.8), 10);
  EXPECT_EQ(feltTemperature(10, 10, 50, 4.7), 10);
  EXPECT_EQ(feltTemperature(10.1, 9.5, 50, 40), 9.5);
  EXPECT_GT(feltTemperature(27, 27, 80, 0), 27);
  EXPECT_GT(feltTemperature(33, 33, 40, 0), 33);
  EXPECT_EQ(feltTemperature(30, 31, 39, 0), 31);
  EXPECT_EQ(feltTemperature(35, 60, 50, 0), 60);
}

}  // namespace
}  // namespace nimbara
