#include "app/services/http/limited_http_client.h"

#include "app/services/forecasts/side_by_side.h"
#include "support/fake_http_client.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <barrier>
#include <string>

namespace nimbara {
namespace {

using namespace nimbara::test;
using namespace std::chrono_literals;
using Kind = HttpError::Kind;

struct LimitedHttp : testing::Test {
  Kind failureOf(std::chrono::milliseconds timeout) {
    auto const answer = client.get({"https://a/", {}, timeout});
    EXPECT_FALSE(answer);
    return answer ? Kind::protocol : answer.error().kind;
  }

  ManualClock clock{Instant()};
  FakeHttpClient network;
  LimitedHttpClient client{network, clock, 24s};
};

TEST_F(LimitedHttp, GivesARequestWhatIsLeft) {
  for (auto const& [passed, timeout] : {std::pair(0s, 15s), {9s, 15s}, {1s, 14s}, {13s, 1s}}) {
    clock.advance(passed);
    network.willAnswer(200, "body");
    ASSERT_TRUE(client.get({"https://a/", {}, 15s}));
    EXPECT_EQ(network.requests.back().timeout, timeout);
  }
  clock.advance(1s);
  EXPECT_EQ(failureOf(15s), Kind::cancelled) << "no service is to blame";
  EXPECT_EQ(network.requests.size(), 4U) << "nobody is asked when the time is up";
}

TEST_F(LimitedHttp, BlamesAServiceForItsOwnLimitOnly) {
  network.willFail({Kind::timedOut, "slow"});
  EXPECT_EQ(failureOf(15s), Kind::timedOut);
  clock.advance(20s);
  network.willFail({Kind::timedOut, "slow"});
  EXPECT_EQ(failureOf(15s), Kind::cancelled);
  network.willFail({Kind::connectionFailed, "closed"});
  EXPECT_EQ(failureOf(15s), Kind::connectionFailed);
}

TEST_F(LimitedHttp, BlamesAServiceThatFallsSilentBeforeTheLimit) {
  clock.advance(20s);
  HttpRequest patient{"https://a/", {}, 60s};
  patient.longestSilence = 3s;
  network.willFail({Kind::timedOut, "silent"});
  auto const answer = client.get(patient);
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().kind, Kind::timedOut);
}

TEST(RunAll, LetsTasksWaitForEachOther) {
  std::barrier meeting(3);
  std::atomic<int> met = 0;
  std::function<void()> const meet = [&] {
    meeting.arrive_and_wait();
    ++met;
  };
  runAll({meet, meet, meet}, Waiting::sideBySide);
  EXPECT_EQ(met, 3);
}

TEST(RunAll, KeepsTheOrderOneAfterTheOther) {
  std::string order;
  runAll({[&] { order += 'a'; }, [&] { order += 'b'; }, [&] { order += 'c'; }}, Waiting::oneAfterTheOther);
  EXPECT_EQ(order, "abc");
}

}  // namespace
}  // namespace nimbara
