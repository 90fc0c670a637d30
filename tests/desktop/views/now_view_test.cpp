#include "desktop/views/now/now_view.h"

#include "desktop/states/states.h"
#include "desktop/views/now/next_hours.h"
#include "desktop/views/sky/sky_colours.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Hours of rain from `from` until before `until`, counted from the hour of `kNow`.
struct SentenceRow {
  int from;
  int until;
  double mm;
  int chance;
  WeatherConditionCode condition;
  char const* expected;
};

void PrintTo(SentenceRow const& row, std::ostream* out) {
  *out << row.mm << " mm, " << row.chance << " %, " << row.from << " to " << row.until
       << " h: " << row.expected;
}

class NextHours : public testing::TestWithParam<SentenceRow> {};

TEST_P(NextHours, AreToldInOneSentence) {
  SentenceRow const& row = GetParam();
  WeatherData data = mildWeek();
  for (int hour = row.from; hour < row.until; ++hour) {
    HourlyForecast& wet = data.allHourly[static_cast<std::size_t>(12 + hour)];
    wet.precipMM = row.mm;
    wet.chanceOfRain = row.chance;
    wet.condition = row.condition;
  }
  if (row.from == 0 && row.until > 0) data.current.condition = row.condition;
  EXPECT_EQ(nextHoursSentence(data, contextAt(kNow)), row.expected);
}

constexpr auto kRain = WeatherConditionCode::lightRain;
constexpr auto kSnow = WeatherConditionCode::lightSnow;
INSTANTIATE_TEST_SUITE_P(
    Rows, NextHours,
    testing::Values(SentenceRow{0, 0, 0, 0, kRain, "No rain in the next 12 hours."},
                    SentenceRow{3, 5, 1, 80, kRain, "Rain is expected to start around 15:00."},
                    SentenceRow{3, 5, 0.1, 40, kRain, "Rain is expected to start around 15:00."},
                    SentenceRow{3, 5, 0.09, 40, kRain, "No rain in the next 12 hours."},
                    SentenceRow{3, 5, 0.1, 39, kRain, "No rain in the next 12 hours."},
                    SentenceRow{0, 2, 1, 80, kRain, "Rain should ease by around 14:00."},
                    SentenceRow{0, 14, 1, 80, kRain, "Rain for at least 12 hours."},
                    SentenceRow{12, 14, 1, 80, kRain, "Rain is expected to start around Sunday 00:00."},
                    SentenceRow{13, 14, 1, 80, kRain, "No rain in the next 12 hours."},
                    SentenceRow{4, 6, 1, 80, kSnow, "Snow is expected to start around 16:00."},
                    SentenceRow{0, 3, 1, 80, kSnow, "Snow should ease by around 15:00."},
                    SentenceRow{0, 20, 1, 80, kSnow, "Snow for at least 12 hours."}));

/// What is seen of the sky, beside a forecast of so many wet hours from now on after so many dry ones.
struct SeenRow {
  WeatherConditionCode seen;
  int from;
  int until;
  WeatherConditionCode forecast;
  char const* expected;
};

void PrintTo(SeenRow const& row, std::ostream* out) {
  *out << enumName(row.seen) << " beside " << enumName(row.forecast) << " from " << row.from << " to "
       << row.until;
}

class SeenSky : public testing::TestWithParam<SeenRow> {};

TEST_P(SeenSky, IsNeverContradicted) {
  SeenRow const& row = GetParam();
  WeatherData data = mildWeek();
  data.current.condition = row.seen;
  for (int hour = row.from; hour < row.until; ++hour) {
    HourlyForecast& wet = data.allHourly[static_cast<std::size_t>(12 + hour)];
    wet.precipMM = 1;
    wet.chanceOfRain = 80;
    wet.condition = row.forecast;
  }
  EXPECT_EQ(nextHoursSentence(data, contextAt(kNow)), row.expected);
}

