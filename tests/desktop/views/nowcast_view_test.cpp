#include "desktop/views/now/nowcast_view.h"

#include "desktop/states/states.h"
#include "desktop/views/now/now_view.h"
#include "feeds/nowcast/nowcast_service.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using std::chrono::minutes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = NowcastReading::State;

/// Steps of five minutes from 12:20 on: mm/h, or "?".
NowcastReading readingOf(std::vector<std::optional<double>> const& rates, Fall fall = Fall::rain) {
  NowcastReading reading{State::current, {"metNorway", NowcastKind::radar, kNow - minutes(4), {}}, kNow, {}};
  Instant from = kNow;
  for (auto const& rate : rates) {
    reading.nowcast.steps.push_back({from, from + minutes(5), rate, fall});
    from += minutes(5);
  }
  return reading;
}

std::vector<std::optional<double>> dryBut(std::size_t first, std::size_t count) {
  std::vector<std::optional<double>> rates(24, 0.0);
  for (std::size_t i = 0; i < count; ++i) rates[first + i] = 1.6;
  return rates;
}

WeatherState stateWith(NowcastReading reading, WeatherData data = mildWeek()) {
  WeatherState state = stateOf(std::move(data));
  state.nowcast = std::make_shared<NowcastReading const>(std::move(reading));
  return state;
}

NowView nowOf(WeatherState const& state) {
  return nowView(state, Place{{0, 0}, "Testville", {}, {}}, contextAt(kNow));
}

TEST(NowcastView, SaysWhatFallsAndWhoSaysSo) {
  WeatherState const state = stateWith(readingOf(dryBut(3, 8)));
  NowcastView const view = nowcastView(state, contextAt(kNow));
  EXPECT_TRUE(view.isShown);
  EXPECT_EQ(view.sentence, "Rain starting around 12:35, for about 40 minutes");
  EXPECT_EQ(view.source, "MET Norway, radar, 4 min ago");
  EXPECT_EQ(view.failure, "");
  EXPECT_THAT((std::vector{view.first, view.middle, view.last}), ElementsAre("12:20", "13:20", "14:20"));
}

TEST(NowcastView, IsNothingWhereNobodyOffersItOrWasAsked) {
  NowcastView const none = nowcastView(stateWith({}), contextAt(kNow));
  EXPECT_EQ(none, NowcastView());
  EXPECT_EQ(nowcastView(stateOf(mildWeek()), contextAt(kNow)), none);
  EXPECT_THAT(nowcastBarViews(stateWith({}), contextAt(kNow)), IsEmpty());
}

TEST(NowcastView, SaysWhatCouldNotBeChecked) {
  NowcastReading reading;
  reading.state = State::failed;
  reading.misses = {{NowcastSource::metNorway, true, {}}};
  NowcastView const down = nowcastView(stateWith(reading), contextAt(kNow));
  EXPECT_FALSE(down.isShown);
  EXPECT_THAT(down.failure, HasSubstr("the radar of MET Norway is temporarily unavailable"));
  reading.misses.front().isRadarDown = false;
  EXPECT_EQ(nowcastView(stateWith(reading), contextAt(kNow)).failure,
            "Rain in the next two hours could not be checked (MET Norway)");
}

TEST(NowcastView, HasABarForEachStepAndNoneForAHole) {
  NowcastReading reading = readingOf({0.0, std::nullopt, 0.1, 1.6, 50.0, 0.09});
  reading.nowcast.steps[3].fall = Fall::snow;
  reading.nowcast.steps.erase(reading.nowcast.steps.begin());
  auto const bars = nowcastBarViews(stateWith(reading), contextAt(kNow));
  std::vector<std::string> kinds, readings;
  for (NowcastBarView const& bar : bars) kinds.push_back(bar.kind), readings.push_back(bar.reading);
  EXPECT_THAT(kinds, ElementsAre("notKnown", "rain", "snow", "rain", "dry"));
  EXPECT_THAT(readings,
              ElementsAre("12:25: Not known", "12:30: Rain, 0.1\u00A0mm/h", "12:35: Snow, 1.6\u00A0mm/h",
                          "12:40: Rain, 50.0\u00A0mm/h", "12:45: Dry"));
  EXPECT_DOUBLE_EQ(bars[0].from, 5.0 / 120);
  EXPECT_DOUBLE_EQ(bars[0].to, 10.0 / 120);
  EXPECT_EQ(bars[0].share, 0);
  EXPECT_DOUBLE_EQ(bars[2].share, 0.52);
  EXPECT_EQ(bars[3].share, 1);
  EXPECT_THAT(nowcastKindViews(bars, contextAt(kNow)),
              ElementsAre(NowcastKindView{"rain", "Rain"}, NowcastKindView{"snow", "Snow"},
                          NowcastKindView{"notKnown", "Not known"}));
}

TEST(NowcastView, NamesRainAndSnowByTheForecastsTemperature) {
  WeatherData data = mildWeek();
  for (HourlyForecast& hour : data.allHourly) hour.tempC = -3;
  auto const bars = nowcastBarViews(stateWith(readingOf({1.0}, Fall::unknown), data), contextAt(kNow));
  ASSERT_EQ(bars.size(), 1U);
  EXPECT_EQ(bars[0].kind, "snow");
}

TEST(NowcastView, AgreesWithTheHeadOfThePage) {
  NowView const falling = nowOf(stateWith(readingOf(dryBut(0, 6))));
  EXPECT_EQ(falling.condition, "Rain");
  EXPECT_EQ(falling.sentence, "Rain until around 12:50.");
  EXPECT_THAT(falling.summary, HasSubstr("Rain"));
  WeatherData wet = mildWeek();
  for (HourlyForecast& hour : wet.allHourly) hour.precipMM = 2, hour.chanceOfRain = 90;
  EXPECT_EQ(nowOf(stateWith(readingOf(dryBut(0, 0)), wet)).sentence, "Dry for at least two hours.");
  NowView const dry = nowOf(stateWith(readingOf(dryBut(0, 0))));
  EXPECT_EQ(dry.sentence, nowOf(stateOf(mildWeek())).sentence) << "which goes further";
  EXPECT_EQ(dry.condition, nowOf(stateOf(mildWeek())).condition);
  EXPECT_EQ(nowOf(stateWith(readingOf({std::nullopt}))).sentence, dry.sentence) << "nothing is known of now";
}

}  // namespace
}  // namespace nimbara
