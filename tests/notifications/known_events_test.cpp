// What the engine remembers of events, for how long, and what it tells of a flood of them.
#include "notifications/catalogue.h"
#include "notifications/engine/event_bound.h"
#include "notifications/log/notification_log.h"
#include "support/notification_engine.h"
#include "support/shared_texts.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::northOf;
using test::NotificationEngine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
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

constexpr char kNow[] = "2026-11-21T09:20:00Z";

/// Counts how often something is written.
class CountingStore final : public ScratchSettingsStore {
 public:
  using ScratchSettingsStore::ScratchSettingsStore;
  Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) override {
    if (area == StoreArea::state) ++writes;
    return ScratchSettingsStore::update(area, decide);
  }
  int writes = 0;
};

struct Flood : testing::Test {
  Flood() {
    test::switchAllOff(store);
    std::ignore = store.set("notify_earthquakes", true);
    std::ignore = pass(0);  // from now on nothing is old
    store.writes = 0;
  }

  /// So many earthquakes of magnitudes from 4 on, the last the greatest.
  PassReport pass(int count) {
    RuleInputs inputs = test::ruleInputs(clock.now());
    std::vector<EarthquakeEvent> quakes;
    for (int i = 0; i < count; ++i) {
      EarthquakeEvent quake;
      quake.id = "q" + std::to_string(i);
      quake.magnitude = 4 + i * 0.001;
      quake.place = "Somewhere " + std::to_string(i);
      quake.latitude = inputs.place.coordinate.latitude;
      quake.longitude = inputs.place.coordinate.longitude;
      quake.time = clock.now();
      quakes.push_back(quake);
    }
    inputs.earthquakes = InputReading<std::vector<EarthquakeEvent>>::of(std::move(quakes));
    return manager.evaluate(
        [&](NeededInputs const&, std::stop_token const&) { return PassInputs{{inputs}, {}}; });
  }

  CountingStore store{test::notificationRegistry()};
  test::FakeNotificationCenter center;
  test::ManualClock clock{test::at(kNow)};
  NotificationManager manager{{store, center, clock, test::sharedEnglishTexts(), {}}};
};

TEST_F(Flood, OfOneMoreThanTwentyTellsEach) {
  std::ignore = pass(21);
  EXPECT_THAT(center.delivered(), SizeIs(21));
  EXPECT_THAT(center.shown(), testing::Not(testing::Contains("earthquake_others")));
}

TEST_F(Flood, OfTwoMoreThanTwentyCountsTwo) {
  std::ignore = pass(22);
  ASSERT_THAT(center.delivered(), SizeIs(21));
  EXPECT_EQ(center.delivered().back().title, "2 more earthquakes");
}

TEST_F(Flood, TellsTheGreatestAndCountsTheRest) {
  auto const report = pass(2000);
  auto const told = center.delivered();
  ASSERT_THAT(told, SizeIs(21));
  EXPECT_EQ(store.writes, 1);
  EXPECT_THAT(center.shown(), testing::Contains("earthquake_q1999"));
  EXPECT_THAT(center.shown(), testing::Contains("earthquake_q1980"));
  EXPECT_EQ(told.back().identifier, "earthquake_others");
  EXPECT_EQ(told.back().title, "1980 more earthquakes");
  EXPECT_THAT(told.back().body, HasSubstr("Somewhere 1979"));
  EXPECT_LT(report.plan.decisions.size(), 150U);
}

TEST(BoundedEvents, NameThePlacesOfTheRestAndPartTheLinesOfTheGreatest) {
  std::vector<Decision> decisions(kMostEvents + 3);
  for (std::size_t i = 0; i < decisions.size(); ++i) {
    decisions[i].rule = ruleOf("earthquake_q");
    decisions[i].outcome = RuleOutcome::announced;
    decisions[i].greatness = static_cast<double>(decisions.size() - i);
    decisions[i].place = i % 2 == 0 ? "Lagos" : "Lima";
    decisions[i].request.title = "Quake";
    decisions[i].request.body = "Near.\nTake cover.";
  }
  Texts const& texts = *test::sharedEnglishTexts();
  EXPECT_EQ(boundedEvents(decisions, texts).back().request.body,
            "Most severe: Quake — " + joinedLines("Near.\nTake cover.") + "\nPlaces: Lagos, Lima");
  for (Decision& decision : decisions) decision.place = "Lima";
  EXPECT_THAT(boundedEvents(decisions, texts).back().request.body, Not(HasSubstr("Places")));
}

TEST_F(Flood, IsToldOnce) {
  std::ignore = pass(2000);
  auto const before = center.delivered().size();
  std::ignore = pass(2000);
  std::ignore = pass(2001);
  auto const told = center.delivered();
  ASSERT_EQ(told.size(), before + 1);
  EXPECT_EQ(told.back().identifier, "earthquake_q2000");
  EXPECT_LT(notificationLogOf(*store.read(StoreArea::state)).size(), 100U);
}

TEST_F(Flood, ThatTheDesktopRefusedIsTriedAgain) {
  center.setFailure(DeliveryError{DeliveryError::Kind::unavailable, "nobody there"});
  auto const report = pass(100);
  EXPECT_THAT(report.problems, testing::Not(IsEmpty()));
  center.setFailure(std::nullopt);
  std::ignore = pass(100);
  EXPECT_THAT(center.delivered(), SizeIs(21));
  EXPECT_EQ(center.delivered().back().title, "80 more earthquakes");
}

TEST_F(Flood, ThatTheQuietHoursHoldIsToldAfterThem) {
  for (auto const* key : {"notify_quietHours", "notify_quietHoldsCritical"})
    std::ignore = store.set(key, true);
  std::ignore = store.set("notify_quietFrom", std::int64_t{9});
  std::ignore = store.set("notify_quietUntil", std::int64_t{10});
  EXPECT_LT(pass(2000).plan.decisions.size(), 150U);
  EXPECT_THAT(center.delivered(), IsEmpty());
  clock.advance(std::chrono::minutes(40));
  std::ignore = pass(2000);
  EXPECT_THAT(center.delivered(), SizeIs(21));
}

}  // namespace
}  // namespace nimbara
