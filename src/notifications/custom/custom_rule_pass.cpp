#include "notifications/custom/custom_rule_pass.h"

#include "analysis/precip_predictor.h"
#include "notifications/custom/condition_kinds.h"
#include "notifications/custom/custom_rule_evaluation.h"

namespace nimbara {

namespace {

bool watches(CustomNotification const& rule, NotifiedPlace const& place) {
  if (!rule.isEnabled) return false;
  return rule.locationID ? rule.locationID == place.id : place.isSelected;
}

/// The row of every rule of the user's own: gates are its own, each is sent once on a scheduled day.
Rule const& customRow() {
  static constexpr Rule kRow{.stem = "custom_",
                             .setting = "customNotifications",
                             .policy = RulePolicy::daily,
                             .inputs = {},
                             .sound = "weather_warning.caf",
                             .evaluate = nullptr};
  return kRow;
}

/// Of rules about rain in the next minutes: once for each change from dry to wet.
Rule const& rainRow() {
  static constexpr Rule kRow{.stem = "custom_",
                             .setting = "customNotifications",
                             .policy = RulePolicy::condition,
                             .inputs = {RuleInput::nowcast},
                             .sound = "weather_warning.caf",
                             .evaluate = nullptr};
  return kRow;
}

Evaluation evaluationOf(CustomNotification const& rule, RuleInputs const& inputs,
                        CustomEvaluation const& found) {
  Evaluation evaluation;
  if (!found.holds()) {
    evaluation.note = enumName(found.outcome);
    // A feed that fails says so itself.
    evaluation.isUnknown = isUnknown(found.outcome) && found.outcome != CustomOutcome::feedFailed;
    return evaluation;
  }
  Finding& finding = evaluation.findings.emplace_back();
  finding.identifier = rule.identifier();
  finding.title = rule.title;
  finding.body = customRuleBody(rule, found, inputs);
  finding.sound = kindOf(rule.conditionType).sound;
  finding.kind = rule.identifier();
  return evaluation;
}

/// What is found counts while it is the news of a change.
ForeignEvaluation rainEvaluation(CustomNotification const& rule, RuleInputs const& inputs,
                                 CustomEvaluation found, RainMemories const& rain) {
  ForeignEvaluation foreign;
  foreign.rule = &rainRow();
  foreign.title = rule.title;
  foreign.key = rule.identifier() + "@" + inputs.place.tag;
  auto const before = rain.find(foreign.key);
  RainMemory memory = before == rain.end() ? RainMemory() : before->second;
  bool const isLooked = found.outcome == CustomOutcome::holds || found.outcome == CustomOutcome::doesNotHold;
  if (isLooked) {
    std::chrono::minutes const within{static_cast<int>(rule.threshold)};
    memory = remembered(memory, rainOutlook(inputs), inputs.now, within);
    found.outcome = memory.isTold ? CustomOutcome::holds : CustomOutcome::doesNotHold;
  }
  foreign.evaluation = evaluationOf(rule, inputs, found);
  foreign.evaluation.isUnknown = !isLooked;
  foreign.rain = memory;
  return foreign;
}

}  // namespace

RuleInputSet inputsOf(std::span<CustomNotification const> rules, NotifiedPlace const& place) {
  RuleInputSet inputs;
  for (CustomNotification const& rule : rules) {
    if (watches(rule, place)) inputs.insertAll(inputsOf(rule.conditionType));
  }
  return inputs;
}

std::vector<ForeignEvaluation> evaluatedRules(std::span<CustomNotification const> rules,
                                              std::span<RuleInputs const> places,
                                              RuleSettings const& settings, RainMemories const& rain) {
  std::vector<ForeignEvaluation> evaluations;
  for (CustomNotification const& rule : rules) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (!watches(rule, places[i].place)) continue;
      CustomEvaluation const found = evaluateCustomRule(rule, places[i], settings, true);
      if (rule.conditionType == ConditionType::rainWithin) {
        evaluations.push_back(rainEvaluation(rule, places[i], found, rain));
        evaluations.back().place = i;
        continue;
      }
      evaluations.push_back({&customRow(), i, evaluationOf(rule, places[i], found), rule.title});
    }
  }
  return evaluations;
}

}  // namespace nimbara