constexpr auto kClear = WeatherConditionCode::sunny;
constexpr auto kUnknown = WeatherConditionCode::unknown;
INSTANTIATE_TEST_SUITE_P(
    Rows, SeenSky,
    testing::Values(SeenRow{kClear, 0, 5, kSnow, "Snow is possible until around 17:00."},
                    SeenRow{kClear, 0, 5, kRain, "Rain is possible until around 17:00."},
                    SeenRow{kClear, 0, 20, kSnow, "Snow is possible during the next 12 hours."},
                    SeenRow{kClear, 0, 20, kRain, "Rain is possible during the next 12 hours."},
                    SeenRow{kClear, 1, 5, kSnow, "Snow is expected to start around 13:00."},
                    SeenRow{kSnow, 0, 0, kRain, "The snow should stop soon."},
                    SeenRow{kRain, 0, 0, kRain, "The rain should stop soon."},
                    SeenRow{kRain, 3, 5, kSnow, "The rain should stop soon."},
                    SeenRow{kSnow, 0, 5, kRain, "Snow should ease by around 17:00."},
                    SeenRow{kSnow, 0, 20, kRain, "Snow for at least 12 hours."},
                    SeenRow{kUnknown, 0, 5, kSnow, "Snow should ease by around 17:00."},
                    SeenRow{kUnknown, 0, 0, kSnow, "No rain in the next 12 hours."}));

struct KnownRow {
  char const* what;
  ForecastValues unknown;
  std::size_t from;  ///< hours from the hour of `kNow`; before it all is known
  std::size_t until;
  char const* expected;
};

TEST(NextHoursKnown, AreSpokenOfAsFarAsTheyAreKnown) {
  using enum ForecastValue;
  constexpr char const* kDry = "No rain in the next 12 hours.";
  for (KnownRow const& row :
       {KnownRow{"all is known", {}, 0, 20, kDry},
        KnownRow{"an amount is enough", {precipitationChance}, 0, 20, kDry},
        KnownRow{"a chance as well", {precipitation}, 0, 20, kDry},
        KnownRow{"nothing is known", {precipitation, precipitationChance}, 0, 20, ""},
        KnownRow{"one hour is not", {precipitation, precipitationChance}, 11, 12, ""},
        KnownRow{"the hour behind", {precipitation, precipitationChance}, 13, 20, kDry}}) {
    WeatherData data = mildWeek();
    for (std::size_t hour = row.from; hour < row.until; ++hour) {
      data.allHourly[12 + hour].unknownValues = row.unknown;
    }
    EXPECT_EQ(nextHoursSentence(data, contextAt(kNow)), row.expected) << row.what;
  }
  WeatherData data = mildWeek();
  data.allHourly.resize(12 + 13);  // until 01:00, forty minutes beyond the twelve hours
  EXPECT_EQ(nextHoursSentence(data, contextAt(kNow)), kDry);
  data.allHourly.pop_back();
  EXPECT_EQ(nextHoursSentence(data, contextAt(kNow)), "");
  data.allHourly[12 + 3].precipMM = 1;
  data.allHourly[12 + 3].chanceOfRain = 80;
  EXPECT_EQ(nextHoursSentence(data, contextAt(kNow)), "Rain is expected to start around 15:00.");
}

TEST(NextHoursCold, SpeakOfSnowWhereItCouldFall) {
  for (auto const& [hour, celsius, expected] : {std::tuple(3, 2.1, "No rain in the next 12 hours."),
                                                std::tuple(3, 2.0, "No rain or snow in the next 12 hours."),
                                                std::tuple(11, -9.0, "No rain or snow in the next 12 hours."),
                                                std::tuple(13, -9.0, "No rain in the next 12 hours.")}) {
    WeatherData data = mildWeek();
    data.allHourly[static_cast<std::size_t>(12 + hour)].tempC = celsius;
    EXPECT_EQ(nextHoursSentence(data, contextAt(kNow)), expected) << hour << " h, " << celsius << " °C";
  }
}

TEST(NowView, NamesTheCountryInTheReadersLanguage) {
  Texts const german = Texts::load("de");
  ViewContext const context{german, Units::metric(), kNow, Calendar::utc(), {}};
  Place place{{45.34, 14.41}, "Rijeka", "Croatia", "Primorje-Gorski Kotar"};
  EXPECT_EQ(nowView(WeatherState(), place, context).area, "Primorje-Gorski Kotar, Kroatien");
  EXPECT_EQ(context.precipitation(2.54), "2,5\u00A0mm");
  place.country = "my country";
  EXPECT_EQ(nowView(WeatherState(), place, context).area, "Primorje-Gorski Kotar, my country");
}

