#include "notifications/pass_plan.h"

#include "notifications/catalogue.h"
#include "notifications/hold_back.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleOutcome;

/// What began longer ago than this before a rule is first evaluated is no news any more.
constexpr std::chrono::minutes kNewsLife{30};

template <class Container>
auto* find(Container& container, std::string_view key) {
  auto const found = container.find(key);
  return found == container.end() ? nullptr : &found->second;
}

/// One event as it was found, at one place or at several.
struct Event {
  Finding finding;
  RuleInputs const* inputs = nullptr;
  std::string names;  ///< of its places
  bool isElsewhere = false;
  std::vector<Measurement> measured;
};

class Planner {
 public:
  Planner(PassContext const& context, EngineState const& state)
      : context_(context),
        state_(state),
        places_(context.places.begin(), context.places.end()),
        values_(RuleSettings::of(context.settings)) {
    for (RuleInputs& inputs : places_) inputs.knownStorms = state.knownStorms;
  }

  PassPlan plan() {
    withdrawEnded();
    for (Rule const& rule : ruleCatalogue()) planRule(rule);
    for (ForeignEvaluation const& foreign : context_.foreign) {
      planFindings(*foreign.rule, places_[foreign.place], foreign.evaluation);
    }
    std::ranges::stable_sort(plan_.decisions, {}, orderOf);
    return std::move(plan_);
  }

 private:
  using Keys = std::set<std::string, std::less<>>;

  /// Deliveries by urgency, schedules, the rest.
  static int orderOf(Decision const& decision) {
    if (isDelivery(decision.outcome)) return decision.severity == AlertSeverity::critical ? 0 : 1;
    return decision.outcome == scheduled ? 2 : 3;
  }

  void planRule(Rule const& rule) {
    if (!context_.settings.boolean(rule.setting)) return skip(rule);
    if (rule.policy == RulePolicy::instance) return planEvents(rule);
    if (rule.policy == RulePolicy::condition && !context_.isPartial) releaseUnwatched(rule);
    for (RuleInputs const& inputs : places_) {
      if (!concerns(rule, inputs)) continue;
      if (!rule.hourSetting.empty()) {
        planScheduled(rule, inputs);
      } else {
        planFindings(rule, inputs, rule.evaluate(inputs, values_));
      }
    }
  }

  bool concerns(Rule const& rule, RuleInputs const& inputs) const {
    return inputs.place.isSelected || (rule.reach == RuleReach::everyPlace && values_.everyPlace);
  }

  void skip(Rule const& rule) {
    add(settingOff, rule);
    for (RuleInputs const& inputs : places_) release(rule, inputs, {});
  }

  // ---- Conditions and what is told once a day

  void planFindings(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation) {
    Keys found;
    for (Finding const& finding : evaluation.findings) {
      found.insert(keyOf(rule, finding, inputs));
      Event event{finding, &inputs, inputs.place.name, !inputs.place.isSelected, evaluation.measured};
      rule.policy == RulePolicy::daily ? planDaily(rule, event) : planCondition(rule, event);
    }
    if (evaluation.findings.empty()) tellNothing(rule, inputs, evaluation);
    if (!isUnknown(rule, inputs, evaluation)) release(rule, inputs, found);
  }

  static std::string noteOf(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation) {
    std::string const problem = inputs.problemOf(rule.inputs);
    return problem.empty() ? std::string(evaluation.note) : problem;
  }

  static std::string identifierOf(Rule const& rule, Finding const& finding) {
    return finding.identifier.empty() ? std::string(rule.stem) : finding.identifier;
  }

  static std::string keyOf(Rule const& rule, Finding const& finding, RuleInputs const& inputs) {
    std::string identifier = identifierOf(rule, finding);
    return rule.policy == RulePolicy::condition ? identifier + "@" + inputs.place.tag : identifier;
  }

