#include "app/notification_call.h"

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

TEST(NotificationCall, LeavesOtherAnswersAlone) {
  for (char const* const action : {"snooze", "mute", "", "inline-reply"}) {
    EXPECT_FALSE(notificationCall({"rain_start", action, ""})) << action;
  }
}

}  // namespace
}  // namespace nimbara
