// Rules of the user's own tried on a forecast, about the own station, and about rain in the next minutes.
#include "feeds/stations/station_reading.h"
#include "notifications/custom/custom_rule_evaluation.h"
#include "notifications/custom/custom_rule_trial.h"
#include "support/instants.h"
#include "support/notification_engine.h"
#include "support/rules.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::minutes;
using test::at;
using testing::ElementsAreArray;
using testing::HasSubstr;
using Kind = StationModuleKind;
using Operator = ConditionOperator;
using Outcome = CustomOutcome;
using Type = ConditionType;
using enum StationQuantity;
using namespace nimbara::test;

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
