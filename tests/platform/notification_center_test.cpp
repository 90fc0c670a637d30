#include "platform/session/notification_center.h"

#include "platform/application_id.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/sound_files.h"
#include "support/heard_texts.h"
#include "support/paths.h"
#include "support/session/mock_notification_daemon.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace nimbara {
namespace {

using test::DaemonScript;
using test::MockNotificationDaemon;
using test::ShownNotification;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Not;

NotificationRequest rain() {
  NotificationRequest request;
  request.identifier = "rain_start";
  request.title = "Rain Starting Soon";
  request.body = "Rain is expected to start around 4 PM.";
  request.sound = "rain_alert.caf";
  return request;
}

NotificationRequest named(std::string identifier) {
  auto request = rain();
  request.identifier = std::move(identifier);
  return request;
}

/// Keeps the responses and waits for them.
class Responses : public test::HeardTexts {
 public:
  NotificationCenter::Listener listener() {
    return [this](NotificationResponse const& response) {
      add(response.identifier + "/" + response.action + "/" + response.activationToken);
    };
  }
};

class NotificationCenterTest : public testing::Test {
 protected:
  MockNotificationDaemon& start(DaemonScript script = {}) {
    daemon_.reset();  // the name is one's at a time
    daemon_ = std::make_unique<MockNotificationDaemon>(bus_, std::move(script));
    return *daemon_;
  }
  std::unique_ptr<NotificationCenter> center() const {
    return desktopNotificationCenter({test::kProgram, "", bus_.address()});
  }
  /// What the daemon gets for a request.
  ShownNotification shownFor(NotificationRequest const& request, DaemonScript script = {}) {
    auto& daemon = start(std::move(script));
    auto const delivered = center()->deliver(request);
    EXPECT_TRUE(delivered) << delivered.error().message;
    auto const shown = daemon.wait(1);
    return shown.empty() ? ShownNotification{} : shown.front();
  }

