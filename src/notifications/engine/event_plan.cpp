// What becomes of events in a pass: sent once, followed where their rule follows them, taken back at their
// end.
#include "base/words/list_text.h"
#include "base/words/moment_text.h"
#include "feeds/alerts/events/event_memory.h"
#include "notifications/engine/event_bound.h"
#include "notifications/engine/hold_back.h"
#include "notifications/engine/pass_planner.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace nimbara {

using enum RuleOutcome;

namespace {

/// Feeds drop an event for a moment and bring it back.
constexpr std::chrono::minutes kAbsenceOfWhatIsOver{15};

bool tellsMore(Finding const& a, Finding const& b) {
  auto const rank = [](Finding const& finding) {
    return std::tuple(!finding.isCovered(), finding.severity, !finding.isNear);
  };
  return rank(a) > rank(b);
}

/// "HR|wind|" of "HR|wind|EMMA_ID:HR001"; empty for what is not distinguished by its region, and for a region
/// that nobody can place: it takes the place of no other.
std::string_view withoutRegion(std::string_view event) {
  auto const end = event.rfind('|');
  bool const hasRegion = end != std::string_view::npos && event.find('|') != end;
  bool const isUnplaced = event.find(kUnplacedEvent) != std::string_view::npos;
  return hasRegion && !isUnplaced ? event.substr(0, end + 1) : std::string_view();
}

/// The like is in force in another region near the place: of two the one that has the place in it may have
/// taken the place of the other.
bool hasNeighbour(PlannedEvents const& events, ShownEvent const& shown) {
  std::string_view const what = withoutRegion(shown.event);
  return !what.empty() && std::ranges::any_of(events.list, [&](PlannedEvent const& event) {
    return withoutRegion(event.finding.event) == what;
  });
}

/// A state of an older version knows one place alone.
bool wasFoundAt(ShownEvent const& shown, std::string_view tag) {
  return shown.placeTags.empty() ? shown.placeTag == tag : std::ranges::count(shown.placeTags, tag) > 0;
}

}  // namespace

void PassPlanner::planEvents(Rule const& rule) {
  PlannedEvents events;
  PlannedEvents calledOff;
  int looks = 0;
  int checks = 0;
  for (RuleInputs const& inputs : places_) {
    if (!concerns(rule, inputs)) continue;
    Evaluation const evaluation = evaluationOf(rule, inputs);
    events.untold.insert(evaluation.untold.begin(), evaluation.untold.end());
    ++looks;
    if (!isUnknown(rule, inputs, evaluation)) ++checks;
    for (Finding const& finding : evaluation.findings) merge(events, finding, inputs, evaluation);
    for (Finding const& finding : evaluation.calledOff) merge(calledOff, finding, inputs, evaluation);
    if (evaluation.findings.empty()) tellNothing(rule, inputs, evaluation);
  }
  std::vector<Decision> decisions;
  decisions.reserve(events.list.size());
  for (PlannedEvent const& event : events.list) decisions.push_back(eventDecision(rule, event));
  std::ranges::move(boundedEvents(std::move(decisions), context_.texts), std::back_inserter(plan_.decisions));
  for (PlannedEvent const& event : calledOff.list) {
    std::string const& key = event.finding.identifier;
    // In force at another place it is not over.
    bool const isThere = events.byIdentifier.contains(key) || events.untold.contains(key);
    if (!isThere) planCalledOff(rule, event);
  }
  if (rule.followsEvents && looks > 0 && checks == looks) withdrawAbsent(rule, events, calledOff);
  // One place whose feed fails for ever must not make all that comes from the others old news.
  if (checks > 0) plan_.checked.push_back(&rule);
}

Evaluation PassPlanner::evaluationOf(Rule const& rule, RuleInputs const& inputs) {
  Evaluation evaluation = rule.evaluate(inputs, values_);
  if (!rule.followsEvents) return evaluation;
  for (auto* const findings : {&evaluation.findings, &evaluation.calledOff}) {
    for (Finding& finding : *findings) {
      if (auto const known = knownAs(rule, finding)) finding.identifier = *known;
    }
  }
  return evaluation;
}