TEST(NowView, TellsTheReadingInTheUsersUnits) {
  WeatherState const state = stateOf(mildWeek());
  ViewContext imperial = contextAt(kNow);
  imperial.units = Units::imperial();
  Place const place{{}, "Testville", "Norway", "Region"};
  NowView const metric = nowView(state, place, contextAt(kNow));
  EXPECT_EQ(metric.summary, "Testville, 15°, Partly Cloudy, feels like 15°");
  EXPECT_EQ(metric.area, "Region, Norway");
  EXPECT_EQ(metric.localTime, "Saturday, 21 November, 12:20");
  EXPECT_EQ(metric.range, "high 20°, low 10°");
  EXPECT_EQ(metric.source, "Open-Meteo");
  EXPECT_EQ(metric.notice, "");
  EXPECT_EQ(nowView(state, place, imperial).summary, "Testville, 59°, Partly Cloudy, feels like 59°");
}

TEST(NowView, ReadsTheClockOfThePlace) {
  WeatherState state = stateOf(mildWeek());
  state.weatherData->location.timeZone = "Asia/Tokyo";
  EXPECT_EQ(nowView(state, Place{}, contextAt(kNow)).localTime, "Saturday, 21 November, 21:20");
}

TEST(NowView, CallsNoNightSunny) {
  WeatherState state = stateOf(mildWeek());
  state.weatherData->current.condition = WeatherConditionCode::sunny;
  state.weatherData->location.timeZone = "UTC";
  EXPECT_EQ(nowView(state, Place{}, contextAt(kNow)).condition, "Sunny");
  state.weatherData->location.longitude = 180;
  EXPECT_EQ(nowView(state, Place{}, contextAt(kNow)).condition, "Clear");
}

TEST(NowView, SaysWhatIsOldAndWhy) {
  WeatherState state = stateOf(mildWeek());
  state.isShowingStaleData = true;
  state.lastUpdated = kNow - std::chrono::hours(3);
  NowView const old = nowView(state, Place{}, contextAt(kNow));
  EXPECT_EQ(old.notice, "Showing older data from 09:20 (3 h ago).");
  EXPECT_FALSE(old.isFailure);
  state.error = AppError{AppError::Case::offline, {}};
  NowView const failed = nowView(state, Place{}, contextAt(kNow));
  EXPECT_THAT(failed.notice, HasSubstr("09:20 (3 h ago). You appear to be offline."));
  EXPECT_TRUE(failed.isFailure);
}

TEST(NowView, SaysFromWhenItCanBeRefreshedAgain) {
  WeatherState state = stateOf(mildWeek());
  state.askAgainAt = kNow + std::chrono::seconds(90);
  EXPECT_EQ(nowView(state, Place{}, contextAt(kNow)).notice,
            "Last refreshed less than five minutes ago. You can refresh again from 12:22.");
  state.error = AppError::of(APIError::refusal(std::chrono::seconds(90)));
  EXPECT_EQ(nowView(state, Place{}, contextAt(kNow)).notice,
            "Could not fetch the forecast: every forecast service failed a few minutes ago. Retrying "
            "automatically. You can try again from 12:22.");
  state.askAgainAt = kNow;
  state.error.reset();
  EXPECT_EQ(nowView(state, Place{}, contextAt(kNow)).notice, "");
}

TEST(NowView, HasNothingToSayWithoutPlaceOrForecast) {
  WeatherState state;
  state.error = AppError{AppError::Case::noLocation, {}};
  EXPECT_FALSE(nowView(state, std::nullopt, contextAt(kNow)).hasPlace);
  state.error.reset();
  state.isLoading = true;
  NowView const loading = nowView(state, Place{{52.5, 13.4}, "", "", ""}, contextAt(kNow));
  EXPECT_EQ(loading.place, "52.50°N 13.40°E");
  EXPECT_TRUE(loading.isLoading);
  EXPECT_FALSE(loading.hasWeather);
}