  test::PrivateBus bus_;
  std::unique_ptr<MockNotificationDaemon> daemon_;
};

TEST_F(NotificationCenterTest, SendsWhatTheRequestSays) {
  auto const shown = shownFor(rain());
  EXPECT_EQ(shown.program, kApplicationName);
  EXPECT_EQ(shown.icon, kApplicationId);
  EXPECT_EQ(shown.replaces, 0U);
  EXPECT_EQ(shown.summary, "Rain Starting Soon");
  EXPECT_EQ(shown.body, "Rain is expected to start around 4 PM.");
  EXPECT_EQ(shown.text("desktop-entry"), kApplicationId);
  EXPECT_EQ(shown.expireTimeout, -1);
  EXPECT_THAT(shown.hints, Not(testing::Contains(Key("category"))));
}

TEST_F(NotificationCenterTest, OnlyTheCriticalIsCritical) {
  using enum NotificationUrgency;
  for (auto const& [urgency, level, timeout] :
       {std::tuple(low, 0, -1), std::tuple(normal, 1, -1), std::tuple(critical, 2, 0)}) {
    auto request = rain();
    request.urgency = urgency;
    request.category = "weather.warning.extreme";
    auto const shown = shownFor(request);
    EXPECT_EQ(shown.hints.at("urgency").get<std::uint8_t>(), level);
    EXPECT_EQ(shown.expireTimeout, timeout);
    EXPECT_EQ(shown.text("category"), "weather.warning.extreme");
  }
}

TEST_F(NotificationCenterTest, SendsOnlyWhatTheServiceCanDo) {
  auto request = rain();
  request.body = "<b>wind</b> & rain";
  request.actions = {{"default", "Show"}, {"snooze", "Snooze 1 h"}};
  auto const whole = shownFor(request);
  EXPECT_EQ(whole.body, "&lt;b&gt;wind&lt;/b&gt; &amp; rain");
  EXPECT_THAT(whole.actions, ElementsAre("default", "Show", "snooze", "Snooze 1 h"));
  auto const plain = shownFor(request, {.capabilities = {"body", "icon-static", "x-unknown"}});
  EXPECT_EQ(plain.body, "<b>wind</b> & rain");
  EXPECT_THAT(plain.actions, IsEmpty());
  for (char const* const hint : {"sound-file", "sound-name", "suppress-sound"}) {
    EXPECT_THAT(plain.hints, Not(testing::Contains(Key(hint))));
  }
  auto const bare = shownFor(request, {.capabilities = {}});
  EXPECT_EQ(bare.summary, "Rain Starting Soon: <b>wind</b> & rain");
  EXPECT_EQ(bare.body, "");
  auto const unknown = shownFor(request, {.knowsCapabilities = false});
  EXPECT_EQ(unknown.body, "<b>wind</b> & rain");
}

TEST_F(NotificationCenterTest, ChoosesTheSound) {
  auto request = rain();
  auto const shown = shownFor(request);
  EXPECT_EQ(shown.text("sound-file"), *soundFile("rain_alert.caf", soundsDirectory(test::kProgram)));
  for (auto const& sound :
       {std::optional<std::string>("no_such_sound.caf"),
        std::optional<std::string>("../../../etc/passwd.caf"), std::optional<std::string>()}) {
    request.sound = sound;
    request.urgency = NotificationUrgency::normal;
    EXPECT_EQ(shownFor(request).text("sound-name"), "dialog-information");
    request.urgency = NotificationUrgency::critical;
    EXPECT_EQ(shownFor(request).text("sound-name"), "dialog-warning");
  }
  request.sound = "rain_alert.caf";
  request.isSilent = true;
  auto const silent = shownFor(request);
  EXPECT_TRUE(silent.hints.at("suppress-sound").get<bool>());
  EXPECT_THAT(silent.hints, Not(testing::Contains(Key("sound-file"))));
}

TEST_F(NotificationCenterTest, BearsHostileTexts) {
  auto request = rain();
  request.title = std::string("\x1B[2J\xFFTitle\nwith\0a zero", 22) + std::string(1000, 'x');
  request.body = std::string(1'000'000, '<');
  request.category = std::string("\xF0\x28\x8C\x28");
  request.actions.assign(50, {std::string(5000, 'k'), std::string("\xFE\0x", 3)});
  auto const shown = shownFor(request);
  EXPECT_THAT(shown.summary, testing::StartsWith("[2J\uFFFDTitle witha zero"));
  EXPECT_LT(shown.summary.size(), 200U);
  EXPECT_LT(shown.body.size(), 10'000U);
  EXPECT_THAT(shown.body, testing::EndsWith("&lt;…"));
  EXPECT_EQ(shown.actions.size(), 12U);
}

TEST_F(NotificationCenterTest, ReplacesUnderTheSameIdentifier) {
  auto& daemon = start({.firstId = 40});
  auto const center = this->center();
  ASSERT_TRUE(center->deliver(named("a")));
  ASSERT_TRUE(center->deliver(named("b")));
  ASSERT_TRUE(center->deliver(named("a")));
  auto const shown = daemon.wait(3);
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[1].replaces, 0U);
  EXPECT_EQ(shown[2].replaces, 40U);
  EXPECT_EQ(daemon.capabilityQuestions(), 1);
}

TEST_F(NotificationCenterTest, UpdatesSilentlyWhatIsStillShown) {
  auto& daemon = start();
  auto const center = this->center();
  Responses responses;
  center->setListener(responses.listener());
  EXPECT_TRUE(center->update(named("a")));  // never shown
  ASSERT_TRUE(center->deliver(named("a")));
  ASSERT_TRUE(center->deliver(named("b")));
  ASSERT_TRUE(center->update(named("a")));
  auto const shown = daemon.wait(3);
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[2].replaces, shown[0].id);
  EXPECT_TRUE(shown[2].hints.at("suppress-sound").get<bool>());
  daemon.close(shown[0].id);
  daemon.click(shown[1].id, "default");  // heard after the closing
  ASSERT_EQ(responses.wait(1).size(), 1U);
  EXPECT_TRUE(center->update(named("a")));
  ASSERT_TRUE(center->deliver(named("c")));
  auto const later = daemon.wait(4);
  ASSERT_EQ(later.size(), 4U);
  EXPECT_EQ(later[3].replaces, 0U);
}

