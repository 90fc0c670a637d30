// What a notification opens, and what is spoken of it.
#include "app/notices/notification_call.h"
#include "app/notices/spoken_warnings.h"
#include "notifications/catalogue.h"
#include "support/notification_engine.h"
#include "support/session/fake_speech.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using namespace std::chrono_literals;

struct Spoken : testing::Test {
  explicit Spoken(std::string const& begin = "2026-11-21T12:00:00Z") : engine(begin) {
    engine.turnOn("notify_govAlerts");
    engine.turnOn("notify_speakCritical");
  }

  void warn(int number, AlertSeverity severity) {
    engine.warnings->push_back(test::officialWarning(number, severity, engine.clock.now()));
  }

  /// What a pass some minutes later makes heard.
  std::size_t heardAfter(std::chrono::minutes span) {
    std::size_t const before = speech.said().size();
    PassReport const report = engine.passAfter(span);
    SpokenWarnings(speech, engine.store, engine.clock).say(report, wording, [&](std::string const&) {
      return engine.calendar;
    });
    return speech.said().size() - before;
  }

  test::NotificationEngine engine;
  test::FakeSpeech speech;
  Wording wording;
};

TEST_F(Spoken, EachCriticalWarningOnce) {
  warn(1, AlertSeverity::critical);
  warn(2, AlertSeverity::warning);
  EXPECT_EQ(heardAfter(1min), 1U);
  EXPECT_THAT(speech.said().front(), testing::StartsWith("en! "));
  EXPECT_EQ(heardAfter(5min), 0U) << "it is still there";
  warn(3, AlertSeverity::critical);
  EXPECT_EQ(heardAfter(5min), 1U);
  EXPECT_EQ(engine.told().size(), 3U);
}

TEST_F(Spoken, NothingUnlessChosen) {
  std::ignore = engine.store.reset("notify_speakCritical");
  warn(1, AlertSeverity::critical);
  EXPECT_EQ(heardAfter(1min), 0U);
  EXPECT_EQ(engine.told().size(), 1U) << "it is shown all the same";
}

TEST_F(Spoken, NothingWhereNobodySpeaks) {
  speech.isThere = false;
  warn(1, AlertSeverity::critical);
  EXPECT_EQ(heardAfter(1min), 0U);
}

/// From 22 until 7 in the time of the place, which is an hour ahead. Critical warnings are shown then.
TEST_F(Spoken, NothingInTheQuietHours) {
  struct Row {
    char const* now;
    bool isHeard;
  };
  for (Row const& row : {Row{"2026-11-21T20:59:00Z", true}, Row{"2026-11-21T21:00:00Z", false},
                         Row{"2026-11-22T05:59:00Z", false}, Row{"2026-11-22T06:00:00Z", true}}) {
    test::NotificationEngine at(row.now);
    at.calendar = *Calendar::forZone("Europe/Berlin");
    for (auto const key : {"notify_govAlerts", "notify_speakCritical", "notify_quietHours"}) at.turnOn(key);
    at.warnings->push_back(test::officialWarning(1, AlertSeverity::critical, at.clock.now()));
    PassReport const report = at.pass();
    test::FakeSpeech fresh;
    SpokenWarnings(fresh, at.store, at.clock).say(report, wording, [&](auto const&) { return at.calendar; });
    EXPECT_THAT(at.told(), SizeIs(1)) << row.now;
    EXPECT_THAT(fresh.said(), SizeIs(row.isHeard ? 1 : 0)) << row.now;
  }
}

TEST_F(Spoken, NothingWhilePaused) {
  std::ignore = engine.store.set("notify_snoozedUntil", formatIso8601(engine.clock.now() + 1h));
  warn(1, AlertSeverity::critical);
  EXPECT_EQ(heardAfter(59min), 0U);
  warn(2, AlertSeverity::critical);
  EXPECT_EQ(heardAfter(1min), 1U);
}

TEST(NotificationCall, OpensThePlaceOfTheNotification) {
  auto const call = notificationCall({"rain_start@59.91,10.75", "default", "token-1"});
  ASSERT_TRUE(call);
  EXPECT_EQ(call->action, "start");
  EXPECT_EQ(call->activationToken, "token-1");
  EXPECT_THAT(call->arguments, ElementsAre("--page", "now", "--place", "59.91,10.75"));
  for (char const* const identifier : {"rain_start", "rain_start@", "", "test"}) {
    EXPECT_THAT(notificationCall({identifier, "default", ""})->arguments, ElementsAre("--page", "now"));
  }
}

/// A rule of another name would open the other page without anybody noticing.
TEST(NotificationCall, ThePagesOfTheRulesThatThereAre) {
  std::vector<std::string_view> hazards;
  for (Rule const& rule : ruleCatalogue()) {
    auto const call = notificationCall({std::string(rule.stem), "default", ""});
    if (call->arguments[1] == "hazards") hazards.push_back(rule.stem);
  }
  EXPECT_THAT(hazards, ElementsAre("tornado_conditions", "gov_", "nws_severe_thunderstorm", "nws_flood",
                                   "earthquake_", "beta_aurora"));
}

TEST(NotificationCall, LeavesOtherAnswersAlone) {
  for (char const* const action : {"snooze", "mute", "", "inline-reply"}) {
    EXPECT_FALSE(notificationCall({"rain_start", action, ""})) << action;
  }
}

}  // namespace
}  // namespace nimbara
