#include "notifications/notification_manager.h"

#include "base/file_lock.h"
#include "notifications/catalogue.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleOutcome;

/// A daily notification that was missed, as in a machine asleep, is told until so long after its hour.
constexpr std::chrono::hours kDailyGrace{3};
constexpr std::chrono::hours kSnooze{1};

/// The row of the catalogue of a daily notification that was scheduled.
Decision decisionOf(ScheduledNotification const& entry) {
  Decision decision;
  decision.outcome = announced;
  decision.rule = ruleOf(entry.identifier);
  decision.key = entry.identifier;
  decision.request.identifier = entry.identifier;
  decision.request.title = entry.title;
  decision.request.body = entry.body;
  decision.request.sound = entry.sound;
  decision.request.category = "weather";
  return decision;
}

LoggedNotification lineOf(Decision const& decision, Instant now) {
  return {now, decision.request.identifier, decision.request.title, std::string(enumName(decision.outcome)),
          decision.place};
}

}  // namespace

/// What one pass works with. The caller holds the turn and, where there is one, the lock.
class NotificationManager::Pass {
 public:
  Pass(NotificationManager& manager, std::uint64_t token, std::stop_token const& stop = {})
      : manager_(manager),
        around_(manager.around_),
        token_(token),
        stop_(stop),
        now_(manager.around_.clock.now()) {
    load();
  }

  bool isNewest() const { return manager_.evaluationTailToken_ == token_; }
  EngineState const& state() const { return state_; }
  PassReport& report() { return report_; }

  /// Carries out everything, in order.
  void run(PassPlan plan) {
    report_.plan = std::move(plan);
    for (Decision& decision : report_.plan.decisions) {
      if (!isDelivery(decision.outcome)) {
        if (decision.outcome == scheduled && !decision.prompt.empty()) reword(decision);
        apply(decision, now_, state_);
        continue;
      }
      if (!isNewest()) {
        report_.end = PassReport::End::superseded;
        break;
      }
      deliver(decision);
    }
    if (report_.end == PassReport::End::completed) applyChecks(report_.plan, now_, state_);
    finish();
  }

  /// Tells what is due of the schedule and forgets what was missed for too long.
  void tellScheduled() {
    std::vector<ScheduledNotification> due;
    std::erase_if(state_.scheduled, [&](ScheduledNotification const& entry) {
      bool const isDue = entry.due <= now_;
      if (isDue && now_ - entry.due <= kDailyGrace) due.push_back(entry);
      return isDue;
    });
    for (ScheduledNotification const& entry : due) {
      Decision decision = decisionOf(entry);
      if (decision.rule == nullptr) continue;
      deliver(decision);
      if (decision.outcome == refused) state_.scheduled.push_back(entry);
      report_.plan.decisions.push_back(std::move(decision));
    }
  }

  void finish() {
    save();
    std::lock_guard const lock(manager_.mutex_);
    manager_.lastKnown_ = state_;
  }

 private:
  void load() {
    auto stored = around_.store.read(StoreArea::state);
    auto state = stored ? engineStateOf(*stored) : std::unexpected(stored.error());
    if (state) {
      state_ = std::move(*state);
      return;
    }
    // Without the memory of other runs only what cannot wait is told.
    canRemember_ = false;
    report_.problems.push_back(state.error().message);
    std::lock_guard const lock(manager_.mutex_);
    state_ = manager_.lastKnown_;
  }

  /// Remembered first and told then: a process that dies in between has told at most once.
  void deliver(Decision& decision) {
    EngineState const before = state_;
    apply(decision, now_, state_);
    bool const isCritical = decision.severity == AlertSeverity::critical;
    if (!save() && !isCritical) return refuse(decision, before, "what was told could not be remembered");
    if (auto const done = handOver(decision); !done) {
      refuse(decision, before, done.error().message);
      save();
      return;
    }
    lines_.push_back(lineOf(decision, now_));
    std::lock_guard const lock(manager_.mutex_);
    manager_.kinds_[decision.request.identifier] = decision.kind;
  }

