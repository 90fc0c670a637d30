// The user's rules about rain in the next minutes, through whole passes of the engine.
#include "notifications/custom/custom_rule_evaluation.h"
#include "notifications/custom/custom_rule_trial.h"
#include "support/instants.h"
#include "support/notification_engine.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::minutes;
using test::at;
using testing::ElementsAreArray;
using testing::HasSubstr;
using Outcome = CustomOutcome;

constexpr char kStart[] = "2026-11-21T09:00:00Z";
constexpr int kNever = 100'000;

/// Minutes from the start. What falls may be forecast for a while only.
struct Spell {
  int from;
  int to;
  int seenFrom = 0;
  int seenTo = kNever;
};

struct Span {
  int from = kNever;
  int to = kNever;

  bool contains(int minute) const { return minute >= from && minute < to; }
};

struct RainRow {
  std::string_view name;
  int within;
  std::vector<Spell> spells;
  Span unknown;  ///< nobody could be asked
  Span away;     ///< no program runs
  std::vector<int> told;
};

void PrintTo(RainRow const& row, std::ostream* out) {
  *out << row.name;
}

CustomNotification ruleWithin(int minutes) {
  CustomNotification rule;
  rule.id = Uuid::named(Uuid{}, "rain");
  rule.title = "Umbrella";
  rule.conditionType = ConditionType::rainWithin;
  rule.conditionOperator = ConditionOperator::below;
  rule.threshold = minutes;
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  return rule;
}

/// What a radar says at that minute of the next two hours.
Nowcast nowcastAt(int minute, std::vector<Spell> const& spells) {
  Nowcast nowcast{"metNorway", NowcastKind::radar, at(kStart) + minutes(minute), {}};
  for (int from = minute; from < minute + 120; from += 5) {
    bool const isWet = std::ranges::any_of(spells, [&](Spell const& spell) {
      return from >= spell.from && from < spell.to && minute >= spell.seenFrom && minute < spell.seenTo;
    });
    Instant const begin = at(kStart) + minutes(from);
    nowcast.steps.push_back({begin, begin + minutes(5), isWet ? 1.0 : 0.0, Fall::rain});
  }
  return nowcast;
}

class RainRules : public testing::TestWithParam<std::tuple<RainRow, bool>> {};

TEST_P(RainRules, TellEachChangeFromDryToWetOnce) {
  auto const& [row, restarts] = GetParam();
  test::NotificationEngine engine(kStart);
  std::vector<int> told;
  for (int minute = 0; minute <= 240; minute += 5, engine.clock.advance(minutes(5))) {
    if (row.away.contains(minute)) continue;
    if (restarts) engine.restart();
    RuleInputs inputs = engine.here();
    if (row.unknown.contains(minute)) {
      inputs.nowcast.failure = ServiceFailure::answered(503);
    } else {
      inputs.nowcast = InputReading<Nowcast>::of(nowcastAt(minute, row.spells));
    }
    engine.manager->evaluate([&](NeededInputs const&, std::stop_token const&) {
      return PassInputs{{inputs}, {ruleWithin(row.within)}, false};
    });
    told.insert(told.end(), engine.told().size(), minute);
  }
  EXPECT_THAT(told, ElementsAreArray(row.told));
}

