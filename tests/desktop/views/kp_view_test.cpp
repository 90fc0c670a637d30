#include "desktop/views/hazards/kp_view.h"

#include "desktop/states/hazard_states.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using namespace std::chrono_literals;

struct LevelRow {
  double kp;
  char const* word;
};

void PrintTo(LevelRow const& row, std::ostream* out) {
  *out << "Kp " << row.kp;
}

struct Levels : testing::TestWithParam<LevelRow> {};

TEST_P(Levels, FollowTheScaleOfStorms) {
  HazardsState state = hazardsOf({});
  state.kp.data.now = GetParam().kp;
  KpView const view = kpView(state, contextAt(kNow));
  EXPECT_EQ(view.word, GetParam().word);
  EXPECT_EQ(view.level, kpLevel(GetParam().kp));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Levels,
    testing::Values(LevelRow{0, "Quiet"}, LevelRow{2.33, "Quiet"}, LevelRow{2.67, "Unsettled"},
                    LevelRow{3.33, "Unsettled"}, LevelRow{3.67, "Active"}, LevelRow{4.33, "Active"},
                    LevelRow{4.67, "Minor storm (G1)"}, LevelRow{5.67, "Moderate storm (G2)"},
                    LevelRow{7, "Strong storm (G3)"}, LevelRow{8, "Severe storm (G4)"},
                    LevelRow{8.67, "Severe storm (G4)"}, LevelRow{9, "Extreme storm (G5)"}));

TEST(KpView, TellsTheValueItsSourceAndAge) {
  KpView const view = kpView(hazardsOf({}), contextAt(kNow));
  EXPECT_TRUE(view.isKnown);
  EXPECT_EQ(view.sentence, "Planetary K index: 2.0 of 9, Quiet");
  EXPECT_EQ(view.source, "NOAA Space Weather Prediction Center  ·  checked 5 min ago");
  EXPECT_EQ(view.notice, "");
  EXPECT_NEAR(view.share, 2.0 / 9, 1e-9);
}

TEST(KpView, TellsWhatIsNotKnownAndWhatIsOld) {
  struct Row {
    std::optional<std::chrono::milliseconds> age;
    bool hasFailed;
    bool isKnown;
    char const* word;
    char const* notice;
  };
  for (
      Row const& row :
      {Row{std::nullopt, false, false, "Loading K index…", ""},
       Row{std::nullopt, true, false, "",
           "The K index could not be fetched. Reason: the service returned an error (HTTP 503)."},
       Row{1h, true, true, "Quiet",
           "The K index could not be updated since 11:20. Reason: the service returned an error (HTTP 503)."},
       Row{6h, true, true, "Quiet",
           "The K index could not be updated since 06:20. Reason: the service returned an error (HTTP 503)."},
       Row{6h + 1ms, true, false, "",
           "The K index could not be updated since 06:19. Reason: the service returned an error (HTTP "
           "503)."},
       Row{-6h, false, true, "Quiet", ""}, Row{-6h - 1ms, false, false, "Loading K index…", ""}}) {
    HazardsState state = hazardsOf({});
    if (row.hasFailed) state.kp.failure = ServiceFailure::answered(503);
    state.kp.checkedAt.reset();
    if (row.age) state.kp.checkedAt = kNow - *row.age;
    if (!row.age) state.kp.data.now.reset();
    KpView const view = kpView(state, contextAt(kNow));
    EXPECT_EQ(view.isKnown, row.isKnown) << row.notice;
    EXPECT_EQ(view.word, row.word);
    EXPECT_EQ(view.notice, row.notice);
  }
}

TEST(KpBars, ShowTheWeekAndWhatIsForeseenOfTheNextDays) {
  KpBars const all = kpBars(hazardsOf({}), contextAt(kNow));
  ASSERT_EQ(all.bars.size(), 80);
  EXPECT_EQ(all.hours, 240);
  EXPECT_NEAR(all.now, 55 * 3 + 1.0 / 3, 1e-9);
  EXPECT_EQ(all.bars[55].reading, "Saturday 12:00 – 15:00: 2.0, Quiet");
  EXPECT_FALSE(all.bars[55].isForecast);
  EXPECT_EQ(all.bars[56].reading, "Saturday 15:00 – 18:00: 5.0 expected, Minor storm (G1)");
  EXPECT_TRUE(all.bars[56].isForecast);
  EXPECT_EQ(all.days.front().name, "Sat 14");
  EXPECT_EQ(all.days[1].x, 9) << "the first bar begins at 15:00";
  EXPECT_EQ(all.days.back().name, "Tue 24");
}

TEST(KpBars, LeaveOutWhatWasForeseenOfThePastAndWhatIsFarAway) {
  HazardsState state = hazardsOf({});
  state.kpForecast.data.insert(state.kpForecast.data.begin(),
                               {state.kp.data.recent.back().begin, 9, KpKind::predicted});
  state.kpForecast.data.push_back({kNow + 30 * 24h, 9, KpKind::predicted});
  EXPECT_EQ(kpBars(state, contextAt(kNow)), kpBars(hazardsOf({}), contextAt(kNow)));
  EXPECT_EQ(kpBars(state, contextAt(kNow + 300 * 24h)).bars.size(), 0);
  EXPECT_TRUE(kpBars(HazardsState{}, contextAt(kNow)).bars.empty());
}

TEST(KpBars, GoOnAfterAMeasurementThatIsLate) {
  KpBars const all = kpBars(hazardsOf({}), contextAt(kNow + 6h));
  auto const ahead = std::ranges::find_if(all.bars, &KpBar::isForecast);
  ASSERT_NE(ahead, all.bars.end());
  EXPECT_THAT(ahead->reading, testing::StartsWith("Saturday 18:00 –")) << "what was foreseen has passed";
}

}  // namespace
}  // namespace nimbara