TEST(NowView, HasNoReadingFromAForecastThatHasEnded) {
  NowView const view = nowView(stateOf(mildWeek()), Place{}, contextAt(kNow + std::chrono::days(30)));
  EXPECT_TRUE(view.hasWeather);
  EXPECT_FALSE(view.hasReading);
  EXPECT_EQ(view.sentence, "");
  EXPECT_EQ(view.notice, "Last reading 2026-11-21 12:15: 15\u00A0°C, Partly Cloudy.");
}

std::vector<std::string> kindsOf(std::vector<TileView> const& tiles) {
  std::vector<std::string> kinds;
  for (TileView const& tile : tiles) kinds.push_back(tile.kind);
  return kinds;
}

TEST(Tiles, AreOnlyOfWhatTheProviderGives) {
  WeatherState state = stateOf(mildWeek());
  EXPECT_THAT(
      kindsOf(tileViews(state, contextAt(kNow))),
      ElementsAre("wind", "humidity", "pressure", "uv", "visibility", "dewPoint", "clouds", "precipitation"));
  DetailFields const few{WeatherDetailField::humidity};
  state.weatherData->current.availableDetailFields = few;
  for (HourlyForecast& hour : state.weatherData->allHourly) hour.availableDetailFields = few;
  EXPECT_THAT(kindsOf(tileViews(state, contextAt(kNow))), ElementsAre("wind", "humidity", "precipitation"));
  EXPECT_THAT(tileViews(WeatherState{}, contextAt(kNow)), IsEmpty());
}

TileView tileOf(std::string const& kind, Units const& units, auto const& change) {
  WeatherState state = stateOf(mildWeek());
  change(*state.weatherData);
  ViewContext context = contextAt(kNow);
  context.units = units;
  auto const tiles = tileViews(state, context);
  auto const found = std::ranges::find(tiles, kind, &TileView::kind);
  return found == tiles.end() ? TileView() : *found;
}

void setDewPoint(WeatherData& data, double celsius) {
  for (HourlyForecast& hour : data.allHourly) hour.dewPointC = celsius;
}

TEST(Tiles, SayWhatTheirGaugesStandFor) {
  auto const far = [](WeatherData& data) { data.current.visibility = 20; };
  TileView const metric = tileOf("visibility", Units::metric(), far);
  EXPECT_EQ(metric.scaleFrom + " to " + metric.scaleTo, "0 to 40\u00A0km");
  EXPECT_EQ(metric.share, 0.5);
  EXPECT_EQ(tileOf("visibility", Units::imperial(), far).scaleTo, "25\u00A0mi");
  auto const moist = [](WeatherData& data) { setDewPoint(data, 7.5); };
  EXPECT_EQ(tileOf("dewPoint", Units::metric(), moist).share, 0.5);
  EXPECT_EQ(tileOf("dewPoint", Units::imperial(), moist).scaleFrom, "14°");
  EXPECT_EQ(tileOf("humidity", Units::metric(), [](WeatherData&) {}).scaleTo, "");
}

TEST(Tiles, HaveAWordForVisibilityAndMoisture) {
  for (auto const& [km, word] : {std::pair(0.9, "very poor"),
                                 {1.0, "poor"},
                                 {3.9, "poor"},
                                 {4.0, "moderate"},
                                 {10.0, "good"},
                                 {20.0, "very good"}}) {
    EXPECT_EQ(
        tileOf("visibility", Units::metric(), [km](WeatherData& data) { data.current.visibility = km; }).note,
        word);
  }
  for (auto const& [celsius, word] : {std::pair(9.9, "dry"),
                                      {10.0, "comfortable"},
                                      {15.9, "comfortable"},
                                      {16.0, "humid"},
                                      {21.0, "oppressive"}}) {
    EXPECT_EQ(
        tileOf("dewPoint", Units::metric(), [celsius](WeatherData& data) { setDewPoint(data, celsius); })
            .note,
        word);
  }
}

