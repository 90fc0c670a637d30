#include "app/notices/notification_desk.h"

#include "app/notices/late_notification_center.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/settings/settings_registry.h"
#include "notifications/log/notification_log.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/answers/open_meteo_answer.h"
#include "support/fake_http_client.h"
#include "support/manual_clock.h"
#include "support/manual_runner.h"
#include "support/notification_engine.h"
#include "support/session/fake_notification_center.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <latch>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;

Place const kBerlin{{52.52, 13.41}, "Berlin", "Germany", ""};

CustomNotification anyTemperature() {
  CustomNotification rule;
  rule.id = Uuid::random();
  rule.title = "There is a temperature";
  rule.threshold = -50;
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  return rule;
}

/// A program that notifies, as one of several on the same folder.
struct Program {
  Program(std::filesystem::path const& folder, std::string const& name, test::ManualClock& clock,
          std::string const& services = {})
      : store(folder, settingsRegistry()),
        app(store.settings().settings, clock, {services, {}, {}, {}, folder, folder / "cache", answering()}) {
    std::ignore = app.forecasts().get(kBerlin, WeatherProviderOption::openMeteo);
    auto made = std::make_unique<test::FakeNotificationCenter>();
    center = made.get();
    desk = std::make_unique<NotificationDesk>(
        NotificationDesk::Surroundings{.store = store,
                                       .services = always(app),
                                       .isStandIn = !services.empty(),
                                       .clock = clock,
                                       .runner = runner,
                                       .wording = {},
                                       .dataDirectory = folder,
                                       .program = name,
                                       .center = std::move(made),
                                       .places =
                                           [this] {
                                             if (whileAPassBegins) whileAPassBegins();
                                             return std::vector<WatchedPlace>{{kBerlin, {}}};
                                           },
                                       .onPass = {},
                                       .onDueChange = {},
                                       .onRoleChange = [this] { hasRole.count_down(); },
                                       .onResponse = {},
                                       .onProblem = {},
                                       .jitter = {}});
  }

  static DecorateHttp answering() {
    return [](HttpClient&) {
      auto client = std::make_unique<test::FakeHttpClient>();
      client->willAnswer(200, test::OpenMeteoAnswer().body());
      return client;
    };
  }

  std::size_t told() {
    desk->notifier().requestPass();
    runner.runAll();
    return center->delivered().size();
  }

  SqliteSettingsStore store;
  Composition app;
  test::ManualRunner runner;
  test::FakeNotificationCenter* center = nullptr;  // the desk's
  std::latch hasRole{1};
  std::function<void()> whileAPassBegins;
  std::unique_ptr<NotificationDesk> desk;
};

struct NotificationDesks : testing::Test {
  NotificationDesks() {
    SqliteSettingsStore store(folder.path(), settingsRegistry());
    test::switchAllOff(store);
    std::ignore = NotificationState(store).add(anyTemperature());
  }
  /// Forgets what was told, as on another day.
  void anotherDay() { clock.advance(24h); }

  test::TemporaryFolder folder;
  test::ManualClock clock{at("2026-11-21T09:20:00Z")};
};

TEST_F(NotificationDesks, OneAloneTellsAndTheNextTakesOver) {
  auto window = std::make_unique<Program>(folder.path(), "window", clock);
  Program watch(folder.path(), "watch", clock);
  watch.desk->followRole();
  EXPECT_TRUE(window->desk->role().isOurs());
  EXPECT_FALSE(watch.desk->role().isOurs());
  EXPECT_EQ(watch.desk->role().holder(), "window");

  EXPECT_EQ(watch.told(), 0);
  EXPECT_EQ(watch.runner.waiting(), 0) << "it does not even look";
  EXPECT_EQ(watch.desk->notifier().nextDue(), std::nullopt) << "and is not woken for it";
  EXPECT_EQ(window->told(), 1);

  anotherDay();
  window.reset();
  watch.hasRole.wait();
  EXPECT_TRUE(watch.desk->role().isOurs());
  EXPECT_EQ(watch.runner.waiting(), 1) << "the first pass comes by itself";
  watch.runner.runAll();
  EXPECT_EQ(watch.center->delivered().size(), 1);
  EXPECT_NE(watch.desk->notifier().nextDue(), std::nullopt);
}

TEST_F(NotificationDesks, EndAtOnceWhileTheyWait) {
  Program const window(folder.path(), "window", clock);
  auto watch = std::make_unique<Program>(folder.path(), "watch", clock);
  watch->desk->followRole();
  watch.reset();
}

