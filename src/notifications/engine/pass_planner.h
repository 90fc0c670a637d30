// Makes the plan of a pass: `planPass` is its only user. It lives for one pass. Its functions about events
// are in event_plan.cpp, all others in pass_plan.cpp.
#pragma once

#include "notifications/catalogue.h"
#include "notifications/engine/pass_plan.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// One event as it was found, at one place or at several.
struct PlannedEvent {
  Finding finding;
  RuleInputs const* inputs = nullptr;
  std::string names;  ///< of its places
  bool isElsewhere = false;
  std::vector<Measurement> measured;
  /// Added as places are merged.
  std::vector<std::string> tags = {};
};

/// Those of one rule, each once, in the order of their finding.
struct PlannedEvents {
  std::vector<PlannedEvent> list;
  std::map<std::string, std::size_t, std::less<>> byIdentifier;
  std::set<std::string, std::less<>> untold;  ///< there, but not severe enough
};

class PassPlanner {
 public:
  PassPlanner(PassContext const& context, EngineState const& state)
      : context_(context),
        state_(state),
        places_(context.places.begin(), context.places.end()),
        values_(RuleSettings::of(context.settings)) {
    for (RuleInputs& inputs : places_) {
      inputs.knownStorms = state.knownStorms;
      inputs.knownFires = state.knownFires;
    }
  }

  PassPlan plan() {
    withdrawEnded();
    for (Rule const& rule : ruleCatalogue()) planRule(rule);
    for (ForeignEvaluation const& foreign : context_.foreign) planForeign(foreign);
    std::ranges::stable_sort(plan_.decisions, {}, orderOf);
    return std::move(plan_);
  }

 private:
  using Keys = std::set<std::string, std::less<>>;

  /// Deliveries by urgency, schedules, the rest.
  static int orderOf(Decision const& decision) {
    if (isDelivery(decision.outcome)) return decision.severity == AlertSeverity::critical ? 0 : 1;
    return decision.outcome == RuleOutcome::scheduled ? 2 : 3;
  }

  void planRule(Rule const& rule);

  PlaceChoice choiceAt(RuleInputs const& inputs) const {
    return effectiveChoice(inputs.place.choice, inputs.place.isSelected, values_.everyPlace);
  }

  bool concerns(Rule const& rule, RuleInputs const& inputs) const { return choiceAt(inputs) >= rule.reach; }

  /// Says for which places the rule was not chosen.
  void leaveOut(Rule const& rule);
  static std::string noteOf(PlaceChoice choice) { return "choice." + std::string(enumName(choice)); }

  /// Somebody's own rule is as good as danger: it is left out only where less than that is chosen.
  void planForeign(ForeignEvaluation const& foreign);
  void releaseForeign(ForeignEvaluation const& foreign, RuleInputs const& inputs);
  void skip(Rule const& rule);

  // ---- Conditions and what is sent once a day

  void planFindings(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation);
  static std::string identifierOf(Rule const& rule, Finding const& finding);
  static std::string keyOf(Rule const& rule, Finding const& finding, RuleInputs const& inputs);
  /// A rule of somebody's own has its place in itself.
  static bool isDailyOfCatalogue(Rule const& rule) {
    return rule.policy == RulePolicy::daily && rule.evaluate != nullptr;
  }

  void planCondition(Rule const& rule, PlannedEvent const& event);
  void planDaily(Rule const& rule, PlannedEvent const& event);
  bool wasToldToday(std::string_view key, RuleInputs const& inputs, Instant moment) const;
  /// Conditions of the rule at the place that hold no longer.
  void release(Rule const& rule, RuleInputs const& inputs, Keys const& found);
  /// Conditions of the rule at places that it does not look at any more: nobody knows whether they hold.
  void releaseUnwatched(Rule const& rule);

  // ---- Events

  void planEvents(Rule const& rule);
  /// What the rule found, under the identifiers by which the state knows it.
  Evaluation evaluationOf(Rule const& rule, RuleInputs const& inputs);
  /// The same event was sent under another identifier: what gave it its own has been forgotten, or the state
  /// is of an older version.
  std::optional<std::string> knownAs(Rule const& rule, Finding const& finding);
  bool isSameEvent(ShownEvent const& shown, Finding const& finding) const;
  /// The rule's feed failed, or there is nothing to look at: false is not known to be false.
  static bool isUnknown(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation);
  void tellNothing(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation);

  bool isSuppressed(RuleInputs const& inputs) const {
    return context_.suppressedLocationTags.contains(inputs.place.tag);
  }

