#include "notifications/engine/notification_manager.h"

#include "base/files/file_lock.h"
#include "notifications/catalogue.h"
#include "notifications/custom/custom_rule_pass.h"
#include "notifications/log/notification_log.h"
#include "notifications/rules/mute_changes.h"

#include <algorithm>
#include <iterator>
#include <ranges>

namespace nimbara {

namespace {

using enum RuleOutcome;

constexpr std::chrono::hours kSnooze{1};

}  // namespace

/// What one pass works with. The caller holds the turn and, where there is one, the lock.
class NotificationManager::Pass {
 public:
  using IsOver = std::function<bool()>;

  /// Once `isOver` says so, nothing more is delivered.
  Pass(NotificationManager& manager, IsOver isOver, std::stop_token const& stop = {})
      : manager_(manager),
        around_(manager.around_),
        isOver_(std::move(isOver)),
        stop_(stop),
        now_(around_.clock.now()) {
    load();
  }

  Instant now() const { return now_; }
  EngineState const& state() const { return state_; }
  PassReport& report() { return report_; }

  /// Carries out everything, in order.
  void run(PassPlan plan) {
    if (isOver_()) {
      report_.end = PassReport::End::superseded;
      return;
    }
    for (Decision& decision : plan.decisions) {
      if (decision.scheduled && !decision.prompt.empty()) {
        reword(decision);
        settleSchedule(decision, state_);
      }
    }
    carryOut(plan.decisions, [&] { applyChecks(plan, now_, state_); });
    std::ranges::move(plan.decisions, std::back_inserter(report_.plan.decisions));
    report_.plan.checked = std::move(plan.checked);
  }

  /// Tells what is due of the schedule and forgets what was missed for too long.
  void tellScheduled(Settings const& settings) {
    DuePlan plan = planDue(now_, settings, *manager_.texts(), manager_.suppressedTags(), state_);
    forgetMissed(plan, state_);
    std::vector<Decision> decisions;
    decisions.reserve(plan.entries.size());
    for (DuePlan::Entry& entry : plan.entries) decisions.push_back(std::move(entry.decision));
    bool const isAnything = !decisions.empty() || !plan.missed.empty();
    if (isAnything) carryOut(decisions, [] {});
    std::ranges::move(decisions, std::back_inserter(report_.plan.decisions));
  }

  static void forgetMissed(DuePlan const& plan, EngineState& state) {
    std::erase_if(state.scheduled, [&](ScheduledNotification const& entry) {
      return std::ranges::count(plan.missed, entry.identifier) > 0;
    });
  }

  void finish() {
    std::lock_guard const lock(manager_.mutex_);
    manager_.lastKnown_ = state_;
    manager_.isAhead_ = !isKept_;
  }

 private:
  void load() {
    auto stored = around_.store.read(StoreArea::state);
    auto state = stored ? engineStateOf(*stored) : std::unexpected(stored.error());
    std::lock_guard const lock(manager_.mutex_);
    EngineState const& known = manager_.lastKnown_;
    isKept_ = state && !manager_.isAhead_;
    if (state) {
      state_ = manager_.isAhead_ ? merged(std::move(*state), known) : std::move(*state);
      return;
    }
    // Without the memory of other runs only what cannot wait is sent.
    canRemember_ = false;
    report_.problems.push_back(state.error().message);
    state_ = known;
  }