TEST_F(NotificationDesks, OfStandInsLeaveTheRealRoleAndMemoryAlone) {
  Program made(folder.path(), "demo", clock, "http://127.0.0.1:9");
  Program watch(folder.path(), "watch", clock);
  EXPECT_TRUE(made.desk->role().isOurs());
  EXPECT_TRUE(watch.desk->role().isOurs());
  EXPECT_EQ(made.told(), 1);
  EXPECT_EQ(watch.told(), 1);
}

TEST_F(NotificationDesks, TellNothingOfAPlaceThatGoesWhileAPassIsUnderWay) {
  Program watch(folder.path(), "watch", clock);
  watch.whileAPassBegins = [&] { watch.desk->suppress(locationTag(kBerlin)); };
  EXPECT_EQ(watch.told(), 0);
  watch.whileAPassBegins = {};
  EXPECT_EQ(watch.told(), 1) << "it is back when the next pass begins";
}

TEST_F(NotificationDesks, SpeakTheLanguageOfTheDay) {
  Program watch(folder.path(), "watch", clock);
  Wording portuguese{Units::imperial(), std::make_shared<Texts>(Texts::load("pt")), Calendar::utc()};
  watch.desk->setWording(portuguese);
  EXPECT_EQ(watch.told(), 1);
  std::string const body = watch.center->delivered().front().body;
  EXPECT_NE(body.find("37,4°F"), std::string::npos) << body;
}

TEST_F(NotificationDesks, KeepALogForAll) {
  Program watch(folder.path(), "watch", clock);
  EXPECT_EQ(watch.told(), 1);
  SqliteSettingsStore reader(folder.path(), settingsRegistry());
  auto const log = notificationLogOf(*reader.read(StoreArea::state));
  ASSERT_EQ(log.size(), 1);
  EXPECT_EQ(log.front().title, "There is a temperature");
  EXPECT_EQ(log.front().outcome, "announced");
  EXPECT_EQ(log.front().setting, "customNotifications");
}

TEST(LateNotificationCenter, IsMadeWhenItIsNeededWithItsListener) {
  int made = 0;
  test::FakeNotificationCenter* fake = nullptr;
  LateNotificationCenter center([&] {
    ++made;
    auto one = std::make_unique<test::FakeNotificationCenter>();
    fake = one.get();
    return one;
  });
  std::string heard;
  center.setListener([&](NotificationResponse const& response) { heard = response.action; });
  EXPECT_EQ(made, 0);
  EXPECT_EQ(center.authorizationStatus(), AuthorizationStatus::authorized);
  EXPECT_TRUE(center.deliver({.identifier = "rain@59.91,10.75"}));
  EXPECT_THAT(fake->delivered().back().opens,
              testing::ElementsAre("--page", "now", "--place", "59.91,10.75"));
  EXPECT_EQ(made, 1);
  fake->respond({"", "mute", ""});
  EXPECT_EQ(heard, "mute");
  center.setListener(nullptr);
  fake->respond({"", "snooze", ""});
  EXPECT_EQ(heard, "mute");
}

/// A center that waits for the running listener before it takes another, as those do that have a thread.
struct WaitingCenter final : NotificationCenter {
  explicit WaitingCenter(std::function<void()> waiting) : waitForListener(std::move(waiting)) {}
  AuthorizationStatus authorizationStatus() override { return AuthorizationStatus::authorized; }
  AuthorizationStatus requestAuthorization() override { return authorizationStatus(); }
  Result<void, DeliveryError> deliver(NotificationRequest const&) override { return {}; }
  Result<void, DeliveryError> update(NotificationRequest const&) override { return {}; }
  void withdraw(std::string_view) override {}
  void setListener(Listener) override { waitForListener(); }
  std::function<void()> waitForListener;
};

TEST(LateNotificationCenter, AnswersAListenerThatIsWaitedFor) {
  std::future<AuthorizationStatus> asked;
  bool isAnswered = true;
  LateNotificationCenter* late = nullptr;
  auto const waitForListener = [&] {
    if (late == nullptr) return;
    asked = std::async(std::launch::async, [&] { return late->authorizationStatus(); });
    isAnswered = asked.wait_for(2s) == std::future_status::ready;
  };
  LateNotificationCenter center([&] { return std::make_unique<WaitingCenter>(waitForListener); });
  EXPECT_EQ(center.authorizationStatus(), AuthorizationStatus::authorized);
  late = &center;
  center.setListener(nullptr);
  EXPECT_TRUE(isAnswered);
}

}  // namespace
}  // namespace nimbara
