#include "feeds/storms/lightning_source.h"
#include "support/answers/bad_bytes.h"
#include "support/feed_readings.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

std::string strike(std::string const& time, double latitude = 50, double longitude = 10) {
  return R"({"time":")" + time + R"(","latitude":)" + std::to_string(latitude) + R"(,"longitude":)" +
         std::to_string(longitude) + "}";
}

std::string listOf(std::string const& strikes) {
  return R"({"strikes":[)" + strikes + "]}";
}

TEST(LightningStrikes, AreReadWithoutWhatIsNone) {
  auto const strikes = parseLightningStrikes(
      listOf(strike("2026-11-21T09:00:00.250Z") + R"(,null,7,{},{"time":"x","latitude":1,"longitude":2},
             {"time":"2026-11-21T09:00:00Z","latitude":91,"longitude":2},{"time":"2026-11-21T09:00:00Z","latitude":1})"));
  ASSERT_TRUE(strikes);
  EXPECT_EQ(*strikes, (std::vector<LightningStrike>{{at("2026-11-21T09:00:00.250Z"), {50, 10}}}));
  auto const none = parseLightningStrikes(listOf(""));
  EXPECT_TRUE(none && none->empty());
  for (std::string const body : {"", "[]", "{}", "<html>", R"({"strikes":null})"})
    EXPECT_FALSE(parseLightningStrikes(body)) << body;
  for (std::string const& body : test::damagedForms(listOf(strike("2026-11-21T09:00:00Z")), 3))
    parseLightningStrikes(body);
}

class LightningSourceTest : public testing::Test {
 protected:
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  HttpLightningSource source_{http_, clock_, "https://sparks.example"};
};

TEST_F(LightningSourceTest, IsNoneWithoutAnAddress) {
  HttpLightningSource none(http_, clock_, "");
  EXPECT_EQ(none.fetchStrikes({50, 10}, 20, clock_.now() - 1h).state, FeedState::notConfigured);
  EXPECT_TRUE(http_.requests.empty());
}

TEST_F(LightningSourceTest, GivesTheStrikesOfTheCircleAndTheSpan) {
  Instant const since = clock_.now() - 30min;
  double const km = 1 / 111.195;
  http_.willAnswer(200, listOf(strike("2026-11-21T08:50:00Z") + "," + strike("2026-11-21T08:49:59Z") + "," +
                               strike("2026-11-21T09:25:00Z") + "," + strike("2026-11-21T09:25:01Z") + "," +
                               strike("2026-11-21T09:00:00Z", 50 + 19.9 * km) + "," +
                               strike("2026-11-21T09:00:00Z", 50 + 20.1 * km)));
  auto const reading = source_.fetchStrikes({50, 10}, 20, since);
  EXPECT_TRUE(reading.isCurrent());
  ASSERT_EQ(reading.data.size(), 3);
  EXPECT_EQ(reading.data[0].time, at("2026-11-21T09:25:00Z"));
  EXPECT_EQ(reading.data[2].time, since);
  EXPECT_EQ(http_.requests[0].url,
            "https://sparks.example/lightning/strikes?latitude=50.0000&longitude=10.0000&radius=20.0"
            "&since=2026-11-21T03%3A20%3A00Z");
}

TEST_F(LightningSourceTest, AsksOnceAMinuteWhateverTheSpan) {
  http_.willAnswer(200, listOf(strike("2026-11-21T08:00:00Z")));
  http_.willAnswer(200, listOf(""));
  EXPECT_EQ(source_.fetchStrikes({50, 10}, 20, clock_.now() - 10min).data.size(), 0);
  EXPECT_EQ(source_.fetchStrikes({50, 10}, 20, clock_.now() - 2h).data.size(), 1);
  EXPECT_EQ(source_.fetchStrikes({50, 10}, 20, Instant()).data.size(), 1);
  clock_.advance(59'999ms);
  source_.fetchStrikes({50, 10}, 20, clock_.now() - 2h);
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(1ms);
  EXPECT_EQ(source_.fetchStrikes({50, 10}, 20, clock_.now() - 2h).data.size(), 0);
}

TEST_F(LightningSourceTest, TellsAFailureFromAQuietSky) {
  http_.willAnswer(200, listOf(""));
  EXPECT_TRUE(source_.fetchStrikes({50, 10}, 20, clock_.now() - 1h).isCurrent());
  clock_.advance(60s);
  http_.willAnswer(500, "");
  auto const failed = source_.fetchStrikes({50, 10}, 20, clock_.now() - 1h);
  EXPECT_EQ(failed.state, FeedState::failed);
  EXPECT_EQ(failed.problem(), "the service returned status 500");
  EXPECT_EQ(source_.fetchStrikes({50, 10}, 0, clock_.now()).state, FeedState::failed);
}

}  // namespace
}  // namespace nimbara
