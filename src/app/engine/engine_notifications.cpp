#include "app/engine/engine_notifications.h"

#include "base/text/text.h"
#include "notifications/custom/custom_rule_trial.h"

#include <algorithm>

namespace nimbara {

namespace {

NotificationDesk::Surroundings deskSurroundings(EngineNotifications::Surroundings& around,
                                                EngineNotifications& owner) {
  return {.store = around.store,
          .services = around.services,
          .isStandIn = around.isStandIn,
          .clock = around.clock,
          .runner = around.work,
          .wording = around.wording,
          .dataDirectory = around.dataDirectory,
          .program = around.program,
          .center = std::move(around.center),
          .places = around.places,
          .onPass =
              [&owner, told = around.onPass](PassReport const& report) {
                if (told) told(report);
                owner.notePass();
              },
          .onDueChange = around.onDueChange,
          .onRoleChange =
              [&owner, told = around.onRoleChange] {
                if (told) told();
                owner.notePass();
              },
          .onResponse = around.onResponse,
          .onProblem = around.onProblem,
          .jitter = around.jitter,
          .speech = std::move(around.speech)};
}

std::vector<std::string> kindsOf(std::string_view kinds) {
  std::vector<std::string> list;
  for (std::string_view const kind : split(kinds, '+')) list.emplace_back(trimmed(kind));
  return list;
}

Result<void, StoreError> outcomeOf(NotificationState::Saved const& saved) {
  if (!saved) return std::unexpected(saved.error());
  return {};
}

}  // namespace

EngineNotifications::EngineNotifications(Surroundings surroundings)
    : around_(std::move(surroundings)),
      desk_(deskSurroundings(around_, *this)),
      state_(std::make_shared<NotificationsState>()),
      texts_(around_.wording.texts) {}

std::shared_ptr<NotificationsState const> EngineNotifications::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

std::shared_ptr<Texts const> EngineNotifications::texts() const {
  std::lock_guard const lock(mutex_);
  return texts_;
}

/// Whether anything became other than it was.
template <class Change>
bool EngineNotifications::change(Change apply) {
  std::lock_guard const lock(mutex_);
  auto next = std::make_shared<NotificationsState>(*state_);
  if (!apply(*next)) return false;
  state_ = std::move(next);
  return true;
}

void EngineNotifications::begin() {
  desk_.followRole();
  around_.commands.run([this](std::stop_token const&) { reload(); });
}

void EngineNotifications::setWording(Wording const& wording) {
  desk_.setWording(wording);
  std::lock_guard const lock(mutex_);
  texts_ = wording.texts;
}

void EngineNotifications::notePass() {
  if (!around_.publish) return;
  AuthorizationStatus const status = desk_.manager().authorizationStatus();
  bool const isKnown = status != AuthorizationStatus::notDetermined;
  around_.commands.run([this, status, isKnown](std::stop_token const&) {
    bool const isOther = change([&](NotificationsState& next) {
      bool const isNew = isKnown && next.status != status;
      if (isNew) next.status = status;
      return isNew;
    });
    if (isOther && around_.publish) around_.publish();
    reload();
  });
}

void EngineNotifications::reload() {
  if (!around_.publish) return;
  auto const chosen = around_.store.read(StoreArea::settings);
  auto const remembered = desk_.remembered().read(StoreArea::state);
  bool const isChosenAnew = chosen && *chosen != chosen_;
  if (isChosenAnew) chosen_ = *chosen;
  auto rules = NotificationState(around_.store).customNotifications();
  bool const isOther = change([&](NotificationsState& next) {
    NotificationsState const before = next;
    next.isOurs = desk_.role().isOurs();
    next.holder = desk_.role().holder();
    next.isStandIn = around_.isStandIn;
    if (chosen) next.settings = Settings(settingsRegistry(), *chosen);
    if (rules) next.rules = std::move(*rules);
    if (remembered) next.log = notificationLogOf(*remembered);
    if (!chosen) next.problem = chosen.error();
    return isChosenAnew || next.isOurs != before.isOurs || next.holder != before.holder ||
           next.isStandIn != before.isStandIn || next.rules != before.rules || next.log != before.log ||
           next.problem != before.problem;
  });
  if (isChosenAnew) requestPass();
  if (isOther) around_.publish();
}

void EngineNotifications::command(std::function<Result<void, StoreError>()> apply) {
  around_.commands.run([this, apply = std::move(apply)](std::stop_token const&) {
    auto const done = apply();
    std::optional<StoreError> const problem = done ? std::nullopt : std::optional(done.error());
    bool const isOther = change([&](NotificationsState& next) {
      bool const isNew = next.problem != problem;
      next.problem = problem;
      return isNew;
    });
    if (isOther && around_.publish) around_.publish();
    reload();
  });
}

void EngineNotifications::set(std::string key, SettingValue value) {
  command([this, key = std::move(key), value = std::move(value)] { return around_.store.set(key, value); });
}

void EngineNotifications::changeMutes(MuteChange change) {
  command([this, change = std::move(change)] { return nimbara::changeMutes(around_.store, change); });
}

void EngineNotifications::mute(std::string const& kinds, std::optional<Instant> until) {
  changeMutes([this, kinds = kindsOf(kinds), until](std::vector<Mute> mutes) {
    for (std::string const& kind : kinds) {
      if (!kind.empty()) mutes = mutedToo(std::move(mutes), {kind, until}, around_.clock.now());
    }
    return mutes;
  });
}

void EngineNotifications::unmute(std::string const& kinds) {
  changeMutes([kinds = kindsOf(kinds)](std::vector<Mute> mutes) {
    std::erase_if(mutes, [&](Mute const& mute) { return std::ranges::count(kinds, mute.kind) > 0; });
    return mutes;
  });
}

void EngineNotifications::pause(std::optional<Instant> until) {
  set("notify_snoozedUntil", until ? formatIso8601(*until) : std::string());
}

void EngineNotifications::saveRule(CustomNotification rule) {
  command([this, rule = std::move(rule)] {
    NotificationState rules(around_.store);
    auto const saved = rules.customNotifications();
    if (!saved) return outcomeOf(saved);
    bool const isKnown = std::ranges::count(saved->rules, rule.id, &CustomNotification::id) > 0;
    return outcomeOf(isKnown ? rules.edit(rule) : rules.add(rule));
  });
}

void EngineNotifications::removeRule(Uuid id) {
  command([this, id] { return outcomeOf(NotificationState(around_.store).remove(id)); });
}

void EngineNotifications::enableRule(Uuid id, bool isEnabled) {
  command([this, id, isEnabled] {
    return outcomeOf(NotificationState(around_.store).setEnabled(id, isEnabled));
  });
}

std::optional<Place> EngineNotifications::placeOf(CustomNotification const& rule) const {
  std::vector<WatchedPlace> const places = around_.places();
  if (places.empty()) return std::nullopt;
  if (!rule.locationID) return places.front().place;
  auto const found = std::ranges::find(places, rule.locationID, &WatchedPlace::id);
  return found == places.end() ? std::nullopt : std::optional(found->place);
}

TrialAnswer EngineNotifications::tried(CustomNotification const& rule, std::stop_token const& stop) {
  auto const place = placeOf(rule);
  if (!place) return {rule.id, false, std::string(texts()->text("desktop.rules.noPlace"))};
  Settings const settings = around_.store.settings().settings;
  GatheredInputs const gathered =
      desk_.inputs().gatherFor(*place, inputsOf(rule.conditionType), settings, stop);
  RuleInputs const& inputs = gathered.inputs;
  RuleTrial const trial = triedRule(rule, inputs, RuleSettings::of(settings));
  return {rule.id, trial.outcome == CustomOutcome::holds, trialText(rule, trial, inputs)};
}

void EngineNotifications::tryRule(CustomNotification rule, TrialListener answered) {
  around_.work.run(
      [this, rule = std::move(rule), answered = std::move(answered)](std::stop_token const& stop) {
        TrialAnswer answer = tried(rule, stop);
        if (!stop.stop_requested()) answered(std::move(answer));
      });
}

void EngineNotifications::postTest() {
  around_.work.run([this](std::stop_token const&) {
    NotificationRequest request;
    request.identifier = "test";
    request.title = texts()->text("desktop.notifications.test.title");
    request.body = texts()->text("desktop.notifications.test.body");
    auto const done = desk_.center().deliver(request);
    change([&](NotificationsState& next) {
      next.testNote = done ? std::string() : done.error().message;
      next.testsTold += done ? 1 : 0;
      return true;
    });
    around_.publish();
  });
}

void EngineNotifications::lookAtDesktop() {
  around_.work.run([this](std::stop_token const&) {
    AuthorizationStatus const status = desk_.center().authorizationStatus();
    bool const isOther = change([&](NotificationsState& next) {
      bool const isNew = next.status != status;
      next.status = status;
      return isNew;
    });
    if (isOther) around_.publish();
  });
}

}  // namespace nimbara
