#include "app/engine/engine_notifications.h"
#include "app/services/forecasts/forecast_service.h"
#include "desktop/states/notifications_states.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/answers/open_meteo_answer.h"
#include "support/fake_http_client.h"
#include "support/manual_clock.h"
#include "support/manual_runner.h"
#include "support/session/fake_notification_center.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using namespace nimbara::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Place const kBerlin{{52.52, 13.41}, "Berlin", "Germany", ""};

struct DesktopNotificationsTest : testing::Test {
  DesktopNotificationsTest() {
    std::ignore = app.forecasts().get(kBerlin, WeatherProviderOption::openMeteo);
    auto made = std::make_unique<FakeNotificationCenter>();
    center = made.get();
    notifications = std::make_unique<EngineNotifications>(
        EngineNotifications::Surroundings{.store = store,
                                          .services = always(app),
                                          .clock = clock,
                                          .work = runner,
                                          .commands = runner,
                                          .wording = {},
                                          .dataDirectory = folder.path(),
                                          .program = "window",
                                          .center = std::move(made),
                                          .places = [] { return std::vector<WatchedPlace>{{kBerlin, {}}}; },
                                          .publish = [this] { ++published; },
                                          .onPass = {},
                                          .onRoleChange = {},
                                          .onProblem = {},
                                          .onDueChange = {},
                                          .onResponse = {},
                                          .jitter = {}});
    switchOff("notify_govAlerts");
    switchOff("notify_travelAdvisory");
    notifications->begin();
    runner.runAll();
  }

  static DecorateHttp answering() {
    return [](HttpClient&) {
      auto client = std::make_unique<FakeHttpClient>();
      client->willAnswer(200, OpenMeteoAnswer().body());
      return client;
    };
  }
  void switchOff(std::string_view key) { std::ignore = store.set(key, false); }
  NotificationsState const& state() {
    runner.runAll();
    held = notifications->state();
    return *held;
  }
  std::string setting(std::string_view key) {
    runner.runAll();
    return store.settings().settings.text(key);
  }

  TemporaryFolder folder;
  ManualClock clock{at("2026-11-21T09:20:00Z")};
  SqliteSettingsStore store{folder.path(), settingsRegistry()};
  Composition app{store.settings().settings,
                  clock,
                  {{}, {}, {}, {}, folder.path(), folder.path() / "cache", answering()}};
  ManualRunner runner;
  FakeNotificationCenter* center = nullptr;  // the desk's
  int published = 0;
  std::shared_ptr<NotificationsState const> held;
  std::unique_ptr<EngineNotifications> notifications;
};

TEST_F(DesktopNotificationsTest, ChangeASettingAndLookAgain) {
  notifications->set("notify_highWind", true);
  notifications->set("notify_highWindThreshold", std::int64_t{10});
  EXPECT_TRUE(state().settings.boolean("notify_highWind"));
  ASSERT_THAT(state().log, SizeIs(1)) << "the pass after the change has told it";
  EXPECT_EQ(state().log.front().identifier, "high_wind");
  EXPECT_THAT(center->delivered(), SizeIs(1));
  EXPECT_EQ(state().status, AuthorizationStatus::authorized);
}

TEST_F(DesktopNotificationsTest, TellWhyASettingWasRefused) {
  notifications->set("notify_highWindThreshold", std::int64_t{9000});
  EXPECT_TRUE(state().problem.has_value());
  notifications->set("notify_highWindThreshold", std::int64_t{90});
  EXPECT_FALSE(state().problem.has_value());
}

TEST_F(DesktopNotificationsTest, NoticeWhatOthersChange) {
  SqliteSettingsStore other(folder.path(), settingsRegistry());
  ASSERT_TRUE(other.set("notify_rainStart", true));
  std::ignore = NotificationState(other).add(gustRule("Of another process", 400));
  int const before = published;
  notifications->reload();
  EXPECT_TRUE(state().settings.boolean("notify_rainStart"));
  EXPECT_THAT(state().rules.rules, SizeIs(1));
  EXPECT_GT(published, before);
  int const after = published;
  notifications->reload();
  runner.runAll();
  EXPECT_EQ(published, after) << "no news are not published";
}

