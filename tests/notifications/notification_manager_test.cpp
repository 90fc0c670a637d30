#include "support/notification_engine.h"

#include <gtest/gtest.h>

#include <thread>

namespace nimbara {
namespace {

using test::at;
using test::identifierOf;
using test::letItPour;
using test::NotificationEngine;
using test::officialWarning;
using namespace std::chrono_literals;
using Names = std::vector<std::string>;
using Severity = AlertSeverity;

// A Saturday, and a moment that no passage of an hour disturbs.
constexpr char kMorning[] = "2026-11-21T09:05:00Z";
constexpr char kEvening[] = "2026-11-21T21:30:00Z";

struct Rain : testing::Test {
  Rain() { engine.turnOn("notify_rain"); }
  NotificationEngine engine{kMorning};
};

TEST_F(Rain, ThatStaysIsToldOnce) {
  engine.weather = letItPour;
  for (int i = 0; i < 8; ++i) engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{"rain"});
}

TEST_F(Rain, ThatReturnsIsToldAnewAfterItsGap) {
  struct Row {
    std::chrono::minutes gap;
    bool isTold;
  };
  for (Row const& row : {Row{179min, false}, Row{180min, true}}) {
    NotificationEngine fresh(kMorning);
    fresh.turnOn("notify_rain");
    fresh.weather = letItPour;
    fresh.pass();
    fresh.weather = {};
    fresh.passAfter(1min);
    EXPECT_EQ(fresh.told(), Names{"rain"});
    fresh.weather = letItPour;
    fresh.passAfter(row.gap - 1min);
    EXPECT_EQ(fresh.told(), row.isTold ? Names{"rain"} : Names{}) << row.gap.count();
  }
}

TEST_F(Rain, ThatFlickersIsNoNewsAsLongAsItFlickers) {
  for (int i = 0; i < 48; ++i) {
    engine.weather = i % 2 == 0 ? std::function<void(WeatherData&)>(letItPour) : nullptr;
    engine.passAfter(15min);
  }
  EXPECT_EQ(engine.told(), Names{"rain"});
}

TEST_F(Rain, IsNotOverBecauseTheForecastIsMissing) {
  engine.weather = letItPour;
  engine.pass();
  RuleInputs nothing = engine.here();
  nothing.weather.reset();
  nothing.readWeather();
  engine.pass({nothing});
  engine.passAfter(4h);
  EXPECT_EQ(engine.told(), Names{"rain"});
}

TEST_F(Rain, IsToldOncePerPlaceAndAgainOnlyAfterTheGap) {
  engine.weather = letItPour;
  engine.pass();
  RuleInputs other = engine.here();
  other.place.tag = "other";
  engine.pass({other});
  EXPECT_EQ(engine.told(), (Names{"rain", "rain"}));
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{}) << "the first place is chosen again within the gap";
  engine.pass({other});
  engine.passAfter(24h);
  EXPECT_EQ(engine.told(), Names{"rain"}) << "what held a day ago is another rain";
}

TEST_F(Rain, SurvivesAClockThatIsSetBack) {
  engine.weather = letItPour;
  engine.pass();
  engine.clock.set(engine.clock.now() - 24h * 365);
  engine.weather = {};
  engine.pass();
  engine.weather = letItPour;
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), (Names{"rain", "rain"})) << "it must not be silent for a year";
}

TEST_F(Rain, IsToldAgainWhenTheSwitchWasOffForLong) {
  engine.weather = letItPour;
  engine.pass();
  std::ignore = engine.store.set("notify_rain", false);
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{"rain"});
  engine.turnOn("notify_rain");
  engine.passAfter(3h);
  EXPECT_EQ(engine.told(), Names{"rain"});
}

struct Warnings : testing::Test {
  Warnings() { engine.turnOn("notify_govAlerts"); }

  WeatherAlert& add(int number, Severity severity = Severity::warning, std::chrono::minutes age = 5min) {
    engine.warnings->push_back(officialWarning(number, severity, engine.clock.now() - age));
    return engine.warnings->back();
  }
  static std::string name(int number) { return identifierOf(officialWarning(number, Severity::info, {})); }

  NotificationEngine engine{kMorning};
};

