#include "notifications/custom/custom_rule_pass.h"

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

bool isUnknown(CustomOutcome outcome) {
  return outcome == CustomOutcome::noForecast || outcome == CustomOutcome::noDetail;
}

Evaluation evaluationOf(CustomNotification const& rule, RuleInputs const& inputs,
                        CustomEvaluation const& found) {
  Evaluation evaluation;
  if (!found.holds()) {
    evaluation.note = enumName(found.outcome);
    evaluation.isUnknown = isUnknown(found.outcome);
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
                                              RuleSettings const& settings) {
  std::vector<ForeignEvaluation> evaluations;
  for (CustomNotification const& rule : rules) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (!watches(rule, places[i].place)) continue;
      CustomEvaluation const found = evaluateCustomRule(rule, places[i], settings, true);
      evaluations.push_back({&customRow(), i, evaluationOf(rule, places[i], found), rule.title});
    }
  }
  return evaluations;
}

}  // namespace nimbara
