// What of an official event is sent after its first sight: a higher level, an end that has moved, its
// cancellation, each once and under a name of its own; and nothing else.
#include "notifications/catalogue.h"
#include "notifications/log/reason_text.h"
#include "support/notification_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::identifierOf;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using enum RuleOutcome;
using Severity = AlertSeverity;

struct WarningChanges : testing::Test {
  WarningChanges() {
    engine.turnOn("notify_govAlerts");
    engine.pass();  // from here on what begins is news
    alert = test::officialWarning(1, Severity::advisory, engine.clock.now());
    alert.issued = engine.clock.now();
  }

  std::string name(std::string const& change = {}) const { return identifierOf(alert) + change; }

  PassReport look(std::optional<std::vector<WeatherAlert>> live, std::vector<WeatherAlert> calledOff = {}) {
    engine.clock.advance(15min);
    engine.warnings = std::move(live);
    RuleInputs inputs = engine.here();
    inputs.calledOff = std::move(calledOff);
    return engine.pass({inputs});
  }
  PassReport lookAtAlert() {
    alert.issued = engine.clock.now() + 14min;
    return look({{alert}});
  }
  PassReport callOff() {
    WeatherAlert over = alert;
    over.issued = engine.clock.now() + 15min;
    over.issuer = "DHMZ";
    over.title.clear();  // a cancellation may tell nothing else
    return look(std::vector<WeatherAlert>{}, {over});
  }
  /// Of the official warnings, in the plan's order.
  static std::vector<RuleOutcome> outcomesOf(PassReport const& report) {
    std::vector<RuleOutcome> outcomes;
    for (Decision const& decision : report.plan.decisions) {
      if (decision.key.starts_with("gov_")) outcomes.push_back(decision.outcome);
    }
    return outcomes;
  }
  static Decision const& decisionOf(PassReport const& report) {
    return *std::ranges::find_if(report.plan.decisions,
                                 [](Decision const& decision) { return decision.key.starts_with("gov_"); });
  }
  void makeQuiet(bool isQuiet) {
    std::ignore = engine.store.set("notify_quietHours", isQuiet);
    std::ignore = engine.store.set("notify_quietFrom", 0);
    std::ignore = engine.store.set("notify_quietUntil", 23);
  }
  /// Of this event alone.
  std::vector<std::string> toldOfIt() {
    auto told = engine.told();
    std::erase_if(told, [&](std::string const& identifier) { return !identifier.starts_with(name()); });
    return told;
  }
  NotificationRequest last() const { return engine.center.delivered().back(); }

  test::NotificationEngine engine{"2026-11-21T09:00:00Z"};
  WeatherAlert alert;
};

struct LevelRow {
  Severity sent, next;
  char const* change;  ///< empty: nothing is sent
};

TEST_F(WarningChanges, OfTheLevelAreSentWhenItRises) {
  std::ignore = engine.store.set("notify_govAlertLevel", std::string("low"));
  int number = 10;
  for (LevelRow const& row : {LevelRow{Severity::info, Severity::info, ""},
                              {Severity::info, Severity::advisory, "_advisory"},
                              {Severity::info, Severity::warning, "_warning"},
                              {Severity::info, Severity::critical, "_critical"},
                              {Severity::advisory, Severity::info, ""},
                              {Severity::advisory, Severity::advisory, ""},
                              {Severity::advisory, Severity::warning, "_warning"},
                              {Severity::advisory, Severity::critical, "_critical"},
                              {Severity::warning, Severity::info, ""},
                              {Severity::warning, Severity::advisory, ""},
                              {Severity::warning, Severity::warning, ""},
                              {Severity::warning, Severity::critical, "_critical"},
                              {Severity::critical, Severity::info, ""},
                              {Severity::critical, Severity::advisory, ""},
                              {Severity::critical, Severity::warning, ""},
                              {Severity::critical, Severity::critical, ""}}) {
    alert = test::officialWarning(++number, row.sent, engine.clock.now());
    lookAtAlert();
    EXPECT_THAT(toldOfIt(), ElementsAre(name()));
    alert.severity = row.next;
    lookAtAlert();
    std::string const title = std::string(enumName(row.sent)) + " to " + std::string(enumName(row.next));
    if (row.change[0] == 0) {
      EXPECT_THAT(toldOfIt(), IsEmpty()) << title;
    } else {
      EXPECT_THAT(toldOfIt(), ElementsAre(name(row.change))) << title;
      EXPECT_THAT(engine.center.shown(), testing::Not(testing::Contains(name()))) << title;
    }
    alert.severity = row.sent;
    lookAtAlert();
    alert.severity = row.next;
    lookAtAlert();
    EXPECT_THAT(toldOfIt(), IsEmpty()) << title << ": it falls and rises to what was sent";
  }
}