  /// All is remembered first, with one write, and told then: a process that dies in between has told at most
  /// once. What could not be sent is forgotten again.
  void carryOut(std::vector<Decision>& decisions, auto const& alsoRemember) {
    EngineState const before = state_;
    for (Decision const& decision : decisions) apply(decision, now_, state_);
    alsoRemember();
    updates_ = updatesSince(before, state_);
    isKept_ = save(decisions);
    bool isOtherwise = false;
    for (Decision& decision : decisions) {
      if (!isDelivery(decision.outcome)) continue;
      if (isOver_()) {
        report_.end = PassReport::End::superseded;
        state_.firstCheckedAt = before.firstCheckedAt;
        takeBack(decision, state_, before);
        withoutLine_.push_back(&decision);
        isOtherwise = true;
        continue;
      }
      bool const isCritical = decision.severity == AlertSeverity::critical;
      auto const done = isKept_ || isCritical ? handOver(decision) : notRemembered();
      if (done) {
        std::lock_guard const lock(manager_.mutex_);
        manager_.kinds_[decision.request.identifier] = decision.kind;
      } else {
        refuse(decision, before, done.error().message);
        isOtherwise = true;
      }
    }
    if (isOtherwise) isKept_ = save(decisions);
    finish();
    logBefore_.reset();
    withoutLine_.clear();
    updates_.clear();
  }

  static Result<void, DeliveryError> notRemembered() {
    return std::unexpected(
        DeliveryError{DeliveryError::Kind::refused, "the notifications sent could not be saved"});
  }

  /// One wording for a summary and day; the template stays where the model has nothing fit to show.
  void reword(Decision& decision) {
    if (around_.languageModel == nullptr || !around_.languageModel->isThere() || isOver_()) return;
    ScheduledNotification& entry = *decision.scheduled;
    std::string const key = summaryKey(entry);
    if (!state_.aiSummaryCache.contains(key)) {
      auto const reply = around_.languageModel->reply(decision.prompt, stop_);
      if (!reply) report_.problems.push_back(reply.error());
      auto const wording = reply ? cleanedSummary(*reply) : std::nullopt;
      if (!wording) return;
      std::erase_if(state_.aiSummaryCache,
                    [&](auto const& old) { return old.first.starts_with(entry.identifier); });
      state_.aiSummaryCache[key] = *wording;
    }
    entry.body = decision.request.body = state_.aiSummaryCache[key];
  }

  Result<void, DeliveryError> handOver(Decision const& decision) {
    switch (decision.outcome) {
      case updated:
        return around_.center.update(decision.request);
      case withdrawn:
        around_.center.withdraw(decision.request.identifier);
        return {};
      default:
        return replace(decision);
    }
  }

  /// What the desktop has of the event goes once the new is there.
  Result<void, DeliveryError> replace(Decision const& decision) {
    auto done = deliver(decision.request);
    if (done && !decision.replaces.empty()) around_.center.withdraw(decision.replaces);
    return done;
  }

  /// A desktop that cannot be reached is tried once in a pass: each attempt may start a service that fails.
  Result<void, DeliveryError> deliver(NotificationRequest const& request) {
    if (unreachable_) return std::unexpected(*unreachable_);
    auto done = around_.center.deliver(request);
    if (!done && done.error().kind == DeliveryError::Kind::unavailable) unreachable_ = done.error();
    return done;
  }

  void refuse(Decision& decision, EngineState const& before, std::string const& reason) {
    takeBack(decision, state_, before);
    decision.outcome = refused;
    decision.note = reason;
    report_.problems.push_back(decision.request.identifier + " was not delivered: " + reason);
  }

  /// Of what is carried out together.
  std::vector<LoggedNotification> linesOf(std::vector<Decision> const& decisions) const {
    std::vector<LoggedNotification> lines;
    for (Decision const& decision : decisions) {
      bool const isTold = std::ranges::count(withoutLine_, &decision) == 0;
      if (isTold && isWorthALine(decision.outcome)) lines.push_back(logLineOf(decision, now_));
    }
    return lines;
  }

  StoreChanges logChanges(SettingValues const& stored, std::vector<LoggedNotification> const& lines) {
    if (lines.empty() && updates_.empty() && !logBefore_) return {};
    bool const isFirst = !logBefore_;
    if (isFirst) logBefore_ = notificationLogOf(stored);
    bool const isNoted = noteUpdates(*logBefore_, updates_);
    StoreChanges changes = logChange(*logBefore_, lines);
    return changes.empty() && (isNoted || !isFirst) ? logReplacement(*logBefore_) : changes;
  }