TEST_F(NotificationCenterTest, WithdrawsWhatIsShown) {
  auto& daemon = start();
  auto const center = this->center();
  ASSERT_TRUE(center->deliver(named("a")));
  ASSERT_TRUE(center->deliver(named("b")));
  center->withdraw("unknown");
  center->withdraw("b");
  center->withdraw("b");
  center->withdraw("a");
  EXPECT_THAT(daemon.waitForWithdrawn(2), ElementsAre(2U, 1U));
  EXPECT_TRUE(center->update(named("a")));
  EXPECT_EQ(daemon.wait(2).size(), 2U);
}

TEST_F(NotificationCenterTest, TellsResponses) {
  auto& daemon = start({.firstId = 7});
  auto const center = this->center();
  Responses responses;
  center->setListener(responses.listener());
  auto request = named("gov_1");
  request.actions = {{"default", "Show"}, {"mute", "Mute"}};
  ASSERT_TRUE(center->deliver(request));
  ASSERT_TRUE(center->deliver(named("gov_2")));
  daemon.click(99, "default", "token-of-others");  // another program's
  daemon.click(7, "default", "token-1");
  daemon.click(7, "mute");
  daemon.click(8, "default", "token-2");
  daemon.close(7);
  daemon.click(7, "default");  // not ours any more
  daemon.click(8, "mute");
  EXPECT_THAT(responses.wait(4),
              ElementsAre("gov_1/default/token-1", "gov_1/mute/", "gov_2/default/token-2", "gov_2/mute/"));
}

TEST_F(NotificationCenterTest, LetsAListenerAskAndReplaceItself) {
  auto& daemon = start();
  auto const center = this->center();
  Responses responses;
  center->setListener([&](NotificationResponse const&) {
    EXPECT_EQ(center->authorizationStatus(), AuthorizationStatus::authorized);
    EXPECT_TRUE(center->deliver(named("again")));
    center->setListener(responses.listener());
  });
  ASSERT_TRUE(center->deliver(named("a")));
  daemon.click(1, "snooze");
  EXPECT_EQ(daemon.wait(2).size(), 2U);
  daemon.click(2, "default");
  EXPECT_THAT(responses.wait(1), ElementsAre("again/default/"));
  center->setListener(nullptr);
  daemon.click(2, "default");
  EXPECT_EQ(center->authorizationStatus(), AuthorizationStatus::authorized);
}

TEST_F(NotificationCenterTest, SurvivesTheServicesRestart) {
  start({.firstId = 5});
  auto const center = this->center();
  Responses responses;
  center->setListener(responses.listener());
  ASSERT_TRUE(center->deliver(named("a")));
  daemon_.reset();
  EXPECT_EQ(center->authorizationStatus(), AuthorizationStatus::denied);
  EXPECT_EQ(center->deliver(named("a")).error().kind, DeliveryError::Kind::unavailable);
  auto& daemon = start({.capabilities = {"body"}, .firstId = 5});
  EXPECT_TRUE(center->update(named("a")));  // the new one shows nothing
  ASSERT_TRUE(center->deliver(named("b")));
  auto const shown = daemon.wait(1);
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].replaces, 0U);
  EXPECT_THAT(shown[0].hints, Not(testing::Contains(Key("sound-file"))));
  daemon.click(5, "default");
  EXPECT_THAT(responses.wait(1), ElementsAre("b/default/"));
}

TEST_F(NotificationCenterTest, SaysWhenItIsRefused) {
  start({.notify = DaemonScript::Notify::refuses});
  auto const delivered = center()->deliver(rain());
  ASSERT_FALSE(delivered);
  EXPECT_EQ(delivered.error().kind, DeliveryError::Kind::refused);
  EXPECT_THAT(delivered.error().message, HasSubstr("too many"));
}