TEST_F(Warnings, OfTheGravestKindComeFirst) {
  add(1, Severity::advisory);
  add(2, Severity::critical);
  add(3);
  engine.pass();
  EXPECT_EQ(engine.told(), (Names{name(2), name(1), name(3)}));
  EXPECT_EQ(engine.center.delivered()[0].urgency, NotificationUrgency::critical);
  EXPECT_EQ(engine.center.delivered()[1].urgency, NotificationUrgency::normal);
}

TEST_F(Warnings, AreReplacedInSilenceWhenTheirWordsChange) {
  add(1);
  engine.pass();
  engine.told();
  engine.warnings->front().message = "Take more care.";
  engine.passAfter(15min);
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{});
  ASSERT_EQ(engine.center.updated().size(), 1);
  EXPECT_TRUE(engine.center.updated().front().isSilent);
  EXPECT_EQ(engine.center.updated().front().body, "Take more care.");
}

TEST_F(Warnings, AreTakenBackAtTheirEndAlsoWhileTheFeedFails) {
  for (bool const feedFails : {false, true}) {
    NotificationEngine fresh(kMorning);
    fresh.turnOn("notify_govAlerts");
    fresh.warnings = {officialWarning(1, Severity::warning, fresh.clock.now())};
    fresh.warnings->front().expires = fresh.clock.now() + 1h;
    fresh.pass();
    if (feedFails) fresh.warnings.reset();
    fresh.passAfter(59min);
    EXPECT_EQ(fresh.center.withdrawn(), Names{}) << feedFails;
    fresh.passAfter(1min);
    EXPECT_EQ(fresh.center.withdrawn(), Names{name(1)}) << feedFails;
    fresh.passAfter(15min);
    EXPECT_EQ(fresh.told(), Names{name(1)}) << feedFails;
  }
}

TEST_F(Warnings, WhoseEndMovesFollowIt) {
  add(1).expires = engine.clock.now() + 1h;
  engine.pass();
  engine.warnings->front().expires = engine.clock.now() + 3h;
  engine.passAfter(90min);
  std::string const until = "_until_" + formatIso8601(*engine.warnings->front().expires);
  EXPECT_EQ(engine.center.shown(), Names{name(1) + until});
  engine.warnings->front().expires = engine.clock.now();
  engine.passAfter(15min);
  EXPECT_EQ(engine.center.shown(), Names{}) << "ended earlier than was thought";
}

TEST_F(Warnings, ThatHaveEndedAreNeverTold) {
  for (auto const left : {0min, 1min}) {
    NotificationEngine fresh(kMorning);
    fresh.turnOn("notify_govAlerts");
    fresh.warnings = {officialWarning(1, Severity::critical, fresh.clock.now() - 10min)};
    fresh.warnings->front().expires = fresh.clock.now() + left;
    fresh.pass();
    EXPECT_EQ(fresh.told().empty(), left == 0min);
  }
}

TEST_F(Warnings, OfOtherPlacesOutlastALookAtOneOfThem) {
  auto const lookAt = [&](std::vector<RuleInputs> places) {
    engine.clock.advance(15min);
    engine.isPartial = places.size() == 1;
    engine.pass(std::move(places));
    return engine.center.delivered().size();
  };
  auto const home = [&] { return engine.here(); };
  auto const porto = [&] { return engine.elsewhere("porto", "Porto"); };
  auto const oslo = [&] { return engine.elsewhere("oslo", "Oslo"); };
  add(1);
  EXPECT_EQ(lookAt({home(), porto()}), 1);
  engine.warnings->clear();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(lookAt({oslo()}), 1) << "it was never in force there";
  for (int i = 0; i < 3; ++i) EXPECT_EQ(lookAt({home()}), 1) << "it may still be in force in Porto";
  EXPECT_EQ(lookAt({porto()}), 1);
  EXPECT_EQ(lookAt({porto()}), 2) << "told to be over";
  EXPECT_EQ(lookAt({porto()}), 2);
  EXPECT_EQ(lookAt({home(), porto()}), 2);
  EXPECT_EQ(engine.center.shown(), Names{name(1) + "_lifted"});
}

