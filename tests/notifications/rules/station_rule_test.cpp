// The user's rules about what the own weather station measures.
#include "feeds/stations/station_reading.h"
#include "notifications/custom/custom_rule_evaluation.h"
#include "notifications/custom/custom_rule_trial.h"
#include "support/instants.h"
#include "support/rules.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using enum StationQuantity;
using std::chrono::minutes;
using test::at;
using Kind = StationModuleKind;
using Outcome = CustomOutcome;
using Type = ConditionType;

constexpr char kNow[] = "2026-11-21T09:20:00Z";

struct StationRow {
  std::string_view name;
  Type type;
  ConditionOperator comparison;
  double threshold;
  std::optional<StationModule> module;  ///< nothing: no station is linked
  bool isFailed;
  Outcome outcome;
};

void PrintTo(StationRow const& row, std::ostream* out) {
  *out << row.name;
}

StationModule measured(Kind kind, StationQuantity quantity, double value, int minutesAgo) {
  return {.kind = kind, .observedAt = at(kNow) - minutes(minutesAgo), .values = {{quantity, value}}};
}

class StationRules : public testing::TestWithParam<StationRow> {};

TEST_P(StationRules, LookAtWhatIsMeasuredNow) {
  StationRow const& row = GetParam();
  RuleInputs inputs = test::ruleInputs(at(kNow));
  if (row.module) inputs.station = InputReading<StationReading>::of({.id = "s", .modules = {*row.module}});
  if (row.isFailed) inputs.station.failure = ServiceFailure::answered(503);
  CustomNotification rule;
  rule.conditionType = row.type;
  rule.conditionOperator = row.comparison;
  rule.threshold = row.threshold;
  rule.lookaheadHours = 24;
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  EXPECT_EQ(measuredRule(rule, inputs, {}).outcome, row.outcome);
  EXPECT_EQ(triedRule(rule, inputs, {}).outcome, row.outcome) << "a trial knows nothing of later";
}

INSTANTIATE_TEST_SUITE_P(
    Of, StationRules,
    testing::Values(StationRow{"frost", Type::stationTemperature, ConditionOperator::below, 0,
                               measured(Kind::outdoor, temperature, -0.1, 30), false, Outcome::holds},
                    StationRow{"no frost", Type::stationTemperature, ConditionOperator::below, 0,
                               measured(Kind::outdoor, temperature, 0, 4), false, Outcome::doesNotHold},
                    StationRow{"frost of earlier", Type::stationTemperature, ConditionOperator::below, 0,
                               measured(Kind::outdoor, temperature, -5, 31), false, Outcome::stationSilent},
                    StationRow{"the rooms", Type::stationTemperature, ConditionOperator::above, 20,
                               measured(Kind::base, temperature, 21, 4), false, Outcome::noStation},
                    StationRow{"a silent gauge", Type::stationRain, ConditionOperator::above, 1,
                               StationModule{.kind = Kind::rain, .isReachable = false}, false,
                               Outcome::stationSilent},
                    StationRow{"no gauge", Type::stationWind, ConditionOperator::above, 1,
                               measured(Kind::rain, rainLastHour, 3, 4), false, Outcome::noStation},
                    StationRow{"rain", Type::stationRain, ConditionOperator::above, 2,
                               measured(Kind::rain, rainLastHour, 3, 4), false, Outcome::holds},
                    StationRow{"moist", Type::stationHumidity, ConditionOperator::above, 90,
                               measured(Kind::outdoor, humidity, 91, 4), false, Outcome::holds},
                    StationRow{"what was measured before a failure", Type::stationWind,
                               ConditionOperator::above, 40, measured(Kind::wind, windSpeed, 41, 20), true,
                               Outcome::holds},
                    StationRow{"a failure", Type::stationWind, ConditionOperator::above, 40,
                               measured(Kind::wind, windSpeed, 41, 40), true, Outcome::feedFailed},
                    StationRow{"a failure from the first", Type::stationWind, ConditionOperator::above, 40,
                               std::nullopt, true, Outcome::feedFailed},
                    StationRow{"no station", Type::stationWind, ConditionOperator::above, 40, std::nullopt,
                               false, Outcome::noStation}),
    [](auto const& row) {
      std::string name(row.param.name);
      std::ranges::replace(name, ' ', '_');
      return name;
    });

TEST(StationRuleTexts, SayWhatIsMeasured) {
  RuleInputs inputs = test::ruleInputs(at(kNow));
  inputs.station = InputReading<StationReading>::of(
      {.id = "s", .modules = {measured(Kind::outdoor, temperature, -1.24, 4)}});
  CustomNotification rule;
  rule.conditionType = Type::stationTemperature;
  rule.conditionOperator = ConditionOperator::below;
  EXPECT_EQ(customRuleBody(rule, measuredRule(rule, inputs, {}), inputs),
            "Temperature at your station below 0.0°C now: now -1.2°C");
}

}  // namespace
}  // namespace nimbara
