#include "feeds/stations/station_overlay.h"

#include "base/apparent_temperature.h"
#include "feeds/stations/station_history.h"
#include "model/present.h"
#include "support/forecasts.h"
#include "support/instants.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using enum StationQuantity;
using std::chrono::minutes;
using test::at;
using Kind = StationModuleKind;
using std::chrono::hours;
using std::chrono::seconds;

constexpr char kNight[] = "2026-11-21T01:00:00Z";  // at 0° N 0° E
constexpr char kNoon[] = "2026-11-21T12:00:00Z";

/// 15 °C, 50 %, 1015 hPa, 10 km/h.
WeatherData forecastAt(Instant now) {
  WeatherData data = test::mildForecast(std::chrono::floor<std::chrono::hours>(now), 12);
  data.current.pressure = 1015;
  data.fetchedAt = now;
  return data;
}

StationModule module(Kind kind, Instant observedAt, std::vector<StationValue> values) {
  return {.id = std::string(enumName(kind)),
          .name = std::string(enumName(kind)),
          .kind = kind,
          .observedAt = observedAt,
          .values = std::move(values)};
}

StationReading station(std::vector<StationModule> modules) {
  return {.id = "s", .name = "Home", .latitude = 0.01, .longitude = 0.01, .modules = std::move(modules)};
}

TEST(StationOverlay, ReplacesThePresentAndLeavesTheForecast) {
  Instant const now = at(kNight);
  WeatherData const data = forecastAt(now);
  auto const overlay = stationOverlay(
      data,
      station({module(Kind::base, now, {{temperature, 21}, {humidity, 30}, {pressure, 1012.4}}),
               module(Kind::outdoor, now - minutes(4), {{temperature, 11.3}, {humidity, 81}}),
               module(Kind::wind, now, {{windSpeed, 22}, {windDirection, 349}}),
               module(Kind::rain, now, {{rainLastHour, 1.2}})}),
      now);
  EXPECT_TRUE(overlay.isLive());
  EXPECT_TRUE(overlay.doubts.empty());
  Present const present = presentAt(overlay.data, now).value();
  EXPECT_EQ(present.tempC, 11.3);
  EXPECT_NEAR(present.tempF, 52.34, 0.001);
  EXPECT_EQ(present.humidity, 81);
  EXPECT_EQ(present.pressure, 1012.4);
  EXPECT_EQ(present.windSpeedKmph, 22);
  EXPECT_EQ(present.windDirection, "N");
  EXPECT_EQ(present.precipMM, 1.2);
  EXPECT_EQ(present.feelsLikeC, apparentTemperature(11.3, 81, 22));
  EXPECT_EQ(present.condition, data.current.condition);
  EXPECT_EQ(present.readAt, now - minutes(4)) << "as old as its oldest value";
  WeatherData rest = overlay.data;
  rest.current = data.current;
  EXPECT_EQ(rest, data);
  EXPECT_EQ(overlay.find(temperature)->module, "outdoor");
}

TEST(StationOverlay, OverlaysTheHourWhereTheProviderHasNoReading) {
  Instant const now = at(kNight);
  WeatherData data = forecastAt(now);
  data.current = {};
  auto const overlay = stationOverlay(data, station({module(Kind::outdoor, now, {{temperature, 11}})}), now);
  Present const present = presentAt(overlay.data, now).value();
  EXPECT_EQ(present.tempC, 11);
  EXPECT_EQ(present.humidity, 50);
  EXPECT_EQ(present.condition, WeatherConditionCode::partlyCloudy);
}

struct AgeRow {
  minutes age;
  std::optional<StationDoubt> doubt;
};

TEST(StationOverlay, TakesNothingOlderThanHalfAnHour) {
  Instant const now = at(kNight);
  for (AgeRow const& row : {AgeRow{minutes(30), std::nullopt}, AgeRow{minutes(31), StationDoubt::old},
                            AgeRow{minutes(-5), std::nullopt}, AgeRow{minutes(-6), StationDoubt::future}}) {
    auto const overlay = stationOverlay(
        forecastAt(now), station({module(Kind::outdoor, now - row.age, {{temperature, 14}})}), now);
    EXPECT_EQ(overlay.isLive(), !row.doubt) << row.age.count();
    if (row.doubt) {
      EXPECT_EQ(overlay.doubts.at(0).doubt, *row.doubt) << row.age.count();
    }
  }
}