TEST_F(Warnings, OfAPlaceThatSomebodyLooksUpAreFollowedThere) {
  auto const lookUp = [&] {
    engine.clock.advance(15min);
    engine.isPartial = true;
    engine.pass({engine.elsewhere("oslo", "Oslo")});
    engine.isPartial = false;
    return engine.center.delivered().size();
  };
  add(1);
  EXPECT_EQ(lookUp(), 1);
  auto const inForce = engine.warnings;
  engine.warnings->clear();
  for (int i = 0; i < 3; ++i) engine.passAfter(15min);
  EXPECT_TRUE(engine.center.withdrawn().empty()) << "nobody else looks there";
  EXPECT_EQ(lookUp(), 1) << "feeds drop one for a moment";
  EXPECT_EQ(lookUp(), 2);
  EXPECT_EQ(engine.center.delivered().back().title, "Lifted: Warning 1");
  EXPECT_EQ(lookUp(), 2) << "once";
  engine.warnings = inForce;
  EXPECT_EQ(lookUp(), 3) << "who was told that it is over must know";
}

TEST_F(Warnings, OfAPlaceThatIsWatchedLaterAreFollowedByTheWatch) {
  add(1);
  engine.isPartial = true;
  engine.pass();
  engine.isPartial = false;
  engine.warnings->clear();
  engine.passAfter(15min);
  engine.passAfter(15min);
  EXPECT_EQ(engine.center.delivered().back().title, "Lifted: Warning 1");
}

TEST_F(Warnings, AtTwoPlacesRingOnceAndNameBoth) {
  add(1);
  engine.pass({engine.here(), engine.elsewhere("porto", "Porto")});
  EXPECT_EQ(engine.told(), Names{name(1)});
  EXPECT_EQ(engine.center.delivered().front().title, "Testville, Porto: Warning 1");
  engine.pass({engine.elsewhere("porto", "Porto"), engine.here()});
  EXPECT_EQ(engine.told(), Names{});
}

TEST_F(Warnings, OfAPlaceThatGoesAwayAreNotToldForIt) {
  add(1);
  engine.manager->suppress("testville");
  engine.pass();
  EXPECT_EQ(engine.told(), Names{});
  engine.pass({engine.here(), engine.elsewhere("porto", "Porto")});
  EXPECT_EQ(engine.told(), Names{name(1)});
  EXPECT_EQ(engine.center.delivered().front().title, "Porto: Warning 1");
  add(2);
  engine.manager->release("testville");
  engine.pass();
  EXPECT_EQ(engine.told(), Names{name(2)});
}

TEST_F(Warnings, ThatAreOldNewsAtTheFirstCheckAreListedButForCriticalOnes) {
  struct Row {
    Severity severity;
    std::chrono::minutes age;
    bool isSilent;
  };
  for (Row const& row : {Row{Severity::warning, 30min, false}, Row{Severity::warning, 31min, true},
                         Row{Severity::critical, 31min, false}}) {
    NotificationEngine fresh(kMorning);
    fresh.turnOn("notify_govAlerts");
    fresh.warnings = {officialWarning(1, row.severity, fresh.clock.now() - row.age)};
    fresh.pass();
    ASSERT_EQ(fresh.told(), Names{name(1)});
    EXPECT_EQ(fresh.center.delivered().front().isSilent, row.isSilent) << row.age.count();
    fresh.warnings->push_back(officialWarning(2, row.severity, fresh.clock.now() - row.age));
    fresh.passAfter(15min);
    EXPECT_FALSE(fresh.center.delivered().back().isSilent) << "late, but news to this program";
  }
}

TEST_F(Warnings, OfOnePlaceAreNewsAlthoughAnothersFeedNeverAnswers) {
  RuleInputs deaf = engine.elsewhere("porto", "Porto");
  deaf.govAlerts = {nullptr, ServiceFailure::answered(503)};
  engine.pass({engine.here(), deaf});
  add(1, Severity::warning, 2h);
  engine.pass({engine.here(), deaf});
  EXPECT_EQ(engine.told(), Names{name(1)});
  EXPECT_FALSE(engine.center.delivered().back().isSilent);
}

struct Hold {
  std::string_view key;
  SettingValue value;
  RuleOutcome outcome;
};

