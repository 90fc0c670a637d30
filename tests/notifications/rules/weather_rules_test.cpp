#include "notifications/rules/weather_rules.h"

#include "support/rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::all;
using test::at;
using test::bodyOf;
using test::Change;
using test::faultsOf;
using testing::IsEmpty;

// The forecast of these tests begins at noon, on a Monday, with 15 °C and 10 km/h in gusts of 15.
constexpr char kNow[] = "2026-06-15T12:20:00Z";

template <class F>
Change hour(std::size_t index, F change) {
  return [=](WeatherData& data) { change(data.allHourly.at(index)); };
}

Change celsius(std::size_t index, double value) {
  return hour(index, [=](auto& x) { x.tempC = value; });
}
Change wind(std::size_t index, double kmh) {
  return hour(index, [=](auto& x) { x.windSpeedKmph = kmh; });
}
Change gust(std::size_t index, double kmh) {
  return hour(index, [=](auto& x) { x.windGustKmph = kmh; });
}
Change uv(std::size_t index, int value) {
  return hour(index, [=](auto& x) { x.uvIndex = value; });
}
Change uvNow(int value) {
  return [=](WeatherData& data) { data.current.uvIndex = value; };
}
Change thunder(std::size_t index, int chance) {
  return hour(index, [=](auto& x) { x.chanceOfThunder = chance; });
}
/// Highest and lowest temperatures of the days from today on.
Change days(std::vector<std::pair<double, double>> const& temperatures) {
  return [=](WeatherData& data) {
    for (std::size_t i = 0; i < temperatures.size(); ++i) {
      std::tie(data.daily.at(i).maxTempC, data.daily.at(i).minTempC) = temperatures[i];
    }
  };
}

struct Row {
  char const* what;
  EvaluateRule rule;
  Change change;
  char const* body;  ///< empty: nothing is found
  Units units;
};

Units const kImperial = Units::imperial();
Units const kMetric{};
constexpr char kSunscreenNow[] = "UV index is 8. Apply sunscreen and wear protection.";
constexpr char kSunscreenSoon[] =
    "UV index expected to reach 8 in the next few hours. Apply sunscreen before heading out.";

Row const kRows[] = {
    {"7.9 degrees down", temperatureDrop, celsius(3, 7.1), "", kMetric},
    {"8 degrees down", temperatureDrop, celsius(3, 7), "Temperature expected to drop from 15°C to 7°C.",
     kMetric},
    {"8 degrees in six hours", temperatureDrop, celsius(6, 7),
     "Temperature expected to drop from 15°C to 7°C.", kMetric},
    {"8 degrees in seven hours", temperatureDrop, celsius(7, 7), "", kMetric},
    {"in Fahrenheit", temperatureDrop, celsius(3, 7), "Temperature expected to drop from 59°F to 45°F.",
     kImperial},
    {"days that cool", temperatureDrop, all(celsius(3, 5), days({{20, 5}, {18, 10}, {16, 9}, {16, 9}})),
     "Temperature expected to drop from 15°C to 5°C. Cooling continues: Tuesday: 18/10°C, Wednesday: 16/9°C.",
     kMetric},
    {"a warm day next", temperatureDrop, all(celsius(3, 5), days({{18, 5}, {20, 10}, {10, 9}})),
     "Temperature expected to drop from 15°C to 5°C.", kMetric},

    {"9.9 degrees up", temperatureRise, celsius(3, 24.9), "", kMetric},
    {"10 degrees up", temperatureRise, celsius(3, 25),
     "Temperature expected to rise from 15°C to 25°C over the next hours.", kMetric},
    {"days that warm", temperatureRise,
     all(celsius(3, 25), days({{25, 5}, {27, 10}, {28, 11}, {29, 12}, {30, 13}})),
     "Temperature expected to rise from 59°F to 77°F over the next hours. Heating continues: Tuesday: "
     "81/50°F, Wednesday: 82/52°F, Thursday: 84/54°F.",
     kImperial},

    {"59.9 km/h", highWind, gust(3, 59.9), "", kMetric},
    {"a gust of 60 km/h", highWind, gust(3, 60),
     "Wind up to 60 km/h, peaking near 3 PM. Secure loose objects and use caution outdoors.", kMetric},
    {"wind of 60 km/h", highWind, wind(3, 60),
     "Wind up to 60 km/h, peaking near 3 PM. Secure loose objects and use caution outdoors.", kMetric},
    {"in miles", highWind, gust(3, 60),
     "Wind up to 37 mph, peaking near 3 PM. Secure loose objects and use caution outdoors.", kImperial},
    {"the peak is now", highWind, gust(0, 60),
     "Wind speeds up to 60 km/h expected. Secure loose objects and use caution outdoors.", kMetric},
    {"from later on", highWind, all(gust(2, 60), gust(4, 80)),
     "Wind up to 80 km/h from around 2 PM, peaking near 4 PM. Secure loose objects and use caution outdoors.",
     kMetric},
    {"from now on", highWind, all(gust(0, 60), gust(4, 80)),
     "Wind up to 80 km/h, peaking near 4 PM. Secure loose objects and use caution outdoors.", kMetric},
    {"in twelve hours", highWind, gust(12, 60),
     "Wind up to 60 km/h, peaking near 12 AM. Secure loose objects and use caution outdoors.", kMetric},
    {"in thirteen hours", highWind, gust(13, 90), "", kMetric},

    {"UV 7", highUv, all(uv(2, 7), uvNow(7)), "", kMetric},
    {"UV 8 soon", highUv, uv(2, 8), kSunscreenSoon, kMetric},
    {"UV 8 now", highUv, all(uvNow(8), uv(2, 11)), kSunscreenNow, kMetric},
    {"UV 8 in four hours", highUv, uv(4, 8), kSunscreenSoon, kMetric},
    {"UV 8 in five hours", highUv, uv(5, 8), "", kMetric},

    {"39 % of thunder", storm, thunder(2, 39), "", kMetric},
    {"40 % of thunder", storm, thunder(2, 40), "Thunderstorms likely from around 2 PM.", kMetric},
    {"thunder now", storm, thunder(0, 40), "Thunderstorms are likely now.", kMetric},
    {"thunder in six hours", storm, thunder(6, 40), "Thunderstorms likely from around 6 PM.", kMetric},
    {"thunder in seven hours", storm, thunder(7, 90), "", kMetric},
};

