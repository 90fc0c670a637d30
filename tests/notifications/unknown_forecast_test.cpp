// Rules on forecasts whose provider leaves values out: what nobody knows is neither "none" nor "calm".
#include "notifications/custom/custom_rule_evaluation.h"
#include "notifications/rules/daily_rules.h"
#include "notifications/rules/weather_rules.h"
#include "notifications/sky/sky_rules.h"
#include "support/rules.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using Code = WeatherConditionCode;

// June at noon, where mosquitoes fly and rain would be sent.
constexpr char kNow[] = "2026-06-15T12:20:00Z";

struct Row {
  std::string_view what;
  EvaluateRule rule;
  ForecastValues unknown;
};

TEST(UnknownForecast, IsADetailThatRulesLack) {
  using enum ForecastValue;
  for (Row const& row :
       {Row{"umbrella", umbrellaReminder, {precipitationChance}},
        Row{"rain starts", rainStart, {precipitationChance}},
        Row{"rain stops", rainStop, {precipitationChance}},
        Row{"snow starts", snowStart, {precipitationChance}},
        Row{"heavy rain by chance", heavyRain, {precipitationChance}},
        Row{"heavy rain by amount", heavyRain, {precipitation}}, Row{"flood", flood, {precipitation}},
        Row{"calm air of spiders", spiderBallooning, {windSpeed}},
        Row{"calm air of mosquitoes", mosquitoSwarm, {windSpeed}}}) {
    RuleInputs const known = test::ruleInputs(at(kNow));
    EXPECT_NE(row.rule(known, {}).note, "noDetail") << row.what;
    RuleInputs const unknown = test::ruleInputs(at(kNow), [&](WeatherData& data) {
      data.current.unknownValues = row.unknown;
      for (HourlyForecast& hour : data.allHourly) hour.unknownValues = row.unknown;
      for (DailyForecast& day : data.daily) {
        for (HourlyForecast& hour : day.hourly) hour.unknownValues = row.unknown;
      }
    });
    Evaluation const found = row.rule(unknown, {});
    EXPECT_EQ(found.note, "noDetail") << row.what;
    EXPECT_TRUE(found.findings.empty()) << row.what;
  }
}

TEST(UnknownForecast, DoesNotEndTheRain) {
  auto const rainy = [](WeatherData& data) {
    data.current.condition = Code::lightRain;
    for (HourlyForecast& hour : data.allHourly) hour.unknownValues = {ForecastValue::precipitationChance};
  };
  EXPECT_EQ(rainStop(test::ruleInputs(at(kNow), rainy), {}).note, "noDetail");
}

TEST(UnknownForecast, IsNoSampleOfOwnRules) {
  CustomNotification rule;
  rule.conditionType = ConditionType::precipitation;
  rule.conditionOperator = ConditionOperator::below;
  rule.threshold = 1;
  rule.lookaheadHours = 3;
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  EXPECT_TRUE(measuredRule(rule, test::ruleInputs(at(kNow)), {}).holds());
  auto const unknown = test::ruleInputs(at(kNow), [](WeatherData& data) {
    data.current.unknownValues = ForecastValues::all();
    for (HourlyForecast& hour : data.allHourly) hour.unknownValues = ForecastValues::all();
  });
  EXPECT_EQ(measuredRule(rule, unknown, {}).outcome, CustomOutcome::noDetail);
  rule.lookaheadHours = 0;
  EXPECT_EQ(measuredRule(rule, unknown, {}).outcome, CustomOutcome::noDetail);
}

}  // namespace
}  // namespace nimbara
