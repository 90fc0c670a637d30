#include "app/engine/engine_hazards.h"
#include "app/services/feed_services.h"
#include "app/settings/service_directory.h"
#include "app/settings/settings_registry.h"
#include "platform/settings/scratch_settings_store.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/manual_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

/// Far from any shore: only one look at its warnings.
Place const kWichita{{37.69, -97.34}, "Wichita", "United States", "Kansas"};
Place const kDenver{{39.74, -104.98}, "Denver", "United States", "Colorado"};
/// Two sources may be asked, one after the other.
Place const kTokyo{{35.69, 139.69}, "Tokyo", "Japan", "Tokyo"};

std::string warningOf(std::string const& event) {
  return R"({"features":[{"properties":{"id":"a","event":")" + event +
         R"(","severity":"Severe","urgency":"Future","certainty":"Likely","sent":"2026-11-21T08:00:00Z",
         "expires":"2026-11-21T12:30:00Z","references":[]}}]})";
}

constexpr char kQuake[] = R"({"type":"FeatureCollection","features":[{"id":"q","properties":{"mag":5.1,
  "place":"sea","time":1795251600000},"geometry":{"coordinates":[10,20,30]}}]})";
constexpr char kKp[] = R"([{"time_tag":"2026-11-21T06:00:00","Kp":3}])";
constexpr char kAhead[] = R"([{"time_tag":"2026-11-21T12:00:00","kp":4,"observed":"predicted"}])";

struct DesktopHazardsTest : testing::Test {
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T09:20:00Z")};
  FeedServices feeds{http,
                     clock,
                     ServiceDirectory({}, ""),
                     {"me", {}, {}, std::make_shared<Texts const>(Texts::load("en"))}};
  ScratchSettingsStore store{settingsRegistry()};
  test::ManualRunner runner;
  std::vector<std::string> shown;
  int published = 0;
  EngineHazards hazards{always(feeds), store, runner, surroundings()};

  EngineHazards::Surroundings surroundings() {
    return {[this](Place const& place, std::vector<WeatherAlert> const& alerts) {
              shown.push_back(place.name + ":");
              for (WeatherAlert const& alert : alerts) shown.back() += " " + alert.title;
            },
            [this] { ++published; }, [] { return std::vector{kWichita, kTokyo}; }};
  }
  void willAnswerWorld() {
    for (char const* const body : {kQuake, kKp, kAhead}) http.willAnswer(200, body);
  }
  void select(std::optional<Place> const& place) {
    hazards.setPlace(place);
    hazards.showKept();
  }
};

TEST_F(DesktopHazardsTest, AskEveryFeedAndTellHowItWent) {
  select(kWichita);
  EXPECT_FALSE(hazards.state()->isSettled());
  http.willAnswer(200, warningOf("Flood Watch"));
  willAnswerWorld();
  EXPECT_EQ(hazards.refresh(kWichita, {}), SupplementalOutcome::complete);
  auto const state = hazards.state();
  EXPECT_TRUE(state->isSettled());
  EXPECT_EQ(shown.back(), "Wichita: Flood Watch");
  ASSERT_EQ(state->official.coverage.size(), 1);
  EXPECT_EQ(state->official.coverage[0].checkedAt, clock.now());
  EXPECT_EQ(state->official.coverage[0].source, "nws");
  EXPECT_EQ(state->quakes.data.size(), 1);
  EXPECT_EQ(state->kp.data.now, 3);
  EXPECT_EQ(state->kp.data.recent.size(), 1);
  EXPECT_EQ(state->kpForecast.data.size(), 1);
}

TEST_F(DesktopHazardsTest, KeepWhatTheyHadThroughFailures) {
  select(kWichita);
  http.willAnswer(200, warningOf("Flood Watch"));
  willAnswerWorld();
  std::ignore = hazards.refresh(kWichita, {});
  clock.advance(31min);
  EXPECT_EQ(hazards.refresh(kWichita, {}), SupplementalOutcome::incomplete);
  auto const state = hazards.state();
  EXPECT_EQ(shown.back(), "Wichita: Flood Watch");
  EXPECT_EQ(state->official.coverage.at(0).checkedAt, at("2026-11-21T09:20:00Z"));
  EXPECT_EQ(state->official.coverage.at(0).since, at("2026-11-21T09:51:00Z"));
  EXPECT_EQ(state->quakes.data.size(), 1);
  EXPECT_TRUE(state->quakes.failure);
  EXPECT_EQ(state->kp.data.now, 3);
  EXPECT_TRUE(state->kp.failure);
}

