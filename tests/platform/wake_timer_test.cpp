#include "platform/linux/timerfd_wake_timer.h"

#include <gtest/gtest.h>

#include <thread>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using Cause = WakeTimer::Cause;

TEST(WakeTimer, TellsWhatWokeIt) {
  TimerfdWakeTimer timer;
  EXPECT_EQ(timer.wait(1ms, {}), Cause::due);
  EXPECT_EQ(timer.wait(-1h, {}), Cause::due);
  timer.wake();  // before anybody waits
  timer.wake();
  EXPECT_EQ(timer.wait(1h, {}), Cause::asked);
  std::stop_source source;
  source.request_stop();
  EXPECT_EQ(timer.wait(std::nullopt, source.get_token()), Cause::stopped);
}

TEST(WakeTimer, IsWokenFromAnotherThread) {
  TimerfdWakeTimer timer;
  std::jthread const waker([&] { timer.wake(); });
  EXPECT_EQ(timer.wait(std::nullopt, {}), Cause::asked);
  std::stop_source source;
  std::jthread const stopper([&] { source.request_stop(); });
  EXPECT_EQ(timer.wait(std::nullopt, source.get_token()), Cause::stopped);
}

}  // namespace
}  // namespace nimbara
