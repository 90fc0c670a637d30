#include "support/notification_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::identifierOf;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kBegin[] = "2026-11-21T09:00:00Z";

/// What becomes of one official warning as passes follow one another.
struct WarningEvents : testing::Test {
  WarningEvents() {
    engine.turnOn("notify_govAlerts");
    engine.pass();  // from here on what begins is news
  }

  WeatherAlert warning(AlertSeverity severity = AlertSeverity::advisory) const {
    return test::officialWarning(1, severity, engine.clock.now());
  }
  /// The outcome of the first decision about a warning.
  static RuleOutcome outcomeOf(PassReport const& report) {
    for (Decision const& decision : report.plan.decisions) {
      if (decision.key.starts_with("gov_")) return decision.outcome;
    }
    return RuleOutcome::conditionFalse;
  }
  RuleOutcome outcomeAfter(std::chrono::minutes span, std::vector<WeatherAlert> warnings) {
    engine.warnings = std::move(warnings);
    return outcomeOf(engine.passAfter(span));
  }
  NotificationRequest last() const { return engine.center.delivered().back(); }

  test::NotificationEngine engine{kBegin};
};

TEST_F(WarningEvents, TellOnceOfAnEndThatMovesInPlaceOfWhatWasShown) {
  WeatherAlert alert = warning();
  alert.event = "HR|wind|EMMA_ID:HR001";
  alert.areaDesc = "Coast";
  alert.text = "Wind";
  EXPECT_EQ(outcomeAfter(0min, {alert}), RuleOutcome::announced);
  EXPECT_THAT(last().body, testing::StartsWith("Coast, until "));
  for (auto const move : {61min, -61min}) {
    alert.expires = *alert.expires + move;
    EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::endMoved) << move.count();
    EXPECT_FALSE(last().isSilent);
    EXPECT_EQ(last().urgency, NotificationUrgency::normal);
    EXPECT_THAT(last().identifier,
                testing::StartsWith(identifierOf(alert) + "_until_" + formatIso8601(*alert.expires)));
    EXPECT_THAT(engine.center.shown(), ElementsAre(last().identifier));
    EXPECT_THAT(last().body, testing::StartsWith("Now in effect until "));
    EXPECT_EQ(last().body.find("until", 20), std::string::npos) << "once: " << last().body;
    EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::alreadyDelivered);
  }
}

TEST_F(WarningEvents, SayOnceThatTheyWereLifted) {
  WeatherAlert const alert = warning();
  EXPECT_EQ(outcomeAfter(0min, {alert}), RuleOutcome::announced);
  EXPECT_EQ(outcomeAfter(5min, {}), RuleOutcome::absent);
  EXPECT_EQ(outcomeAfter(14min, {}), RuleOutcome::absent) << "feeds drop one for a moment";
  EXPECT_EQ(outcomeAfter(1min, {}), RuleOutcome::lifted);
  EXPECT_TRUE(last().isSilent);
  EXPECT_EQ(last().identifier, identifierOf(alert) + "_lifted");
  EXPECT_EQ(last().title, "Lifted: Warning 1");
  EXPECT_EQ(outcomeAfter(15min, {}), RuleOutcome::conditionFalse);
  EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::announced) << "who was told that it is over must know";
  EXPECT_EQ(last().identifier, identifierOf(alert) + "_again");
}

TEST_F(WarningEvents, AreNotLiftedWhenNobodyLooksAtThePlaceAnyMore) {
  WeatherAlert const alert = warning();
  engine.warnings = {alert};
  RuleInputs other = engine.elsewhere("boulder", "Boulder");
  RuleInputs home = engine.here();
  home.govAlerts = InputReading<std::vector<WeatherAlert>>::of(std::vector<WeatherAlert>{});
  engine.pass({home, other});
  engine.warnings = std::vector<WeatherAlert>{};
  engine.passAfter(15min);
  engine.passAfter(15min);
  EXPECT_EQ(engine.center.delivered().size(), 1);
  EXPECT_THAT(engine.center.withdrawn(), ElementsAre(identifierOf(alert)));
}

TEST_F(WarningEvents, AreNotLiftedWhenTheyAreOnlySlighterOrTheNightIsQuiet) {
  WeatherAlert alert = warning();
  EXPECT_EQ(outcomeAfter(0min, {alert}), RuleOutcome::announced);
  alert.severity = AlertSeverity::info;
  EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::absent);
  EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::withdrawn);
  WeatherAlert other = test::officialWarning(2, AlertSeverity::warning, engine.clock.now());
  EXPECT_EQ(outcomeAfter(15min, {other}), RuleOutcome::announced);
  std::ignore = engine.store.set("notify_quietHours", true);
  std::ignore = engine.store.set("notify_quietFrom", 0);
  std::ignore = engine.store.set("notify_quietUntil", 23);
  EXPECT_EQ(outcomeAfter(15min, {}), RuleOutcome::absent);
  EXPECT_EQ(outcomeAfter(15min, {}), RuleOutcome::withdrawn);
}

