#include "desktop/core/desktop_notifications.h"

#include "base/text/text.h"
#include "notifications/custom/custom_rule_trial.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr char kProgram[] = "window";

NotificationDesk::Surroundings deskSurroundings(DesktopNotifications::Surroundings& around,
                                                DesktopNotifications& owner) {
  return {.store = around.store,
          .app = around.app,
          .clock = around.clock,
          .runner = around.work,
          .wording = around.wording,
          .dataDirectory = around.dataDirectory,
          .program = kProgram,
          .center = std::move(around.center),
          .places = around.places,
          .onPass =
              [&owner, asked = around.onPass](PassReport const&) {
                if (asked) asked();
                owner.notePass();
              },
          .onDueChange = around.onDueChange,
          .onRoleChange = [&owner] { owner.notePass(); },
          .onResponse = around.onResponse,
          .onProblem = {},
          .jitter = around.jitter};
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

DesktopNotifications::DesktopNotifications(Surroundings surroundings)
    : around_(std::move(surroundings)),
      desk_(deskSurroundings(around_, *this)),
      state_(std::make_shared<NotificationsState>()),
      texts_(around_.wording.texts) {}

std::shared_ptr<NotificationsState const> DesktopNotifications::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

std::shared_ptr<Texts const> DesktopNotifications::texts() const {
  std::lock_guard const lock(mutex_);
  return texts_;
}

/// Whether anything became other than it was.
template <class Change>
bool DesktopNotifications::change(Change apply) {
  std::lock_guard const lock(mutex_);
  auto next = std::make_shared<NotificationsState>(*state_);
  if (!apply(*next)) return false;
  state_ = std::move(next);
  return true;
}

void DesktopNotifications::begin() {
  desk_.followRole();
  around_.commands.run([this](std::stop_token const&) { reload(); });
}

void DesktopNotifications::setWording(Wording const& wording) {
  desk_.setWording(wording);
  std::lock_guard const lock(mutex_);
  texts_ = wording.texts;
}

void DesktopNotifications::notePass() {
  AuthorizationStatus const status = desk_.manager().authorizationStatus();
  bool const isKnown = status != AuthorizationStatus::notDetermined;
  around_.commands.run([this, status, isKnown](std::stop_token const&) {
    bool const isOther = change([&](NotificationsState& next) {
      bool const isNew = isKnown && next.status != status;
      if (isNew) next.status = status;
      return isNew;
    });
    if (isOther) around_.publish();
    reload();
  });
}

void DesktopNotifications::reload() {
  auto const chosen = around_.store.read(StoreArea::settings);
  auto const remembered = desk_.remembered().read(StoreArea::state);
  bool const isChosenAnew = chosen && *chosen != chosen_;
  if (isChosenAnew) chosen_ = *chosen;
  auto rules = NotificationState(around_.store).customNotifications();
  bool const isOther = change([&](NotificationsState& next) {
    NotificationsState const before = next;
    next.isOurs = desk_.role().isOurs();
    next.holder = desk_.role().holder();
    next.isStandIn = !around_.app.services().standIn().empty();
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

void DesktopNotifications::command(std::function<Result<void, StoreError>()> apply) {
  around_.commands.run([this, apply = std::move(apply)](std::stop_token const&) {
    auto const done = apply();
    std::optional<StoreError> const problem = done ? std::nullopt : std::optional(done.error());
    bool const isOther = change([&](NotificationsState& next) {
      bool const isNew = next.problem != problem;
      next.problem = problem;
      return isNew;
    });
    if (isOther) around_.publish();
    reload();
  });
}

void DesktopNotifications::set(std::string key, SettingValue value) {
  command([this, key = std::move(key), value = std::move(value)] { return around_.store.set(key, value); });
}

void DesktopNotifications::changeMutes(std::function<std::vector<Mute>(std::vector<Mute>)> change) {
  command([this, change = std::move(change)] {
    auto const mutes = parseMutes(around_.store.settings().settings.text("notify_mutedKinds"));
    return around_.store.set("notify_mutedKinds", encodeMutes(change(mutes)));
  });
}

void DesktopNotifications::mute(std::string const& kinds, std::optional<Instant> until) {
  changeMutes([this, kinds = kindsOf(kinds), until](std::vector<Mute> mutes) {
    for (std::string const& kind : kinds) {
      if (!kind.empty()) mutes = mutedToo(std::move(mutes), {kind, until}, around_.clock.now());
    }
    return mutes;
  });
}

void DesktopNotifications::unmute(std::string const& kinds) {
  changeMutes([kinds = kindsOf(kinds)](std::vector<Mute> mutes) {
    std::erase_if(mutes, [&](Mute const& mute) { return std::ranges::count(kinds, mute.kind) > 0; });
    return mutes;
  });
}

void DesktopNotifications::pause(std::optional<Instant> until) {
  set("notify_snoozedUntil", until ? formatIso8601(*until) : std::string());
}

void DesktopNotifications::saveRule(CustomNotification rule) {
  command([this, rule = std::move(rule)] {
    NotificationState rules(around_.store);
    auto const saved = rules.customNotifications();
    if (!saved) return outcomeOf(saved);
    bool const isKnown = std::ranges::count(saved->rules, rule.id, &CustomNotification::id) > 0;
    return outcomeOf(isKnown ? rules.edit(rule) : rules.add(rule));
  });
}

void DesktopNotifications::removeRule(Uuid id) {
  command([this, id] { return outcomeOf(NotificationState(around_.store).remove(id)); });
}

void DesktopNotifications::enableRule(Uuid id, bool isEnabled) {
  command([this, id, isEnabled] {
    return outcomeOf(NotificationState(around_.store).setEnabled(id, isEnabled));
  });
}

std::optional<Place> DesktopNotifications::placeOf(CustomNotification const& rule) const {
  std::vector<WatchedPlace> const places = around_.places();
  if (places.empty()) return std::nullopt;
  if (!rule.locationID) return places.front().place;
  auto const found = std::ranges::find(places, rule.locationID, &WatchedPlace::id);
  return found == places.end() ? std::nullopt : std::optional(found->place);
}

TrialAnswer DesktopNotifications::tried(CustomNotification const& rule, std::stop_token const& stop) {
  auto const place = placeOf(rule);
  if (!place) return {rule.id, false, std::string(texts()->text("desktop.rules.noPlace"))};
  Settings const settings = around_.store.settings().settings;
  RuleInputs const inputs = desk_.inputs().gatherFor(*place, inputsOf(rule.conditionType), settings, stop);
  RuleTrial const trial = triedRule(rule, inputs, RuleSettings::of(settings));
  return {rule.id, trial.outcome == CustomOutcome::holds, trialText(rule, trial, inputs)};
}

void DesktopNotifications::tryRule(CustomNotification rule, TrialListener answered) {
  around_.work.run(
      [this, rule = std::move(rule), answered = std::move(answered)](std::stop_token const& stop) {
        TrialAnswer answer = tried(rule, stop);
        if (!stop.stop_requested()) answered(std::move(answer));
      });
}

void DesktopNotifications::postTest() {
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

void DesktopNotifications::lookAtDesktop() {
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