TEST_F(WarningChanges, BelowTheLevelAreNotSentAndReachingItIsTheFirstSight) {
  alert.severity = Severity::info;
  lookAtAlert();
  alert.expires = *alert.expires + 3h;
  lookAtAlert();
  EXPECT_THAT(engine.told(), IsEmpty());
  alert.severity = Severity::advisory;
  lookAtAlert();
  EXPECT_THAT(engine.told(), ElementsAre(name()));
  alert.severity = Severity::info;
  alert.expires = *alert.expires + 3h;
  lookAtAlert();
  EXPECT_THAT(engine.told(), IsEmpty());
}

TEST_F(WarningChanges, OfTheEndAreMeasuredFromWhatWasSentLast) {
  Instant const first = *alert.expires;
  lookAtAlert();
  engine.told();
  std::vector<std::string> expected;
  for (auto const& [end, isSent] : {std::pair{first + 30min, false},
                                    {first + 60min, false},
                                    {first + 61min, true},
                                    {first + 91min, false},
                                    {first + 121min, false},
                                    {first + 122min, true},
                                    {first + 62min, false},
                                    {first + 61min, true}}) {
    alert.expires = end;
    lookAtAlert();
    bool const isAgain = std::ranges::count(expected, name("_until_" + formatIso8601(end))) > 0;
    std::string const identifier =
        name("_until_" + formatIso8601(end)) + (isAgain ? "_" + formatIso8601(engine.clock.now()) : "");
    auto const told = engine.told();
    EXPECT_EQ(told, isSent ? std::vector{identifier} : std::vector<std::string>{}) << formatIso8601(end);
    if (isSent) expected.push_back(identifier);
  }
  EXPECT_THAT(engine.center.shown(), ElementsAre(expected.back()));
}

TEST_F(WarningChanges, OfLevelAndEndAtOnceAreSentOnce) {
  lookAtAlert();
  alert.severity = Severity::critical;
  alert.expires = *alert.expires + 5h;
  lookAtAlert();
  lookAtAlert();
  EXPECT_THAT(engine.told(), ElementsAre(name(), name("_critical")));
}

TEST_F(WarningChanges, AreRememberedOverARestart) {
  lookAtAlert();
  alert.severity = Severity::warning;
  lookAtAlert();
  alert.expires = *alert.expires + 2h;
  lookAtAlert();
  std::string const until = name("_until_" + formatIso8601(*alert.expires));
  EXPECT_THAT(engine.told(), ElementsAre(name(), name("_warning"), until));
  engine.restart();
  lookAtAlert();
  EXPECT_THAT(engine.told(), IsEmpty());
  callOff();
  EXPECT_THAT(engine.told(), ElementsAre(name("_cancelled")));
  EXPECT_THAT(engine.center.shown(), ElementsAre(name("_cancelled")));
  engine.restart();
  callOff();
  EXPECT_THAT(engine.told(), IsEmpty());
}

TEST_F(WarningChanges, ThatAreCancellationsAreSentOfWhatWasSent) {
  lookAtAlert();
  PassReport const report = callOff();
  EXPECT_THAT(outcomesOf(report), ElementsAre(cancelled));
  EXPECT_EQ(last().identifier, name("_cancelled"));
  EXPECT_EQ(last().title, "Cancelled: Warning 1");
  EXPECT_EQ(last().body, "DHMZ cancelled this warning for Testville (9:30 AM).");
  EXPECT_EQ(last().sound, "weather_warning.caf");
  EXPECT_FALSE(last().isSilent);
  EXPECT_EQ(last().urgency, NotificationUrgency::normal);
  EXPECT_THAT(outcomesOf(callOff()), IsEmpty()) << "once";
  lookAtAlert();
  EXPECT_EQ(last().identifier, name("_again")) << "who was told that it is over must know";
  callOff();
  EXPECT_EQ(last().identifier, name("_cancelled_" + formatIso8601(engine.clock.now())));
}