TEST(WeatherRules, HoldOnTheRightSideOfEachCut) {
  for (Row const& row : kRows) {
    RuleInputs inputs = test::ruleInputs(at(kNow), row.change);
    inputs.units = row.units;
    Evaluation const found = row.rule(inputs, {});
    EXPECT_EQ(bodyOf(found), row.body) << row.what;
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.what;
    ASSERT_EQ(found.measured.size(), 1) << row.what;
    EXPECT_EQ(found.measured[0].holds(), !found.findings.empty()) << row.what;
  }
}

TEST(WeatherRules, TakeTheUsersThresholdOfWind) {
  RuleInputs const inputs = test::ruleInputs(at(kNow), gust(3, 45));
  RuleSettings settings;
  settings.highWindKmh = 45;
  EXPECT_EQ(highWind(inputs, settings).findings.size(), 1);
  settings.highWindKmh = 46;
  EXPECT_THAT(highWind(inputs, settings).findings, IsEmpty());
}

TEST(WeatherRules, SayThatNobodyKnowsTheUvIndex) {
  RuleInputs const inputs = test::ruleInputs(at(kNow), [](WeatherData& data) {
    data.current.availableDetailFields.emplace();
    for (HourlyForecast& x : data.allHourly) x.availableDetailFields.emplace();
  });
  Evaluation const found = highUv(inputs, {});
  EXPECT_EQ(found.note, "noDetail");
  EXPECT_THAT(found.measured, IsEmpty());
}

// ---- Generated alerts

RuleInputs withGenerated(std::vector<WeatherAlert> alerts) {
  RuleInputs inputs = test::ruleInputs(at(kNow));
  inputs.generatedAlerts = InputReading<std::vector<WeatherAlert>>::of(std::move(alerts));
  return inputs;
}

WeatherAlert generated(AlertSeverity severity, WarningKind kind) {
  WeatherAlert alert;
  alert.severity = severity;
  alert.kind = kind;
  alert.title = "Heavy Gusts";
  alert.message = "Hold your hat.";
  return alert;
}

TEST(SevereWeather, IsAWarningOfTheForecastFromItsGradeOn) {
  Evaluation const calm =
      severeWeather(withGenerated({generated(AlertSeverity::advisory, WarningKind::wind)}), {});
  EXPECT_THAT(calm.findings, IsEmpty());
  EXPECT_THAT(faultsOf(calm), IsEmpty());
  Evaluation const found =
      severeWeather(withGenerated({generated(AlertSeverity::warning, WarningKind::wind)}), {});
  EXPECT_EQ(bodyOf(found), "Heavy Gusts: Hold your hat.");
  // What says tornado has a rule of its own.
  EXPECT_THAT(
      severeWeather(withGenerated({generated(AlertSeverity::critical, WarningKind::tornado)}), {}).findings,
      IsEmpty());
}