struct DoubtRow {
  char const *what, *now;
  double celsius;
  int clouds;
  double insideCelsius;
  std::optional<StationDoubt> doubt;
};

TEST(StationOverlay, SaysWhatItDoesNotBelieve) {
  using enum StationDoubt;
  for (DoubtRow const& row : {
           DoubtRow{"12 °C off", kNight, 27, 0, 40, std::nullopt},
           {"more than that", kNight, 27.1, 0, 40, farOff},
           {"colder", kNight, 2.9, 0, 40, farOff},
           {"6 °C above at noon", kNoon, 21, 0, 40, std::nullopt},
           {"more than that", kNoon, 21.1, 0, 40, inSun},
           {"the same under clouds", kNoon, 21.1, 70, 40, std::nullopt},
           {"few clouds", kNoon, 21.1, 69, 40, inSun},
           {"the same by night", kNight, 21.1, 0, 40, std::nullopt},
           {"colder at noon", kNoon, 8, 0, 40, std::nullopt},
           {"as warm as the living room", kNight, 21.1, 0, 23, indoors},
           {"a degree more", kNight, 21.1, 0, 23.2, std::nullopt},
           {"a mild evening with open windows", kNight, 20.9, 0, 21, std::nullopt},
       }) {
    Instant const now = at(row.now);
    WeatherData data = forecastAt(now);
    data.current.cloudCover = row.clouds;
    auto const overlay =
        stationOverlay(data,
                       station({module(Kind::base, now, {{temperature, row.insideCelsius}}),
                                module(Kind::outdoor, now, {{temperature, row.celsius}, {humidity, 20}})}),
                       now);
    EXPECT_EQ(overlay.isLive(), !row.doubt) << row.what << " " << row.celsius;
    ASSERT_EQ(overlay.doubts.size(), row.doubt ? 1U : 0U) << row.what << ": its humidity goes with it";
    if (row.doubt) {
      EXPECT_EQ(overlay.doubts.front().doubt, *row.doubt) << row.what;
    }
  }
}

TEST(StationOverlay, KnowsAFrozenGaugeAndAPressureOfAnotherHeight) {
  Instant const now = at(kNight);
  for (auto const& [celsius, isFrozen] : {std::pair{1.0, true}, {1.1, false}}) {
    WeatherData data = forecastAt(now);
    data.current.tempC = 3;
    auto const overlay = stationOverlay(data,
                                        station({module(Kind::outdoor, now, {{temperature, celsius}}),
                                                 module(Kind::rain, now, {{rainLastHour, 0}})}),
                                        now);
    EXPECT_EQ(overlay.find(rainLastHour) == nullptr, isFrozen) << celsius;
  }
  for (auto const& [hPa, isTaken] : {std::pair{1030.0, true}, {1030.1, false}, {999.9, false}}) {
    auto const overlay =
        stationOverlay(forecastAt(now), station({module(Kind::base, now, {{pressure, hPa}})}), now);
    EXPECT_EQ(overlay.isLive(), isTaken) << hPa;
  }
}

TEST(StationOverlay, ASilentModuleIsNamedAndMeasuresNothing) {
  Instant const now = at(kNight);
  StationModule silent = module(Kind::rain, now, {});
  silent.isReachable = false;
  silent.observedAt.reset();
  auto const overlay =
      stationOverlay(forecastAt(now), station({silent, module(Kind::indoor, now, {{temperature, 22}})}), now);
  EXPECT_FALSE(overlay.isLive());
  ASSERT_EQ(overlay.doubts.size(), 1U);
  EXPECT_EQ(overlay.doubts.front().doubt, StationDoubt::unreachable);
  EXPECT_EQ(overlay.doubts.front().quantity, rainLastHour);
}