TEST_F(WarningChanges, ThatAreCancellationsAreSentAlsoWhenTheEventIsBelowTheLevelByThen) {
  lookAtAlert();
  alert.severity = Severity::info;
  for (int i = 0; i < 3; ++i) lookAtAlert();
  EXPECT_THAT(engine.center.shown(), IsEmpty());
  callOff();
  EXPECT_THAT(engine.told(), ElementsAre(name(), name("_cancelled")));
}

TEST_F(WarningChanges, ThatAreCancellationsOfWhatNobodyWasSentAreNot) {
  callOff();
  EXPECT_THAT(engine.told(), IsEmpty()) << "unknown";
  alert.severity = Severity::info;
  lookAtAlert();
  callOff();
  EXPECT_THAT(engine.told(), IsEmpty()) << "below the level";
  alert = test::officialWarning(2, Severity::info, engine.clock.now());
  std::ignore = engine.store.set("notify_govAlertLevel", std::string("low"));
  alert.distanceKm = 20;
  lookAtAlert();
  EXPECT_TRUE(last().isSilent);
  engine.told();
  callOff();
  EXPECT_THAT(engine.told(), IsEmpty()) << "only listed";
  EXPECT_THAT(engine.center.shown(), IsEmpty());
}

TEST_F(WarningChanges, ThatAreCancellationsOfWhatIsOverOrStillInForceAreNotSent) {
  alert.expires = engine.clock.now() + 40min;
  lookAtAlert();
  look({{alert}}, {alert});
  EXPECT_THAT(engine.told(), ElementsAre(name())) << "in force elsewhere";
  callOff();
  EXPECT_THAT(engine.told(), IsEmpty()) << "its end has come";
}

TEST_F(WarningChanges, ThatAreCancellationsAreSentWhileAnotherSourceFails) {
  lookAtAlert();
  engine.clock.advance(15min);
  engine.warnings = std::vector<WeatherAlert>{};
  RuleInputs inputs = engine.here();
  inputs.govAlerts.failure = ServiceFailure::answered(503);
  inputs.calledOff = {alert};
  engine.pass({inputs});
  EXPECT_THAT(engine.told(), ElementsAre(name(), name("_cancelled")));
}

TEST_F(WarningChanges, AtTwoPlacesAreSentOnceAndNameBoth) {
  auto const passAtBoth = [&](std::vector<WeatherAlert> const& calledOff) {
    RuleInputs home = engine.here();
    RuleInputs other = engine.elsewhere("boulder", "Boulder");
    home.calledOff = other.calledOff = calledOff;
    engine.pass({home, other});
  };
  engine.warnings = {alert};
  passAtBoth({});
  engine.warnings = std::vector<WeatherAlert>{};
  passAtBoth({alert});
  EXPECT_THAT(engine.told(), ElementsAre(name(), name("_cancelled")));
  EXPECT_EQ(last().title, "Testville, Boulder: Cancelled: Warning 1");
  EXPECT_THAT(last().body, HasSubstr("for Testville was"));
  EXPECT_THAT(last().body, HasSubstr("for Boulder was"));
}

TEST_F(WarningChanges, WaitForTheEndOfTheQuietHours) {
  lookAtAlert();
  engine.told();
  makeQuiet(true);
  alert.expires = *alert.expires + 2h;
  EXPECT_THAT(outcomesOf(lookAtAlert()), ElementsAre(heldByQuietHours));
  alert.severity = Severity::warning;
  EXPECT_THAT(outcomesOf(lookAtAlert()), ElementsAre(heldByQuietHours));
  alert.severity = Severity::advisory;
  makeQuiet(false);
  lookAtAlert();
  EXPECT_THAT(engine.told(), ElementsAre(name("_until_" + formatIso8601(*alert.expires))));
  makeQuiet(true);
  EXPECT_THAT(outcomesOf(callOff()), ElementsAre(withdrawn)) << "nothing wrong stays on the screen";
  EXPECT_THAT(engine.center.shown(), IsEmpty());
  EXPECT_THAT(outcomesOf(callOff()), ElementsAre(heldByQuietHours));
  makeQuiet(false);
  EXPECT_THAT(outcomesOf(callOff()), ElementsAre(cancelled));
}

TEST_F(WarningChanges, AreHeldBackByAMuteOfTheirKind) {
  lookAtAlert();
  engine.told();
  ASSERT_TRUE(engine.store.set("notify_mutedKinds", "gov:wind"));
  alert.severity = Severity::warning;
  EXPECT_THAT(outcomesOf(lookAtAlert()), ElementsAre(muted));
  callOff();
  EXPECT_THAT(outcomesOf(callOff()), ElementsAre(muted));
  EXPECT_THAT(engine.told(), IsEmpty());
}

