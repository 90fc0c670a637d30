#include "feeds/source_feeds.h"

#include "support/answers/element_table.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <future>
#include <latch>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using testing::HasSubstr;
using testing::StartsWith;

constexpr char kQuakes[] = R"({"features":[]})";
std::string const kTable = test::kElementHeading;
std::string const kWhole = kTable + test::elementRow("123456");

class SourceFeedsTest : public testing::Test {
 protected:
  /// Another run of the program.
  SourceFeeds run(std::string relay = {}) {
    return {http_,
            clock_,
            {.usgsBase = "https://usgs",
             .celestrakBase = "https://celestrak",
             .folder = folder_.path() / "Sources",
             .relayBase = std::move(relay)}};
  }
  std::size_t asked() const { return http_.requests.size(); }

  FeedKey const quakes_{};
  FeedKey const weather_{FeedKey::Kind::satellites, "weather"};
  FeedKey const starlink_{FeedKey::Kind::satellites, "starlink"};
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  test::TemporaryFolder folder_;
};

TEST_F(SourceFeedsTest, AsksOnceAPeriodAcrossRuns) {
  struct Row {
    FeedKey key;
    std::string body;
    std::chrono::seconds period;
  };
  for (Row const& row : {Row{quakes_, kQuakes, 60s}, Row{weather_, kWhole, 6h}}) {
    std::size_t const before = asked();
    http_.willAnswer(200, row.body);
    ASSERT_TRUE(run().get(row.key));
    clock_.advance(row.period - 1ms);
    auto const again = run().get(row.key);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->fetchedAt, clock_.now() - row.period + 1ms);
    EXPECT_EQ(asked(), before + 1);
    clock_.advance(1ms);
    http_.willAnswer(200, row.body);
    EXPECT_EQ(run().get(row.key)->fetchedAt, clock_.now());
    EXPECT_EQ(asked(), before + 2);
  }
}

TEST_F(SourceFeedsTest, LeavesARefusingSourceAloneForTwoHoursAcrossRuns) {
  using Refusal = std::pair<int, std::string>;
  for (auto const& [status, body] :
       {Refusal{403, "GP data has not updated since your last download"}, Refusal{404, "No GP data found"},
        Refusal{500, ""}, Refusal{200, "No GP data found"}, Refusal{200, ""}, Refusal{200, "<html>"},
        Refusal{200, kTable}}) {
    std::size_t const before = asked();
    http_.willAnswer(status, body);
    EXPECT_FALSE(run().get(weather_)) << body;
    clock_.advance(2h - 1ms);
    auto const refused = run().get(weather_);
    EXPECT_FALSE(refused);
    EXPECT_THAT(sentenceOf(refused.error()), HasSubstr("; next attempt from 2026-11-2"));
    EXPECT_EQ(asked(), before + 1) << body;
    http_.willAnswer(403, "");
    EXPECT_FALSE(run().get(starlink_)) << "another group has its own pause";
    clock_.advance(1ms);
    http_.willAnswer(200, kWhole);
    EXPECT_TRUE(run().get(weather_)) << body;
    EXPECT_EQ(asked(), before + 3);
    clock_.advance(6h);
  }
}

TEST_F(SourceFeedsTest, ALaterRunKnowsWhyThereIsNothingNewerAndWhatThereWas) {
  http_.willAnswer(200, kWhole);
  ASSERT_TRUE(run().get(weather_));
  clock_.advance(6h);
  http_.willAnswer(403, "not again");
  auto const reading = run().read(weather_);
  ASSERT_TRUE(reading.failure);
  EXPECT_EQ(sentenceOf(*reading.failure),
            "the service returned status 403; next attempt from 2026-11-21T17:20:00Z");
  auto const later = run().read(weather_);
  EXPECT_EQ(later.failure, reading.failure);
  ASSERT_TRUE(later.kept);
  EXPECT_THAT(later.kept->body, StartsWith("TEST SAT\n1 C3456U 26001A"));
  EXPECT_EQ(later.kept->fetchedAt, at("2026-11-21T09:20:00Z"));
}

TEST_F(SourceFeedsTest, ANetworkThatIsAwayCostsNobodyAPause) {
  struct Row {
    HttpError::Kind kind;
    bool isAway;
  };
  for (Row const& row :
       {Row{HttpError::Kind::unresolvedHost, true}, Row{HttpError::Kind::connectionFailed, true},
        Row{HttpError::Kind::tlsFailed, true}, Row{HttpError::Kind::timedOut, false},
        Row{HttpError::Kind::truncated, false},
        Row{HttpError::Kind::cancelled, true}}) {  // before the question has begun, for no time passes here
    std::size_t const before = asked();
    http_.willFail({row.kind, "failed"});
    EXPECT_FALSE(run().get(weather_));
    http_.willAnswer(200, kWhole);
    EXPECT_EQ(run().get(weather_).has_value(), row.isAway) << enumName(row.kind);
    if (!row.isAway) {
      clock_.advance(2h);
      EXPECT_TRUE(run().get(weather_));
    }
    EXPECT_EQ(asked(), before + 2);
    clock_.advance(6h);
  }
}