TEST_F(NotificationCenterTest, LivesWithAnswersOfAWrongKind) {
  start({.notify = DaemonScript::Notify::answersWrongly});
  auto const center = this->center();
  EXPECT_FALSE(center->deliver(rain()));
  auto& daemon = start();
  EXPECT_TRUE(center->deliver(rain()));
  EXPECT_EQ(daemon.wait(1).size(), 1U);
}

TEST_F(NotificationCenterTest, DoesNotShowTwiceWhatASlowServiceTook) {
  auto& daemon = start({.notify = DaemonScript::Notify::waits, .firstId = 3});
  auto const center = this->center();
  Responses responses;
  center->setListener(responses.listener());
  auto const delivered = center->deliver(named("a"));
  ASSERT_FALSE(delivered);
  EXPECT_EQ(delivered.error().kind, DeliveryError::Kind::unavailable);
  daemon.answerAtLast();
  ASSERT_TRUE(center->deliver(named("b")));
  ASSERT_TRUE(center->deliver(named("a")));
  auto const shown = daemon.wait(3);
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[2].replaces, 3U);
}

TEST_F(NotificationCenterTest, EndsBeforeASlowServiceAnswers) {
  auto& daemon = start({.notify = DaemonScript::Notify::waits});
  auto center = this->center();
  EXPECT_FALSE(center->deliver(named("a")));
  center.reset();
  daemon.answerAtLast();
  EXPECT_TRUE(this->center()->deliver(named("b")));
}

TEST_F(NotificationCenterTest, IsDeniedWithoutService) {
  auto const center = this->center();
  EXPECT_EQ(center->authorizationStatus(), AuthorizationStatus::denied);
  EXPECT_EQ(center->deliver(rain()).error().kind, DeliveryError::Kind::unavailable);
  start();
  EXPECT_EQ(center->requestAuthorization(), AuthorizationStatus::authorized);
  EXPECT_TRUE(center->deliver(rain()));
}

TEST_F(NotificationCenterTest, IsDeniedWithoutBusAndWithoutModule) {
  start();
  auto const former = center();
  ASSERT_TRUE(former->deliver(rain()));
  daemon_.reset();
  bus_.end();
  auto const without = desktopNotificationCenter({"/nowhere/nimbara", "", bus_.address()});
  auto const never = center();
  for (NotificationCenter* const each : {former.get(), never.get(), without.get()}) {
    EXPECT_EQ(each->authorizationStatus(), AuthorizationStatus::denied);
    auto const delivered = each->deliver(rain());
    ASSERT_FALSE(delivered);
    EXPECT_EQ(delivered.error().kind, DeliveryError::Kind::unavailable);
    EXPECT_FALSE(delivered.error().message.empty());
    each->withdraw("rain_start");
    each->setListener(nullptr);
  }
}

TEST_F(NotificationCenterTest, ServesManyThreads) {
  auto& daemon = start();
  auto const center = this->center();
  std::atomic<int> delivered = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&, i] {
        for (int k = 0; k < 5; ++k) {
          if (center->deliver(named(std::to_string(i * 5 + k)))) ++delivered;
          center->setListener([](NotificationResponse const&) {});
        }
      });
    }
  }
  EXPECT_EQ(delivered, 20);
  EXPECT_EQ(daemon.wait(20).size(), 20U);
}

DesktopServiceState notificationsAmong(std::vector<DesktopServiceState> const& states) {
  auto const found = std::ranges::find(states, "org.freedesktop.Notifications", &DesktopServiceState::name);
  return found == states.end() ? DesktopServiceState{} : *found;
}

TEST_F(NotificationCenterTest, IsDescribedForDiagnosis) {
  DesktopBuses const options{test::kProgram, bus_.address(), bus_.address()};
  auto const absent = notificationsAmong(desktopServiceStates(options));
  EXPECT_EQ(absent.presence, DesktopServiceState::Presence::absent);
  EXPECT_EQ(absent.details, "");
  start();
  auto const running = notificationsAmong(desktopServiceStates(options));
  EXPECT_EQ(running.presence, DesktopServiceState::Presence::running);
  EXPECT_EQ(running.details, "mock 1.5, with actions, body, body-markup, sound");
}

}  // namespace
}  // namespace nimbara
