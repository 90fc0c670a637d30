#include "support/notification_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::NotificationEngine;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using enum PlaceChoice;

TEST(PlaceChoices, HaveTheirDefaults) {
  struct Row {
    std::optional<PlaceChoice> chosen;
    bool isSelected;
    bool everyPlace;
    PlaceChoice holds;
  };
  for (Row const& row : {Row{{}, true, true, everything}, Row{{}, false, true, severe},
                         Row{{}, true, false, everything}, Row{{}, false, false, nothing},
                         Row{official, true, true, official}, Row{everything, false, false, everything}}) {
    EXPECT_EQ(effectiveChoice(row.chosen, row.isSelected, row.everyPlace), row.holds);
  }
}

/// A storm of which an official warning, a rule of danger and one of comfort tell.
struct Elsewhere : testing::Test {
  Elsewhere() {
    for (auto const* key :
         {"notify_govAlerts", "notify_highWind", "notify_rain", "notify_snow", "notify_storm", "notify_flood",
          "notify_severe", "notify_tempDrop", "notify_beta_outdoorWindow"}) {
      engine.turnOn(key);
    }
    engine.weather = [](WeatherData& data) {
      for (HourlyForecast& hour : data.allHourly) hour.windGustKmph = 120;
      data.allHourly[3].tempC = -15;
    };
    engine.warnings = {test::officialWarning(1, AlertSeverity::warning, engine.clock.now())};
  }

  RuleInputs place(std::optional<PlaceChoice> choice) const {
    RuleInputs inputs = engine.elsewhere("hill", "Hill");
    inputs.place.choice = choice;
    return inputs;
  }
  /// Of a place beside the selected one, of which nothing is chosen to be sent.
  std::vector<std::string> toldWith(std::optional<PlaceChoice> choice) {
    RuleInputs here = engine.here();
    here.place.choice = nothing;
    report = engine.pass({here, place(choice)});
    return engine.told();
  }

  NotificationEngine engine{"2026-11-21T09:20:00Z"};
  std::string warning = test::identifierOf(test::officialWarning(1, AlertSeverity::warning, {}));
  PassReport report;
};

TEST_F(Elsewhere, EverythingIsAsAtTheSelectedPlace) {
  EXPECT_THAT(toldWith(everything), UnorderedElementsAre(warning, "high_wind@hill", "temp_drop@hill"));
}
TEST_F(Elsewhere, DangerIsToldUnlessSomethingElseIsChosen) {
  EXPECT_THAT(toldWith({}), UnorderedElementsAre(warning, "high_wind@hill"));
}
TEST_F(Elsewhere, OfficialWarningsAlone) {
  EXPECT_THAT(toldWith(official), ElementsAre(warning));
}
TEST_F(Elsewhere, NothingAtAll) {
  EXPECT_THAT(toldWith(nothing), IsEmpty());
}

TEST_F(Elsewhere, WhatIsLeftOutSaysSo) {
  std::ignore = toldWith(official);
  std::vector<std::string> notes;
  for (Decision const& decision : report.plan.decisions) {
    if (decision.outcome == RuleOutcome::notChosen && decision.rule->stem == "high_wind") {
      notes.push_back(decision.place + " " + decision.note);
    }
  }
  EXPECT_THAT(notes, UnorderedElementsAre("Testville choice.nothing", "Hill choice.official"));
}

TEST_F(Elsewhere, AConditionIsToldAnewAfterItsPlaceWasSilent) {
  EXPECT_THAT(toldWith(severe), Contains("high_wind@hill"));
  EXPECT_THAT(toldWith(nothing), IsEmpty());
  engine.clock.advance(std::chrono::hours(4));
  engine.warnings.emplace();
  EXPECT_THAT(toldWith(severe), ElementsAre("high_wind@hill"));
}

/// Each place with its own hour and its own day.
TEST(DailyRules, AreOfTheirPlace) {
  NotificationEngine engine("2026-11-21T05:00:00Z");
  engine.turnOn("notify_morningSummary");
  RuleInputs hill = engine.elsewhere("hill", "Hill");
  hill.place.choice = everything;
  engine.pass({engine.here(), hill});
  engine.clock.set(test::at("2026-11-21T07:00:00Z"));
  engine.manager->tellScheduled();
  EXPECT_THAT(engine.told(), UnorderedElementsAre("morning_summary", "morning_summary@hill"));
  EXPECT_THAT(engine.center.delivered().back().title, testing::HasSubstr("Hill"));
}

TEST(DailyRules, AreForgottenWithTheirPlacesChoice) {
  NotificationEngine engine("2026-11-21T05:00:00Z");
  engine.turnOn("notify_morningSummary");
  RuleInputs hill = engine.elsewhere("hill", "Hill");
  hill.place.choice = everything;
  engine.pass({engine.here(), hill});
  hill.place.choice = severe;
  engine.pass({engine.here(), hill});
  engine.clock.set(test::at("2026-11-21T07:00:00Z"));
  engine.manager->tellScheduled();
  EXPECT_THAT(engine.told(), ElementsAre("morning_summary"));
}

TEST(DailyRules, ThatStandAsTheyStoodAreNoNews) {
  NotificationEngine engine("2026-11-21T05:00:00Z");
  engine.turnOn("notify_morningSummary");
  auto const outcome = [&] {
    for (Decision const& decision : engine.pass().plan.decisions) {
      if (decision.rule->stem == "morning_summary") return decision.outcome;
    }
    return RuleOutcome::unknown;
  };
  EXPECT_EQ(outcome(), RuleOutcome::scheduled);
  EXPECT_EQ(outcome(), RuleOutcome::stillScheduled);
  engine.restart();
  EXPECT_EQ(outcome(), RuleOutcome::stillScheduled);
  std::ignore = engine.store.set("notify_morningHour", std::int64_t{9});
  EXPECT_EQ(outcome(), RuleOutcome::scheduled);
  engine.weather = [](WeatherData& data) { data.daily.front().maxTempC += 5; };
  EXPECT_EQ(outcome(), RuleOutcome::scheduled) << "it says something else now";
  EXPECT_EQ(outcome(), RuleOutcome::stillScheduled);
}

}  // namespace
}  // namespace nimbara