TEST_F(WarningEvents, AreNotLiftedWhileTheLikeIsInForceInTheNextRegion) {
  WeatherAlert near = warning(AlertSeverity::critical);
  near.distanceKm = 20;
  near.event = "HR|wind|EMMA_ID:HR002";
  EXPECT_EQ(outcomeAfter(0min, {near}), RuleOutcome::announced);
  WeatherAlert own = test::officialWarning(2, AlertSeverity::advisory, engine.clock.now());
  own.event = "HR|wind|EMMA_ID:HR001";
  engine.warnings = {own};
  engine.passAfter(15min);
  engine.passAfter(15min);
  EXPECT_THAT(engine.told(), ElementsAre(identifierOf(near), identifierOf(own)));
  EXPECT_THAT(engine.center.withdrawn(), ElementsAre(identifierOf(near)));
  EXPECT_EQ(outcomeAfter(15min, {}), RuleOutcome::absent);
  EXPECT_EQ(outcomeAfter(15min, {}), RuleOutcome::lifted);
}

TEST_F(WarningEvents, AreNotLiftedWhileTheFeedFails) {
  EXPECT_EQ(outcomeAfter(0min, {warning()}), RuleOutcome::announced);
  engine.warnings.reset();
  for (int i = 0; i < 10; ++i) engine.passAfter(15min);
  EXPECT_EQ(engine.center.delivered().size(), 1);
  EXPECT_THAT(engine.center.withdrawn(), IsEmpty());
}

TEST_F(WarningEvents, ThatWereOnlyNearRingWhenTheyReachThePlace) {
  WeatherAlert alert = warning(AlertSeverity::info);
  std::ignore = engine.store.set("notify_govAlertLevel", std::string("low"));
  alert.distanceKm = 20;
  EXPECT_EQ(outcomeAfter(0min, {alert}), RuleOutcome::listed);
  alert.severity = AlertSeverity::advisory;
  EXPECT_NE(outcomeAfter(15min, {alert}), RuleOutcome::escalated) << "still slight and near";
  alert.distanceKm.reset();
  EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::announced);
  alert.distanceKm = 20;
  EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::alreadyDelivered);
}

TEST_F(WarningEvents, SayThatTheyAreOnlyNear) {
  WeatherAlert near = warning(AlertSeverity::warning);
  near.distanceKm = 20;
  EXPECT_EQ(outcomeAfter(0min, {near}), RuleOutcome::announced);
  EXPECT_EQ(last().body, "Take care.\nNear Testville: the warned area starts 20 km away.");
  near.distanceKm = 12;
  EXPECT_EQ(outcomeAfter(15min, {near}), RuleOutcome::alreadyDelivered) << "the event is what it was";
  near.expires = *near.expires + 3h;
  EXPECT_EQ(outcomeAfter(15min, {near}), RuleOutcome::endMoved);
  EXPECT_TRUE(last().body.ends_with("Near Testville: the warned area starts 12 km away.")) << last().body;
}

TEST_F(WarningEvents, ThatRangAsNearOnesAreReplacedInSilenceWhenTheyReachThePlace) {
  WeatherAlert alert = warning(AlertSeverity::warning);
  alert.distanceKm = 20;
  EXPECT_EQ(outcomeAfter(0min, {alert}), RuleOutcome::announced);
  alert.distanceKm.reset();
  EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::updated);
  EXPECT_EQ(engine.center.updated().back().body, "Take care.");
  EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::alreadyDelivered);
  alert.distanceKm = 20;
  EXPECT_EQ(outcomeAfter(15min, {alert}), RuleOutcome::alreadyDelivered);
}

TEST_F(WarningEvents, SayOfEachPlaceWhetherTheyAreOnlyNear) {
  WeatherAlert alert = warning(AlertSeverity::warning);
  auto const at = [&](std::optional<double> here, std::optional<double> there) {
    alert.distanceKm = here;
    engine.warnings = {alert};
    RuleInputs const home = engine.here();
    alert.distanceKm = there;
    engine.warnings = {alert};
    alert.id = Uuid::random();
    return engine.pass({home, engine.elsewhere("boulder", "Boulder")});
  };
  at({}, 34);
  EXPECT_EQ(last().title, "Testville, Boulder: Warning 1");
  EXPECT_EQ(last().body, "Take care.\nNear Boulder: the warned area starts 34 km away.");
  at(20, {});
  EXPECT_EQ(last().body, "Take care.\nNear Testville: the warned area starts 20 km away.");
  at(20, 34);
  EXPECT_EQ(last().body,
            "Take care.\nNear Testville: the warned area starts 20 km away.\n"
            "Near Boulder: the warned area starts 34 km away.");
}