std::optional<std::string> PassPlanner::knownAs(Rule const& rule, Finding const& finding) {
  if (auto const* const known = findIn(knownAs_, finding.identifier)) return *known;
  bool const isKnown =
      state_.shown.contains(finding.identifier) || state_.deliveredIDs.contains(finding.identifier);
  if (isKnown) return std::nullopt;
  for (auto const& [key, shown] : state_.shown) {
    bool const isTaken =
        std::ranges::any_of(knownAs_, [&](auto const& entry) { return entry.second == key; });
    if (isTaken || ruleOf(key) != &rule || !isSameEvent(shown, finding)) continue;
    return knownAs_[finding.identifier] = key;
  }
  return std::nullopt;
}

bool PassPlanner::isSameEvent(ShownEvent const& shown, Finding const& finding) const {
  bool const isOfOldState = shown.title.empty() && shown.event.empty();
  if (isOfOldState) return shown.ends && shown.ends == finding.ends && !isOver(shown);
  if (shown.event.empty() || shown.event != finding.event || shown.isLifted) return false;
  Instant const now = context_.now;
  return adjoin({shown.began.value_or(now), shown.ends}, {finding.began.value_or(now), finding.ends});
}

void PassPlanner::merge(PlannedEvents& events, Finding const& finding, RuleInputs const& inputs,
                        Evaluation const& evaluation) const {
  PlannedEvent alone{
      finding, &inputs, inputs.place.name, !inputs.place.isSelected, evaluation.measured, {inputs.place.tag}};
  auto const [entry, isNew] = events.byIdentifier.try_emplace(finding.identifier, events.list.size());
  if (isNew) return events.list.push_back(std::move(alone));
  PlannedEvent& known = events.list[entry->second];
  known.finding.fire.insert(known.finding.fire.end(), finding.fire.begin(), finding.fire.end());
  if (isSuppressed(inputs)) return;
  if (isSuppressed(*known.inputs)) {
    known = std::move(alone);
    return;
  }
  // What is only near one place may be at the door of another.
  bool const areBoth = !known.finding.remark.empty() && !finding.remark.empty();
  std::string remarks = known.finding.remark + (areBoth ? "\n" : "") + finding.remark;
  known.tags.push_back(inputs.place.tag);
  if (tellsMore(finding, known.finding)) {
    std::string names = std::move(known.names);
    appendItem(names, alone.names, context_.texts);
    alone.names = std::move(names);
    alone.tags = std::move(known.tags);
    known = std::move(alone);
  } else {
    appendItem(known.names, inputs.place.name, context_.texts);
  }
  known.finding.remark = std::move(remarks);
  known.isElsewhere = true;
}

Decision PassPlanner::eventDraft(Rule const& rule, PlannedEvent const& event) const {
  Decision decision = draft(rule, event);
  auto const* const shown = findIn(state_.shown, decision.key);
  if (shown != nullptr && !shown->identifier.empty()) decision.request.identifier = shown->identifier;
  return decision;
}

void PassPlanner::nameAnew(Decision& decision, std::string_view what) const {
  std::string identifier = decision.key + "_" + std::string(what);
  // What was sent once is never sent again under the same name: an end may move to and fro.
  if (state_.deliveredIDs.contains(identifier)) identifier += "_" + formatIso8601(context_.now);
  decision.replaces = std::exchange(decision.request.identifier, std::move(identifier));
}

std::string PassPlanner::newsOf(Decision const& decision) const {
  if (decision.outcome == escalated) return std::string(enumName(decision.severity));
  if (decision.outcome == endMoved) return "until_" + formatIso8601(*decision.ends);
  bool const isTold = decision.outcome == announced || decision.outcome == listed;
  bool const isFirst = !isTold || !state_.deliveredIDs.contains(decision.key);
  if (isFirst) return {};
  auto const* const shown = findIn(state_.shown, decision.key);
  return shown != nullptr && shown->isLifted ? "again" : "here";
}

bool PassPlanner::hasSlightUpdates(Rule const& rule, Decision const& decision) const {
  auto const* const shown = findIn(state_.shown, decision.key);
  bool const isQuiet = decision.outcome == alreadyDelivered || decision.outcome == updated;
  if (shown == nullptr || !isQuiet || !rule.tellsLifting) return false;
  return updatesWith(*shown, decision) > shown->toldUpdates;
}