/// What is noted when a run is killed between its question and the answer.
TEST_F(SourceFeedsTest, AQuestionCountsBeforeItsAnswer) {
  class Killing final : public HttpClient {
   public:
    explicit Killing(std::function<void()> during) : during_(std::move(during)) {}
    Result<HttpResponse, HttpError> get(HttpRequest const&, std::stop_token) override {
      during_();
      return HttpResponse{200, {}, kWhole};
    }

   private:
    std::function<void()> during_;
  };
  Killing killing([this] { std::filesystem::copy(folder_.path() / "Sources", folder_.path() / "killed"); });
  SourceFeeds::Options options{
      .usgsBase = "", .celestrakBase = "https://celestrak", .folder = folder_.path() / "Sources"};
  ASSERT_TRUE(SourceFeeds(killing, clock_, options).get(weather_));
  options.folder = folder_.path() / "killed";
  EXPECT_EQ(sentenceOf(SourceFeeds(http_, clock_, options).get(weather_).error()),
            "the last request got no response; next attempt from 2026-11-21T11:20:00Z");
  EXPECT_EQ(asked(), 0U);
}

TEST_F(SourceFeedsTest, TwoThatAskAtATimeAreOneQuestion) {
  /// Answers once the other run has begun to wait.
  class Slow final : public HttpClient {
   public:
    std::latch isAsked{1};
    std::latch mayAnswer{1};
    Result<HttpResponse, HttpError> get(HttpRequest const&, std::stop_token) override {
      isAsked.count_down();
      mayAnswer.wait();
      return HttpResponse{200, {}, kWhole};
    }
  };
  Slow slow;
  SourceFeeds first(slow, clock_,
                    {.usgsBase = "", .celestrakBase = "", .folder = folder_.path() / "Sources"});
  auto one = std::async(std::launch::async, [&] { return first.get(weather_); });
  slow.isAsked.wait();
  auto other = std::async(std::launch::async, [&] { return run().get(weather_); });
  slow.mayAnswer.count_down();
  EXPECT_TRUE(one.get());
  EXPECT_TRUE(other.get());
  EXPECT_EQ(asked(), 0U);
}

TEST_F(SourceFeedsTest, AClockThatWasSetBackHoldsNothingUp) {
  http_.willAnswer(200, kQuakes);
  std::ignore = run().get(quakes_);
  clock_.advance(-24h);
  http_.willAnswer(200, kQuakes);
  EXPECT_TRUE(run().get(quakes_));
  EXPECT_EQ(asked(), 2U);
}

TEST_F(SourceFeedsTest, AStandInMayKnowTheRelaysPathOnly) {
  http_.willAnswer(404, "no such page");
  http_.willAnswer(200,
                   "TEST SAT\n"
                   "1 25544U 26001A   26324.50000000  .00001234  00000+0  12000-3 0  9996\n"
                   "2 25544  51.6401 247.4627 0001234 130.5360 325.0288 15.50000000123453\n");
  EXPECT_TRUE(run("http://127.0.0.1").get(weather_));
  EXPECT_EQ(http_.requests[0].url, "https://celestrak/NORAD/elements/gp.php?GROUP=weather&FORMAT=CSV");
  EXPECT_EQ(http_.requests[1].url, "http://127.0.0.1/api/feed.php?f=satellites&p=weather");
}

TEST_F(SourceFeedsTest, WithoutAFolderTheMemoryLastsAsLongAsTheProcess) {
  for (std::string const folder : {"", "/proc/nimbara"}) {
    std::size_t const before = asked();
    SourceFeeds feeds(http_, clock_, {.usgsBase = "https://usgs", .celestrakBase = "", .folder = folder});
    http_.willAnswer(200, kQuakes);
    EXPECT_TRUE(feeds.get(quakes_));
    EXPECT_TRUE(feeds.get(quakes_));
    EXPECT_EQ(asked(), before + 1);
    clock_.advance(60s);
    http_.willAnswer(500, "");
    EXPECT_FALSE(feeds.get(quakes_));
    EXPECT_TRUE(feeds.read(quakes_).kept);
    clock_.advance(60s);
  }
}

TEST_F(SourceFeedsTest, ARelayThatFailsRests) {
  RelayFeedSource relay(http_, clock_, "https://relay");
  std::string const sets =
      "1 25544U 26001A   26324.50000000  .00001234  00000+0  12000-3 0  9996\n"
      "2 25544  51.6401 247.4627 0001234 130.5360 325.0288 15.50000000123453\n";
  struct Row {
    int status;
    std::string body;
    std::chrono::seconds pause;
  };
  for (Row const& row :
       {Row{500, "", 10min}, Row{403, "", 24h}, Row{200, "", 10min}, Row{200, "<html>", 10min}}) {
    std::size_t const before = asked();
    http_.willAnswer(row.status, row.body);
    EXPECT_FALSE(relay.get(weather_));
    clock_.advance(row.pause - 1ms);
    EXPECT_FALSE(relay.get(weather_));
    EXPECT_EQ(asked(), before + 1);
    clock_.advance(1ms);
    http_.willAnswer(200, sets);
    EXPECT_EQ(relay.get(weather_)->body, sets);
  }
  http_.willFail({HttpError::Kind::unresolvedHost, ""});
  EXPECT_FALSE(relay.get(weather_));
  http_.willAnswer(200, sets);
  EXPECT_TRUE(relay.get(weather_));
  EXPECT_EQ(http_.requests.back().url, "https://relay/api/feed.php?f=satellites&p=weather");
}

}  // namespace
}  // namespace nimbara