RainRow const kRows[] = {
    {"no rain", 30, {}, {}, {}, {}},
    {"rain, half an hour before", 30, {{60, 80}}, {}, {}, {30}},
    {"rain, a step less before", 25, {{60, 80}}, {}, {}, {35}},
    {"rain two hours ahead", 120, {{115, 130}}, {}, {}, {0}},
    {"a pause of 30 minutes", 30, {{60, 80}, {110, 120}}, {}, {}, {30, 85}},
    {"a pause of 25 minutes", 30, {{60, 80}, {105, 120}}, {}, {}, {30}},
    {"a long pause", 30, {{60, 80}, {150, 160}}, {}, {}, {30, 120}},
    {"it rains when the rule is made", 30, {{0, 40}}, {}, {}, {}},
    {"and again after 30 minutes", 30, {{0, 40}, {70, 80}}, {}, {}, {40}},
    {"and again after 25 minutes", 30, {{0, 40}, {65, 80}}, {}, {}, {}},
    {"rain that nobody foresaw", 30, {{60, 80, 60}}, {}, {}, {60}},
    {"rain that did not come", 30, {{60, 80, 0, 45}}, {}, {}, {30}},
    {"and 25 minutes later other rain", 30, {{60, 80, 0, 45}, {70, 90, 50}}, {}, {}, {30}},
    {"and 30 minutes later other rain", 30, {{60, 80, 0, 45}, {75, 90, 50}}, {}, {}, {30, 50}},
    {"rain that is put off", 30, {{60, 80, 0, 40}, {80, 95, 40}}, {}, {}, {30}},
    {"not known while it rains", 30, {{60, 80}}, {20, 100}, {}, {}},
    {"not known before it rains", 30, {{60, 80}}, {20, 50}, {}, {50}},
    {"not known is not dry", 30, {{60, 80}, {150, 160}}, {80, 130}, {}, {30}},
    {"30 dry minutes after it was not known", 30, {{60, 80}, {160, 170}}, {80, 130}, {}, {30, 135}},
    {"a moment not known", 30, {{60, 80}, {150, 160}}, {90, 105}, {}, {30, 120}},
    {"nobody saw it begin", 30, {{50, 80}}, {}, {20, 60}, {}},
    {"back before it begins", 30, {{50, 80}}, {}, {10, 45}, {45}},
    {"away while it rains", 30, {{50, 80}}, {}, {60, 75}, {20}},
};

INSTANTIATE_TEST_SUITE_P(Rows, RainRules, testing::Combine(testing::ValuesIn(kRows), testing::Bool()));

RuleInputs inputsWith(Nowcast nowcast) {
  RuleInputs inputs = test::ruleInputs(at(kStart));
  inputs.nowcast = InputReading<Nowcast>::of(std::move(nowcast));
  return inputs;
}

TEST(RainRule, SaysWhyItCannotLook) {
  RuleInputs inputs = test::ruleInputs(at(kStart));
  EXPECT_EQ(measuredRule(ruleWithin(30), inputs, {}).outcome, Outcome::feedFailed);
  EXPECT_EQ(measuredRule(ruleWithin(30), inputsWith({}), {}).outcome, Outcome::noRadar);
  Nowcast nowcast = nowcastAt(0, {});
  for (NowcastStep& step : nowcast.steps) step.mmPerHour.reset();
  EXPECT_EQ(measuredRule(ruleWithin(30), inputsWith(nowcast), {}).outcome, Outcome::noForecast);
}

TEST(RainRule, IsMeasuredInMinutes) {
  RuleInputs const inputs = inputsWith(nowcastAt(0, {{30, 70}}));
  CustomEvaluation const found = measuredRule(ruleWithin(30), inputs, {});
  EXPECT_TRUE(found.holds());
  EXPECT_EQ(found.value, 30);
  EXPECT_EQ(customRuleBody(ruleWithin(30), found, inputs),
            "Rain starting around 9:30 AM, for about 40 minutes");
  EXPECT_EQ(measuredRule(ruleWithin(25), inputs, {}).outcome, Outcome::doesNotHold);
  RuleTrial const trial = triedRule(ruleWithin(25), inputs, {});
  EXPECT_EQ(trial.outcome, Outcome::holds);
  EXPECT_EQ(trial.ringsAt, at(kStart) + minutes(5));
  EXPECT_EQ(triedRule(ruleWithin(25), inputsWith(nowcastAt(0, {})), {}).outcome, Outcome::doesNotHold);
}

TEST(RainRule, HasBounds) {
  for (auto const& [minutes, isPossible] : {std::pair(4, false), {5, true}, {120, true}, {121, false}})
    EXPECT_EQ(faultOf(ruleWithin(minutes)) == std::nullopt, isPossible) << minutes;
  CustomNotification atSeven = ruleWithin(30);
  atSeven.checkHour = 7;
  EXPECT_THAT(*faultOf(atSeven), HasSubstr("an hour of the day"));
  CustomNotification above = ruleWithin(30);
  above.conditionOperator = ConditionOperator::above;
  EXPECT_NE(faultOf(above), std::nullopt);
}

}  // namespace
}  // namespace nimbara
