#include "base/sha256.h"
#include "notifications/catalogue.h"
#include "notifications/engine/pass_plan.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleOutcome;

/// An event that was not found for so long does not return. A fire is another one by then, even at the same
/// place.
constexpr std::chrono::days kEventMemory{60};
constexpr std::chrono::days kFireMemory{3};
constexpr double kSamePartKm = 2;
constexpr std::size_t kMostParts = 16;
constexpr std::string_view kFireStem = "fire_";
constexpr std::string_view kStormStem = "hurricane_";

/// Between a digest and the language of what it is of.
constexpr char kLanguageMark = '@';

/// An end that is moved by less changes nobody's plans.
constexpr std::chrono::hours kMovedEnd{1};

/// Remembered after its end, so that a late repetition is no news.
constexpr std::chrono::hours kMemoryAfterEnd{24};
/// Of a rule about rain that nobody looks at any more.
constexpr std::chrono::hours kRainMemory{7 * 24};

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

/// To the day, so that a pass that finds only what is known changes nothing.
void rememberEvent(Decision const& decision, Instant now, EngineState& state) {
  state.deliveredAt[decision.key] = std::chrono::floor<std::chrono::days>(now);
}

/// What is sent of an event after its first sight has an identifier of its own, which is remembered like it.
void rememberNews(Decision const& decision, Instant now, EngineState& state) {
  bool const isNews = decision.rule->followsEvents && decision.request.identifier != decision.key;
  if (!isNews) return;
  state.deliveredIDs.insert(decision.request.identifier);
  state.deliveredAt[decision.request.identifier] = std::chrono::floor<std::chrono::days>(now);
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
      rememberEvent(decision, now, state);
      rememberNews(decision, now, state);
      break;
  }
}

/// Changes of a storm are measured from what was sent of it, even if that was long ago.
void rememberStorm(Decision const& decision, EngineState& state) {
  if (decision.storm) state.knownStorms.insert_or_assign(decision.storm->id, decision.storm->as);
}

/// A fire is known by where its parts were seen in the last days, however they move.
void rememberFire(Decision const& decision, Instant now, EngineState& state) {
  if (decision.fire.empty()) return;
  std::vector<SeenFire> parts = decision.fire;
  for (SeenFire const& old : state.knownFires[decision.key]) {
    bool const isSeenAgain = std::ranges::any_of(parts, [&](SeenFire const& part) {
      return haversineKm({part.latitude, part.longitude}, {old.latitude, old.longitude}) < kSamePartKm;
    });
    if (!isSeenAgain && now - old.seen < kFireMemory && parts.size() < kMostParts) parts.push_back(old);
  }
  state.knownFires[decision.key] = std::move(parts);
}

/// Found, whatever was made of it.
void rememberFound(Decision const& decision, ShownEvent& shown) {
  shown.wasAbsent = false;
  shown.absentSince.reset();
  shown.updates = updatesWith(shown, decision);
  if (decision.issued) shown.issued = std::max(shown.issued.value_or(*decision.issued), *decision.issued);
  if (!decision.placeTag.empty()) shown.placeTag = decision.placeTag;
  if (!decision.isPartial) {
    shown.isOfVisit = false;
    shown.placeTags.clear();
  }
  for (std::string const& tag : decision.placeTags) {
    if (std::ranges::count(shown.placeTags, tag) == 0) shown.placeTags.push_back(tag);
  }
}

/// Under which the desktop has it from now on.
void rememberName(Decision const& decision, ShownEvent& shown) {
  bool const isOwn = decision.request.identifier == decision.key;
  shown.identifier = isOwn ? std::string() : decision.request.identifier;
}

void rememberOver(Decision const& decision, Instant now, EngineState& state) {
  ShownEvent& shown = state.shown[decision.key];
  shown.isWithdrawn = shown.isLifted = true;
  rememberName(decision, shown);
  rememberNews(decision, now, state);
}

