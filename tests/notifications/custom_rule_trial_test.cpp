#include "notifications/custom/custom_rule_trial.h"

#include "support/rules.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using Type = ConditionType;
using Operator = ConditionOperator;

constexpr char kSaturdayMorning[] = "2026-11-21T09:20:00Z";

/// Gusts of 62 km/h on Sunday from 14:00 to 15:00 UTC.
RuleInputs windyInputs() {
  return ruleInputs(at(kSaturdayMorning), [](WeatherData& data) { data.allHourly[29].windGustKmph = 62; });
}

CustomNotification gustRule(double threshold, int lookahead = 0) {
  CustomNotification rule;
  rule.id = Uuid::random();
  rule.conditionType = Type::windGust;
  rule.threshold = threshold;
  rule.lookaheadHours = lookahead;
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  return rule;
}

std::string tried(CustomNotification const& rule, RuleInputs const& inputs) {
  return trialText(rule, triedRule(rule, inputs, {}), inputs);
}

TEST(RuleTrials, TellWhenARuleRingsFirst) {
  EXPECT_EQ(tried(gustRule(50), windyInputs()),
            "Next notification, Sunday 2:00 PM: “Wind gust above 50.0km/h now: now 62.0km/h”");
  EXPECT_EQ(tried(gustRule(50, 6), windyInputs()),
            "Next notification, Sunday 8:00 AM: “Wind gust above 50.0km/h in the next 6 hours: 62.0km/h "
            "around 2 PM”");
  CustomNotification atSeven = gustRule(50, 12);
  atSeven.checkHour = 7;
  EXPECT_EQ(triedRule(atSeven, windyInputs(), {}).ringsAt, at("2026-11-22T07:00:00Z"));
  atSeven.scheduledDays.erase(DayOfWeek::sunday);
  EXPECT_EQ(triedRule(atSeven, windyInputs(), {}).outcome, CustomOutcome::doesNotHold);
}

TEST(RuleTrials, TryWhatIsSwitchedOff) {
  CustomNotification rule = gustRule(50);
  rule.isEnabled = false;
  EXPECT_EQ(triedRule(rule, windyInputs(), {}).outcome, CustomOutcome::holds);
}

TEST(RuleTrials, TellWhatRingsNow) {
  RuleInputs inputs = ruleInputs(at(kSaturdayMorning));
  CustomNotification rule = gustRule(-1);
  rule.conditionType = Type::humidity;
  EXPECT_TRUE(tried(rule, inputs).starts_with("Would notify you now: “Humidity above -1% now: "))
      << tried(rule, inputs);
}

TEST(RuleTrials, TellWhatComesNearest) {
  EXPECT_EQ(tried(gustRule(62), windyInputs()),
            "Not expected through Wednesday 9:00 AM. Closest: 62.0km/h, Sunday 2:00 PM, 0.0km/h short of the "
            "limit.");
  EXPECT_EQ(tried(gustRule(80), windyInputs()),
            "Not expected through Wednesday 9:00 AM. Closest: 62.0km/h, Sunday 2:00 PM, 18.0km/h short of "
            "the limit.");
  CustomNotification thunder = gustRule(0);
  thunder.conditionType = Type::thunder;
  thunder.conditionOperator = Operator::any;
  RuleInputs const inputs =
      ruleInputs(at(kSaturdayMorning), [](WeatherData& data) { data.allHourly[3].chanceOfThunder = 49; });
  EXPECT_EQ(tried(thunder, inputs), "Not expected through Wednesday 9:00 AM. Highest chance: 49%, 12:00 PM.");
}

TEST(RuleTrials, SayWhyNothingCanBeKnown) {
  RuleInputs nothing = ruleInputs(at(kSaturdayMorning));
  nothing.weather = nullptr;
  nothing.hours = {};
  nothing.present.reset();
  EXPECT_EQ(triedRule(gustRule(50), nothing, {}).outcome, CustomOutcome::noForecast);
  CustomNotification dust = gustRule(10);
  dust.conditionType = Type::airQuality;
  EXPECT_EQ(tried(dust, nothing), "The data it needs could not be fetched.");
  CustomNotification shaking = gustRule(4);
  shaking.conditionType = Type::earthquake;
  nothing.earthquakes = InputReading<std::vector<EarthquakeEvent>>::of(std::vector<EarthquakeEvent>{});
  EXPECT_EQ(tried(shaking, nothing), "No such earthquake recently.");
}

TEST(RuleTrials, OnNoDaySayNothingOfValues) {
  CustomNotification rule = gustRule(50);
  rule.scheduledDays = {};
  EXPECT_EQ(tried(rule, windyInputs()), "Not expected through Wednesday 9:00 AM.");
}

}  // namespace
}  // namespace nimbara
