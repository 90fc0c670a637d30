#include "feeds/fetching/watched_feed.h"

#include "feeds/fetching/failure_words.h"
#include "support/feed_readings.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::headerOf;
using namespace std::chrono_literals;
using Kind = ServiceFailure::Kind;
using Transport = HttpError::Kind;

Result<int, DecodeError> parseWhole(std::string_view body) {
  if (body.empty() || body.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::unexpected(DecodeError{"", "no number"});
  }
  return std::stoi(std::string(body));
}

class WatchedFeedTest : public testing::Test {
 protected:
  FeedReading<int> read() {
    return feed_.read(http_, clock_,
                      {HttpRequest{.url = "https://a.example/x", .headers = {}}, "number", 60s, isPatient_},
                      parseWhole, {});
  }

  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  WatchedFeed<int> feed_;
  bool isPatient_ = true;
};

TEST_F(WatchedFeedTest, IsAskedAgainWhenItsLifeIsOver) {
  http_.willAnswer(200, "7");
  http_.willAnswer(204, "8");
  EXPECT_EQ(read().data, 7);
  clock_.advance(59'999ms);
  EXPECT_EQ(read().data, 7);
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(1ms);
  auto const reading = read();
  EXPECT_EQ(reading.data, 8);
  EXPECT_EQ(reading.checkedAt, clock_.now());
  EXPECT_TRUE(reading.isCurrent());
}

TEST_F(WatchedFeedTest, NeverTrustsTheFuture) {
  http_.willAnswer(200, "7");
  http_.willAnswer(200, "8");
  read();
  clock_.set(clock_.now() - 1h);
  EXPECT_EQ(read().data, 8);
}

TEST_F(WatchedFeedTest, SendsTheValidatorsOfWhatItRead) {
  http_.willAnswer(200, "7", {{"etag", "\"a\""}, {"Last-Modified", "yesterday"}});
  http_.willAnswer(304, "");
  http_.willAnswer(200, "<html>", {{"ETag", "\"portal\""}});
  http_.willAnswer(304, "");
  read();
  EXPECT_FALSE(headerOf(http_.requests[0], "If-None-Match"));
  clock_.advance(60s);
  EXPECT_TRUE(read().isCurrent());
  EXPECT_EQ(headerOf(http_.requests[1], "If-None-Match"), "\"a\"");
  EXPECT_EQ(headerOf(http_.requests[1], "If-Modified-Since"), "yesterday");
  clock_.advance(60s);
  auto const failed = read();
  EXPECT_EQ(failed.state, FeedState::failed);
  EXPECT_EQ(failed.data, 7);
  EXPECT_NE(failed.problem().find("no number"), std::string::npos) << failed.problem();
  clock_.advance(60s);
  EXPECT_TRUE(read().isCurrent());
  EXPECT_EQ(headerOf(http_.requests[3], "If-None-Match"), "\"a\"") << "never that of what was not read";
}

TEST_F(WatchedFeedTest, AsksAnImpatientQuestionAgainAfterEveryFailure) {
  isPatient_ = false;
  http_.willAnswer(503, "");
  http_.willAnswer(200, "7");
  read();
  EXPECT_EQ(read().data, 7);
  read();
  EXPECT_EQ(http_.requests.size(), 2) << "what is fresh is not asked for";
}

TEST_F(WatchedFeedTest, TakesNoConfirmationThatItDidNotAskFor) {
  http_.willAnswer(304, "");
  EXPECT_EQ(read().state, FeedState::failed);
  EXPECT_FALSE(read().checkedAt);
}

TEST_F(WatchedFeedTest, TellsSinceWhenItFailsAndForgetsItAfterwards) {
  http_.willAnswer(200, "7");
  Instant const checked = clock_.now();
  read();
  clock_.advance(60s);
  Instant const first = clock_.now();
  http_.willFail({HttpError::Kind::connectionFailed, "no way"});
  EXPECT_EQ(read().problem(), "the service cannot be reached (no way)");
  clock_.advance(1s);
  http_.willAnswer(503, "");
  auto const reading = read();
  EXPECT_EQ(reading.failedSince, first);
  EXPECT_EQ(reading.checkedAt, checked);
  EXPECT_EQ(reading.data, 7);
  clock_.advance(5min);
  http_.willAnswer(200, "9");
  EXPECT_FALSE(read().failedSince);
  EXPECT_EQ(read().problem(), "");
}

TEST_F(WatchedFeedTest, LeavesARefusingServiceAlone) {
  http_.willAnswer(429, "", {{"Retry-After", "90"}});
  http_.willAnswer(200, "7");
  read();
  clock_.advance(89'999ms);
  EXPECT_EQ(read().state, FeedState::failed);
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(1ms);
  EXPECT_TRUE(read().isCurrent());
}

TEST_F(WatchedFeedTest, WaitsForTheNextDayAfterADailyQuota) {
  http_.willAnswer(429, R"({"error":true,"reason":"Daily API request limit exceeded. Please try again."})");
  read();
  for (auto const& moment : {"2026-11-21T09:26:00Z", "2026-11-21T18:00:00Z", "2026-11-21T23:59:59Z"}) {
    clock_.advance(at(moment) - clock_.now());
    EXPECT_FALSE(read().isCurrent());
  }
  EXPECT_EQ(http_.requests.size(), 1);
  http_.willAnswer(200, "7");
  clock_.advance(1s);
  EXPECT_EQ(read().data, 7);
}

/// As some services say it.
TEST_F(WatchedFeedTest, UnderstandsAQuotaUnderAnyStatus) {
  http_.willAnswer(200, "Daily transaction limit exceeded");
  read();
  clock_.advance(14h);
  EXPECT_EQ(http_.requests.size(), 1);
  read();
  EXPECT_EQ(http_.requests.size(), 1);
  http_.willAnswer(200, "7");
  clock_.advance(1h);
  EXPECT_EQ(read().data, 7);
}

TEST_F(WatchedFeedTest, AsksAtOnceAfterABrokenConnection) {
  http_.willFail({HttpError::Kind::unresolvedHost, "no network"});
  http_.willAnswer(200, "7");
  read();
  EXPECT_TRUE(read().isCurrent());
}

TEST(Pauses, GrowWithTheFailures) {
  Instant const now = at("2026-11-21T09:20:00Z");
  struct Row {
    int status, failures;
    std::optional<std::string_view> retryAfter;
    std::chrono::milliseconds pause;
  };
  for (Row const& row :
       {Row{0, 9, {}, 0s}, Row{503, 0, {}, 0s}, Row{503, 1, {}, 1min}, Row{503, 2, {}, 2min},
        Row{429, 3, {}, 5min}, Row{403, 4, {}, 15min}, Row{500, 5, {}, 60min}, Row{500, 99, {}, 60min},
        Row{200, 1, {}, 1min}, Row{400, 1, {}, 60min}, Row{401, 1, {}, 60min}, Row{404, 1, {}, 60min},
        Row{503, 1, "0", 0s}, Row{503, 1, "7", 7s}, Row{503, 1, "-7", 0s}, Row{503, 1, "99999999", 24h},
        Row{503, 1, "soon", 1min}, Row{503, 1, "Sat, 21 Nov 2026 09:20:30 GMT", 30s},
        Row{503, 1, "Sat, 21 Nov 2020 09:20:30 GMT", 0s}})
    EXPECT_EQ(pauseAfterFailure(row.status, row.failures, row.retryAfter, now), row.pause)
        << row.status << " " << row.failures << " " << row.retryAfter.value_or("");
}

TEST(WatchedFeeds, ForgetTheOneThatWasAskedForLongestAgo) {
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T09:20:00Z")};
  WatchedFeeds<int, 2> feeds;
  auto const read = [&](std::string const& key) {
    http.willAnswer(200, "1");
    feeds.of(key).read(http, clock,
                       {HttpRequest{.url = "https://a.example/" + key, .headers = {}}, "number", 60s},
                       parseWhole, {});
  };
  for (std::string const key : {"a", "b", "a", "c", "a", "b"}) read(key);
  std::string asked;
  for (auto const& request : http.requests) asked += request.url.back();
  EXPECT_EQ(asked, "abcb");
}

struct Row {
  ServiceFailure failure;
  char const *plain, *english, *portuguese;
};

ServiceFailure unreadableWaters() {
  ServiceFailure failure = ServiceFailure::of(Kind::unreadable, "the response is not a valid list of alerts");
  failure.isOfWaters = true;
  return failure;
}

ServiceFailure leftAlone() {
  ServiceFailure failure = ServiceFailure::of(Kind::leftAlone);
  failure.nextTry = test::at("2026-11-21T17:20:00Z");
  return failure;
}

TEST(ServiceFailures, AreSaidInTheUsersLanguageAndPlainlyInLogs) {
  Texts const english = Texts::load("en");
  Texts const portuguese = Texts::load("pt");
  for (Row const& row : {
           Row{ServiceFailure::network({Transport::unresolvedHost, "could not resolve host example.org"}),
               "the network cannot be reached (could not resolve host example.org)",
               "the server could not be found", "o servidor não foi encontrado"},
           {ServiceFailure::network({Transport::timedOut, ""}), "the service took too long to respond",
            "the service took too long to respond", "o serviço demorou demasiado a responder"},
           {ServiceFailure::network({Transport::truncated, "the response was incomplete"}),
            "the response was incomplete", "the response was incomplete", "a resposta estava incompleta"},
           {ServiceFailure::network({Transport::cancelled, "the request was cancelled"}),
            "the request was cancelled", "cancelled", "cancelado"},
           {ServiceFailure::answered(503), "the service returned status 503",
            "the service returned an error (HTTP 503)", "o serviço devolveu um erro (HTTP 503)"},
           {ServiceFailure::answered(429), "the service returned status 429",
            "the service's rate limit was reached", "o limite de pedidos do serviço foi atingido"},
           {unreadableWaters(),
            "those for the water off the shore: the response is not a valid list of alerts",
            "for the waters off the shore, the response could not be read",
            "quanto às águas ao largo da costa, não foi possível ler a resposta"},
           {leftAlone(), "the service failed a short while ago; next attempt from 2026-11-21T17:20:00Z",
            "after its last failure the service is only asked again later",
            "depois da última falha, o serviço só volta a ser consultado mais tarde"},
       }) {
    EXPECT_EQ(sentenceOf(row.failure), row.plain);
    EXPECT_EQ(failureText(row.failure, english), row.english) << row.plain;
    EXPECT_EQ(failureText(row.failure, portuguese), row.portuguese) << row.plain;
  }
}

TEST(ServiceFailures, HaveAllTheirKindsInEveryLanguage) {
  for (auto const& [language, name] : Texts::languages()) {
    Texts const texts = Texts::load(language);
    for (std::size_t i = 2; i < enumNames<Kind>.size(); ++i)
      EXPECT_TRUE(texts.translates("failure." + std::string(enumNames<Kind>[i]))) << language << i;
    for (std::string_view const transport : enumNames<Transport>)
      EXPECT_TRUE(texts.translates("failure." + std::string(transport))) << language << transport;
  }
}

}  // namespace
}  // namespace nimbara