Decision PassPlanner::eventDecision(Rule const& rule, PlannedEvent const& event) const {
  Decision decision = eventDraft(rule, event);
  if (event.finding.ends && *event.finding.ends <= context_.now) {
    decision.outcome = isStillShown(decision.key) ? withdrawn : hasEnded;
  } else if (state_.deliveredIDs.contains(decision.key)) {
    decision.outcome = rule.followsEvents ? followed(rule, decision, event) : alreadyDelivered;
    if (decision.outcome == updated && isSuppressed(*event.inputs)) decision.outcome = suppressed;
    bool const isAnew = decision.outcome == escalated || decision.outcome == endMoved;
    if (isAnew) decision.outcome = held(rule, event).value_or(decision.outcome);
  } else {
    decision.outcome = told(rule, event);
  }
  if (decision.outcome == listed) decision.note = quietNote(rule, event.finding);
  if (decision.outcome == updated) decision.request.isSilent = true;
  if (decision.outcome == endMoved) tellNewEnd(decision, event);
  if (hasSlightUpdates(rule, decision)) decision.note = "slightUpdate";
  if (std::string const news = newsOf(decision); !news.empty()) nameAnew(decision, news);
  return decision;
}

void PassPlanner::planCalledOff(Rule const& rule, PlannedEvent const& event) {
  std::string const& key = event.finding.identifier;
  auto const* const shown = findIn(state_.shown, key);
  bool const isKnown = shown != nullptr && !shown->isLifted && !isOver(*shown);
  if (!isKnown || isSuppressed(*event.inputs)) return;
  auto const reason = heldCancellation(rule, event, *shown);
  bool const isTold = shown->hasRung && !reason;
  // What is no longer in force does not stay on the screen over night.
  if (!isTold && !shown->isWithdrawn) return takeAway(withdrawn, rule, key, *shown);
  if (!shown->hasRung) return;
  // Under the title that people know; a cancellation may have none.
  PlannedEvent known = event;
  known.finding.title = context_.texts.format("push.event.cancelledTitle", shown->title);
  known.finding.kind = shown->kind;
  Decision decision = eventDraft(rule, known);
  decision.outcome = reason.value_or(cancelled);
  nameAnew(decision, "cancelled");
  plan_.decisions.push_back(std::move(decision));
}

std::optional<RuleOutcome> PassPlanner::heldCancellation(Rule const& rule, PlannedEvent const& event,
                                                         ShownEvent const& shown) const {
  if (mutes(values_, context_.now, withoutJoint(rule.stem), shown.kind, shown.severity)) return muted;
  return heldAtHour(values_, context_.now, event.inputs->calendar.hour(context_.now));
}

bool PassPlanner::isStillShown(std::string_view key) const {
  auto const* const shown = findIn(state_.shown, key);
  return shown != nullptr && !shown->isWithdrawn && !isOver(*shown);
}

RuleOutcome PassPlanner::followed(Rule const& rule, Decision const& decision,
                                  PlannedEvent const& event) const {
  auto const* const shown = findIn(state_.shown, decision.key);
  if (shown == nullptr) return alreadyDelivered;
  bool const isCloser = shown->wasCovered && !event.finding.isCovered();
  if (shown->isLifted || isCloser) return told(rule, event);
  if (event.finding.severity > shown->severity) return event.finding.isCovered() ? updated : escalated;
  if (hasMovedEnd(*shown, event.finding.ends)) return endMoved;
  // The like in another language is no other event, but what is shown must not say that it is elsewhere once
  // it is here.
  bool const isSame = shown->digest == decision.digest || !areComparable(shown->digest, decision.digest);
  bool const isHereNow = shown->wasNear && !event.finding.isNear;
  return isSame && !isHereNow ? alreadyDelivered : updated;
}

void PassPlanner::tellNewEnd(Decision& decision, PlannedEvent const& event) const {
  TimeWords const words(context_.texts, event.inputs->calendar);
  Finding told = event.finding;
  told.when.clear();
  decision.request.body =
      momentText("push.event.endMoved", *event.finding.ends, context_.now, words, context_.texts) + "\n" +
      wholeBody(told);
  auto const* const shown = findIn(state_.shown, decision.key);
  if (shown != nullptr && shown->hasRung) return;
  decision.request.isSilent = true;
  decision.request.urgency = NotificationUrgency::low;
}