void rememberShown(Decision const& decision, EngineState& state) {
  if (!decision.rule->followsEvents) return;
  auto const [entry, isNew] = state.shown.try_emplace(decision.key);
  ShownEvent& shown = entry->second;
  bool const isAnew = isNew || shown.isLifted;
  bool const isText = decision.outcome == updated;
  bool const rings = decision.outcome == announced || decision.outcome == escalated;
  if (isAnew) {
    shown.placeTags.clear();
    shown.isOfVisit = true;
  }
  rememberFound(decision, shown);
  shown.severity = isAnew ? decision.severity : std::max(shown.severity, decision.severity);
  shown.digest = decision.digest;
  shown.hasRung = rings || (shown.hasRung && !isAnew);
  shown.wasCovered = decision.isCovered && !shown.hasRung;
  shown.wasNear = decision.isNear;
  shown.isWithdrawn = shown.isLifted = false;
  if (!isText || isAnew) {
    shown.toldEnds = decision.ends;
    shown.toldUpdates = shown.updates;
  }
  rememberName(decision, shown);
  shown.ends = decision.ends;
  shown.began = decision.began;
  if (!decision.title.empty()) shown.title = decision.title;
  shown.kind = decision.kind;
  shown.place = decision.place;
  shown.event = decision.event;
}

/// A look at one of its places says nothing of the others.
void rememberAbsent(Decision const& decision, ShownEvent& shown, Instant now) {
  auto const isMissed = [&](std::string const& tag) {
    return std::ranges::count(decision.placeTags, tag) > 0;
  };
  bool const isElsewhere = decision.isPartial && !std::ranges::all_of(shown.placeTags, isMissed);
  if (isElsewhere) {
    std::erase_if(shown.placeTags, isMissed);
    return;
  }
  if (!shown.wasAbsent || !shown.absentSince) shown.absentSince = now;
  shown.wasAbsent = true;
}

/// A rule that is off has nothing scheduled for any place.
void unscheduleFor(Decision const& decision, EngineState& state) {
  std::string const& identifier = decision.request.identifier;
  std::erase_if(state.scheduled, [&](ScheduledNotification const& entry) {
    if (decision.outcome == settingOff) return ruleOf(entry.identifier) == decision.rule;
    return entry.identifier == (identifier.empty() ? decision.rule->stem : identifier);
  });
}

