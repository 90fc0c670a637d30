// What becomes of events in a pass: told once, followed where their rule follows them, taken back at their
// end.
#include "notifications/event_bound.h"
#include "notifications/pass_planner.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

using enum RuleOutcome;

void PassPlanner::planEvents(Rule const& rule) {
  PlannedEvents events;
  int looks = 0;
  int checks = 0;
  for (RuleInputs const& inputs : places_) {
    if (!concerns(rule, inputs)) continue;
    Evaluation const evaluation = rule.evaluate(inputs, values_);
    ++looks;
    if (!isUnknown(rule, inputs, evaluation)) ++checks;
    for (Finding const& finding : evaluation.findings) merge(events, finding, inputs, evaluation);
    if (evaluation.findings.empty()) tellNothing(rule, inputs, evaluation);
  }
  std::vector<Decision> decisions;
  decisions.reserve(events.list.size());
  for (PlannedEvent const& event : events.list) decisions.push_back(eventDecision(rule, event));
  std::ranges::move(boundedEvents(std::move(decisions), context_.texts), std::back_inserter(plan_.decisions));
  if (rule.followsEvents && looks > 0 && checks == looks && !context_.isPartial) withdrawAbsent(rule, events);
  // One place whose feed fails for ever must not make all that comes from the others old news.
  if (checks > 0) plan_.checked.push_back(&rule);
}

void PassPlanner::merge(PlannedEvents& events, Finding const& finding, RuleInputs const& inputs,
                        Evaluation const& evaluation) const {
  PlannedEvent alone{finding, &inputs, inputs.place.name, !inputs.place.isSelected, evaluation.measured};
  auto const [entry, isNew] = events.byIdentifier.try_emplace(finding.identifier, events.list.size());
  if (isNew) return events.list.push_back(std::move(alone));
  PlannedEvent& known = events.list[entry->second];
  known.finding.fire.insert(known.finding.fire.end(), finding.fire.begin(), finding.fire.end());
  if (isSuppressed(inputs)) return;
  if (isSuppressed(*known.inputs)) {
    known = std::move(alone);
    return;
  }
  known.names += ", " + inputs.place.name;
  known.isElsewhere = true;
}

Decision PassPlanner::eventDecision(Rule const& rule, PlannedEvent const& event) const {
  Decision decision = draft(rule, event);
  if (event.finding.ends && *event.finding.ends <= context_.now) {
    decision.outcome = isStillShown(decision.key) ? withdrawn : hasEnded;
  } else if (state_.deliveredIDs.contains(decision.key)) {
    decision.outcome = rule.followsEvents ? followed(decision, event) : alreadyDelivered;
    if (decision.outcome == updated && isSuppressed(*event.inputs)) decision.outcome = suppressed;
    if (decision.outcome == escalated) decision.outcome = held(rule, event).value_or(escalated);
  } else {
    decision.outcome = told(rule, event);
  }
  if (decision.outcome == updated) decision.request.isSilent = true;
  return decision;
}

bool PassPlanner::isStillShown(std::string_view key) const {
  auto const* const shown = findIn(state_.shown, key);
  return shown != nullptr && !shown->isWithdrawn && !isOver(*shown);
}

RuleOutcome PassPlanner::followed(Decision const& decision, PlannedEvent const& event) const {
  auto const* const shown = findIn(state_.shown, decision.key);
  if (shown == nullptr) return alreadyDelivered;
  if (event.finding.severity > shown->severity) return escalated;
  return shown->digest == digestOf(decision.request) ? alreadyDelivered : updated;
}

void PassPlanner::withdrawAbsent(Rule const& rule, PlannedEvents const& events) {
  for (auto const& [key, shown] : state_.shown) {
    bool const isPresent = events.byIdentifier.contains(key);
    if (isPresent || isOver(shown) || shown.isWithdrawn || ruleOf(key) != &rule) continue;
    takeAway(shown.wasAbsent ? withdrawn : absent, rule, key, shown);
  }
}

void PassPlanner::withdrawEnded() {
  for (auto const& [key, shown] : state_.shown) {
    Rule const* const rule = ruleOf(key);
    if (rule == nullptr || shown.isWithdrawn || !isOver(shown) || isProlonged(*rule, key)) continue;
    takeAway(withdrawn, *rule, key, shown);
  }
}

bool PassPlanner::isProlonged(Rule const& rule, std::string_view key) const {
  if (!context_.settings.boolean(rule.setting)) return false;
  return std::ranges::any_of(context_.places, [&](RuleInputs const& inputs) {
    if (!concerns(rule, inputs)) return false;
    Evaluation const evaluation = rule.evaluate(inputs, values_);
    return std::ranges::any_of(evaluation.findings, [&](Finding const& finding) {
      return finding.identifier == key && (!finding.ends || *finding.ends > context_.now);
    });
  });
}

void PassPlanner::takeAway(RuleOutcome outcome, Rule const& rule, std::string const& key,
                           ShownEvent const& shown) {
  Decision& decision = add(outcome, rule);
  decision.key = key;
  decision.request.identifier = key;
  decision.severity = shown.severity;
}

}  // namespace nimbara
