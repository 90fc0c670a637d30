#include "base/sha256.h"
#include "notifications/pass_plan.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleOutcome;

constexpr RuleOutcome kDeliveries[] = {announced, escalated, listed, updated, withdrawn};
constexpr RuleOutcome kHeldBack[] = {muted, heldByQuietHours, snoozed, suppressed};
constexpr RuleOutcome kKnown[] = {stillActive, returnedTooSoon, alreadyDelivered, alreadyToldToday};

/// Remembered after its end, so that a late repetition is no news.
constexpr std::chrono::hours kMemoryAfterEnd{24};

template <class Container>
auto* find(Container& container, std::string_view key) {
  auto const found = container.find(key);
  return found == container.end() ? nullptr : &found->second;
}

void unschedule(std::string_view identifier, EngineState& state) {
  std::erase_if(state.scheduled,
                [&](ScheduledNotification const& entry) { return entry.identifier == identifier; });
}

bool isScheduled(Rule const& rule) {
  return !rule.hourSetting.empty();
}

void remember(Decision const& decision, Instant now, EngineState& state) {
  state.deliveredIDs.insert(decision.key);
  switch (decision.rule->policy) {
    case RulePolicy::condition:
      state.activeConditionIDs.insert(decision.key);
      state.lastActiveAt[decision.key] = now;
      break;
    case RulePolicy::daily:
      state.lastToldAt[decision.key] = now;
      if (isScheduled(*decision.rule)) unschedule(decision.key, state);
      break;
    case RulePolicy::instance:
      break;
  }
}

/// Changes of a storm are measured from what was told of it, be that told long ago.
void rememberStorm(Decision const& decision, EngineState& state) {
  if (decision.storm) state.knownStorms.insert_or_assign(decision.storm->id, decision.storm->as);
}

void rememberShown(Decision const& decision, EngineState& state) {
  if (!decision.rule->followsEvents) return;
  ShownEvent& shown = state.shown[decision.key];
  AlertSeverity const gravest = std::max(shown.severity, decision.severity);
  shown = {gravest, digestOf(decision.request), decision.ends, false, false};
}

void forget(Decision const& decision, EngineState& state) {
  if (isScheduled(*decision.rule)) unschedule(decision.rule->stem, state);
  if (decision.key.empty()) return;
  state.activeConditionIDs.erase(decision.key);
  state.deliveredIDs.erase(decision.key);
}

void schedule(ScheduledNotification const& entry, EngineState& state) {
  unschedule(entry.identifier, state);
  state.scheduled.push_back(entry);
}

template <class Map>
void restore(std::string const& key, Map& map, Map const& before) {
  if (auto const* const old = find(before, key)) {
    map.insert_or_assign(key, *old);
  } else {
    map.erase(key);
  }
}

void restoreMember(std::string const& key, EngineState::Strings& set, EngineState::Strings const& before) {
  if (before.contains(key)) {
    set.insert(key);
  } else {
    set.erase(key);
  }
}

}  // namespace

std::string digestOf(NotificationRequest const& request) {
  return sha256Hex(request.title + "\n" + request.body);
}

bool isDelivery(RuleOutcome outcome) {
  return std::ranges::count(kDeliveries, outcome) > 0;
}

bool isAction(RuleOutcome outcome) {
  return isDelivery(outcome) || outcome == scheduled;
}

bool isHeldBack(RuleOutcome outcome) {
  return std::ranges::count(kHeldBack, outcome) > 0;
}

bool isKnown(RuleOutcome outcome) {
  return std::ranges::count(kKnown, outcome) > 0;
}

void apply(Decision const& decision, Instant now, EngineState& state) {
  switch (decision.outcome) {
    case announced:
    case escalated:
    case listed:
      remember(decision, now, state);
      rememberShown(decision, state);
      rememberStorm(decision, state);
      break;
    case updated:
      rememberShown(decision, state);
      break;
    case withdrawn:
      state.shown[decision.key].isWithdrawn = true;
      break;
    case absent:
      state.shown[decision.key].wasAbsent = true;
      break;
    case alreadyDelivered:
      if (auto* const shown = find(state.shown, decision.key)) {
        shown->wasAbsent = false;
        shown->ends = decision.ends;
      }
      rememberStorm(decision, state);
      break;
    case stillActive:
    case returnedTooSoon:
      remember(decision, now, state);
      break;
    case scheduled:
      schedule(*decision.scheduled, state);
      break;
    case conditionFalse:
    case settingOff:
      forget(decision, state);
      break;
    default:
      // Held back it may be, but it was found.
      if (auto* const shown = find(state.shown, decision.key)) shown->wasAbsent = false;
      break;
  }
}

void applyChecks(PassPlan const& plan, Instant now, EngineState& state) {
  for (Rule const* const rule : plan.checked) state.firstCheckedAt.try_emplace(std::string(rule->stem), now);
  std::erase_if(state.shown, [&](auto const& entry) {
    return entry.second.ends && *entry.second.ends + kMemoryAfterEnd < now;
  });
}

void takeBack(Decision const& decision, EngineState& state, EngineState const& before) {
  restoreMember(decision.key, state.deliveredIDs, before.deliveredIDs);
  restoreMember(decision.key, state.activeConditionIDs, before.activeConditionIDs);
  restore(decision.key, state.lastActiveAt, before.lastActiveAt);
  restore(decision.key, state.lastToldAt, before.lastToldAt);
  restore(decision.key, state.shown, before.shown);
  if (isScheduled(*decision.rule)) state.scheduled = before.scheduled;
  if (decision.storm) restore(decision.storm->id, state.knownStorms, before.knownStorms);
}

}  // namespace nimbara