  void planCondition(Rule const& rule, Event const& event) {
    Decision decision = draft(rule, event);
    auto const* const lastSeen = find(state_.lastActiveAt, decision.key);
    if (lastSeen != nullptr) decision.since = *lastSeen;
    bool const isActive = state_.activeConditionIDs.contains(decision.key);
    // Not longer than the gap even where somebody set the clock back in between.
    bool const isFlicker =
        lastSeen != nullptr && std::chrono::abs(context_.now - *lastSeen) < rule.minimumGap;
    decision.outcome = isActive ? stillActive : isFlicker ? returnedTooSoon : told(rule, event);
    plan_.decisions.push_back(std::move(decision));
  }

  void planDaily(Rule const& rule, Event const& event) {
    Decision decision = draft(rule, event);
    decision.outcome =
        wasToldToday(decision.key, *event.inputs, context_.now) ? alreadyToldToday : told(rule, event);
    if (auto const* const last = find(state_.lastToldAt, decision.key)) decision.since = *last;
    plan_.decisions.push_back(std::move(decision));
  }

  bool wasToldToday(std::string_view key, RuleInputs const& inputs, Instant moment) const {
    auto const* const last = find(state_.lastToldAt, key);
    if (last == nullptr) return false;
    // A clock that was set back over midnight brings no second day.
    bool const wasAhead = *last > moment && *last - moment < std::chrono::hours(24);
    return wasAhead || inputs.calendar.isSameDay(*last, moment);
  }

  /// Conditions of the rule at the place that hold no longer.
  void release(Rule const& rule, RuleInputs const& inputs, Keys const& found) {
    std::string const ending = "@" + inputs.place.tag;
    for (std::string const& key : state_.activeConditionIDs) {
      bool const isOurs = key.ends_with(ending) && ruleOf(key) == &rule;
      if (!isOurs || found.contains(key)) continue;
      Decision& decision = add(conditionFalse, rule);
      decision.key = key;
      decision.place = inputs.place.name;
    }
  }

  /// Conditions of the rule at places that it does not look at any more: nobody knows whether they hold.
  void releaseUnwatched(Rule const& rule) {
    for (std::string const& key : state_.activeConditionIDs) {
      if (ruleOf(key) != &rule) continue;
      bool const isWatched = std::ranges::any_of(context_.places, [&](RuleInputs const& inputs) {
        return concerns(rule, inputs) && key.ends_with("@" + inputs.place.tag);
      });
      if (!isWatched) add(conditionFalse, rule).key = key;
    }
  }

  // ---- Events

  void planEvents(Rule const& rule) {
    std::vector<Event> events;
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
    for (Event const& event : events) planEvent(rule, event);
    if (rule.followsEvents && looks > 0 && checks == looks && !context_.isPartial)
      withdrawAbsent(rule, events);
    // One place whose feed fails for ever must not make all that comes from the others old news.
    if (checks > 0) plan_.checked.push_back(&rule);
  }

  /// The rule's feed failed, or there is nothing to look at: false is not known to be false.
  static bool isUnknown(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation) {
    bool const lacksInput = std::ranges::count(kUnknownNotes, evaluation.note) > 0;
    return lacksInput || !inputs.problemOf(rule.inputs).empty();
  }

  void tellNothing(Rule const& rule, RuleInputs const& inputs, Evaluation const& evaluation) {
    Decision& decision = add(isUnknown(rule, inputs, evaluation) ? unknown : conditionFalse, rule);
    decision.place = inputs.place.name;
    decision.measured = evaluation.measured;
    decision.note = noteOf(rule, inputs, evaluation);
  }

  bool isSuppressed(RuleInputs const& inputs) const {
    return context_.suppressedLocationTags.contains(inputs.place.tag);
  }

  /// The first place tells the event; the others are named with it. One that is going away does neither.
  void merge(std::vector<Event>& events, Finding const& finding, RuleInputs const& inputs,
             Evaluation const& evaluation) const {
    auto const known = std::ranges::find_if(
        events, [&](Event const& event) { return event.finding.identifier == finding.identifier; });
    Event alone{finding, &inputs, inputs.place.name, !inputs.place.isSelected, evaluation.measured};
    if (known == events.end()) {
      events.push_back(std::move(alone));
      return;
    }
    if (isSuppressed(inputs)) return;
    if (isSuppressed(*known->inputs)) {
      *known = std::move(alone);
      return;
    }
    known->names += ", " + inputs.place.name;
    known->isElsewhere = true;
  }