  /// False when the store does not take it. The lines of a second call replace those of the first.
  bool save(std::vector<Decision> const& decisions) {
    if (!canRemember_) return false;
    auto const done = around_.store.update(
        StoreArea::state, [&](SettingValues const& stored) -> Result<StoreChanges, StoreError> {
          StoreChanges changes = changesOf(state_);
          changes.merge(logChanges(stored, linesOf(decisions)));
          // A pass that changed nothing wakes nobody who watches the store.
          std::erase_if(changes, [&](auto const& change) {
            auto const old = stored.find(change.first);
            return old != stored.end() && old->second == change.second;
          });
          return changes;
        });
    if (!done && std::ranges::count(report_.problems, done.error().message) == 0) {
      report_.problems.push_back(done.error().message);
    }
    return done.has_value();
  }

  NotificationManager& manager_;
  Surroundings& around_;
  IsOver isOver_;
  std::stop_token stop_;
  Instant now_;
  EngineState state_;
  bool canRemember_ = true;
  bool isKept_ = true;                                        ///< the store has what is known
  std::optional<DeliveryError> unreachable_;                  ///< why nothing more is handed over
  std::optional<std::vector<LoggedNotification>> logBefore_;  ///< without the lines of this pass
  std::vector<Decision const*> withoutLine_;                  ///< neither told nor refused
  EventUpdates updates_;                                      ///< of what is carried out together
  PassReport report_;
};

namespace {

PassReport ended(PassReport::End end) {
  PassReport report;
  report.end = end;
  return report;
}

}  // namespace

NotificationManager::NotificationManager(Surroundings surroundings)
    : around_(std::move(surroundings)), texts_(std::move(around_.texts)) {
  auto const stored = around_.store.read(StoreArea::state);
  if (!stored) return;
  if (auto state = engineStateOf(*stored)) lastKnown_ = std::move(*state);
}

void NotificationManager::setTexts(std::shared_ptr<Texts const> texts) {
  std::lock_guard const lock(mutex_);
  texts_ = std::move(texts);
}

std::shared_ptr<Texts const> NotificationManager::texts() const {
  std::lock_guard const lock(mutex_);
  return texts_;
}

AuthorizationStatus NotificationManager::requestAuthorization() {
  return authorizationStatus_ = around_.center.requestAuthorization();
}

PassReport NotificationManager::evaluate(GatherInputs const& gather, std::stop_token const& stop) {
  std::uint64_t const token = ++evaluationTailToken_;
  std::lock_guard const turn(evaluationTail_);
  auto const isSuperseded = [&] { return token != evaluationTailToken_ || stop.stop_requested(); };
  if (isSuperseded()) return ended(PassReport::End::superseded);
  authorizationStatus_ = around_.center.authorizationStatus();
  if (authorizationStatus_ != AuthorizationStatus::authorized) return ended(PassReport::End::denied);

  auto const settings = around_.store.settings();
  PassInputs const inputs = gather(neededInputs(settings.settings), stop);
  if (isSuperseded()) return ended(PassReport::End::superseded);

  FileLock const lock(around_.lockFile);
  if (lock.isTaken()) return ended(PassReport::End::busy);
  Pass pass(*this, isSuperseded, stop);
  auto& problems = pass.report().problems;
  if (settings.problem) problems.push_back(settings.problem->message);
  std::ranges::move(settings.settings.faults(), std::back_inserter(problems));
  // First what was due before: the plan puts the next day's in its place.
  pass.tellScheduled(settings.settings);
  EngineState::Strings const suppressed = suppressedTags();
  auto const words = texts();
  auto const own =
      evaluatedRules(inputs.rules, inputs.places, RuleSettings::of(settings.settings), pass.state().rain);
  pass.run(planPass({pass.now(), inputs.places, own, settings.settings, *words, suppressed, inputs.isPartial},
                    pass.state()));
  return std::move(pass.report());
}

PassReport NotificationManager::preview(GatherInputs const& gather, std::stop_token const& stop) {
  auto const settings = around_.store.settings();
  PassInputs const inputs = gather(neededInputs(settings.settings), stop);
  auto const words = texts();
  std::lock_guard const guard(mutex_);
  Instant const now = around_.clock.now();
  EngineState state = lastKnown_;
  DuePlan due = planDue(now, settings.settings, *words, suppressedLocationTags_, state);
  Pass::forgetMissed(due, state);
  for (DuePlan::Entry const& entry : due.entries) apply(entry.decision, now, state);
  PassReport report;
  auto const own =
      evaluatedRules(inputs.rules, inputs.places, RuleSettings::of(settings.settings), state.rain);
  report.plan = planPass(
      {now, inputs.places, own, settings.settings, *words, suppressedLocationTags_, inputs.isPartial}, state);
  auto const told = due.entries | std::views::transform(&DuePlan::Entry::decision);
  report.plan.decisions.insert(report.plan.decisions.begin(), told.begin(), told.end());
  return report;
}

PassReport NotificationManager::tellScheduled() {
  std::lock_guard const turn(evaluationTail_);
  {
    std::lock_guard const guard(mutex_);
    lastLookAtSchedule_ = around_.clock.now();
  }
  if (around_.center.authorizationStatus() != AuthorizationStatus::authorized) {
    return ended(PassReport::End::denied);
  }
  FileLock const lock(around_.lockFile);
  if (lock.isTaken()) return ended(PassReport::End::busy);
  auto const settings = around_.store.settings();
  Pass pass(*this, [] { return false; });
  pass.tellScheduled(settings.settings);
  pass.finish();
  return std::move(pass.report());
}

std::optional<Instant> NotificationManager::nextScheduled() const {
  std::lock_guard const lock(mutex_);
  // A clock that was set back makes the last look one of the future, which says nothing.
  bool const hasLooked = lastLookAtSchedule_ && *lastLookAtSchedule_ <= around_.clock.now();
  std::optional<Instant> next;
  for (ScheduledNotification const& entry : lastKnown_.scheduled) {
    if (hasLooked && entry.due <= *lastLookAtSchedule_) continue;
    if (!next || entry.due < *next) next = entry.due;
  }
  return next;
}

EngineState::Strings NotificationManager::suppressedTags() const {
  std::lock_guard const lock(mutex_);
  return suppressedLocationTags_;
}

void NotificationManager::suppress(std::string const& locationTag) {
  std::lock_guard const lock(mutex_);
  suppressedLocationTags_.insert(locationTag);
}

void NotificationManager::release(std::string_view locationTag) {
  std::lock_guard const lock(mutex_);
  if (auto const found = suppressedLocationTags_.find(locationTag); found != suppressedLocationTags_.end()) {
    suppressedLocationTags_.erase(found);
  }
}

void NotificationManager::releaseAll() {
  std::lock_guard const lock(mutex_);
  suppressedLocationTags_.clear();
}

Result<void, StoreError> NotificationManager::respond(NotificationResponse const& response) {
  if (response.action == "snooze") {
    return around_.store.set("notify_snoozedUntil", formatIso8601(around_.clock.now() + kSnooze));
  }
  if (response.action != "mute") return {};
  std::string kind;
  {
    std::lock_guard const lock(mutex_);
    auto const found = kinds_.find(response.identifier);
    kind = found == kinds_.end() ? kindOfIdentifier(response.identifier) : found->second;
  }
  return changeMutes(around_.store, [&](std::vector<Mute> mutes) {
    return mutedToo(std::move(mutes), {kind, {}}, around_.clock.now());
  });
}

}  // namespace nimbara
