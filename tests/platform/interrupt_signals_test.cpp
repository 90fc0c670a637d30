#include "platform/linux/interrupt_signals.h"

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <semaphore>

namespace nimbara {
namespace {

constexpr std::int64_t kReady = -1;

/// Ends only when it is asked to, and tells by what.
int waitForTheEnd(test::ChildProcess::Report const& report) {
  InterruptSignals const signals;
  std::binary_semaphore asked(0);
  std::stop_callback const wake(signals.token(), [&asked] { asked.release(); });
  report(kReady);
  asked.acquire();
  report(signals.signal());
  return 0;
}

TEST(InterruptSignals, AskForTheEndAndAreWhatItEndsWith) {
  for (int const signal : {SIGINT, SIGTERM}) {
    test::ChildProcess child(waitForTheEnd);
    ASSERT_EQ(child.next(), kReady);
    child.signal(signal);
    EXPECT_EQ(child.next(), signal);
    EXPECT_EQ(child.wait(), -signal);
  }
}

TEST(InterruptSignals, LeaveNothingBehindWhereNoneCame) {
  test::ChildProcess child([](auto const& report) {
    {
      InterruptSignals const unused;
    }
    report(kReady);
    pause();
    return 0;
  });
  ASSERT_EQ(child.next(), kReady);
  child.signal(SIGTERM);
  EXPECT_EQ(child.wait(), -SIGTERM);
}

}  // namespace
}  // namespace nimbara
