#include "notifications/custom/custom_rule_trial.h"

#include "base/words/time_words.h"
#include "notifications/custom/condition_kinds.h"
#include "notifications/custom/custom_rule_text.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

bool isOfEarthquakes(CustomNotification const& rule) {
  return rule.conditionType == ConditionType::earthquake;
}

/// What it measures later nobody knows.
bool isOfStation(CustomNotification const& rule) {
  return kindOf(rule.conditionType).isOfStation();
}

/// The end of what the inputs know of the rule's subject.
Instant knownUntil(CustomNotification const& rule, RuleInputs const& inputs) {
  Instant until = inputs.now;
  if (isOfEarthquakes(rule) || isOfStation(rule)) return until;
  if (rule.conditionType == ConditionType::airQuality) {
    if (!inputs.airQuality) return until;
    for (AirQualityHour const& hour : inputs.airQuality->hours) until = std::max(until, hour.time + 1h);
    return until;
  }
  if (!inputs.hours.empty()) until = std::max(until, inputs.hours.back().date + 1h);
  return until;
}

CustomEvaluation evaluatedAt(Instant moment, CustomNotification const& rule, RuleInputs const& inputs,
                             RuleSettings const& settings) {
  RuleInputs then = inputs;
  then.now = moment;
  if (then.weather) then.readWeather();
  return evaluateCustomRule(rule, then, settings, true);
}

void adopt(RuleTrial& trial, CustomEvaluation const& found, Instant moment) {
  bool const isNearer = found.margin && (!trial.found.margin || *found.margin > *trial.found.margin);
  if (found.holds() || isNearer) trial.found = found;
  if (!found.holds()) return;
  trial.outcome = CustomOutcome::holds;
  trial.ringsAt = moment;
}

/// Rain that begins later is told so many minutes before.
RuleTrial triedRain(CustomNotification const& rule, RuleInputs const& inputs, RuleSettings const& settings) {
  RuleTrial trial;
  trial.until = inputs.now;
  if (inputs.nowcast)
    for (NowcastStep const& step : inputs.nowcast->steps) trial.until = std::max(trial.until, step.to);
  trial.found = measuredRule(rule, inputs, settings);
  trial.outcome = trial.found.outcome;
  trial.ringsAt = inputs.now;
  if (trial.outcome != CustomOutcome::doesNotHold || !trial.found.at) return trial;
  trial.ringsAt = *trial.found.at - std::chrono::minutes(static_cast<int>(rule.threshold));
  trial.outcome = CustomOutcome::holds;
  return trial;
}

std::string momentText(Instant moment, RuleInputs const& inputs) {
  return TimeWords(*inputs.texts, inputs.calendar).moment(moment, inputs.now);
}

/// What comes nearest, and how far it stays behind.
std::string nearestText(CustomNotification const& rule, CustomEvaluation const& found,
                        RuleInputs const& inputs) {
  if (!found.value || !found.at || !found.margin) return {};
  ConditionUnit const unit = kindOf(rule.conditionType).unit;
  std::string const value = conditionValueText(unit, *found.value, inputs.units, *inputs.texts);
  std::string const when = momentText(*found.at, inputs);
  if (rule.conditionOperator == ConditionOperator::any) {
    return inputs.texts->format("customnotif.trial.nearestEvent", value, when);
  }
  return inputs.texts->format(
      "customnotif.trial.nearest", value, when,
      conditionDifferenceText(unit, std::abs(*found.margin), inputs.units, *inputs.texts));
}

}  // namespace

RuleTrial triedRule(CustomNotification rule, RuleInputs const& inputs, RuleSettings const& settings) {
  rule.isEnabled = true;
  if (rule.conditionType == ConditionType::rainWithin) return triedRain(rule, inputs, settings);
  RuleTrial trial;
  trial.until = knownUntil(rule, inputs);
  // Whether anything can be known at all does not depend on its days and hour.
  CustomOutcome const present = measuredRule(rule, inputs, settings).outcome;
  Instant moment = inputs.now;
  do {
    adopt(trial, evaluatedAt(moment, rule, inputs, settings), moment);
    moment = std::chrono::floor<std::chrono::hours>(moment) + 1h;
  } while (trial.outcome != CustomOutcome::holds && moment < trial.until);
  bool const isUnknown = !trial.found.value && present != CustomOutcome::holds;
  if (isUnknown) trial.outcome = present;
  return trial;
}

std::string trialText(CustomNotification const& rule, RuleTrial const& trial, RuleInputs const& inputs) {
  Texts const& texts = *inputs.texts;
  if (trial.outcome == CustomOutcome::holds) {
    std::string const body = customRuleBody(rule, trial.found, inputs);
    if (trial.ringsAt == inputs.now) return texts.format("customnotif.trial.ringsNow", body);
    return texts.format("customnotif.trial.rings", momentText(trial.ringsAt, inputs), body);
  }
  if (trial.outcome != CustomOutcome::doesNotHold) {
    return std::string(texts.text("customnotif.outcome." + std::string(enumName(trial.outcome)))) + ".";
  }
  if (isOfEarthquakes(rule)) return std::string(texts.text("customnotif.trial.noEarthquake"));
  std::string const silent = texts.format("customnotif.trial.silent", momentText(trial.until, inputs));
  std::string nearest = nearestText(rule, trial.found, inputs);
  if (isOfStation(rule) && !nearest.empty()) return nearest;
  return nearest.empty() ? silent : silent + " " + nearest;
}

}  // namespace nimbara
