// What the engine remembers of events: where fires burn, and for how long anything is worth remembering.
#include "support/notification_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::northOf;
using test::NotificationEngine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

struct FireMemory : testing::Test {
  FireMemory() {
    engine.turnOn("notify_fires");
    std::ignore = look({});  // from now on nothing is old
  }

  HotSpot spot(double kmNorth) const { return {northOf(home, kmNorth), engine.clock.now(), 20}; }

  /// What a look of another process tells, which sees these hot spots.
  std::vector<std::string> look(std::vector<HotSpot> const& spots) {
    engine.restart();
    RuleInputs inputs = engine.here();
    inputs.fires =
        InputReading<std::vector<FireDetection>>::of(firesNear(spots, home, 50, engine.clock.now()));
    engine.pass({inputs});
    return engine.told();
  }
  std::vector<std::string> lookAfter(std::chrono::hours span, std::vector<double> const& kmNorth) {
    engine.clock.advance(span);
    std::vector<HotSpot> spots;
    for (double const km : kmNorth) spots.push_back(spot(km));
    return look(spots);
  }

  NotificationEngine engine{"2026-08-21T09:20:00Z"};
  Coordinate home{38.7, -9.1};
};

TEST_F(FireMemory, AreOneWhileTheirDetectionsMove) {
  EXPECT_THAT(lookAfter(1h, {40}), SizeIs(1));
  EXPECT_THAT(lookAfter(6h, {36}), IsEmpty());
  EXPECT_THAT(lookAfter(6h, {32}), IsEmpty());
  EXPECT_THAT(lookAfter(12h, {28}), IsEmpty());
  EXPECT_THAT(lookAfter(12h, {24}), IsEmpty());
}

TEST_F(FireMemory, AreOneWhileTheyFallApartAndGrowTogether) {
  EXPECT_THAT(lookAfter(1h, {30, 31.5}), SizeIs(1));
  EXPECT_THAT(lookAfter(6h, {27, 30, 34.5}), IsEmpty());
  EXPECT_THAT(lookAfter(6h, {24, 38}), IsEmpty());
  EXPECT_THAT(lookAfter(6h, {24, 25.5, 27, 28.5, 30, 31.5}), IsEmpty());
}

TEST_F(FireMemory, AreTwoAtADistance) {
  EXPECT_THAT(lookAfter(1h, {40}), SizeIs(1));
  EXPECT_THAT(lookAfter(6h, {40, 34.5}), SizeIs(1)) << "5.5 km from edge to edge";
  EXPECT_THAT(lookAfter(6h, {40, 34.5}), IsEmpty());
}

TEST_F(FireMemory, AreOthersAfterDaysWithoutAny) {
  EXPECT_THAT(lookAfter(1h, {20}), SizeIs(1));
  EXPECT_THAT(lookAfter(48h, {20}), IsEmpty()) << "clouds hid it";
  EXPECT_THAT(lookAfter(24h * 5, {}), IsEmpty());
  EXPECT_THAT(lookAfter(1h, {20}), SizeIs(1));
}

/// A new one where an older one began, which has moved away since.
TEST_F(FireMemory, HaveIdentifiersOfTheirOwn) {
  auto const first = lookAfter(1h, {20});
  for (double km = 24; km <= 44; km += 4) EXPECT_THAT(lookAfter(20h, {km}), IsEmpty()) << km;
  auto const second = lookAfter(1h, {20, 44});
  ASSERT_THAT(second, SizeIs(1));
  EXPECT_NE(second, first);
}

EngineState after(std::chrono::days span, EngineState state) {
  applyChecks({}, test::at("2026-11-21T09:20:00Z") + span, state);
  return state;
}

TEST(KnownEvents, AreForgottenWhenTheyCannotReturn) {
  EngineState state;
  for (auto const* key :
       {"earthquake_a", "gov_b", "hurricane_al092026_new", "custom_c", "rain", "fire_fire:1,2"}) {
    state.deliveredIDs.insert(key);
  }
  state.knownStorms["al092026"] = {};
  state.knownFires["fire_fire:1,2"] = {{1, 2, 0, test::at("2026-11-21T09:00:00Z")}};
  EngineState const today = after(std::chrono::days(0), state);
  EXPECT_EQ(today.deliveredIDs, state.deliveredIDs) << "those of an older version have no day yet";
  EngineState const later = after(std::chrono::days(60), today);
  EXPECT_THAT(later.deliveredIDs,
              ElementsAre("custom_c", "earthquake_a", "gov_b", "hurricane_al092026_new", "rain"));
  EXPECT_THAT(later.knownFires, IsEmpty());
  EXPECT_THAT(later.knownStorms, SizeIs(1));
  EngineState const old = after(std::chrono::days(61), later);
  EXPECT_THAT(old.deliveredIDs, ElementsAre("custom_c", "rain"));
  EXPECT_THAT(old.knownStorms, IsEmpty());
  EXPECT_THAT(old.deliveredAt, IsEmpty());
}

TEST(KnownEvents, ThatAreStillFoundStay) {
  NotificationEngine engine("2026-11-21T09:20:00Z");
  engine.turnOn("notify_govAlerts");
  WeatherAlert endless = test::officialWarning(1, AlertSeverity::warning, engine.clock.now());
  endless.expires.reset();
  engine.warnings = {endless};
  engine.pass();
  for (int day = 0; day < 70; ++day) engine.passAfter(24h);
  EXPECT_THAT(engine.told(), SizeIs(1));
}

TEST(KnownEvents, OutliveTheProgram) {
  EngineState state;
  state.deliveredAt["gov_b"] = test::at("2026-11-21T00:00:00Z");
  state.knownFires["fire_x"] = {{38.5, -9.25, 1.5, test::at("2026-11-21T09:00:00Z")}};
  SettingValues stored;
  for (auto const& [key, value] : changesOf(state)) stored[key] = *value;
  EXPECT_EQ(engineStateOf(stored).value_or(EngineState{}), state);
}

}  // namespace
}  // namespace nimbara