  /// The first place tells the event; the others are named with it. One that is going away does neither.
  void merge(PlannedEvents& events, Finding const& finding, RuleInputs const& inputs,
             Evaluation const& evaluation) const;
  Decision eventDecision(Rule const& rule, PlannedEvent const& event) const;
  /// The draft under the identifier under which the desktop has the event.
  Decision eventDraft(Rule const& rule, PlannedEvent const& event) const;
  /// What is sent of an event after its first sight is an instance of its own: "gov_x_critical".
  void nameAnew(Decision& decision, std::string_view what) const;
  /// In what it differs from what was sent before; empty for a first sight and for what is not sent.
  std::string newsOf(Decision const& decision) const;
  /// Later messages were found, and none of them was worth sending.
  bool hasSlightUpdates(Rule const& rule, Decision const& decision) const;
  /// Events that their issuer ended early. Those who were sent one are told, and nobody else.
  void planCalledOff(Rule const& rule, PlannedEvent const& event);
  std::optional<RuleOutcome> heldCancellation(Rule const& rule, PlannedEvent const& event,
                                              ShownEvent const& shown) const;
  /// The end of what is shown was thought to be later.
  bool isStillShown(std::string_view key) const;
  RuleOutcome followed(Rule const& rule, Decision const& decision, PlannedEvent const& event) const;
  /// Silent where the event itself never rang.
  void tellNewEnd(Decision& decision, PlannedEvent const& event) const;
  /// An event that good checks do not find for a while is over: a feed may drop one for a moment. What is
  /// there still, though slight now, is taken away as well.
  void withdrawAbsent(Rule const& rule, PlannedEvents const& events, PlannedEvents const& calledOff);
  /// Its end is known, whatever the feeds say or fail to say.
  void withdrawEnded();
  bool isOver(ShownEvent const& shown) const { return shown.ends && *shown.ends <= context_.now; }

  /// A later message of the event has moved its end.
  bool isProlonged(Rule const& rule, std::string_view key);
  bool hasBeenAbsent(ShownEvent const& shown) const;
  /// The first of the pass's places where it was found; null where it was found at none of them.
  RuleInputs const* placeOf(ShownEvent const& shown) const;
  /// What a look that does not find it says: a look at all places nothing of what somebody looked up for a
  /// place that is not among them, one at a single place only that it is not there.
  bool isLookedFor(ShownEvent const& shown) const;
  /// It may still be in force where this pass does not look.
  bool isElsewhere(ShownEvent const& shown) const;
  /// It rang, and its place is looked at still. At night and while notices are put off it just goes.
  bool isWorthLifting(Rule const& rule, ShownEvent const& shown) const;
  void lift(Rule const& rule, std::string const& key, ShownEvent const& shown);
  void takeAway(RuleOutcome outcome, Rule const& rule, std::string const& key, ShownEvent const& shown);

  // ---- Told, listed or held

  /// What happens to a finding that is new.
  RuleOutcome told(Rule const& rule, PlannedEvent const& event) const;
  std::optional<RuleOutcome> held(Rule const& rule, PlannedEvent const& event) const;
  static std::string kindOf(Rule const& rule, Finding const& finding);
  bool isMuted(Rule const& rule, Finding const& finding) const;
  bool isOldNews(Rule const& rule, Finding const& finding) const;
  /// Why a finding that is new would be delivered silently; empty: it would not.
  std::string_view quietNote(Rule const& rule, Finding const& finding) const;

  // ---- Scheduled for an hour

  void planScheduled(Rule const& rule, RuleInputs const& inputs);
  /// What was due before this pass could not be sent yet, and is not to be replaced by tomorrow's.
  bool isWaiting(std::string_view key) const;
  Instant nextDue(std::string_view key, RuleInputs const& inputs, int hour) const;

  // ---- Pieces

  Decision& add(RuleOutcome outcome, Rule const& rule);
  Decision draft(Rule const& rule, PlannedEvent const& event) const;
  NotificationRequest requestOf(Rule const& rule, PlannedEvent const& event, std::string const& key) const;

  PassContext const& context_;
  EngineState const& state_;
  std::vector<RuleInputs> places_;  ///< with what the state remembers for rules
  RuleSettings values_;
  std::map<std::string, std::string, std::less<>> knownAs_;  ///< identifiers of events told under others
  PassPlan plan_;
};

template <class Container>
auto* findIn(Container& container, std::string_view key) {
  auto const found = container.find(key);
  return found == container.end() ? nullptr : &found->second;
}

}  // namespace nimbara