  /// One wording for a summary and day; the template stays where the model has nothing fit to show.
  void reword(Decision& decision) {
    if (around_.languageModel == nullptr || !isNewest()) return;
    ScheduledNotification& entry = *decision.scheduled;
    std::string const key = entry.identifier + " " + formatIso8601(entry.due);
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
        return around_.center.deliver(decision.request);
    }
  }

  void refuse(Decision& decision, EngineState const& before, std::string const& reason) {
    takeBack(decision, state_, before);
    decision.outcome = refused;
    decision.note = reason;
    report_.problems.push_back(decision.request.identifier + " was not delivered: " + reason);
    lines_.push_back(lineOf(decision, now_));
  }

  /// False when the store does not take it.
  bool save() {
    if (!canRemember_) return false;
    auto const done = around_.store.update(
        StoreArea::state, [&](SettingValues const& stored) -> Result<StoreChanges, StoreError> {
          StoreChanges changes = changesOf(state_);
          // A pass that changed nothing wakes nobody who watches the store.
          std::erase_if(changes, [&](auto const& change) {
            auto const old = stored.find(change.first);
            return old != stored.end() && old->second == change.second;
          });
          if (!lines_.empty()) changes.merge(logChange(stored, lines_));
          return changes;
        });
    if (done) lines_.clear();
    if (!done && std::ranges::count(report_.problems, done.error().message) == 0) {
      report_.problems.push_back(done.error().message);
    }
    return done.has_value();
  }

  NotificationManager& manager_;
  Surroundings& around_;
  std::uint64_t token_;
  std::stop_token stop_;
  Instant now_;
  EngineState state_;
  bool canRemember_ = true;
  std::vector<LoggedNotification> lines_;
  PassReport report_;
};

namespace {

PassReport ended(PassReport::End end) {
  PassReport report;
  report.end = end;
  return report;
}

}  // namespace

NotificationManager::NotificationManager(Surroundings surroundings) : around_(std::move(surroundings)) {
  auto const stored = around_.store.read(StoreArea::state);
  if (!stored) return;
  if (auto state = engineStateOf(*stored)) lastKnown_ = std::move(*state);
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
  if (!around_.lockFile.empty() && !lock.isHeld()) return ended(PassReport::End::busy);
  Pass pass(*this, token, stop);
  if (settings.problem) pass.report().problems.push_back(settings.problem->message);
  EngineState::Strings suppressed;
  {
    std::lock_guard const guard(mutex_);
    suppressed = suppressedLocationTags_;
  }
  pass.run(planPass(
      {around_.clock.now(), inputs.places, inputs.foreign, settings.settings, around_.texts, suppressed},
      pass.state()));
  return std::move(pass.report());
}

PassReport NotificationManager::preview(GatherInputs const& gather, std::stop_token const& stop) {
  auto const settings = around_.store.settings();
  PassInputs const inputs = gather(neededInputs(settings.settings), stop);
  std::lock_guard const guard(mutex_);
  PassReport report;
  report.plan = planPass({around_.clock.now(), inputs.places, inputs.foreign, settings.settings,
                          around_.texts, suppressedLocationTags_},
                         lastKnown_);
  return report;
}

PassReport NotificationManager::tellScheduled() {
  std::lock_guard const turn(evaluationTail_);
  if (around_.center.authorizationStatus() != AuthorizationStatus::authorized) {
    return ended(PassReport::End::denied);
  }
  FileLock const lock(around_.lockFile);
  if (!around_.lockFile.empty() && !lock.isHeld()) return ended(PassReport::End::busy);
  Pass pass(*this, evaluationTailToken_);
  pass.tellScheduled();
  pass.finish();
  return std::move(pass.report());
}

std::optional<Instant> NotificationManager::nextScheduled() const {
  std::lock_guard const lock(mutex_);
  auto const& scheduled = lastKnown_.scheduled;
  if (scheduled.empty()) return std::nullopt;
  return std::ranges::min(scheduled, {}, &ScheduledNotification::due).due;
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

Result<void, StoreError> NotificationManager::respond(NotificationResponse const& response) {
  if (response.action == "snooze") {
    return around_.store.set("notify_snoozedUntil", formatIso8601(around_.clock.now() + kSnooze));
  }
  if (response.action != "mute") return {};
  std::string kind;
  {
    std::lock_guard const lock(mutex_);
    auto const found = kinds_.find(response.identifier);
    kind = found == kinds_.end() ? response.identifier : found->second;
  }
  std::string muted = around_.store.settings().settings.text("notify_mutedKinds");
  if (!muted.empty()) muted += ",";
  return around_.store.set("notify_mutedKinds", muted + kind);
}

}  // namespace nimbara
