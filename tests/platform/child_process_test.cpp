#include "platform/linux/child_process.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

TEST(TimedRunner, TellsExitCodesAndEndsWhatTakesTooLong) {
  auto const run = timedRunner(std::chrono::seconds(20));
  EXPECT_EQ(run({"true"}), 0);
  EXPECT_EQ(run({"sh", "-c", "exit 7"}), 7);
  EXPECT_EQ(run({"sh", "-c", "kill -9 $$"}), std::nullopt);
  EXPECT_EQ(run({"no-such-program-of-nimbara"}), std::nullopt);
  EXPECT_EQ(timedRunner(std::chrono::milliseconds(30))({"sleep", "20"}), std::nullopt);
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(timedRunner(std::chrono::seconds(20), stop.get_token())({"sleep", "20"}), std::nullopt);
}

}  // namespace
}  // namespace nimbara