TEST(Tornado, ComesFromTheForecastOrTheOffice) {
  EXPECT_THAT(tornado(withGenerated({generated(AlertSeverity::critical, WarningKind::wind)}), {}).findings,
              IsEmpty());
  Evaluation const likely =
      tornado(withGenerated({generated(AlertSeverity::critical, WarningKind::tornado)}), {});
  EXPECT_EQ(
      bodyOf(likely),
      "Conditions are favorable for tornado activity. Seek shelter immediately if warnings are issued in "
      "your area.");
  EXPECT_EQ(likely.findings[0].severity, AlertSeverity::critical);
  // Without a forecast nothing says that the danger is over.
  Evaluation const unknown = tornado(test::ruleInputs(at(kNow)), {});
  EXPECT_THAT(unknown.measured, IsEmpty());
  EXPECT_EQ(unknown.note, "noForecast");
}

// ---- Messages of the National Weather Service

NWSAlert message(char const* event, NWSAlertSeverity severity, char const* headline = "") {
  NWSAlert alert;
  alert.event = event;
  alert.severity = severity;
  alert.headline = headline;
  alert.sent = at("2026-06-15T12:00:00Z");
  alert.expires = at("2026-06-15T13:00:00Z");
  return alert;
}

struct MessageRow {
  EvaluateRule rule;
  char const* event;
  bool isTold;
};

TEST(NwsRules, KnowTheirProducts) {
  for (MessageRow const& row : {
           MessageRow{tornado, "Tornado Warning", true},
           {tornado, "Tornado Watch", true},
           {tornado, "Flood Warning", false},
           {nwsFlood, "Flash Flood Warning", true},
           {nwsFlood, "Coastal Flood Advisory", true},
           {nwsFlood, "Severe Thunderstorm Warning", false},
           {nwsSevereThunderstorm, "Severe Thunderstorm Watch", true},
           {nwsSevereThunderstorm, "Special Weather Statement", false},
       }) {
    RuleInputs inputs = withGenerated({});
    inputs.nwsAlerts =
        InputReading<std::vector<NWSAlert>>::of(std::vector{message(row.event, NWSAlertSeverity::severe)});
    Evaluation const found = row.rule(inputs, {});
    EXPECT_EQ(found.findings.size(), row.isTold ? 1U : 0U) << row.event;
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.event;
  }
}

TEST(NwsRules, SayNothingOfOtherCountries) {
  for (EvaluateRule const rule : {nwsFlood, nwsSevereThunderstorm}) {
    RuleInputs inputs = withGenerated({});
    Evaluation const abroad = rule(inputs, {});
    EXPECT_EQ(abroad.note, "onlyUnitedStates");
    EXPECT_THAT(abroad.measured, IsEmpty()) << "nothing was counted";
    EXPECT_THAT(faultsOf(abroad), IsEmpty());
    inputs.nwsAlerts = InputReading<std::vector<NWSAlert>>::of(std::vector<NWSAlert>{});
    EXPECT_EQ(rule(inputs, {}).measured.size(), 1U);
    EXPECT_EQ(rule(inputs, {}).note, "");
  }
}

TEST(NwsRules, TellTheGravestMessage) {
  RuleInputs inputs = withGenerated({});
  inputs.nwsAlerts = InputReading<std::vector<NWSAlert>>::of(
      std::vector{message("Flood Advisory", NWSAlertSeverity::minor),
                  message("Flood Warning", NWSAlertSeverity::severe, "Flood Warning until noon"),
                  message("Flood Watch", NWSAlertSeverity::severe)});
  Evaluation const found = nwsFlood(inputs, {});
  EXPECT_EQ(bodyOf(found), "Flood Warning until noon");
  EXPECT_EQ(found.findings[0].ends, at("2026-06-15T13:00:00Z"));
}

struct CoverRow {
  NWSAlertSeverity severity;
  bool govAlerts;
  NotificationLevel level;
  bool isCovered;
};

/// The same event notifies once: as an official warning, where those are sent from its grade on.
TEST(NwsRules, RingOnlyForWhatOfficialWarningsLeaveOut) {
  using Level = NotificationLevel;
  using Severity = NWSAlertSeverity;
  for (CoverRow const& row : {
           CoverRow{Severity::severe, true, Level::medium, true},
           {Severity::severe, false, Level::medium, false},
           {Severity::severe, true, Level::high, true},
           {Severity::severe, true, Level::critical, false},
           {Severity::extreme, true, Level::critical, true},
           {Severity::moderate, true, Level::high, false},
           {Severity::unknown, true, Level::medium, true},
       }) {
    RuleInputs inputs = withGenerated({});
    inputs.nwsAlerts =
        InputReading<std::vector<NWSAlert>>::of(std::vector{message("Tornado Warning", row.severity)});
    RuleSettings settings;
    settings.govAlerts = row.govAlerts;
    settings.govAlertLevel = row.level;
    EXPECT_EQ(tornado(inputs, settings).findings.at(0).quietNote, row.isCovered ? "toldOfficially" : "")
        << enumName(row.severity) << " " << enumName(row.level);
  }
}

}  // namespace
}  // namespace nimbara