void forget(Decision const& decision, EngineState& state) {
  if (isScheduled(*decision.rule)) unscheduleFor(decision, state);
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

std::string digestOf(NotificationRequest const& request, std::string_view language) {
  return sha256Hex(request.title + "\n" + request.body) + kLanguageMark + std::string(language);
}

bool areComparable(std::string_view digest, std::string_view other) {
  auto const language = [](std::string_view text) {
    return text.substr(std::min(text.find(kLanguageMark), text.size()));
  };
  return !language(digest).empty() && language(digest) == language(other);
}

int updatesWith(ShownEvent const& shown, Decision const& decision) {
  // A list without times has no messages to be told apart.
  bool const isNewer = shown.issued && decision.issued && *decision.issued > *shown.issued;
  return std::max(shown.updates + (isNewer ? 1 : 0), decision.updates.value_or(0));
}

std::map<std::string, int, std::less<>> updatesSince(EngineState const& before, EngineState const& state) {
  std::map<std::string, int, std::less<>> updates;
  for (auto const& [key, shown] : state.shown) {
    auto const* const old = find(before.shown, key);
    if (old != nullptr && shown.updates > old->updates) updates[key] = shown.updates;
  }
  return updates;
}

bool hasMovedEnd(ShownEvent const& shown, std::optional<Instant> ends) {
  auto const& told = shown.toldEnds ? shown.toldEnds : shown.ends;
  return told && ends && std::chrono::abs(*ends - *told) > kMovedEnd;
}

void settleSchedule(Decision& decision, EngineState const& state) {
  bool const isPlanned = decision.outcome == scheduled || decision.outcome == stillScheduled;
  if (!isPlanned || !decision.scheduled) return;
  ScheduledNotification entry = *decision.scheduled;
  auto const wording = state.aiSummaryCache.find(summaryKey(entry));
  if (!decision.prompt.empty() && wording != state.aiSummaryCache.end()) entry.body = wording->second;
  decision.outcome = std::ranges::count(state.scheduled, entry) > 0 ? stillScheduled : scheduled;
}

void apply(Decision const& decision, Instant now, EngineState& state) {
  if (!decision.counted.empty()) {
    for (Decision const& one : decision.counted) apply(one, now, state);
    return;
  }
  switch (decision.outcome) {
    case announced:
    case escalated:
    case listed:
    case endMoved:
      remember(decision, now, state);
      rememberShown(decision, state);
      rememberStorm(decision, state);
      rememberFire(decision, now, state);
      break;
    case updated:
      rememberShown(decision, state);
      break;
    case withdrawn:
      state.shown[decision.key].isWithdrawn = true;
      break;
    case lifted:
    case cancelled:
      rememberOver(decision, now, state);
      break;
    case absent:
      rememberAbsent(decision, state.shown[decision.key], now);
      break;
    case alreadyDelivered:
      if (auto* const shown = find(state.shown, decision.key)) {
        rememberFound(decision, *shown);
        shown->digest = decision.digest;
        shown->title = decision.title;
        shown->ends = decision.ends;
        shown->began = decision.began;
        shown->event = decision.event;
      }
      rememberEvent(decision, now, state);
      rememberStorm(decision, state);
      rememberFire(decision, now, state);
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
      if (auto* const shown = find(state.shown, decision.key)) rememberFound(decision, *shown);
      break;
  }
}

namespace {

bool hasEventOf(std::string const& storm, EngineState const& state) {
  std::string const beginning = std::string(kStormStem) + storm;
  auto const found = state.deliveredIDs.lower_bound(beginning);
  return found != state.deliveredIDs.end() && found->starts_with(beginning);
}

void forgetOldEvents(Instant now, EngineState& state) {
  auto const today = std::chrono::floor<std::chrono::days>(now);
  std::erase_if(state.deliveredIDs, [&](std::string const& key) {
    Rule const* const rule = ruleOf(key);
    if (rule == nullptr || rule->policy != RulePolicy::instance) return false;
    // Those of an older version have no day yet.
    Instant const found = state.deliveredAt.try_emplace(key, today).first->second;
    bool const isOld = today - found > (rule->stem == kFireStem ? kFireMemory : kEventMemory);
    if (isOld) state.deliveredAt.erase(key);
    return isOld;
  });
  std::erase_if(state.knownFires, [&](auto const& fire) { return !state.deliveredIDs.contains(fire.first); });
  std::erase_if(state.knownStorms, [&](auto const& storm) { return !hasEventOf(storm.first, state); });
}

}  // namespace

void applyChecks(PassPlan const& plan, Instant now, EngineState& state) {
  for (Rule const* const rule : plan.checked) state.firstCheckedAt.try_emplace(std::string(rule->stem), now);
  std::erase_if(state.shown, [&](auto const& entry) {
    return entry.second.ends && *entry.second.ends + kMemoryAfterEnd < now;
  });
  forgetOldEvents(now, state);
  for (auto const& [key, memory] : plan.rain) state.rain.insert_or_assign(key, memory);
  std::erase_if(state.rain, [now](auto const& entry) {
    return entry.second.seenAt && now - *entry.second.seenAt > kRainMemory;
  });
}

void takeBack(Decision const& decision, EngineState& state, EngineState const& before) {
  for (Decision const& one : decision.counted) takeBack(one, state, before);
  for (std::string const& identifier : {decision.key, decision.request.identifier}) {
    restoreMember(identifier, state.deliveredIDs, before.deliveredIDs);
    restore(identifier, state.deliveredAt, before.deliveredAt);
  }
  restoreMember(decision.key, state.activeConditionIDs, before.activeConditionIDs);
  restore(decision.key, state.lastActiveAt, before.lastActiveAt);
  restore(decision.key, state.lastToldAt, before.lastToldAt);
  restore(decision.key, state.shown, before.shown);
  restore(decision.key, state.knownFires, before.knownFires);
  if (isScheduled(*decision.rule)) state.scheduled = before.scheduled;
  if (decision.storm) restore(decision.storm->id, state.knownStorms, before.knownStorms);
}

}  // namespace nimbara