  void planEvent(Rule const& rule, Event const& event) {
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
    plan_.decisions.push_back(std::move(decision));
  }

  /// The end of what is shown was thought to be later.
  bool isStillShown(std::string_view key) const {
    auto const* const shown = find(state_.shown, key);
    return shown != nullptr && !shown->isWithdrawn && !isOver(*shown);
  }

  RuleOutcome followed(Decision const& decision, Event const& event) const {
    auto const* const shown = find(state_.shown, decision.key);
    if (shown == nullptr) return alreadyDelivered;
    if (event.finding.severity > shown->severity) return escalated;
    return shown->digest == digestOf(decision.request) ? alreadyDelivered : updated;
  }

  /// An event that two good checks in a row do not find is over: a feed may drop one for a moment.
  void withdrawAbsent(Rule const& rule, std::vector<Event> const& events) {
    for (auto const& [key, shown] : state_.shown) {
      bool const isPresent =
          std::ranges::any_of(events, [&](Event const& event) { return event.finding.identifier == key; });
      if (isPresent || isOver(shown) || shown.isWithdrawn || ruleOf(key) != &rule) continue;
      takeAway(shown.wasAbsent ? withdrawn : absent, rule, key, shown);
    }
  }

  /// Its end is known, whatever the feeds say or fail to say.
  void withdrawEnded() {
    for (auto const& [key, shown] : state_.shown) {
      Rule const* const rule = ruleOf(key);
      if (rule == nullptr || shown.isWithdrawn || !isOver(shown) || isProlonged(*rule, key)) continue;
      takeAway(withdrawn, *rule, key, shown);
    }
  }

  bool isOver(ShownEvent const& shown) const { return shown.ends && *shown.ends <= context_.now; }

  /// A later message of the event has moved its end.
  bool isProlonged(Rule const& rule, std::string_view key) const {
    if (!context_.settings.boolean(rule.setting)) return false;
    return std::ranges::any_of(context_.places, [&](RuleInputs const& inputs) {
      if (!concerns(rule, inputs)) return false;
      Evaluation const evaluation = rule.evaluate(inputs, values_);
      return std::ranges::any_of(evaluation.findings, [&](Finding const& finding) {
        return finding.identifier == key && (!finding.ends || *finding.ends > context_.now);
      });
    });
  }

  void takeAway(RuleOutcome outcome, Rule const& rule, std::string const& key, ShownEvent const& shown) {
    Decision& decision = add(outcome, rule);
    decision.key = key;
    decision.request.identifier = key;
    decision.severity = shown.severity;
  }

  // ---- Told, listed or held

  /// What happens to a finding that is new.
  RuleOutcome told(Rule const& rule, Event const& event) const {
    if (auto const reason = held(rule, event)) return *reason;
    if (event.finding.isCovered || isOldNews(rule, event.finding)) return listed;
    return announced;
  }

  std::optional<RuleOutcome> held(Rule const& rule, Event const& event) const {
    if (isSuppressed(*event.inputs)) return suppressed;
    bool const isExempt = event.finding.severity == AlertSeverity::critical && !values_.quiet.holdsCritical;
    if (isExempt) return std::nullopt;
    if (isMuted(rule, event.finding)) return muted;
    return heldAtHour(values_, context_.now, event.inputs->calendar.hour(context_.now));
  }

  static std::string kindOf(Rule const& rule, Finding const& finding) {
    return finding.kind.empty() ? std::string(withoutJoint(rule.stem)) : finding.kind;
  }

  bool isMuted(Rule const& rule, Finding const& finding) const {
    return mutes(values_, context_.now, withoutJoint(rule.stem), kindOf(rule, finding), finding.severity);
  }

