#include "base/json/json.h"
#include "support/session/demo_session.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct NotifyCommandTest : test::DemoSession {
  NotifyCommandTest() {
    EXPECT_EQ(run({"settings", "set", "notify_morningSummary", "true"}).exitCode, 0);
    EXPECT_EQ(run({"places", "add", "52.52,13.41", "--name", "Berlin"}).exitCode, 0);
  }
};

TEST_F(NotifyCommandTest, ADryRunTellsAndRemembersNothing) {
  auto const first = run({"notify", "--dry-run", "--json"});
  EXPECT_EQ(first.exitCode, 0) << first.err;
  EXPECT_THAT(first.out,
              HasSubstr(R"({"identifier":"morning_summary","title":"Good Morning","body":"Berlin — )"));
  EXPECT_THAT(first.out, HasSubstr(R"("sound":"morning_summary.caf","trigger":{"hour":7,"minute":0})"));
  EXPECT_EQ(run({"notify", "--dry-run", "--json"}).out, first.out);
}

TEST_F(NotifyCommandTest, WhatWasToldIsNotToldAgain) {
  ASSERT_EQ(run({"settings", "set", "notify_highWindThreshold", "1"}).exitCode, 0);
  ASSERT_EQ(run({"settings", "set", "notify_highWind", "true"}).exitCode, 0);
  auto const first = run({"notify", "--deliver", "print", "--json"});
  EXPECT_EQ(first.exitCode, 0) << first.err;
  EXPECT_THAT(first.out, HasSubstr(R"("identifier":"high_wind")"));
  EXPECT_THAT(first.out, HasSubstr(R"("trigger":"immediate")"));
  auto const second = run({"notify", "--deliver", "print", "--json"});
  EXPECT_EQ(second.exitCode, 0) << second.err;
  EXPECT_THAT(second.out, Not(HasSubstr("high_wind")));
  EXPECT_THAT(first.out, HasSubstr("morning_summary"));
  EXPECT_THAT(second.out, Not(HasSubstr("morning_summary"))) << "it waits as it did";
}

TEST_F(NotifyCommandTest, ExplainsEveryRule) {
  auto const text = run({"notify", "--explain"});
  EXPECT_EQ(text.exitCode, 0) << text.err;
  EXPECT_THAT(text.out, ContainsRegex("Turned off: [^.]*Rain[ \n]starting"));
  EXPECT_THAT(text.out, ContainsRegex("\nHeavy rain +Not sent\\. No rain likely\\.\n"));
  EXPECT_THAT(text.out, ContainsRegex("Morning summary +Would be scheduled\\. To be sent at 7:00 AM"));
  EXPECT_THAT(text.out, Not(ContainsRegex("rain_start|morning_summary|gov_|Sent\\.")));
  auto const verbose = run({"notify", "--explain", "--verbose"});
  EXPECT_THAT(verbose.out, HasSubstr("[rain_start]"));
  EXPECT_THAT(verbose.out, HasSubstr("Morning summary [morning_summary]"));
  auto const json = run({"notify", "--explain", "--json"});
  EXPECT_THAT(json.out,
              HasSubstr(R"({"rule":"rain","setting":"notify_rain","identifier":"rain",)"
                        R"("outcome":"conditionFalse","place":"Berlin","measured":[{"what":"hourlyRain",)"));
}

TEST_F(NotifyCommandTest, TellsTheTimesOfOnePlaceByItsClockAndOfSeveralByTheReaders) {
  EXPECT_THAT(run({"notify", "--explain"}).out,
              StartsWith("Berlin: No official warnings, checked 10:20 AM\n"));
  ASSERT_EQ(run({"places", "add", "38.72,-9.14", "--name", "Lisbon"}).exitCode, 0);
  std::string const several = run({"notify", "--explain"}).out;
  EXPECT_THAT(several, HasSubstr("Berlin: No official warnings, checked 9:20 AM\n"));
  EXPECT_THAT(several, ContainsRegex("Lisbon: [^\n]+, checked 9:20 AM\n"));
}

TEST_F(NotifyCommandTest, SaysOfAPreviewWhatWouldBeSent) {
  std::string const would = "These notifications would be sent:\n\n";
  EXPECT_THAT(run({"notify", "--dry-run"}).out, StartsWith(would));
  EXPECT_THAT(run({"notify", "--deliver", "print"}).out, Not(HasSubstr("would")));
  for (char const* const rule :
       {"notify_govAlerts", "notify_severe", "notify_travelAdvisory", "notify_morningSummary",
        "notify_eveningSummary", "notify_umbrellaReminder", "notify_uvDailyReminder"})
    ASSERT_EQ(run({"settings", "set", rule, "false"}).exitCode, 0) << rule;
  EXPECT_EQ(run({"notify", "--dry-run"}).out, "No notifications would be sent.\n");
}

TEST_F(NotifyCommandTest, ExplainsRulesOfTheUsersOwnByTheirTitles) {
  ASSERT_EQ(run({"rules", "add", "--title", "Blast", "--type", "windGust", "--operator", "above",
                 "--threshold", "300", "--immediately"})
                .exitCode,
            0);
  EXPECT_THAT(run({"notify", "--explain"}).out, ContainsRegex("\nBlast +Not sent\\. Condition not met\\."));
}

TEST_F(NotifyCommandTest, KeepsALogThatCanBeRead) {
  EXPECT_EQ(run({"notify", "--log"}).out, "No notifications yet.\n");
  EXPECT_EQ(run({"notify", "--log", "--json"}).out, "[]\n");
  for (auto const& [key, value] : {std::pair("notify_highWindThreshold", "1"),
                                   {"notify_highWind", "true"},
                                   {"notify_severe", "false"},
                                   {"notify_govAlerts", "false"},
                                   {"notify_travelAdvisory", "false"}}) {
    ASSERT_EQ(run({"settings", "set", key, value}).exitCode, 0) << key;
  }
  ASSERT_EQ(run({"notify", "--deliver", "print"}).exitCode, 0);
  ASSERT_EQ(run({"notify", "--deliver", "print"}).exitCode, 0);
  EXPECT_THAT(run({"notify", "--log"}).out,
              ContainsRegex("^[0-9]+:20 [AP]M  [^\n]+ \\(Berlin\\)\n  Sent\\. Strongest wind or gust: "
                            "[0-9.]+ km/h \\(minimum: 1 km/h\\)\\.\n$"));
  EXPECT_THAT(
      run({"notify", "--log", "--json"}).out,
      ContainsRegex(R"("outcome":"announced","identifier":"high_wind".*"setting":"notify_highWind",)"
                    R"("kind":"high_wind","measured":\[\{"what":"wind","value":[0-9.]+,"needs":"atLeast",)"
                    R"("limit":1,"unit":"km/h"\}\],"note":""\}\])"));
  EXPECT_EQ(run({"notify", "--log", "--explain"}).exitCode, 2);
}

TEST_F(NotifyCommandTest, NoDesktopIsAFailureThatForgetsNothing) {
  auto const denied = run({"notify", "--json"});
  EXPECT_EQ(denied.exitCode, 1);
  EXPECT_THAT(denied.err, HasSubstr("the desktop shows no notifications"));
  EXPECT_THAT(run({"notify", "--dry-run", "--json"}).out, HasSubstr("morning_summary"));
}

TEST_F(NotifyCommandTest, NamesTheOffendingWord) {
  auto const wrong = run({"notify", "--deliver", "pigeon"});
  EXPECT_EQ(wrong.exitCode, 2);
  EXPECT_THAT(wrong.err, HasSubstr("pigeon"));
  EXPECT_THAT(wrong.err, HasSubstr("desktop"));
  EXPECT_THAT(wrong.err, HasSubstr("print"));
}

TEST_F(NotifyCommandTest, TakesWhatNobodyHasSetUpForNoFailure) {
  auto const whole = run({"notify", "--dry-run"});
  EXPECT_EQ(whole.exitCode, 0);
  EXPECT_EQ(whole.err, "");
}

TEST_F(NotifyCommandTest, EndsWithOneWhereAFeedFailed) {
  server = *DemoServer::start(clock, {{Service::travelAdvisories, DemoFault::Kind::garbage}});
  base = server->baseUrl();
  auto const failed = run({"notify", "--dry-run", "--json"});
  EXPECT_EQ(failed.exitCode, 1);
  EXPECT_THAT(failed.out, HasSubstr("morning_summary")) << "the rest is sent";
  EXPECT_EQ(failed.err,
            "nimbara: the travel advisories could not be fetched: the response could not be read\n");
}

TEST_F(NotifyCommandTest, NoNetworkSilencesWhatNeedsIt) {
  base = "http://127.0.0.1:9";
  auto const offline = run({"notify", "--dry-run", "--json"});
  EXPECT_EQ(offline.exitCode, 1);
  EXPECT_EQ(offline.out, "[]\n");
  EXPECT_THAT(offline.err, StartsWith("nimbara: "));
  EXPECT_EQ(run({"notify", "--dry-run"}).out, "Nothing could be checked.\n");
}

/// Warnings and alerts would be listed: of what is left, the advisories alone can be looked at.
TEST_F(NotifyCommandTest, TellsNothingFoundFromNotLookedAt) {
  for (char const* const rule :
       {"notify_morningSummary", "notify_severe", "notify_govAlerts", "notify_travelAdvisory"}) {
    ASSERT_EQ(run({"settings", "set", rule, "false"}).exitCode, 0);
  }
  EXPECT_EQ(run({"notify", "--dry-run"}).out, "No notifications would be sent.\n");
  ASSERT_EQ(run({"settings", "set", "notify_earthquakes", "true"}).exitCode, 0);
  server = *DemoServer::start(clock, {{Service::usgs, DemoFault::Kind::garbage}});
  base = server->baseUrl();
  EXPECT_EQ(run({"notify", "--dry-run"}).out, "No notifications from what could be checked.\n");
}

TEST_F(NotifyCommandTest, StandInsLeaveTheUsersOwnMemoryAlone) {
  ASSERT_EQ(run({"notify", "--deliver", "print"}).exitCode, 0);
  // Berlin's next morning: what stand-ins made up must not be told as the day's weather.
  auto const real =
      test::run({"notify", "--deliver", "print", "--json", "--now", "2026-11-22T06:10:00Z"}, environment());
  EXPECT_THAT(real.out, Not(HasSubstr("morning_summary")));
  auto const standIn = run({"notify", "--deliver", "print", "--json"}, "2026-11-22T06:10:00Z");
  EXPECT_THAT(standIn.out, HasSubstr(R"("identifier":"morning_summary","title":"Good Morning")"));
  EXPECT_THAT(standIn.out, HasSubstr(R"("trigger":"immediate")"));
}

}  // namespace
}  // namespace nimbara