void PassPlanner::withdrawAbsent(Rule const& rule, PlannedEvents const& events,
                                 PlannedEvents const& calledOff) {
  for (auto const& [key, shown] : state_.shown) {
    bool const isFound = events.byIdentifier.contains(key) || calledOff.byIdentifier.contains(key);
    if (isFound || isOver(shown) || shown.isWithdrawn || ruleOf(key) != &rule) continue;
    if (!isLookedFor(shown)) continue;
    bool const isGone = !isElsewhere(shown) && hasBeenAbsent(shown);
    bool const isThere = events.untold.contains(key) || hasNeighbour(events, shown);
    bool const isNews = isGone && !isThere && isWorthLifting(rule, shown);
    if (isNews) {
      lift(rule, key, shown);
    } else {
      takeAway(isGone ? withdrawn : absent, rule, key, shown);
    }
  }
}

bool PassPlanner::hasBeenAbsent(ShownEvent const& shown) const {
  if (!shown.wasAbsent) return false;
  return !shown.absentSince || context_.now < *shown.absentSince ||
         context_.now - *shown.absentSince >= kAbsenceOfWhatIsOver;
}

RuleInputs const* PassPlanner::placeOf(ShownEvent const& shown) const {
  auto const found = std::ranges::find_if(
      places_, [&](RuleInputs const& inputs) { return wasFoundAt(shown, inputs.place.tag); });
  return found == places_.end() ? nullptr : &*found;
}

bool PassPlanner::isLookedFor(ShownEvent const& shown) const {
  return placeOf(shown) != nullptr || (!context_.isPartial && !shown.isOfVisit);
}

bool PassPlanner::isElsewhere(ShownEvent const& shown) const {
  return context_.isPartial && std::ranges::any_of(shown.placeTags, [&](std::string const& tag) {
           return std::ranges::none_of(places_,
                                       [&](RuleInputs const& inputs) { return inputs.place.tag == tag; });
         });
}

bool PassPlanner::isWorthLifting(Rule const& rule, ShownEvent const& shown) const {
  RuleInputs const* const inputs = placeOf(shown);
  if (!rule.tellsLifting || !shown.hasRung || shown.title.empty()) return false;
  if (inputs == nullptr || !concerns(rule, *inputs) || isSuppressed(*inputs)) return false;
  return !mutes(values_, context_.now, withoutJoint(rule.stem), shown.kind, shown.severity) &&
         !heldAtHour(values_, context_.now, inputs->calendar.hour(context_.now));
}

void PassPlanner::lift(Rule const& rule, std::string const& key, ShownEvent const& shown) {
  Finding finding;
  finding.title = context_.texts.format("push.event.liftedTitle", shown.title);
  finding.body = context_.texts.format("push.event.liftedBody", shown.place);
  finding.severity = AlertSeverity::info;
  Decision& decision = add(lifted, rule);
  decision.key = key;
  decision.kind = shown.kind;
  decision.place = shown.place;
  decision.severity = finding.severity;
  decision.request = requestFor(rule, finding, false, true, context_.texts);
  decision.request.identifier = shown.identifier.empty() ? key : shown.identifier;
  nameAnew(decision, "lifted");
}

void PassPlanner::withdrawEnded() {
  for (auto const& [key, shown] : state_.shown) {
    Rule const* const rule = ruleOf(key);
    if (rule == nullptr || shown.isWithdrawn || !isOver(shown) || isProlonged(*rule, key)) continue;
    takeAway(withdrawn, *rule, key, shown);
  }
}

bool PassPlanner::isProlonged(Rule const& rule, std::string_view key) {
  if (!context_.settings.boolean(rule.setting)) return false;
  return std::ranges::any_of(context_.places, [&](RuleInputs const& inputs) {
    if (!concerns(rule, inputs)) return false;
    Evaluation const evaluation = evaluationOf(rule, inputs);
    return std::ranges::any_of(evaluation.findings, [&](Finding const& finding) {
      return finding.identifier == key && (!finding.ends || *finding.ends > context_.now);
    });
  });
}

void PassPlanner::takeAway(RuleOutcome outcome, Rule const& rule, std::string const& key,
                           ShownEvent const& shown) {
  Decision& decision = add(outcome, rule);
  decision.key = key;
  decision.request.identifier = shown.identifier.empty() ? key : shown.identifier;
  decision.title = shown.title;
  decision.kind = shown.kind;
  decision.severity = shown.severity;
  decision.isPartial = context_.isPartial;
  for (RuleInputs const& inputs : places_) decision.placeTags.push_back(inputs.place.tag);
}

}  // namespace nimbara