TEST_F(DesktopHazardsTest, ShowWhatIsKeptOfANewPlaceAtOnceAndNothingOfTheOld) {
  select(kWichita);
  http.willAnswer(200, warningOf("Flood Watch"));
  std::ignore = hazards.refresh(kWichita, {});
  select(kDenver);
  EXPECT_EQ(shown.back(), "Denver:");
  EXPECT_EQ(hazards.state()->official.place, kDenver);
  EXPECT_EQ(hazards.state()->official.coverage.at(0).checkedAt, std::nullopt);
  EXPECT_TRUE(hazards.state()->official.isAsking);
  std::ignore = hazards.refresh(kWichita, {});
  EXPECT_EQ(shown.back(), "Denver:") << "an answer about another place";
  select(kWichita);
  EXPECT_EQ(shown.back(), "Wichita: Flood Watch");
  select(std::nullopt);
  EXPECT_TRUE(hazards.state()->official.isSettled());
}

TEST_F(DesktopHazardsTest, LeaveEverythingAsItWasWhenStopped) {
  select(kWichita);
  auto const before = shown;
  std::stop_source stop;
  stop.request_stop();
  std::ignore = hazards.refresh(kWichita, stop.get_token());
  EXPECT_EQ(shown, before);
  EXPECT_TRUE(hazards.state()->official.isAsking);
  EXPECT_FALSE(hazards.state()->quakes.failure);
}

TEST_F(DesktopHazardsTest, TellOfSavedPlacesWhatIsKept) {
  select(kWichita);
  EXPECT_TRUE(hazards.state()->places.empty());
  http.willAnswer(200, warningOf("Flood Watch"));
  std::ignore = hazards.refresh(kWichita, {});
  auto const places = hazards.state()->places;
  ASSERT_EQ(places.size(), 2);
  EXPECT_EQ(places[0].coverage.at(0).state, CoverageState::warnings);
  EXPECT_EQ(places[1].coverage.at(0).state, CoverageState::unchecked) << "nobody has asked";
}

TEST_F(DesktopHazardsTest, HaveOneStateForAPlaceOfTwoSources) {
  select(kTokyo);
  EXPECT_FALSE(hazards.state()->official.isSettled());
  std::ignore = hazards.refresh(kTokyo, {});
  ASSERT_EQ(hazards.state()->official.coverage.size(), 1);
  SourceCoverage const& failed = hazards.state()->official.coverage[0];
  EXPECT_EQ(failed.source, "wmo");
  EXPECT_EQ(failed.country, "JP");
  EXPECT_EQ(failed.state, CoverageState::unchecked);
  EXPECT_TRUE(hazards.state()->official.isSettled());
}

TEST(OfficialCheck, IsSettledWhereNobodyIsKnownToIssueWarnings) {
  OfficialCheck check{kTokyo, {SourceCoverage{}}, true};
  EXPECT_FALSE(check.isCovered());
  EXPECT_TRUE(check.isSettled());
  check.coverage[0].state = CoverageState::none;
  EXPECT_FALSE(check.isSettled());
}

TEST_F(DesktopHazardsTest, AskForTheWorldWhenSomebodyLooks) {
  willAnswerWorld();
  hazards.look();
  hazards.look();
  EXPECT_EQ(runner.waiting(), 1) << "once is enough";
  runner.runAll();
  EXPECT_EQ(hazards.state()->kp.data.now, 3);
  EXPECT_EQ(published, 3);
  hazards.look();
  runner.runAll();
  EXPECT_EQ(http.requests.size(), 3) << "the answers are young";
}

TEST_F(DesktopHazardsTest, CheckThePlacesWhoseSourcesSomebodyLooksAt) {
  http.willAnswer(200, warningOf("Flood Watch"));
  hazards.lookAtPlaces();
  hazards.lookAtPlaces();
  EXPECT_EQ(runner.waiting(), 1) << "once is enough";
  runner.runAll();
  auto const state = hazards.state();
  EXPECT_FALSE(state->isCheckingPlaces);
  ASSERT_EQ(state->places.size(), 2);
  EXPECT_EQ(state->places[0].coverage.at(0).state, CoverageState::warnings);
  EXPECT_EQ(state->places[1].coverage.at(0).since, clock.now()) << "nobody answered for Tokyo";
  EXPECT_EQ(published, 4) << "what is kept, each place, the end";
}

TEST_F(DesktopHazardsTest, KeepTheFilterInTheSettings) {
  hazards.setRadius(500);
  hazards.setMagnitude(4.5);
  EXPECT_EQ(published, 2);
  EngineHazards other(always(feeds), store, runner, surroundings());
  other.readFilter();
  EXPECT_EQ(other.state()->filter, (QuakeFilter{500, 4.5}));
  EXPECT_EQ(published, 3);
  other.readFilter();
  EXPECT_EQ(published, 3) << "nothing has changed";
}

}  // namespace
}  // namespace nimbara