TEST(StationOverlay, SpeaksForPlacesNearbyAlone) {
  Instant const now = at(kNight);
  StationReading reading = station({module(Kind::outdoor, now, {{temperature, 11}})});
  for (auto const& [degrees, isNear] : {std::pair{0.0449, true}, {0.0451, false}}) {
    reading.latitude = degrees;
    reading.longitude = 0;
    auto const overlay = stationOverlay(forecastAt(now), reading, now);
    EXPECT_EQ(overlay.isLive(), isNear) << degrees;
    EXPECT_EQ(overlay.isElsewhere, !isNear) << degrees;
  }
  reading.latitude.reset();
  EXPECT_TRUE(stationOverlay(forecastAt(now), reading, now).isElsewhere);
}

TEST(StationOverlay, LeavesAForecastOfHoursAgoAlone) {
  Instant const now = at(kNight);
  StationReading const reading = station({module(Kind::outdoor, now, {{temperature, 11}})});
  for (auto const& [age, isLive] : {std::pair{minutes(89), true}, {minutes(90), false}}) {
    WeatherData data = forecastAt(now);
    data.fetchedAt = now - age;
    EXPECT_EQ(stationOverlay(data, reading, now).isLive(), isLive) << age.count();
  }
}

constexpr char kNow[] = "2026-11-21T12:00:00Z";

StationReading station(std::string id, Instant observedAt, double celsius) {
  StationReading made{.id = std::move(id), .modules = {}};
  made.modules.push_back(
      {.kind = Kind::outdoor, .observedAt = observedAt, .values = {{temperature, celsius}}});
  return made;
}

TEST(StationSamples, AreOfWhatIsMeasuredOutdoorsNow) {
  Instant const now = at(kNow);
  StationReading made = station("s", now - minutes(4), 3.4);
  made.modules.push_back(
      {.kind = Kind::base, .observedAt = now, .values = {{temperature, 21}, {pressure, 1012}}});
  made.modules.push_back({.kind = Kind::wind, .observedAt = now - minutes(31), .values = {{windSpeed, 9}}});
  StationSample const expected{now, 3.4, std::nullopt, 1012};
  EXPECT_EQ(sampleOf(made, now), expected);
  EXPECT_EQ(sampleOf(station("s", now - minutes(31), 3.4), now), std::nullopt);
}

TEST(StationSamples, AreOneInFiveMinutesOfTheLastTwoDays) {
  Instant const now = at(kNow);
  std::vector<StationSample> samples;
  for (Instant then = now - hours(60); then <= now; then += minutes(1))
    samples = withSample(std::move(samples), {.at = then}, then);
  EXPECT_EQ(samples.size(), 48U * 12 + 1);
  EXPECT_EQ(samples.front().at, now - hours(48));
  EXPECT_EQ(samples.back().at, now);
  auto const set = withSample(samples, {.at = now - hours(5)}, now - hours(5));
  EXPECT_EQ(set.back().at, now - hours(5) + minutes(5)) << "the clock was set back";
}

TEST(StationHistory, IsOfOneStationAndOutlivesTheProgram) {
  test::TemporaryFolder const folder;
  Instant const now = at(kNow);
  auto const history = [&] { return StationHistory(folder.path() / "History.json"); };
  for (int i = 0; i < 3; ++i)
    history().note("account", station("s", now + minutes(10 * i), i), now + minutes(10 * i) + seconds(20));
  auto const kept = history().read("account", station("s", now, 0), now + minutes(20));
  ASSERT_EQ(kept.size(), 3U);
  EXPECT_EQ(kept.back(), (StationSample{.at = now + minutes(20), .temperature = 2}));
  EXPECT_TRUE(history().read("account", station("other", now, 0), now).empty());
  EXPECT_TRUE(history().read("around", station("s", now, 0), now).empty());
  EXPECT_TRUE(history().read("account", station("s", now, 0), now + hours(49)).empty());
  history().note("account", station("other", now, 7), now);
  EXPECT_EQ(history().read("account", station("other", now, 0), now).size(), 1U);
  EXPECT_TRUE(history().read("account", station("s", now, 0), now).empty());
  history().remove();
  EXPECT_TRUE(history().read("account", station("other", now, 0), now).empty());
  StationHistory("").note("account", station("s", now, 1), now);
}

}  // namespace
}  // namespace nimbara