TEST_F(Warnings, AreHeldBackUntilTheHoldEndsButForCriticalOnes) {
  std::string const until = "2026-11-21T22:00:00Z";
  for (Hold const& hold : {Hold{"notify_quietHours", true, RuleOutcome::heldByQuietHours},
                           Hold{"notify_snoozedUntil", until, RuleOutcome::snoozed},
                           Hold{"notify_mutedKinds", "gov:wind", RuleOutcome::muted},
                           Hold{"notify_mutedKinds", "gov:wind:warning", RuleOutcome::muted},
                           Hold{"notify_mutedKinds", "other, gov", RuleOutcome::muted}}) {
    NotificationEngine fresh(kEvening);
    fresh.turnOn("notify_govAlerts");
    std::ignore = fresh.store.set("notify_quietFrom", std::int64_t{21});
    std::ignore = fresh.store.set("notify_quietUntil", std::int64_t{22});
    ASSERT_TRUE(fresh.store.set(hold.key, hold.value));
    fresh.warnings = {officialWarning(1, Severity::warning, fresh.clock.now()),
                      officialWarning(2, Severity::critical, fresh.clock.now())};
    auto const report = fresh.pass();
    EXPECT_EQ(fresh.told(), Names{name(2)}) << hold.key;
    EXPECT_EQ(std::ranges::count(report.plan.decisions, hold.outcome, &Decision::outcome), 1) << hold.key;
    fresh.passAfter(29min);
    EXPECT_EQ(fresh.told(), Names{}) << hold.key;
    std::ignore = fresh.store.reset("notify_mutedKinds");
    fresh.passAfter(1min);
    EXPECT_EQ(fresh.told(), Names{name(1)}) << hold.key;
  }
}

TEST_F(Warnings, OfTheGravestKindAreHeldBackOnExpressWishOnly) {
  engine.turnOn("notify_quietHours");
  engine.turnOn("notify_quietHoldsCritical");
  engine.clock.set(at(kEvening) + 1h);
  add(1, Severity::critical);
  engine.pass();
  EXPECT_EQ(engine.told(), Names{});
  std::ignore = engine.store.set("notify_quietHoldsCritical", false);
  engine.pass();
  EXPECT_EQ(engine.told(), Names{name(1)});
}

TEST_F(Warnings, AMuteOfOneSeverityLeavesTheOthers) {
  std::ignore = engine.store.set("notify_mutedKinds", "gov:wind:advisory");
  add(1, Severity::advisory);
  add(2);
  engine.pass();
  EXPECT_EQ(engine.told(), Names{name(2)});
}

TEST_F(Warnings, ThatWereRefusedAreTriedAgain) {
  add(1);
  engine.center.setFailure(DeliveryError{DeliveryError::Kind::refused, "no room"});
  auto const report = engine.pass();
  EXPECT_EQ(std::ranges::count(report.plan.decisions, RuleOutcome::refused, &Decision::outcome), 1);
  EXPECT_FALSE(report.problems.empty());
  engine.restart();
  engine.center.setFailure(std::nullopt);
  engine.passAfter(15min);
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{name(1)});
}

struct AttemptRow {
  DeliveryError::Kind kind;
  int attempts;
};

TEST_F(Warnings, ADesktopThatCannotBeReachedIsTriedOnceInAPass) {
  for (int i = 1; i <= 5; ++i) add(i);
  for (auto const& [kind, attempts] :
       {AttemptRow{DeliveryError::Kind::unavailable, 1}, {DeliveryError::Kind::refused, 5}}) {
    int const before = engine.center.attempts();
    engine.center.setFailure(DeliveryError{kind, "no"});
    auto const report = engine.pass();
    EXPECT_EQ(std::ranges::count(report.plan.decisions, RuleOutcome::refused, &Decision::outcome), 5);
    EXPECT_EQ(engine.center.attempts() - before, attempts);
  }
  engine.center.setFailure(std::nullopt);
  engine.pass();
  EXPECT_EQ(engine.told().size(), 5U);
}

TEST_F(Warnings, ARefusedRiseRingsInTheNextPass) {
  add(1, Severity::advisory);
  engine.pass();
  engine.told();
  engine.warnings->front().severity = Severity::warning;
  engine.center.setFailure(DeliveryError{DeliveryError::Kind::unavailable, "the daemon restarts"});
  engine.pass();
  engine.center.setFailure(std::nullopt);
  engine.pass();
  EXPECT_EQ(engine.told(), Names{name(1) + "_warning"});
}