  bool isOldNews(Rule const& rule, Finding const& finding) const {
    return rule.policy == RulePolicy::instance && finding.severity < AlertSeverity::critical &&
           !state_.firstCheckedAt.contains(rule.stem) && finding.began &&
           *finding.began < context_.now - kNewsLife;
  }

  // ---- Scheduled for an hour

  void planScheduled(Rule const& rule, RuleInputs const& inputs) {
    int const hour = static_cast<int>(context_.settings.integer(rule.hourSetting));
    Instant const due = nextDue(rule, inputs, hour);
    RuleInputs then = inputs;
    then.now = due;
    then.readWeather();
    Evaluation const evaluation = rule.evaluate(then, values_);
    if (evaluation.findings.empty()) return planFindings(rule, inputs, evaluation);
    Event const event{evaluation.findings.front(), &inputs, inputs.place.name, false, evaluation.measured};
    Decision decision = draft(rule, event);
    NotificationRequest const& request = decision.request;
    decision.outcome =
        isMuted(rule, event.finding) ? muted
        : isWaiting(rule)
            ? heldAtHour(values_, context_.now, inputs.calendar.hour(context_.now)).value_or(refused)
            : scheduled;
    if (rule.summary && values_.generatedSummaries) {
      bool const isAhead = !inputs.calendar.isSameDay(context_.now, due);
      decision.prompt = summaryPrompt(then, *rule.summary, isAhead);
    }
    decision.scheduled =
        ScheduledNotification{request.identifier, request.title,   request.body, request.sound, hour, 0, due,
                              inputs.place.name,  inputs.place.tag};
    plan_.decisions.push_back(std::move(decision));
  }

  /// What was due before this pass could not be told yet, and is not to be replaced by tomorrow's.
  bool isWaiting(Rule const& rule) const {
    return std::ranges::any_of(state_.scheduled, [&](ScheduledNotification const& entry) {
      return entry.identifier == rule.stem && entry.due <= context_.now;
    });
  }

  Instant nextDue(Rule const& rule, RuleInputs const& inputs, int hour) const {
    Date const day = inputs.calendar.day(context_.now);
    auto const at = [&](Date date) {
      return inputs.calendar.instant(LocalTime(std::chrono::local_days(date)) + std::chrono::hours(hour));
    };
    Date next = day;
    while (at(next) <= context_.now || wasToldToday(rule.stem, inputs, at(next))) next = addDays(next, 1);
    return at(next);
  }

  // ---- Pieces

  Decision& add(RuleOutcome outcome, Rule const& rule) {
    Decision& decision = plan_.decisions.emplace_back();
    decision.outcome = outcome;
    decision.rule = &rule;
    return decision;
  }

  Decision draft(Rule const& rule, Event const& event) const {
    Decision decision;
    decision.rule = &rule;
    decision.key = keyOf(rule, event.finding, *event.inputs);
    decision.severity = event.finding.severity;
    decision.kind = kindOf(rule, event.finding);
    decision.ends = event.finding.ends;
    decision.place = event.names;
    decision.measured = event.measured;
    decision.storm = event.finding.storm;
    decision.request = requestOf(rule, event, decision.key);
    return decision;
  }

  NotificationRequest requestOf(Rule const& rule, Event const& event, std::string const& key) const {
    Finding const& finding = event.finding;
    bool const isQuiet = finding.isCovered || isOldNews(rule, finding);
    NotificationRequest request = requestFor(rule, finding, values_.sounds, isQuiet, context_.texts);
    request.identifier = event.inputs->place.isSelected ? identifierOf(rule, finding) : key;
    if (event.isElsewhere)
      request.title = context_.texts.format("push.withPlace", event.names, finding.title);
    return request;
  }

  PassContext const& context_;
  EngineState const& state_;
  std::vector<RuleInputs> places_;  ///< with what the state remembers for rules
  RuleSettings values_;
  PassPlan plan_;
};

}  // namespace

PassPlan planPass(PassContext const& context, EngineState const& state) {
  return Planner(context, state).plan();
}

}  // namespace nimbara