TEST_F(DesktopNotificationsTest, MuteForAWhileAndTellAgain) {
  notifications->mute("rain+snow", clock.now() + 1h);
  notifications->mute("gov:wind", std::nullopt);
  EXPECT_EQ(setting("notify_mutedKinds"), "rain@2026-11-21T10:20:00Z,snow@2026-11-21T10:20:00Z,gov:wind");
  notifications->unmute("rain+snow");
  EXPECT_EQ(setting("notify_mutedKinds"), "gov:wind");
}

TEST_F(DesktopNotificationsTest, PauseAndGoOn) {
  notifications->pause(clock.now() + 1h);
  EXPECT_EQ(setting("notify_snoozedUntil"), "2026-11-21T10:20:00Z");
  notifications->pause(std::nullopt);
  EXPECT_EQ(setting("notify_snoozedUntil"), "");
}

TEST_F(DesktopNotificationsTest, KeepRules) {
  CustomNotification rule = gustRule("Gusts", 400);
  notifications->saveRule(rule);
  EXPECT_THAT(state().rules.rules, ElementsAre(rule));
  rule.threshold = 300;
  notifications->saveRule(rule);
  EXPECT_THAT(state().rules.rules, ElementsAre(rule));
  notifications->enableRule(rule.id, false);
  EXPECT_FALSE(state().rules.rules.front().isEnabled);
  notifications->removeRule(rule.id);
  EXPECT_THAT(state().rules.rules, IsEmpty());
  EXPECT_THAT(center->delivered(), IsEmpty());
}

TEST_F(DesktopNotificationsTest, TryARuleWithoutKeepingIt) {
  std::vector<TrialAnswer> answers;
  auto const listen = [&](TrialAnswer answer) { answers.push_back(std::move(answer)); };
  notifications->tryRule(gustRule("Gusts", 40), listen);
  notifications->tryRule(gustRule("Gusts", 400), listen);
  CustomNotification lost = gustRule();
  lost.locationID = Uuid::named(kCurrentLocation, "lost");
  notifications->tryRule(lost, listen);
  EXPECT_THAT(state().rules.rules, IsEmpty());
  ASSERT_THAT(answers, SizeIs(3));
  EXPECT_TRUE(answers[0].rings);
  EXPECT_TRUE(answers[0].text.starts_with("Would notify you now: “Wind gust above 40.0km/h"))
      << answers[0].text;
  EXPECT_FALSE(answers[1].rings);
  EXPECT_TRUE(answers[1].text.starts_with("Not expected through")) << answers[1].text;
  EXPECT_EQ(answers[2].text, "This place no longer exists.");
  EXPECT_THAT(center->delivered(), IsEmpty());
}

TEST_F(DesktopNotificationsTest, PostATest) {
  notifications->postTest();
  EXPECT_EQ(state().testsTold, 1);
  EXPECT_EQ(center->delivered().front().title, "Test notification");
  center->setFailure(DeliveryError{DeliveryError::Kind::unavailable, "nobody is there"});
  notifications->postTest();
  EXPECT_EQ(state().testNote, "nobody is there");
}

TEST_F(DesktopNotificationsTest, LookWhetherTheDesktopShowsThem) {
  center->setStatus(AuthorizationStatus::denied);
  notifications->lookAtDesktop();
  EXPECT_EQ(state().status, AuthorizationStatus::denied);
}

TEST_F(DesktopNotificationsTest, SayWhoNotifies) {
  EXPECT_TRUE(state().isOurs);
  EXPECT_EQ(state().holder, "window");
  EngineNotifications second({.store = store,
                              .services = always(app),
                              .clock = clock,
                              .work = runner,
                              .commands = runner,
                              .wording = {},
                              .dataDirectory = folder.path(),
                              .program = "window",
                              .center = std::make_unique<FakeNotificationCenter>(),
                              .places = [] { return std::vector<WatchedPlace>(); },
                              .publish = [] {},
                              .onPass = {},
                              .onRoleChange = {},
                              .onProblem = {},
                              .onDueChange = {},
                              .onResponse = {},
                              .jitter = {}});
  second.reload();
  EXPECT_FALSE(second.state()->isOurs);
  EXPECT_EQ(second.state()->holder, "window");
}

}  // namespace
}  // namespace nimbara