TEST_F(Warnings, AreNotEvenLookedForWithoutAuthorization) {
  add(1);
  engine.center.setStatus(AuthorizationStatus::denied);
  auto const report = engine.manager->evaluate([](NeededInputs const&, std::stop_token const&) {
    ADD_FAILURE() << "nothing is to be asked";
    return PassInputs{};
  });
  EXPECT_EQ(report.end, PassReport::End::denied);
  engine.center.setStatus(AuthorizationStatus::authorized);
  engine.pass();
  EXPECT_EQ(engine.told(), Names{name(1)});
}

TEST_F(Warnings, OfAStoreThatCannotBeReadAreToldIfCriticalAndOnce) {
  add(1, Severity::critical);
  add(2);
  engine.store.failure = StoreError{StoreError::Kind::unreadable, "the file is damaged"};
  // The settings are the defaults now: official warnings are on.
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(engine.passAfter(15min).problems.empty());
  EXPECT_EQ(engine.told(), Names{name(1)});
  engine.store.failure.reset();
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{name(2)});
}

/// A disk that is full.
class UnwritableStore final : public SettingsStore {
 public:
  explicit UnwritableStore(SettingsStore& store) : SettingsStore(store.registry()), store_(store) {}
  Result<SettingValues, StoreError> read(StoreArea area) override { return store_.read(area); }
  Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) override {
    if (!isFull) return store_.update(area, decide);
    return std::unexpected(StoreError{StoreError::Kind::unwritable, "the disk is full"});
  }
  Result<std::unique_ptr<SettingsWatch>, StoreError> watch() override { return store_.watch(); }

  bool isFull = true;

 private:
  SettingsStore& store_;
};

TEST_F(Warnings, OfAStoreThatCannotBeWrittenAreToldIfCriticalAndOnce) {
  UnwritableStore full(engine.store);
  engine.manager = std::make_unique<NotificationManager>(
      NotificationManager::Surroundings{full, engine.center, engine.clock, test::sharedEnglishTexts(), {}});
  add(1, Severity::critical);
  add(2);
  for (int i = 0; i < 3; ++i) engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{name(1)});
  full.isFull = false;
  engine.passAfter(15min);
  engine.restart();
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{name(2)});
}

TEST_F(Warnings, AreToldWithoutADataDirectory) {
  engine.manager = std::make_unique<NotificationManager>(NotificationManager::Surroundings{
      engine.store, engine.center, engine.clock, test::sharedEnglishTexts(), "/proc/no such folder/lock"});
  add(1);
  EXPECT_EQ(engine.pass().end, PassReport::End::completed);
  EXPECT_EQ(engine.told(), Names{name(1)});
}

TEST_F(Warnings, HaveTheSystemsSoundWhenSoundsAreOff) {
  add(1);
  engine.pass();
  EXPECT_EQ(engine.center.delivered().back().sound, "weather_warning.caf");
  std::ignore = engine.store.set("notify_sounds", false);
  add(2);
  engine.pass();
  EXPECT_EQ(engine.center.delivered().back().sound, std::nullopt);
}

TEST_F(Warnings, AnAnswerMutesOrSnoozes) {
  add(1);
  engine.pass();
  engine.restart();
  ASSERT_TRUE(engine.manager->respond({name(1), "mute", ""}));
  EXPECT_EQ(engine.store.settings().settings.text("notify_mutedKinds"), "gov") << "after a restart: the rule";
  std::ignore = engine.store.reset("notify_mutedKinds");
  add(2);
  engine.pass();
  ASSERT_TRUE(engine.manager->respond({name(2), "mute", ""}));
  EXPECT_EQ(engine.store.settings().settings.text("notify_mutedKinds"), "gov:wind");
  ASSERT_TRUE(engine.manager->respond({name(2), "snooze", ""}));
  EXPECT_EQ(engine.store.settings().settings.text("notify_snoozedUntil"), "2026-11-21T10:05:00Z");
}

/// Does something with each delivery.
class BusyCenter final : public NotificationCenter {
 public:
  AuthorizationStatus authorizationStatus() override { return AuthorizationStatus::authorized; }
  AuthorizationStatus requestAuthorization() override { return AuthorizationStatus::authorized; }
  Result<void, DeliveryError> deliver(NotificationRequest const& request) override {
    delivered.push_back(request.identifier);
    if (onDelivery) std::exchange(onDelivery, {})();
    return {};
  }
  Result<void, DeliveryError> update(NotificationRequest const& /*request*/) override { return {}; }
  void withdraw(std::string_view /*identifier*/) override {}
  void setListener(Listener /*listener*/) override {}

