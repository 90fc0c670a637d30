#include "notifications/sky/sky_rules.h"

#include "base/sun_moon.h"
#include "notifications/sky/sky_support.h"
#include "support/instants.h"
#include "support/rules.h"

#include <gmock/gmock.h>

#include <functional>

namespace nimbara {
namespace {

using Code = WeatherConditionCode;
using test::all;
using test::at;
using test::Change;

/// The like for the present and every hour.
template <class F>
Change everywhere(F change) {
  return [change](WeatherData& data) {
    change(data.current);
    for (HourlyForecast& hour : data.allHourly) change(hour);
  };
}

template <class F>
Change hourFromNow(std::size_t index, F change) {
  return [=](WeatherData& data) { change(data.allHourly.at(index)); };
}

/// Rain of an hour before now: the forecast of tests begins with the present hour.
Change rainedBefore(double mm) {
  return [mm](WeatherData& data) {
    HourlyForecast past = data.allHourly.front();
    past.date -= std::chrono::hours(5);
    past.precipMM = mm;
    data.allHourly.insert(data.allHourly.begin(), past);
  };
}

struct Row {
  char const* what;
  EvaluateRule rule;
  char const* now;
  Coordinate place;
  Change change;
  char const* identifier;  ///< nullptr: nothing is found
};

constexpr Coordinate kLisbon{38.7, -9.1};
constexpr Coordinate kOslo{59.9, 10.7};
constexpr Coordinate kTromso{69.65, 18.96};
constexpr Coordinate kAlta{69.97, 23.3};
constexpr char kNoon[] = "2026-06-15T12:20:00Z";
constexpr char kForenoon[] = "2026-06-15T10:20:00Z";
constexpr char kMorning[] = "2026-06-15T06:20:00Z";
constexpr char kWinterEvening[] = "2026-11-21T18:20:00Z";
constexpr char kAfternoon[] = "2026-11-21T15:20:00Z";
constexpr char kNewMoonNight[] = "2026-11-09T22:20:00Z";
constexpr char kFullMoonNight[] = "2026-11-24T22:20:00Z";

RuleInputs inputsOf(Row const& row) {
  RuleInputs inputs = test::ruleInputs(at(row.now), row.change);
  inputs.place.coordinate = row.place;
  return inputs;
}

Change warm(double celsius, int humidity = 50, double wind = 10) {
  return everywhere([=](auto& x) {
    x.tempC = x.feelsLikeC = celsius;
    x.humidity = humidity;
    x.windSpeedKmph = wind;
  });
}
Change gusts(double kmh) {
  return [kmh](WeatherData& data) {
    for (HourlyForecast& hour : data.allHourly) hour.windGustKmph = kmh;
  };
}
Change cloudy(int percent) {
  return everywhere([=](auto& x) { x.cloudCover = percent; });
}
Change sky(Code condition) {
  return everywhere([=](auto& x) { x.condition = condition; });
}
Change felt(double celsius, double feels, double wind = 10, int humidity = 50) {
  return everywhere([=](auto& x) {
    x.tempC = celsius;
    x.feelsLikeC = feels;
    x.windSpeedKmph = wind;
    x.humidity = humidity;
  });
}
Change calmRising(double wind, double gust, double celsius) {
  return all(warm(celsius, 50, wind), gusts(gust));
}
Change windFrom(char const* point, double pressure = 1015, double kmh = 12) {
  return everywhere([=](auto& x) {
    x.windDirection = point;
    x.pressure = pressure;
    x.windSpeedKmph = kmh;
  });
}
Change lowAt(std::size_t hoursAhead, double celsius, int cloud = 0, Code condition = Code::sunny) {
  return hourFromNow(hoursAhead, [=](HourlyForecast& hour) {
    hour.tempC = celsius;
    hour.cloudCover = cloud;
    hour.condition = condition;
  });
}
Change glass(double low, double dewPoint, int cloud, double wind) {
  return hourFromNow(8, [=](HourlyForecast& hour) {
    hour.tempC = low;
    hour.dewPointC = dewPoint;
    hour.cloudCover = cloud;
    hour.windSpeedKmph = wind;
    hour.condition = Code::sunny;
  });
}
Change shower(std::size_t rainAt, Code after = Code::sunny) {
  return all(sky(Code::cloudy), hourFromNow(rainAt, [](auto& x) { x.condition = Code::lightRain; }),
             hourFromNow(rainAt + 1, [=](auto& x) { x.condition = after; }));
}
Change pressureIn(std::size_t hours, double hPa) {
  return hourFromNow(hours, [=](auto& x) { x.pressure = hPa; });
}
Change sun(int uvIndex, Code condition = Code::sunny) {
  return everywhere([=](auto& x) {
    x.uvIndex = uvIndex;
    x.condition = condition;
  });
}
Change mosquitoAir(double celsius, int humidity, double wind, int chanceOfRain) {
  return all(warm(celsius, humidity, wind), [=](WeatherData& data) {
    for (HourlyForecast& hour : data.allHourly) hour.chanceOfRain = chanceOfRain;
  });
}

Row const kRows[] = {
    {"sun after a shower", rainbowAhead, kMorning, kLisbon, shower(1), "beta_rainbow"},
    {"rain of the hour before", rainbowAhead, "2026-06-15T17:00:00Z", kLisbon, shower(0), "beta_rainbow"},
    {"clouds after the shower", rainbowAhead, kMorning, kLisbon, shower(1, Code::overcast), nullptr},
    {"the shower is too far off", rainbowAhead, kMorning, kLisbon, shower(3), nullptr},
    {"a high sun", rainbowAhead, kNoon, kLisbon, shower(1), nullptr},
    {"a polar day's night", rainbowAhead, "2026-06-15T22:20:00Z", kAlta, shower(0), nullptr},
    {"a polar day's late evening", rainbowAhead, "2026-06-15T19:20:00Z", kAlta, shower(0), "beta_rainbow"},
    {"night", rainbowAhead, kWinterEvening, kLisbon, shower(0), nullptr},

    {"fog then sun", fogBowAhead, kMorning, kLisbon,
     all(sky(Code::overcast), cloudy(100), lowAt(1, 15, 100, Code::fog), lowAt(2, 15, 20)), "beta_fog_bow"},
    {"fog that stays", fogBowAhead, kMorning, kLisbon, all(sky(Code::fog), cloudy(26)), nullptr},
    {"sun in fog by cloud cover", fogBowAhead, kMorning, kLisbon, all(sky(Code::fog), cloudy(25)),
     "beta_fog_bow"},
    {"visibility of 2 km is no fog", fogBowAhead, kMorning, kLisbon,
     [](WeatherData& data) { data.allHourly[1].visibilityKm = 2.0; }, nullptr},
    {"visibility below 2 km is", fogBowAhead, kMorning, kLisbon,
     [](WeatherData& data) { data.allHourly[1].visibilityKm = 1.9; }, "beta_fog_bow"},
    {"fog at night", fogBowAhead, kWinterEvening, kLisbon, all(sky(Code::fog), cloudy(0)), nullptr},

    {"aurora south of 58°", auroraOverhead, kWinterEvening, {57.9, 10}, cloudy(0), nullptr},
    {"aurora at 58°", auroraOverhead, kWinterEvening, {58.0, 10}, cloudy(0), "beta_aurora"},
    {"aurora of the south", auroraOverhead, "2026-06-15T18:20:00Z", {-60.1, 10}, cloudy(0), "beta_aurora"},
    {"aurora in daylight", auroraOverhead, kNoon, kOslo, cloudy(0), nullptr},
    {"aurora in a summer's twilight", auroraOverhead, "2026-06-15T23:20:00Z", kOslo, cloudy(0), nullptr},
    {"aurora over 30 %", auroraOverhead, kWinterEvening, kOslo, cloudy(30), "beta_aurora"},
    {"aurora over 31 %", auroraOverhead, kWinterEvening, kOslo, cloudy(31), nullptr},

    {"29 % and cold", staticShockRisk, kNoon, kLisbon, warm(4.9, 29), "beta_static_shock"},
    {"30 %", staticShockRisk, kNoon, kLisbon, warm(4.9, 30), nullptr},
    {"exactly 5 °C", staticShockRisk, kNoon, kLisbon, warm(5, 10), nullptr},

    {"spiders after rain", spiderBallooning, kNoon, kLisbon,
     all(calmRising(9.9, 14.9, 15), rainedBefore(0.5)), "beta_spider_ballooning"},
    {"no rain", spiderBallooning, kNoon, kLisbon, all(calmRising(9.9, 14.9, 15), rainedBefore(0.4)), nullptr},
    {"wind", spiderBallooning, kNoon, kLisbon, all(calmRising(10, 14.9, 15), rainedBefore(1)), nullptr},
    {"gusts", spiderBallooning, kNoon, kLisbon, all(calmRising(5, 15, 15), rainedBefore(1)), nullptr},
    {"too cool", spiderBallooning, kNoon, kLisbon, all(calmRising(5, 5, 14.9), rainedBefore(1)), nullptr},
    {"before nine", spiderBallooning, "2026-06-15T08:59:00Z", kLisbon,
     all(calmRising(5, 5, 20), rainedBefore(1)), nullptr},
    {"at nine", spiderBallooning, "2026-06-15T09:00:00Z", kLisbon, all(calmRising(5, 5, 20), rainedBefore(1)),
     "beta_spider_ballooning"},
    {"after seven", spiderBallooning, "2026-06-15T19:00:00Z", kLisbon,
     all(calmRising(5, 5, 20), rainedBefore(1)), nullptr},

    {"north on a south wind", birdMigration, "2026-03-01T12:00:00Z", kLisbon, windFrom("S"),
     "beta_bird_migration"},
    {"February", birdMigration, "2026-02-28T12:00:00Z", kLisbon, windFrom("S"), nullptr},
    {"August", birdMigration, "2026-08-01T12:00:00Z", kLisbon, windFrom("S"), nullptr},
    {"south on a north wind", birdMigration, "2026-09-01T12:00:00Z", kLisbon, windFrom("N"),
     "beta_bird_migration"},
    {"December", birdMigration, "2026-12-01T12:00:00Z", kLisbon, windFrom("N"), nullptr},
    {"head wind", birdMigration, "2026-03-01T12:00:00Z", kLisbon, windFrom("E"), nullptr},
    {"just a tail wind", birdMigration, "2026-03-01T12:00:00Z", kLisbon, windFrom("ESE"),
     "beta_bird_migration"},
    {"west is no tail wind", birdMigration, "2026-03-01T12:00:00Z", kLisbon, windFrom("W"), nullptr},
    {"no direction", birdMigration, "2026-03-01T12:00:00Z", kLisbon, windFrom(""), nullptr},
    {"1,005 hPa", birdMigration, "2026-03-01T12:00:00Z", kLisbon, windFrom("S", 1005), "beta_bird_migration"},
    {"1,004 hPa", birdMigration, "2026-03-01T12:00:00Z", kLisbon, windFrom("S", 1004), nullptr},
    {"calm", birdMigration, "2026-03-01T12:00:00Z", kLisbon, windFrom("S", 1015, 4.9), nullptr},

    {"a swarm", mosquitoSwarm, kNoon, kLisbon, all(warm(25, 80, 7.9), rainedBefore(2)),
     "beta_mosquito_swarm"},
    {"a dry week", mosquitoSwarm, kNoon, kLisbon, all(warm(25, 80, 7.9), rainedBefore(1.9)), nullptr},
    {"24.9 °C", mosquitoSwarm, kNoon, kLisbon, all(warm(24.9, 80, 7.9), rainedBefore(2)), nullptr},
    {"79 %", mosquitoSwarm, kNoon, kLisbon, all(warm(25, 79, 7.9), rainedBefore(2)), nullptr},
    {"a breeze", mosquitoSwarm, kNoon, kLisbon, all(warm(25, 80, 8), rainedBefore(2)), nullptr},

    {"stars now", stargazingNow, kNewMoonNight, kLisbon, cloudy(19), "beta_stargazing_now"},
    {"20 % of cloud", stargazingNow, kNewMoonNight, kLisbon, cloudy(20), nullptr},
    {"full moon", stargazingNow, kFullMoonNight, kLisbon, cloudy(0), nullptr},
    {"stars at noon", stargazingNow, "2026-11-09T12:20:00Z", kLisbon, cloudy(0), nullptr},
    {"stars tonight", stargazingTonight, "2026-11-09T15:20:00Z", kLisbon, cloudy(19),
     "beta_stargazing_tonight"},
    {"clouds tonight", stargazingTonight, "2026-11-09T15:20:00Z", kLisbon, cloudy(20), nullptr},
    {"before noon", stargazingTonight, "2026-11-09T11:59:00Z", kLisbon, cloudy(0), nullptr},
    {"it is night already", stargazingTonight, kNewMoonNight, kLisbon, cloudy(0), nullptr},
    {"a white night", stargazingTonight, "2026-06-15T15:20:00Z", kOslo, cloudy(0), nullptr},

    {"before a clear sunset", goldenHour, "2026-11-21T16:20:00Z", kLisbon, cloudy(0), "beta_golden_sunset"},
    {"a clear sunset", goldenHour, "2026-11-21T17:00:00Z", kLisbon, cloudy(70), "beta_golden_sunset"},
    {"a closed sky", goldenHour, "2026-11-21T17:00:00Z", kLisbon, cloudy(71), nullptr},
    {"a clear sunrise", goldenHour, "2026-11-21T07:20:00Z", kLisbon, cloudy(0), "beta_golden_sunrise"},
    {"noon", goldenHour, kNoon, kLisbon, cloudy(0), nullptr},
    {"a polar night's noon", goldenHour, "2026-12-05T10:40:00Z", kTromso, cloudy(0), nullptr},
    {"a polar day's midnight", goldenHour, "2026-06-15T22:40:00Z", kTromso, cloudy(0), nullptr},
    {"a short day's noon", goldenHour, "2026-02-01T10:40:00Z", kTromso, cloudy(0), "beta_golden_sunrise"},
    {"a wet sunset", goldenHour, "2026-11-21T17:00:00Z", kLisbon, all(cloudy(0), sky(Code::lightShowers)),
     nullptr},

    {"2 °C tonight", frostTonight, kAfternoon, kLisbon, lowAt(10, 2.0, 100, Code::overcast),
     "beta_frost_freeze"},
    {"2.1 °C and clear", frostTonight, kAfternoon, kLisbon, lowAt(10, 2.1, 40), "beta_frost_near"},
    {"2.1 °C and clouded", frostTonight, kAfternoon, kLisbon, lowAt(10, 2.1, 41), nullptr},
    {"3 °C in fog", frostTonight, kAfternoon, kLisbon, lowAt(10, 3, 0, Code::fog), nullptr},
    {"3 °C with snow", frostTonight, kAfternoon, kLisbon, lowAt(10, 3, 40, Code::lightSnow),
     "beta_frost_near"},
    {"5 °C", frostTonight, kAfternoon, kLisbon, lowAt(10, 5.0), "beta_frost_near"},
    {"5.1 °C", frostTonight, kAfternoon, kLisbon, lowAt(10, 5.1), nullptr},
    {"cold by day only", frostTonight, kAfternoon, kLisbon, lowAt(1, -1), nullptr},
    {"the night after the coming one", frostTonight, "2026-11-21T23:20:00Z", kLisbon, lowAt(23, -1), nullptr},
    {"before noon the frost waits", frostTonight, "2026-11-21T11:59:00Z", kLisbon, lowAt(12, -1), nullptr},

    {"hours of mild air", outdoorWindow, kForenoon, kLisbon, all(warm(10, 50, 20), sun(2)), "beta_outdoor"},
    {"9.9 °C", outdoorWindow, kForenoon, kLisbon, warm(9.9), nullptr},
    {"28 °C", outdoorWindow, kForenoon, kLisbon, warm(28), "beta_outdoor"},
    {"28.1 °C", outdoorWindow, kForenoon, kLisbon, warm(28.1), nullptr},
    {"feels like 30.1", outdoorWindow, kForenoon, kLisbon, felt(27, 30.1), nullptr},
    {"a strong sun", outdoorWindow, kForenoon, kLisbon, sun(3), nullptr},
    {"wind to stay in", outdoorWindow, kForenoon, kLisbon, warm(18, 50, 20.1), nullptr},
    {"gusts of 35 km/h", outdoorWindow, kForenoon, kLisbon, gusts(35), "beta_outdoor"},
    {"gusts of 35.1 km/h", outdoorWindow, kForenoon, kLisbon, gusts(35.1), nullptr},
    {"rain all day", outdoorWindow, kForenoon, kLisbon, sky(Code::lightRain), nullptr},
    {"before six", outdoorWindow, "2026-06-15T05:59:00Z", kLisbon, {}, nullptr},
    {"two hours are left", outdoorWindow, "2026-06-15T15:20:00Z", kLisbon, {}, "beta_outdoor"},
    {"one hour is left", outdoorWindow, "2026-06-15T16:20:00Z", kLisbon, {}, nullptr},
    {"the day is over", outdoorWindow, "2026-06-15T17:20:00Z", kLisbon, {}, nullptr},

    {"60 % of fog", fogAhead, kNoon, kLisbon, hourFromNow(11, [](auto& x) { x.chanceOfFog = 60; }),
     "beta_fog"},
    {"59 % of fog", fogAhead, kNoon, kLisbon, hourFromNow(11, [](auto& x) { x.chanceOfFog = 59; }), nullptr},
    {"fog in 13 hours", fogAhead, kNoon, kLisbon, hourFromNow(13, [](auto& x) { x.chanceOfFog = 90; }),
     nullptr},
    {"fog by condition", fogAhead, kNoon, kLisbon, hourFromNow(2, [](auto& x) { x.condition = Code::fog; }),
     "beta_fog"},

    {"8 hPa", pressureFall, kNoon, kLisbon, pressureIn(12, 1007), "beta_pressure_headache"},
    {"7.9 hPa", pressureFall, kNoon, kLisbon, pressureIn(12, 1007.1), nullptr},
    {"8 hPa tomorrow", pressureFall, kNoon, kLisbon, pressureIn(13, 1007), nullptr},
    {"a rise", pressureFall, kNoon, kLisbon, pressureIn(4, 1030), nullptr},

    {"25 feels like 31", humidHeat, kNoon, kLisbon, felt(25, 31, 5, 80), "beta_heat_index"},
    {"25 feels like 30.9", humidHeat, kNoon, kLisbon, felt(25, 30.9, 5, 80), nullptr},
    {"24.9 feels like 31", humidHeat, kNoon, kLisbon, felt(24.9, 31, 5, 80), nullptr},
    {"dry heat", humidHeat, kNoon, kLisbon, felt(30, 38, 5, 39), nullptr},

    {"5 feels like -3", windChill, kNoon, kLisbon, felt(5, -3, 15), "beta_wind_chill"},
    {"5.1 feels like -3", windChill, kNoon, kLisbon, felt(5.1, -3, 15), nullptr},
    {"5 feels like -2.9", windChill, kNoon, kLisbon, felt(5, -2.9, 15), nullptr},
    {"cold without wind", windChill, kNoon, kLisbon, felt(0, -10, 14.9), nullptr},

    {"3 °C on a wet road", blackIceAhead, kNoon, kLisbon, all(warm(3), rainedBefore(0.5)), "beta_black_ice"},
    {"3 °C on a dry road", blackIceAhead, kNoon, kLisbon, all(warm(3), rainedBefore(0.4)), nullptr},
    {"3.1 °C", blackIceAhead, kNoon, kLisbon, all(warm(3.1), rainedBefore(1)), nullptr},
    {"-3 °C", blackIceAhead, kNoon, kLisbon, all(warm(-3), rainedBefore(1)), "beta_black_ice"},
    {"-3.1 °C", blackIceAhead, kNoon, kLisbon, all(warm(-3.1), rainedBefore(1)), nullptr},
    {"dew at 85 %", blackIceAhead, kNoon, kLisbon, warm(1, 85), "beta_black_ice"},
    {"84 %", blackIceAhead, kNoon, kLisbon, warm(1, 84), nullptr},

    {"glass freezes", windshieldFrost, kAfternoon, kLisbon, glass(3, -3, 30, 10), "beta_windshield_frost"},
    {"3.1 °C at night", windshieldFrost, kAfternoon, kLisbon, glass(3.1, 0, 30, 10), nullptr},
    {"dry air", windshieldFrost, kAfternoon, kLisbon, glass(3, -3.1, 30, 10), nullptr},
    {"clouds", windshieldFrost, kAfternoon, kLisbon, glass(3, -3, 31, 10), nullptr},
    {"a windy night", windshieldFrost, kAfternoon, kLisbon, glass(3, -3, 30, 10.1), nullptr},

    {"mosquitoes", mosquitoesActive, kNoon, kLisbon, mosquitoAir(20, 71, 14.9, 29), "beta_mosquito"},
    {"19.9 °C", mosquitoesActive, kNoon, kLisbon, mosquitoAir(19.9, 71, 14.9, 29), nullptr},
    {"70 %", mosquitoesActive, kNoon, kLisbon, mosquitoAir(20, 70, 14.9, 29), nullptr},
    {"15 km/h", mosquitoesActive, kNoon, kLisbon, mosquitoAir(20, 71, 15, 29), nullptr},
    {"30 % of rain", mosquitoesActive, kNoon, kLisbon, mosquitoAir(20, 71, 14.9, 30), nullptr},

    {"UV 3", vitaminDWindow, kNoon, kLisbon, sun(3), "beta_vitamin_d"},
    {"UV 2", vitaminDWindow, kNoon, kLisbon, sun(2), nullptr},
    {"UV 3 under clouds", vitaminDWindow, kNoon, kLisbon, sun(3, Code::cloudy), nullptr},
    {"before nine o'clock", vitaminDWindow, "2026-06-15T08:59:00Z", kLisbon, sun(5), nullptr},
    {"four o'clock", vitaminDWindow, "2026-06-15T16:00:00Z", kLisbon, sun(5), nullptr},

    {"icing at 5 °C", heatPumpIcing, kNoon, kLisbon, warm(5, 80), "beta_heat_pump_freeze"},
    {"5.1 °C does not ice", heatPumpIcing, kNoon, kLisbon, warm(5.1, 95), nullptr},
    {"5 °C in dry air", heatPumpIcing, kNoon, kLisbon, warm(5, 70), nullptr},
    {"too cold to ice", heatPumpIcing, kNoon, kLisbon, warm(-10.1, 95), nullptr},
    {"cold in nine hours", heatPumpIcing, kNoon, kLisbon,
     all(warm(8, 90), hourFromNow(9, [](auto& x) { x.tempC = -2; })), nullptr},
};

TEST(SkyRules, HoldOnTheRightSideOfEachCut) {
  for (Row const& row : kRows) {
    Evaluation const found = row.rule(inputsOf(row), {});
    std::string const identifier = found.findings.empty() ? "" : found.findings.front().identifier;
    EXPECT_EQ(identifier, row.identifier == nullptr ? "" : row.identifier) << row.what;
    EXPECT_THAT(test::faultsOf(found), testing::IsEmpty()) << row.what;
  }
}

std::string bodyOf(EvaluateRule rule, RuleInputs const& inputs) {
  return test::bodyOf(rule(inputs, {}));
}

RuleInputs auroraInputs(double latitude, std::optional<double> kp) {
  RuleInputs inputs = test::ruleInputs(at(kWinterEvening), cloudy(0));
  inputs.place.coordinate = {latitude, 10};
  if (kp) inputs.kp = InputReading<double>::of(*kp);
  return inputs;
}

struct QualityRow {
  double latitude;
  std::optional<double> kp;
  std::string_view quality;
};

TEST(SkyRules, GradeTheAurora) {
  for (QualityRow const& row : {
           QualityRow{60.1, {}, "good"},
           {60.0, {}, "moderate"},
           {60.1, 3.99, "possible"},
           {60.1, 4, "good"},
           {60.1, 5.99, "good"},
           {60.1, 6, "excellent"},
           {60.0, 4, "moderate"},
           {60.0, 6, "good"},
       }) {
    std::string const body = bodyOf(auroraOverhead, auroraInputs(row.latitude, row.kp));
    EXPECT_NE(body.find("at northern latitude — " + std::string(row.quality) +
                        " viewing conditions for aurora borealis"),
              std::string::npos)
        << row.latitude << ": " << body;
  }
}

struct BodyRow {
  EvaluateRule rule;
  char const* now;
  Change change;
  char const* body;
};

TEST(SkyRules, SayWhatTheyFound) {
  for (
      BodyRow const& row : {
          BodyRow{staticShockRisk, kNoon, warm(0, 15),
                  "Humidity at 15% with cold air — elevated static electricity risk. Touch a metal object "
                  "before electronics, and moisturize your hands!"},
          {staticShockRisk, kNoon, warm(0, 14),
           "Humidity at 14% with cold air — very high static electricity risk. Touch a metal object before "
           "electronics, and moisturize your hands!"},
          {windChill, kNoon, felt(-10, -20.6, 30),
           "It's -10°C but feels like -21°C due to wind (30 km/h). Cover exposed skin to prevent frostbite."},
          {pressureFall, kNoon, pressureIn(6, 1003),
           "Barometric pressure dropping 12 hPa, reaching about 1003 hPa around 6 PM. This may trigger "
           "headaches in sensitive individuals."},
          {goldenHour, "2026-11-21T16:20:00Z", cloudy(29),
           "Sunset golden hour approaching with pristine skies. Perfect conditions for photography!"},
          {goldenHour, "2026-11-21T17:00:00Z", cloudy(30),
           "Sunset golden hour happening now with dramatic skies. Perfect conditions for photography!"},
          {outdoorWindow,
           kForenoon,
           {},
           "Ideal conditions for outdoor activity from 10 AM until 5 PM: 15°C, low UV, dry skies, and calm "
           "winds."},
          {heatPumpIcing, kNoon, warm(-2, 86),
           "Temps expected to drop to -2°C soon with very high humidity. Heavy frost buildup on the outdoor "
           "unit and frequent deicing cycles. Heating efficiency will be significantly reduced."},
          {heatPumpIcing, kNoon, warm(-2, 85),
           "Temps expected to reach -2°C in the coming hours with high humidity — the outdoor unit will "
           "frost "
           "up. Expect more defrost cycles and reduced efficiency."},
          {heatPumpIcing, kNoon, warm(2.1, 95),
           "Temps expected near 2°C soon with humid air. The outdoor unit may need occasional defrost "
           "cycles. "
           "Minor impact on heating efficiency."},
          {vitaminDWindow, kNoon, sun(8),
           "UV index is 8 with clear skies. 5–10 minutes of sun exposure is enough for your daily vitamin D. "
           "Don't forget sunscreen after!"},
      }) {
    EXPECT_EQ(bodyOf(row.rule, test::ruleInputs(at(row.now), row.change)), row.body);
  }
}

TEST(SkyRules, SpeakTheUsersUnits) {
  RuleInputs inputs = test::ruleInputs(at(kNoon), felt(-10, -20, 30));
  inputs.units = Units::imperial();
  EXPECT_EQ(bodyOf(windChill, inputs),
            "It's 14°F but feels like -4°F due to wind (19 mph). Cover exposed skin to prevent frostbite.");
}

TEST(SkyRules, WarnOfDangerOutdoors) {
  WeatherAlert over;
  over.title = "Flood Warning";
  over.expires = at("2026-06-15T10:00:00Z");
  WeatherAlert later;
  later.title = "Wind Warning";
  later.onset = at("2026-06-15T16:00:00Z");
  RuleInputs inputs = test::ruleInputs(at(kForenoon));
  inputs.govAlerts = InputReading<std::vector<WeatherAlert>>::of({over, later});
  EXPECT_TRUE(
      bodyOf(outdoorWindow, inputs).starts_with("⚠️ Wind Warning in effect — may be unsafe outdoors. Ideal"))
      << bodyOf(outdoorWindow, inputs);
  inputs.govAlerts = InputReading<std::vector<WeatherAlert>>::of({over});
  EXPECT_TRUE(bodyOf(outdoorWindow, inputs).starts_with("Ideal"));
}

TEST(SkyRules, TheSeasonIsTheHemispheres) {
  RuleInputs inputs = test::ruleInputs(at("2026-03-20T12:00:00Z"), windFrom("S"));
  EXPECT_NE(bodyOf(birdMigration, inputs).find("spring tailwinds"), std::string::npos);
  inputs.place.coordinate = {-33.9, 18.4};
  EXPECT_NE(bodyOf(birdMigration, inputs).find("fall tailwinds"), std::string::npos);
}

TEST(SkyRules, ADetailThatIsMissingIsNoGround) {
  // A zero that nobody measured would be a clear sky, dry air and a low sun.
  auto const bare = all(warm(0, 0), everywhere([](auto& x) { x.availableDetailFields = DetailFields{}; }));
  for (EvaluateRule const rule :
       {auroraOverhead, staticShockRisk, stargazingNow, stargazingTonight, windshieldFrost, outdoorWindow,
        vitaminDWindow, heatPumpIcing, pressureFall}) {
    for (char const* now : {kForenoon, kAfternoon, kNewMoonNight}) {
      RuleInputs inputs = test::ruleInputs(at(now), bare);
      inputs.place.coordinate = kOslo;
      EXPECT_TRUE(rule(inputs, {}).findings.empty());
    }
  }
}

TEST(SkyRules, ReckonTheDewPoint) {
  EXPECT_NEAR(magnusDewPoint(20, 50), 9.26, 0.02);
  EXPECT_NEAR(magnusDewPoint(0, 100), 0, 1e-9);
  EXPECT_LT(magnusDewPoint(0, 0), -40) << "0 % has no logarithm";
}

}  // namespace
}  // namespace nimbara
