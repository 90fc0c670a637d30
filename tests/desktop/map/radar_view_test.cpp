#include "desktop/views/map/radar_view.h"

#include "desktop/states/states.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::minutes;
using test::at;
using test::contextAt;
using State = RadarProgress::State;

Instant const kNewest = at("2026-11-22T10:00:00Z");

/// Three measured frames and a forecast, of which the first and the third are there.
RadarProgress progressOf(State state = State::shown) {
  RadarProgress progress;
  progress.state = state;
  for (int i = -2; i <= 1; ++i)
    progress.frames.push_back({{kNewest + i * minutes(10), i > 0, {}}, i == -2 || i == 0, false, false});
  return progress;
}

RadarMiss missOf(int status) {
  return {RadarSource::dwd, ServiceFailure::answered(status)};
}

struct ViewRow {
  char const* name;
  RadarProgress (*progress)();
  int frame;  ///< from the newest; 0: the newest itself
  int age;    ///< of it, in minutes
  char const* state;
  char const* when;
  char const* note;
};

RadarProgress with(void (*change)(RadarProgress&), State state = State::shown) {
  RadarProgress progress = progressOf(state);
  change(progress);
  return progress;
}

class RadarViews : public testing::TestWithParam<ViewRow> {};

TEST_P(RadarViews, SayWhatThereIs) {
  ViewRow const& row = GetParam();
  std::optional<Instant> const frame =
      row.frame == 0 ? std::nullopt : std::optional(kNewest + row.frame * minutes(10));
  RadarView const view = radarView(row.progress(), frame, contextAt(kNewest + minutes(row.age)));
  EXPECT_EQ(view.state, row.state);
  EXPECT_EQ(view.time.empty() ? "" : view.time + "|" + view.age, row.when);
  EXPECT_EQ(view.note, row.note);
}

INSTANTIATE_TEST_SUITE_P(
    All, RadarViews,
    testing::Values(
        ViewRow{"newest", [] { return progressOf(); }, 0, 7, "shown", "10:00|7 min ago", ""},
        ViewRow{"forecast", [] { return with([](auto& p) { p.frames[3].isLoaded = true; }); }, 1, 7, "shown",
                "10:10|Forecast, in 3 min", ""},
        ViewRow{"forecastThatIsOver", [] { return with([](auto& p) { p.frames[3].isLoaded = true; }); }, 1,
                10, "shown", "10:10|Forecast", ""},
        ViewRow{"notThereYet", [] { return progressOf(); }, -1, 7, "loading", "09:50|17 min ago",
                "Loading the radar…"},
        ViewRow{"unlisted", [] { return progressOf(); }, 7, 7, "shown", "10:00|7 min ago", ""},
        ViewRow{"dry", [] { return with([](auto& p) { p.frames[2].isDry = true; }); }, 0, 7, "dry",
                "10:00|7 min ago", "No rain in view"},
        ViewRow{"dryAsFarAsKnown",
                [] { return with([](auto& p) { p.frames[2].isDry = p.frames[2].isPartial = true; }); }, 0, 7,
                "shown", "10:00|7 min ago", "Parts of the picture are missing"},
        ViewRow{"justNotOld", [] { return progressOf(); }, 0, 30, "shown", "10:00|30 min ago", ""},
        ViewRow{"old", [] { return progressOf(); }, 0, 31, "shown", "10:00|31 min ago",
                "The newest picture is old"},
        ViewRow{
            "replaced", [] { return with([](auto& p) { p.misses = {missOf(429)}; }); }, 0, 7, "shown",
            "10:00|7 min ago",
            "The radar of Deutscher Wetterdienst could not be checked: the service's rate limit was reached"},
        ViewRow{"loading", [] { return progressOf(State::loading); }, 0, 7, "loading", "10:00|7 min ago",
                "Loading the radar…"},
        ViewRow{"waiting", [] { return RadarProgress(); }, 0, 7, "waiting", "", "Loading the radar…"},
        ViewRow{"none", [] { return with([](auto& p) { p.frames.clear(); }, State::none); }, 0, 7, "none", "",
                "There is no rain radar here"},
        ViewRow{"failed",
                [] {
                  return with(
                      [](auto& p) {
                        p.frames.clear();
                        p.misses = {missOf(500), missOf(503)};
                      },
                      State::failed);
                },
                0, 7, "failed", "",
                "The radar of Deutscher Wetterdienst could not be checked: the service returned an error "
                "(HTTP 503)"}),
    [](auto const& row) { return row.param.name; });

TEST(RadarProgresses, PlayWhatIsThere) {
  RadarProgress progress = progressOf();
  EXPECT_EQ(nextLoaded(progress, 0), 2U);
  EXPECT_EQ(nextLoaded(progress, 2), 0U) << "around";
  progress.frames[0].isLoaded = false;
  EXPECT_EQ(nextLoaded(progress, 2), 2U) << "the only one";
  EXPECT_EQ(nextLoaded(RadarProgress(), 0), 0U);
}

TEST(RadarLegends, SayMillimetresAnHourInTwoDigits) {
  RadarProgress progress = progressOf();
  progress.source = RadarSource::noaa;
  ViewContext const context = contextAt(kNewest);
  EXPECT_EQ(radarColourViews(progress, {}, context)[2], (RadarColourView{"#d8365c8d", "1"})) << "our own";
  EXPECT_EQ(radarView(progress, {}, context).credit, "NOAA/NWS");
  progress.frames[newestOf(progress)].isForeign = true;
  EXPECT_EQ(radarView(progress, {}, context).credit, "NOAA/NWS · in its own colors");
  auto const colours = radarColourViews(progress, {}, context);
  ASSERT_EQ(colours.size(), 12U);
  EXPECT_EQ(colours[0], (RadarColourView{"#ff04e9e7", "0.07"}));
  EXPECT_EQ(colours[4].amount, "1.3");
  EXPECT_EQ(colours[9].amount, "49");
  EXPECT_EQ(colours[11].amount, "205");
  EXPECT_EQ(radarColourViews(progress, progress.frames[0].frame.time, context)[0].amount, "0.1")
      << "another frame";
  EXPECT_TRUE(radarColourViews({}, {}, context).empty());
}

}  // namespace
}  // namespace nimbara