TEST(Tiles, ShowNoUnknownValueAsZero) {
  WeatherState state = stateOf(mildWeek());
  state.weatherData->current.unknownValues = ForecastValues::all();
  for (HourlyForecast& hour : state.weatherData->allHourly) hour.unknownValues = ForecastValues::all();
  EXPECT_THAT(kindsOf(tileViews(state, contextAt(kNow))),
              ElementsAre("humidity", "pressure", "uv", "visibility", "dewPoint", "clouds"));
}

TEST(Tiles, TellWhereThePressureGoes) {
  struct Row {
    double change;
    char const* word;
  };
  for (Row const& row : {Row{1.0, "steady"}, Row{1.1, "rising"}, Row{-1.0, "steady"}, Row{-1.1, "falling"}}) {
    WeatherState state = stateOf(mildWeek());
    state.weatherData->allHourly[15].pressure += row.change;
    EXPECT_EQ(tileViews(state, contextAt(kNow))[2].note, row.word) << row.change;
  }
}

TEST(Tiles, TurnTheWindByItsName) {
  WeatherState state = stateOf(mildWeek());
  TileView const wind = tileViews(state, contextAt(kNow)).front();
  EXPECT_EQ(wind.direction, 270);
  EXPECT_EQ(wind.note, "W, gusts 15\u00A0km/h");
  EXPECT_EQ(compassDegrees("NNW"), 337.5);
  EXPECT_EQ(compassDegrees("up"), std::nullopt);
}

struct SkyRow {
  double latitude;
  char const* now;
  char const* sun;
  bool hasArc;
};

void PrintTo(SkyRow const& row, std::ostream* out) {
  *out << row.latitude << " degrees north, " << row.now;
}

class Sky : public testing::TestWithParam<SkyRow> {};

TEST_P(Sky, TellsTheSunOfTheDay) {
  SkyRow const& row = GetParam();
  WeatherState state = stateOf(mildWeek());
  state.weatherData->location.latitude = row.latitude;
  SkyView const view = skyView(state, contextAt(at(row.now)));
  EXPECT_THAT(view.sun, HasSubstr(row.sun));
  EXPECT_EQ(view.hasArc, row.hasArc);
  EXPECT_EQ(view.fromSouth, row.latitude < 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, Sky,
                         testing::Values(SkyRow{0, "2026-03-20T12:00:00Z", "12 h 6 min of daylight", true},
                                         SkyRow{-33, "2026-12-21T12:00:00Z", "14 h 20 min of daylight", true},
                                         SkyRow{78, "2026-12-21T12:00:00Z", "does not rise", false},
                                         SkyRow{78, "2026-06-21T12:00:00Z", "does not set", false}));

TEST(Sky, PutsTheSunOnItsWay) {
  WeatherState const state = stateOf(mildWeek());
  EXPECT_NEAR(skyView(state, contextAt(at("2026-11-21T11:46:00Z"))).sunShare, 0.5, 0.01);
  EXPECT_LT(skyView(state, contextAt(at("2026-11-21T03:00:00Z"))).sunShare, 0);
  EXPECT_GT(skyView(state, contextAt(at("2026-11-21T21:00:00Z"))).sunShare, 1);
}

TEST(SkyColours, CarryWhiteTextAtAnyHour) {
  constexpr double kReadable = 4.5;
  for (std::size_t code = 0; code < enumNames<WeatherConditionCode>.size(); ++code) {
    for (int altitude = -90; altitude <= 90; ++altitude) {
      SkyColours const sky = skyColours(static_cast<WeatherConditionCode>(code), altitude);
      ASSERT_GE(contrastOfWhite(sky.top), kReadable) << code << " top at " << altitude;
      ASSERT_GE(contrastOfWhite(sky.bottom), kReadable) << code << " bottom at " << altitude;
    }
  }
}

TEST(SkyColours, AreMeasuredAsTheGuidelinesSay) {
  EXPECT_DOUBLE_EQ(contrastOfWhite({255, 255, 255}), 1);
  EXPECT_DOUBLE_EQ(contrastOfWhite({0, 0, 0}), 21);
  EXPECT_NEAR(contrastOfWhite({0x76, 0x76, 0x76}), 4.54, 0.01);
}

}  // namespace
}  // namespace nimbara