TEST_F(WarningChanges, ThatAreSlightAreCountedAndExplained) {
  lookAtAlert();
  EXPECT_EQ(decisionOf(look({{alert}})).note, "") << "the same message";
  for (int i = 0; i < 7; ++i) {
    alert.message += "!";
    lookAtAlert();
  }
  Decision const decision = decisionOf(look({{alert}}));
  EXPECT_EQ(decision.outcome, alreadyDelivered);
  EXPECT_THAT(reasonText(logLineOf(decision, {}), Units::metric(), test::englishTexts()),
              testing::EndsWith("Updated since, but the level has not risen and the end has moved by an hour "
                                "at most."));
  auto const log = notificationLogOf(*engine.store.read(StoreArea::state));
  ASSERT_EQ(log.front().outcome, "announced");
  EXPECT_EQ(log.front().updates, 7);
  EXPECT_THAT(reasonText(log.front(), Units::metric(), test::englishTexts()),
              testing::EndsWith("Updated 7 times."));
  alert.severity = Severity::warning;
  lookAtAlert();
  EXPECT_EQ(decisionOf(look({{alert}})).note, "") << "all of it was sent";
}

TEST_F(WarningChanges, AreCountedByTheIssuersChainWhereItIsKnown) {
  alert.updates = 3;
  lookAtAlert();
  auto log = notificationLogOf(*engine.store.read(StoreArea::state));
  EXPECT_EQ(log.back().updates, 3);
  alert.updates = 6;
  lookAtAlert();
  log = notificationLogOf(*engine.store.read(StoreArea::state));
  EXPECT_EQ(log.front().updates, 6);
}

TEST(CalledOffWarnings, AreSeenByNoOtherRule) {
  RuleInputs with = test::ruleInputs(test::at("2026-06-21T09:00:00Z"));
  with.govAlerts = InputReading<std::vector<WeatherAlert>>::of(std::vector<WeatherAlert>{});
  RuleInputs const without = with;
  with.calledOff = {test::officialWarning(1, Severity::critical, with.now)};
  for (Rule const& rule : ruleCatalogue()) {
    Evaluation const seen = rule.evaluate(with, {});
    EXPECT_EQ(seen.calledOff.empty(), rule.stem != "gov_") << rule.stem;
    EXPECT_EQ(seen.findings.size(), rule.evaluate(without, {}).findings.size()) << rule.stem;
    EXPECT_EQ(seen.note, rule.evaluate(without, {}).note) << rule.stem;
  }
}

/// As the version before wrote it, with an event that is in force.
TEST_F(WarningChanges, OfWhatTheVersionBeforeHasSentAreMeasuredFromThere) {
  std::string const shown = R"({"severity":"warning","digest":"x@en","ends":")" +
                            formatIso8601(*alert.expires) + R"(","hasRung":true,"toldEnds":")" +
                            formatIso8601(*alert.expires) +
                            R"(","title":"Warning 1","kind":"gov:wind","place":"Testville",)"
                            R"("placeTag":"testville","placeTags":["testville"]})";
  auto const open = [&] {
    std::ignore =
        engine.store.update(StoreArea::state, [&](SettingValues const&) -> Result<StoreChanges, StoreError> {
          StoreChanges changes;
          changes.emplace("notif_deliveredIDs", SettingValue(R"([")" + name() + R"("])"));
          changes.emplace("notif_shown", SettingValue(R"({")" + name() + R"(":)" + shown + "}"));
          return changes;
        });
    engine.restart();
  };
  open();
  alert.severity = Severity::warning;
  alert.expires = *alert.expires + 60min;
  lookAtAlert();
  EXPECT_THAT(engine.told(), IsEmpty()) << "level and end are as they were sent";
  alert.expires = *alert.expires + 1min;
  lookAtAlert();
  EXPECT_THAT(engine.told(), ElementsAre(name("_until_" + formatIso8601(*alert.expires))));
  open();
  alert.severity = Severity::critical;
  lookAtAlert();
  EXPECT_THAT(engine.told(), ElementsAre(name("_critical")));
  open();
  callOff();
  EXPECT_THAT(engine.told(), ElementsAre(name("_cancelled")));
}

}  // namespace
}  // namespace nimbara
