#include "notifications/catalogue.h"
#include "notifications/engine/event_bound.h"
#include "notifications/log/notification_log.h"
#include "support/notification_engine.h"
#include "support/shared_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::NotificationEngine;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

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