  std::function<void()> onDelivery;
  Names delivered;
};

struct Passes : testing::Test {
  Passes() {
    engine.turnOn("notify_govAlerts");
    engine.warnings = {officialWarning(1, Severity::warning, engine.clock.now()),
                       officialWarning(2, Severity::warning, engine.clock.now())};
  }

  PassInputs gathered() const { return {{engine.here()}, {}}; }
  /// Returns when the newer pass waits for its turn.
  void queueNewer() {
    auto const token = manager.evaluationTailToken();
    newer = std::jthread(
        [this] { second = manager.evaluate([this](auto const&, auto const&) { return gathered(); }); });
    while (manager.evaluationTailToken() == token) std::this_thread::yield();
  }

  NotificationEngine engine{kMorning};
  BusyCenter center;
  NotificationManager manager{{engine.store, center, engine.clock, test::sharedEnglishTexts(), {}}};
  PassReport second;
  std::jthread newer;
};

TEST_F(Passes, DeliverNothingOnceANewerIsQueuedDuringTheAsking) {
  auto const first = manager.evaluate([this](auto const&, auto const&) {
    queueNewer();
    return gathered();
  });
  EXPECT_EQ(first.end, PassReport::End::superseded);
  EXPECT_TRUE(first.plan.decisions.empty());
  newer.join();
  EXPECT_EQ(second.end, PassReport::End::completed);
  EXPECT_EQ(center.delivered.size(), 2);
}

TEST_F(Passes, DeliverNothingMoreOnceANewerIsQueuedBetweenTwoDeliveries) {
  center.onDelivery = [this] { queueNewer(); };
  auto const first = manager.evaluate([this](auto const&, auto const&) { return gathered(); });
  EXPECT_EQ(first.end, PassReport::End::superseded);
  newer.join();
  ASSERT_EQ(center.delivered.size(), 2);
  EXPECT_NE(center.delivered[0], center.delivered[1]) << "the newer goes on where the older stopped";
}

TEST_F(Passes, EndBetweenTwoDeliveriesWhenAskedTo) {
  std::stop_source stop;
  center.onDelivery = [&] { stop.request_stop(); };
  auto const gather = [this](auto const&, auto const&) { return gathered(); };
  EXPECT_EQ(manager.evaluate(gather, stop.get_token()).end, PassReport::End::superseded);
  EXPECT_EQ(center.delivered.size(), 1);
  EXPECT_EQ(manager.evaluate(gather).end, PassReport::End::completed);
  EXPECT_EQ(center.delivered.size(), 2) << "what was not told is told by the next pass";
}

TEST(Engine, WithEverythingOffTellsNothingAndNeedsNothing) {
  NotificationEngine engine(kMorning);
  engine.weather = letItPour;
  engine.warnings = {officialWarning(1, Severity::critical, engine.clock.now())};
  auto const report = engine.pass();
  EXPECT_EQ(engine.told(), Names{});
  for (Decision const& decision : report.plan.decisions) {
    EXPECT_EQ(decision.outcome, RuleOutcome::settingOff) << decision.rule->stem;
  }
  NeededInputs const needed = neededInputs(engine.store.settings().settings);
  for (RuleInputSet const& inputs : needed.byChoice) EXPECT_EQ(inputs, RuleInputSet{});
}

TEST(Engine, TellsAndRemembersNothingInAPreview) {
  NotificationEngine engine(kMorning);
  engine.turnOn("notify_govAlerts");
  engine.warnings = {officialWarning(1, Severity::warning, engine.clock.now())};
  auto const gather = [&](NeededInputs const&, std::stop_token const&) {
    return PassInputs{{engine.here()}, {}};
  };
  for (int i = 0; i < 2; ++i) {
    auto const report = engine.manager->preview(gather);
    EXPECT_EQ(report.plan.decisions.front().outcome, RuleOutcome::announced);
  }
  EXPECT_EQ(engine.told(), Names{});
  engine.pass();
  EXPECT_EQ(engine.told().size(), 1);
}

}  // namespace
}  // namespace nimbara