TEST_F(WarningEvents, AreKnownByWhatTheyAreAboutWhenTheirIdentifierIsLost) {
  WeatherAlert alert = warning();
  alert.event = "HR|wind|EMMA_ID:HR001";
  EXPECT_EQ(outcomeAfter(0min, {alert}), RuleOutcome::announced);
  engine.restart();
  WeatherAlert next = alert;
  next.id = Uuid::named(Uuid{}, "another");
  next.onset = *alert.expires;
  next.expires = *alert.expires + 30min;
  EXPECT_EQ(outcomeAfter(15min, {next}), RuleOutcome::alreadyDelivered);
  EXPECT_EQ(outcomeAfter(15min, {next}), RuleOutcome::alreadyDelivered);
  next.event = "HR|rain|EMMA_ID:HR001";
  EXPECT_EQ(outcomeAfter(15min, {alert, next}), RuleOutcome::announced);
}

TEST_F(WarningEvents, ToldByAnOlderVersionDoNotRingAgain) {
  WeatherAlert alert = warning();
  alert.event = "HR|wind|EMMA_ID:HR001";
  std::string const old = "gov_" + Uuid::named(Uuid{}, "as it was named").text();
  std::ignore =
      engine.store.update(StoreArea::state, [&](SettingValues const&) -> Result<StoreChanges, StoreError> {
        StoreChanges changes;
        changes.emplace("notif_deliveredIDs", SettingValue(R"([")" + old + R"("])"));
        changes.emplace("notif_shown",
                        SettingValue(R"({")" + old + R"(":{"severity":"advisory","digest":"x","ends":")" +
                                     formatIso8601(*alert.expires) + R"("}})"));
        return changes;
      });
  engine.restart();
  WeatherAlert other = test::officialWarning(2, AlertSeverity::advisory, engine.clock.now());
  other.event = "HR|rain|EMMA_ID:HR001";
  engine.warnings = {alert, other};
  engine.passAfter(15min);
  EXPECT_THAT(engine.told(), ElementsAre(identifierOf(other))) << "one of them was told";
  other.severity = AlertSeverity::critical;
  engine.warnings = {alert, other};
  engine.passAfter(15min);
  EXPECT_THAT(engine.told(), ElementsAre(identifierOf(other) + "_critical"));
}

TEST_F(WarningEvents, OfPartsThatCannotBePlacedRingFromCriticalOnly) {
  for (auto const severity : {AlertSeverity::warning, AlertSeverity::critical}) {
    RuleInputs inputs = engine.here();
    inputs.place.countryCode = "HR";
    WeatherAlert alert = test::officialWarning(static_cast<int>(severity), severity, engine.clock.now());
    alert.areaDesc = "Velebit channel";
    inputs.unplacedAlerts = {alert};
    PassReport const report = engine.pass({inputs});
    bool const rings = severity == AlertSeverity::critical;
    EXPECT_EQ(outcomeOf(report), rings ? RuleOutcome::announced : RuleOutcome::conditionFalse);
    EXPECT_EQ(engine.center.delivered().size(), rings ? 1 : 0);
    if (!rings) continue;
    EXPECT_NE(last().body.find("parts of Croatia that could not be located: Velebit channel"),
              std::string::npos)
        << last().body;
  }
}

TEST_F(WarningEvents, OfTwoPartsThatCannotBePlacedAreTwo) {
  auto const alertIn = [&](int number, std::string const& area) {
    WeatherAlert alert = test::officialWarning(number, AlertSeverity::critical, engine.clock.now());
    alert.areaDesc = area;
    alert.event = "HR|wind|unplaced:" + area;
    return alert;
  };
  RuleInputs inputs = engine.here();
  inputs.place.countryCode = "HR";
  inputs.unplacedAlerts = {alertIn(1, "Velebit channel"), alertIn(2, "Outer islands")};
  engine.pass({inputs});
  EXPECT_EQ(engine.center.delivered().size(), 2);
  inputs.unplacedAlerts.pop_back();
  for (int i = 0; i < 3; ++i) {
    engine.clock.advance(15min);
    inputs.now = engine.clock.now();
    engine.pass({inputs});
  }
  EXPECT_EQ(engine.center.delivered().size(), 3);
  EXPECT_EQ(last().title, "Lifted: Warning 2");
}

}  // namespace
}  // namespace nimbara
