#include "notifications_states.h"

namespace nimbara::test {

LoggedNotification logLine(std::string title, RuleOutcome outcome, Instant time) {
  LoggedNotification line;
  line.time = time;
  line.title = std::move(title);
  line.outcome = enumName(outcome);
  line.identifier = "rain";
  line.kind = "rain";
  line.setting = "notify_rain";
  line.place = "Testville";
  line.body = "Bring a coat.";
  line.measured = {{"hourlyRain", 6, "atLeast", 4, "mm"}};
  return line;
}

CustomNotification gustRule(std::string title, double threshold) {
  CustomNotification rule;
  rule.id = Uuid::named(kCurrentLocation, title);
  rule.title = std::move(title);
  rule.conditionType = ConditionType::windGust;
  rule.threshold = threshold;
  rule.lookaheadHours = 6;
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  return rule;
}

NotificationsState withSettings(SettingValues values) {
  NotificationsState state;
  state.settings = Settings(settingsRegistry(), std::move(values));
  return state;
}

NotificationsState crowdedState() {
  NotificationsState state = withSettings(
      {{"notify_mutedKinds", std::string("gov:wind:advisory@2026-11-22T07:00:00Z,rain,elsewhere")},
       {"notify_snoozedUntil", std::string("2026-11-21T18:00:00Z")},
       {"notify_quietHours", true}});
  state.isOurs = false;
  state.holder = "watch";
  state.status = AuthorizationStatus::denied;
  state.problem = StoreError{StoreError::Kind::unwritable, "the disk is full"};
  state.testNote = "there is no notification service on this desktop";
  state.rules.rules = {gustRule(), gustRule(std::string(60, 'W')), gustRule("Of a lost place")};
  state.rules.rules.back().locationID = Uuid::named(kCurrentLocation, "lost");
  for (int i = 0; i < 500; ++i) {
    state.log.push_back(logLine(std::string(i % 90 + 1, 'n'),
                                i % 3 == 0 ? RuleOutcome::announced : RuleOutcome::heldByQuietHours,
                                kNow - std::chrono::minutes(500 - i)));
  }
  return state;
}

std::shared_ptr<EngineSnapshot> notifying(NotificationsState state) {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  snapshot->notifications = std::make_shared<NotificationsState const>(std::move(state));
  return snapshot;
}

}  // namespace nimbara::test
