#include "notifications/engine/pass_plan.h"

#include "base/words/list_text.h"
#include "notifications/engine/hold_back.h"
#include "notifications/engine/pass_planner.h"

#include <algorithm>
#include <ranges>

namespace nimbara {

using enum RuleOutcome;

namespace {

/// What began longer ago than this before a rule is first evaluated is no news any more.
constexpr std::chrono::minutes kNewsLife{30};

}  // namespace

void PassPlanner::planRule(Rule const& rule) {
  if (!context_.settings.boolean(rule.setting)) return skip(rule);
  leaveOut(rule);
  if (rule.policy == RulePolicy::instance) return planEvents(rule);
  if (!context_.isPartial) releaseUnwatched(rule);
  for (RuleInputs const& inputs : places_) {
    if (!concerns(rule, inputs)) continue;
    if (!rule.hourSetting.empty()) {
      planScheduled(rule, inputs);
    } else {
      planFindings(rule, inputs, rule.evaluate(inputs, values_));
    }
  }
}

void PassPlanner::leaveOut(Rule const& rule) {
  for (int choice = 0; choice < static_cast<int>(rule.reach); ++choice) {
    std::string names;
    for (RuleInputs const& inputs : places_) {
      if (static_cast<int>(choiceAt(inputs)) != choice) continue;
      appendItem(names, inputs.place.name, context_.texts);
    }
    if (names.empty()) continue;
    Decision& decision = add(notChosen, rule);
    decision.place = names;
    decision.note = noteOf(static_cast<PlaceChoice>(choice));
  }
}

void PassPlanner::planForeign(ForeignEvaluation const& foreign) {
  RuleInputs const& inputs = places_[foreign.place];
  PlaceChoice const choice = choiceAt(inputs);
  std::size_t const known = plan_.decisions.size();
  if (choice >= PlaceChoice::severe) {
    planFindings(*foreign.rule, inputs, foreign.evaluation);
    releaseForeign(foreign, inputs);
  } else {
    Decision& decision = add(notChosen, *foreign.rule);
    decision.place = inputs.place.name;
    decision.note = noteOf(choice);
  }
  for (Decision& decision : plan_.decisions | std::views::drop(known)) decision.title = foreign.title;
}

/// A condition of a rule of somebody's own that holds no longer, or is off for the present.
void PassPlanner::releaseForeign(ForeignEvaluation const& foreign, RuleInputs const& inputs) {
  if (foreign.rain) plan_.rain[foreign.key] = *foreign.rain;
  bool const isOver = foreign.evaluation.findings.empty() &&
                      !isUnknown(*foreign.rule, inputs, foreign.evaluation) &&
                      state_.activeConditionIDs.contains(foreign.key);
  if (!isOver) return;
  Decision& decision = add(conditionFalse, *foreign.rule);
  decision.key = foreign.key;
  decision.place = inputs.place.name;
}

void PassPlanner::skip(Rule const& rule) {
  add(settingOff, rule);
  for (RuleInputs const& inputs : places_) release(rule, inputs, {});
}

// ---- Conditions and what is sent once a day

void PassPlanner::planFindings(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation) {
  Keys found;
  for (Finding const& finding : evaluation.findings) {
    found.insert(keyOf(rule, finding, inputs));
    PlannedEvent event{finding, &inputs, inputs.place.name, !inputs.place.isSelected, evaluation.measured};
    rule.policy == RulePolicy::daily ? planDaily(rule, event) : planCondition(rule, event);
  }
  if (evaluation.findings.empty()) tellNothing(rule, inputs, evaluation);
  if (!isUnknown(rule, inputs, evaluation)) release(rule, inputs, found);
}

std::string PassPlanner::identifierOf(Rule const& rule, Finding const& finding) {
  return finding.identifier.empty() ? std::string(rule.stem) : finding.identifier;
}

std::string PassPlanner::keyOf(Rule const& rule, Finding const& finding, RuleInputs const& inputs) {
  std::string identifier = identifierOf(rule, finding);
  bool const isOfPlace =
      rule.policy == RulePolicy::condition || (isDailyOfCatalogue(rule) && !inputs.place.isSelected);
  return isOfPlace ? identifier + "@" + inputs.place.tag : identifier;
}

void PassPlanner::planCondition(Rule const& rule, PlannedEvent const& event) {
  Decision decision = draft(rule, event);
  auto const* const lastSeen = findIn(state_.lastActiveAt, decision.key);
  if (lastSeen != nullptr) decision.since = *lastSeen;
  bool const isActive = state_.activeConditionIDs.contains(decision.key);
  // Not longer than the gap even where somebody set the clock back in between.
  bool const isFlicker = lastSeen != nullptr && std::chrono::abs(context_.now - *lastSeen) < rule.minimumGap;
  decision.outcome = isActive ? stillActive : isFlicker ? returnedTooSoon : told(rule, event);
  if (decision.outcome == listed) decision.note = quietNote(rule, event.finding);
  plan_.decisions.push_back(std::move(decision));
}

void PassPlanner::planDaily(Rule const& rule, PlannedEvent const& event) {
  Decision decision = draft(rule, event);
  decision.outcome =
      wasToldToday(decision.key, *event.inputs, context_.now) ? alreadyToldToday : told(rule, event);
  if (decision.outcome == listed) decision.note = quietNote(rule, event.finding);
  if (auto const* const last = findIn(state_.lastToldAt, decision.key)) decision.since = *last;
  plan_.decisions.push_back(std::move(decision));
}

bool PassPlanner::wasToldToday(std::string_view key, RuleInputs const& inputs, Instant moment) const {
  auto const* const last = findIn(state_.lastToldAt, key);
  if (last == nullptr) return false;
  // A clock that was set back over midnight brings no second day.
  bool const wasAhead = *last > moment && *last - moment < std::chrono::hours(24);
  return wasAhead || inputs.calendar.isSameDay(*last, moment);
}

void PassPlanner::release(Rule const& rule, RuleInputs const& inputs, Keys const& found) {
  std::string const ending = "@" + inputs.place.tag;
  for (std::string const& key : state_.activeConditionIDs) {
    bool const isOurs = key.ends_with(ending) && ruleOf(key) == &rule;
    if (!isOurs || found.contains(key)) continue;
    Decision& decision = add(conditionFalse, rule);
    decision.key = key;
    decision.place = inputs.place.name;
  }
}

void PassPlanner::releaseUnwatched(Rule const& rule) {
  for (ScheduledNotification const& entry : state_.scheduled) {
    if (ruleOf(entry.identifier) != &rule || entry.identifier == rule.stem) continue;
    bool const isWatched = std::ranges::any_of(context_.places, [&](RuleInputs const& inputs) {
      return concerns(rule, inputs) && keyOf(rule, {}, inputs) == entry.identifier;
    });
    if (!isWatched) add(conditionFalse, rule).request.identifier = entry.identifier;
  }
  for (std::string const& key : state_.activeConditionIDs) {
    if (ruleOf(key) != &rule) continue;
    bool const isWatched = std::ranges::any_of(context_.places, [&](RuleInputs const& inputs) {
      return concerns(rule, inputs) && key.ends_with("@" + inputs.place.tag);
    });
    if (!isWatched) add(conditionFalse, rule).key = key;
  }
}

bool PassPlanner::isUnknown(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation) {
  return evaluation.isUnknown || inputs.failureOf(rule.inputs);
}

void PassPlanner::tellNothing(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation) {
  Decision& decision = add(isUnknown(rule, inputs, evaluation) ? unknown : conditionFalse, rule);
  decision.place = inputs.place.name;
  decision.measured = evaluation.measured;
  decision.note = evaluation.note;
  decision.failure = inputs.failureOf(rule.inputs);
  if (!rule.hourSetting.empty()) decision.request.identifier = keyOf(rule, {}, inputs);
}

// ---- Told, listed or held

RuleOutcome PassPlanner::told(Rule const& rule, PlannedEvent const& event) const {
  if (auto const reason = held(rule, event)) return *reason;
  return quietNote(rule, event.finding).empty() ? announced : listed;
}

std::string_view PassPlanner::quietNote(Rule const& rule, Finding const& finding) const {
  return finding.isCovered() || !isOldNews(rule, finding) ? finding.quietNote : "oldNews";
}

std::optional<RuleOutcome> PassPlanner::held(Rule const& rule, PlannedEvent const& event) const {
  if (isSuppressed(*event.inputs)) return suppressed;
  bool const isExempt = event.finding.severity == AlertSeverity::critical && !values_.quiet.holdsCritical;
  if (isExempt) return std::nullopt;
  if (isMuted(rule, event.finding)) return muted;
  return heldAtHour(values_, context_.now, event.inputs->calendar.hour(context_.now));
}

std::string PassPlanner::kindOf(Rule const& rule, Finding const& finding) {
  return finding.kind.empty() ? std::string(withoutJoint(rule.stem)) : finding.kind;
}

bool PassPlanner::isMuted(Rule const& rule, Finding const& finding) const {
  return mutes(values_, context_.now, withoutJoint(rule.stem), kindOf(rule, finding), finding.severity);
}

bool PassPlanner::isOldNews(Rule const& rule, Finding const& finding) const {
  return rule.policy == RulePolicy::instance && finding.severity < AlertSeverity::critical &&
         !state_.firstCheckedAt.contains(rule.stem) && finding.began &&
         *finding.began < context_.now - kNewsLife;
}

// ---- Scheduled for an hour

void PassPlanner::planScheduled(Rule const& rule, RuleInputs const& inputs) {
  int const hour = static_cast<int>(context_.settings.integer(rule.hourSetting));
  std::string const key = keyOf(rule, {}, inputs);
  Instant const due = nextDue(key, inputs, hour);
  RuleInputs then = inputs;
  then.now = due;
  then.readWeather();
  Evaluation const evaluation = rule.evaluate(then, values_);
  if (evaluation.findings.empty()) return planFindings(rule, inputs, evaluation);
  PlannedEvent const event{evaluation.findings.front(), &inputs, inputs.place.name, !inputs.place.isSelected,
                           evaluation.measured};
  Decision decision = draft(rule, event);
  NotificationRequest const& request = decision.request;
  decision.outcome =
      isMuted(rule, event.finding) ? muted
      : isWaiting(key)
          ? heldAtHour(values_, context_.now, inputs.calendar.hour(context_.now)).value_or(refused)
          : scheduled;
  if (rule.summary && values_.generatedSummaries) {
    bool const isAhead = !inputs.calendar.isSameDay(context_.now, due);
    decision.prompt = summaryPrompt(then, *rule.summary, isAhead);
  }
  decision.scheduled =
      ScheduledNotification{request.identifier, request.title,   request.body, request.sound, hour, 0, due,
                            inputs.place.name,  inputs.place.tag};
  settleSchedule(decision, state_);
  plan_.decisions.push_back(std::move(decision));
}

bool PassPlanner::isWaiting(std::string_view key) const {
  return std::ranges::any_of(state_.scheduled, [&](ScheduledNotification const& entry) {
    return entry.identifier == key && entry.due <= context_.now;
  });
}

Instant PassPlanner::nextDue(std::string_view key, RuleInputs const& inputs, int hour) const {
  Date const day = inputs.calendar.day(context_.now);
  auto const at = [&](Date date) {
    return inputs.calendar.instant(LocalTime(std::chrono::local_days(date)) + std::chrono::hours(hour));
  };
  Date next = day;
  while (at(next) <= context_.now || wasToldToday(key, inputs, at(next))) next = addDays(next, 1);
  return at(next);
}

// ---- Pieces

Decision& PassPlanner::add(RuleOutcome outcome, Rule const& rule) {
  Decision& decision = plan_.decisions.emplace_back();
  decision.outcome = outcome;
  decision.rule = &rule;
  return decision;
}

Decision PassPlanner::draft(Rule const& rule, PlannedEvent const& event) const {
  Decision decision;
  decision.rule = &rule;
  decision.key = keyOf(rule, event.finding, *event.inputs);
  decision.severity = event.finding.severity;
  decision.kind = kindOf(rule, event.finding);
  decision.began = event.finding.began;
  decision.ends = event.finding.ends;
  decision.event = event.finding.event;
  decision.issued = event.finding.issued;
  decision.updates = event.finding.updates;
  decision.title = event.finding.title;
  decision.isCovered = event.finding.isCovered();
  decision.isNear = event.finding.isNear;
  decision.place = event.names;
  decision.placeTag = event.inputs->place.tag;
  decision.placeTags = event.tags;
  decision.isPartial = context_.isPartial;
  decision.measured = event.measured;
  decision.greatness = event.finding.greatness;
  decision.storm = event.finding.storm;
  decision.fire = event.finding.fire;
  decision.request = requestOf(rule, event, decision.key);
  if (rule.followsEvents) decision.digest = digestOf(decision.request, context_.texts.language());
  decision.request.body = wholeBody(event.finding);
  return decision;
}

NotificationRequest PassPlanner::requestOf(Rule const& rule, PlannedEvent const& event,
                                           std::string const& key) const {
  Finding const& finding = event.finding;
  bool const isQuiet = !quietNote(rule, finding).empty();
  NotificationRequest request = requestFor(rule, finding, values_.sounds, isQuiet, context_.texts);
  request.identifier = event.inputs->place.isSelected ? identifierOf(rule, finding) : key;
  if (event.isElsewhere) request.title = context_.texts.format("push.withPlace", event.names, finding.title);
  return request;
}

PassPlan planPass(PassContext const& context, EngineState const& state) {
  return PassPlanner(context, state).plan();
}

std::vector<std::string> failedFeeds(PassPlan const& plan) {
  std::vector<std::string> sentences;
  for (Decision const& decision : plan.decisions) {
    if (decision.outcome != unknown || !decision.failure) continue;
    std::string sentence = sentenceOf(*decision.failure);
    if (std::ranges::count(sentences, sentence) == 0) sentences.push_back(std::move(sentence));
  }
  return sentences;
}

}  // namespace nimbara
