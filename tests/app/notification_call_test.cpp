#include "app/notices/notification_call.h"

#include "notifications/catalogue.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using testing::ElementsAre;

TEST(NotificationCall, OpensThePlaceOfTheNotification) {
  auto const call = notificationCall({"rain_start@59.91,10.75", "default", "token-1"});
  ASSERT_TRUE(call);
  EXPECT_EQ(call->action, "start");
  EXPECT_EQ(call->activationToken, "token-1");
  EXPECT_THAT(call->arguments, ElementsAre("--page", "now", "--place", "59.91,10.75"));
  for (char const* const identifier : {"rain_start", "rain_start@", ""}) {
    EXPECT_THAT(notificationCall({identifier, "default", ""})->arguments, ElementsAre("--page", "now"));
  }
}

struct PageRow {
  char const* identifier;
  char const* page;
};

TEST(NotificationCall, OpensThePageThatShowsMore) {
  for (auto const& [identifier, page] : {PageRow{"gov_nws_urn:oid:2.49.0.1.840.0.1", "hazards"},
                                         {"nws_flood@52.23,21.01", "hazards"},
                                         {"tornado_conditions@52.23,21.01", "hazards"},
                                         {"earthquake_us7000", "hazards"},
                                         {"beta_aurora", "hazards"},
                                         {"rain", "now"},
                                         {"flood@52.23,21.01", "now"},
                                         {"morning_summary", "now"},
                                         {"test", "now"}}) {
    auto const call = notificationCall({identifier, "default", ""});
    ASSERT_TRUE(call) << identifier;
    EXPECT_EQ(call->arguments[1], page) << identifier;
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
