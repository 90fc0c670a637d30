#include "base/time/http_date.h"
#include "feeds/space/element_text.h"
#include "feedserver/feed_answer.h"
#include "feedserver/feed_http_server.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/answers/bad_bytes.h"
#include "support/answers/element_table.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

using test::elementRow;
using test::kElementHeading;

constexpr char kQuakes[] =
    R"({"features":[{"id":"a","properties":{"mag":1,"time":1},"geometry":{"coordinates":[1,2,3]}}]})";

class FeedKeeperTest : public testing::Test {
 protected:
  FeedKeeper keeper() {
    return FeedKeeper(http_, clock_, {"https://usgs", "https://celestrak", folder_.path()});
  }

  FeedKey const quakes_{};
  FeedKey const weather_{FeedKey::Kind::satellites, "weather"};
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  test::TemporaryFolder folder_;
};

TEST_F(FeedKeeperTest, AsksTheSourceOnceAMinuteWhateverTheAudience) {
  FeedKeeper keeper = this->keeper();
  http_.willAnswer(200, kQuakes, {{"ETag", "\"s\""}});
  http_.willAnswer(304, "");
  for (int i = 0; i < 100; ++i) EXPECT_EQ(keeper.get(quakes_)->body, kQuakes);
  clock_.advance(59'999ms);
  keeper.get(quakes_);
  EXPECT_EQ(http_.requests.size(), 1);
  EXPECT_EQ(http_.requests[0].url, "https://usgs/earthquakes/feed/v1.0/summary/all_day.geojson");
  clock_.advance(1ms);
  auto const feed = keeper.get(quakes_);
  EXPECT_EQ(http_.requests.size(), 2);
  EXPECT_EQ(http_.requests[1].headers, (HttpHeaders{{"If-None-Match", "\"s\""}}));
  EXPECT_EQ(feed->fetchedAt, clock_.now());
  EXPECT_EQ(feed->changedAt, at("2026-11-21T09:20:00Z"));
}

TEST_F(FeedKeeperTest, ServesTheLastGoodBodyWhileItsSourceFails) {
  FeedKeeper keeper = this->keeper();
  EXPECT_EQ(keeper.get(quakes_), nullptr);
  EXPECT_EQ(keeper.get(quakes_), nullptr);
  EXPECT_EQ(http_.requests.size(), 1) << "a failure is not tried again at once either";
  clock_.advance(60s);
  http_.willAnswer(200, kQuakes);
  EXPECT_TRUE(keeper.get(quakes_));
  for (auto const& [status, body] : {std::pair(500, ""), {403, kQuakes}, {200, "<html>"}, {200, ""}}) {
    clock_.advance(60s);
    http_.willAnswer(status, body);
    EXPECT_EQ(keeper.get(quakes_)->body, kQuakes) << status;
  }
  EXPECT_EQ(http_.requests.size(), 6);
}

TEST_F(FeedKeeperTest, LeavesCelestrakAloneForSixHoursAndAfterARefusalForTwo) {
  FeedKeeper keeper = this->keeper();
  http_.willAnswer(200, kElementHeading + elementRow("25544"));
  EXPECT_THAT(keeper.get(weather_)->body, StartsWith("TEST SAT\n1 25544U"));
  EXPECT_EQ(http_.requests[0].url, "https://celestrak/NORAD/elements/gp.php?GROUP=weather&FORMAT=CSV");
  clock_.advance(6h - 1s);
  keeper.get(weather_);
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(37min);
  http_.willAnswer(403, "GP data has not updated since your last download");
  EXPECT_TRUE(keeper.get(weather_));
  EXPECT_EQ(http_.requests.size(), 2);
  clock_.advance(2h - 1s);
  keeper.get(weather_);
  EXPECT_EQ(http_.requests.size(), 2);
  clock_.advance(1s);
  http_.willAnswer(200, kElementHeading);
  EXPECT_THAT(keeper.get(weather_)->body, StartsWith("TEST SAT")) << "an empty table overwrites nothing";
}

TEST_F(FeedKeeperTest, LooksAgainInAMinuteWhereNothingReachedTheSource) {
  FeedKeeper keeper = this->keeper();
  http_.willFail({HttpError::Kind::unresolvedHost, "no name"});
  EXPECT_EQ(keeper.get(weather_), nullptr);
  clock_.advance(60s - 1ms);
  EXPECT_EQ(keeper.get(weather_), nullptr);
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(1ms);
  http_.willAnswer(200, kElementHeading + elementRow("25544"));
  EXPECT_TRUE(keeper.get(weather_));
}

TEST_F(FeedKeeperTest, RemembersOverARestartWhatItFetchedAndWhen) {
  http_.willAnswer(200, kElementHeading + elementRow("25544"));
  keeper().get(weather_);
  clock_.advance(5h);
  EXPECT_THAT(keeper().get(weather_)->body, StartsWith("TEST SAT"));
  EXPECT_EQ(http_.requests.size(), 1);
  folder_.write("satellites-weather.json", "{\"body\":");
  EXPECT_EQ(keeper().get(weather_), nullptr);
}

std::string headerOf(FeedAnswer const& answer, std::string_view name) {
  for (auto const& [key, value] : answer.headers) {
    if (key == name) return value;
  }
  return {};
}

TEST(FeedAnswers, LetCachesCarryTheReaders) {
  Instant const now = at("2026-11-21T09:20:40Z");
  auto const feed = std::make_shared<ServedFeed const>(
      ServedFeed{"body", "zip", "application/json", "t", at("2026-11-21T09:00:00.500Z"), now - 40s, 60s});
  FeedRequest request{"GET", "/api/feed.php", {{"f", "quakes"}}, "", "", ""};
  FeedAnswer const whole = answerWith(feed, request, now);
  EXPECT_EQ(whole.body(), "body");
  EXPECT_EQ(headerOf(whole, "ETag"), "\"t\"");
  EXPECT_EQ(headerOf(whole, "Age"), "40");
  EXPECT_EQ(headerOf(whole, "Cache-Control"), "public, max-age=70, stale-if-error=86400");
  EXPECT_EQ(headerOf(whole, "X-Accel-Expires"), "30") << "what is left of max-age";
  EXPECT_EQ(headerOf(whole, "Vary"), "Accept-Encoding");
  struct Row {
    std::string noneMatch, since;
    int status;
  };
  for (Row const& row :
       {Row{"\"t\"", "", 304}, Row{"W/\"t\"", "", 304}, Row{"\"x\", \"t\"", "", 304}, Row{"*", "", 304},
        Row{"\"t-gz\"", "", 200}, Row{"t", "", 200}, Row{"", "Sat, 21 Nov 2026 09:00:00 GMT", 304},
        Row{"", "Sat, 21 Nov 2026 08:59:59 GMT", 200}, Row{"", "yesterday", 200},
        Row{"\"x\"", "Sat, 21 Nov 2026 09:00:00 GMT", 200}}) {
    request.ifNoneMatch = row.noneMatch;
    request.ifModifiedSince = row.since;
    EXPECT_EQ(answerWith(feed, request, now).status, row.status) << row.noneMatch << row.since;
  }
  FeedRequest const zipped{"GET", "/api/feed.php", {}, "gzip, br", "", ""};
  EXPECT_EQ(answerWith(feed, zipped, now).body(), "zip");
  EXPECT_EQ(headerOf(answerWith(feed, zipped, now), "ETag"), "\"t-gz\"");
  EXPECT_EQ(answerWith(nullptr, request, now).status, 502);
}

TEST(FeedAnswers, KnowWhoTakesGzip) {
  for (char const* const yes : {"gzip", "br, gzip", "GZIP;q=0.5", "*", "deflate, gzip;q=1.0"})
    EXPECT_TRUE(acceptsGzip(yes)) << yes;
  for (char const* const no : {"", "identity", "gzip;q=0", "gzip; q=0.0", "br", "gzipped"})
    EXPECT_FALSE(acceptsGzip(no)) << no;
}

TEST(FeedAnswers, RefuseWhatIsNoFeed) {
  struct Row {
    std::string method, path;
    QueryParameters query;
    int status;
  };
  for (Row const& row :
       {Row{"POST", "/api/feed.php", {{"f", "quakes"}}, 405}, Row{"GET", "/", {{"f", "quakes"}}, 404},
        Row{"GET", "/api/feed.php", {}, 400}, Row{"GET", "/api/feed.php", {{"f", "x"}}, 400}}) {
    auto const answer = understand({row.method, row.path, row.query, "", "", ""});
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error().status, row.status);
  }
}

/// A plain connection that says and hears bytes.
class Peer {
 public:
  explicit Peer(int port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<std::uint16_t>(port));
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    timeval const patience{20, 0};
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    EXPECT_EQ(connect(socket_, reinterpret_cast<sockaddr*>(&to), sizeof to), 0);
  }
  ~Peer() { close(socket_); }
  Peer(Peer const&) = delete;
  Peer& operator=(Peer const&) = delete;

  void say(std::string const& bytes) const { ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL); }
  /// Until the server closes.
  std::string hear() const {
    std::string out;
    char bytes[4096];
    for (ssize_t n = 0; (n = recv(socket_, bytes, sizeof bytes, 0)) > 0;)
      out.append(bytes, static_cast<std::size_t>(n));
    return out;
  }

 private:
  int socket_;
};

class FeedServerTest : public FeedKeeperTest {
 protected:
  FeedServerTest() { http_.willAnswer(200, kQuakes); }

  std::unique_ptr<FeedHttpServer> start(FeedHttpServer::Limits limits = {}) {
    auto server = FeedHttpServer::start(keeper_, clock_, "127.0.0.1", 0, limits);
    EXPECT_TRUE(server) << server.error();
    return std::move(*server);
  }

  FeedKeeper keeper_ = this->keeper();
  static constexpr char kGet[] =
      "GET /api/feed.php?f=quakes HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n";
};

TEST_F(FeedServerTest, ServesClients) {
  auto const server = start();
  CurlHttpClient curl({"test/1", {}});
  HttpRequest request;
  request.url = "http://127.0.0.1:" + std::to_string(server->port()) + "/api/feed.php?f=quakes";
  auto const answer = curl.get(request);
  ASSERT_TRUE(answer) << answer.error().message;
  EXPECT_EQ(answer->body, kQuakes) << "through gzip";
  EXPECT_EQ(answer->header("Content-Encoding"), "gzip");
  request.headers = {{"If-None-Match", std::string(*answer->header("ETag"))}};
  auto const same = curl.get(request);
  EXPECT_EQ(same->status, 304);
  EXPECT_EQ(same->header("Content-Length"), std::nullopt) << "neither that of nothing nor of a body to come";
  EXPECT_EQ(curl.get(request)->status, 304) << "on the same connection";
  request.url += "&x=1";
  EXPECT_EQ(curl.get(request)->status, 400);
}

TEST_F(FeedServerTest, SaysTheLengthAndNoBodyToHead) {
  auto const server = start();
  Peer const peer(server->port());
  std::string head = kGet;
  peer.say(head.replace(0, 3, "HEAD"));
  std::string const answer = peer.hear();
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 200"));
  EXPECT_THAT(answer, HasSubstr("Content-Length: " + std::to_string(std::string_view(kQuakes).size())));
  EXPECT_TRUE(answer.ends_with("\r\n\r\n"));
}

TEST_F(FeedServerTest, OutlivesRubbish) {
  auto const server = start({.idle = 200ms, .request = 300ms});
  for (std::string const& rubbish :
       {std::string("\r\n\r\n"), std::string("GET"), std::string(100'000, 'x'),
        "GET /" + std::string(100'000, 'y'), "GET / HTTP/1.1\r\n" + std::string(50'000, 'h') + ": 1\r\n\r\n",
        std::string("\x16\x03\x01\x02\x00", 5),
        "GET /api/feed.php?f=%zz%&&&==&f HTTP/1.1\r\nConnection: close\r\n\r\n" + std::string(1, '\0'),
        std::string(
            "POST /api/feed.php?f=quakes HTTP/1.1\r\nContent-Length: 99999999999999999999\r\n\r\n")}) {
    Peer const peer(server->port());
    peer.say(rubbish);
    peer.hear();
  }
  Peer const peer(server->port());
  peer.say(kGet);
  EXPECT_THAT(peer.hear(), StartsWith("HTTP/1.1 200"));
}

TEST_F(FeedServerTest, AnswersWhatIsNoRequestOnceAndCloses) {
  auto const server = start({.idle = 60s, .request = 60s});
  std::string lines;
  for (int i = 0; i < 1000; ++i) lines += "rubbish\r\n";
  for (std::string const& rubbish :
       {lines, "GET /api/feed.php?f=nothing HTTP/1.1\r\nHost: x\r\n\r\n" + lines,
        "POST /api/feed.php?f=quakes HTTP/1.1\r\nContent-Length: 9000\r\n\r\n" + lines}) {
    Peer const peer(server->port());
    peer.say(rubbish);
    std::string const heard = peer.hear();
    EXPECT_THAT(heard, StartsWith("HTTP/1.1 4"));
    EXPECT_EQ(heard.find("HTTP/1.1", 1), std::string::npos) << heard.size();
  }
}

TEST_F(FeedServerTest, ShowsSlowPeersOut) {
  auto const server = start({.idle = 100ms, .request = 200ms});
  Peer const silent(server->port());
  Peer const slow(server->port());
  slow.say("GET /api/feed.php?f=quakes HTTP/1.1\r\nHost:");
  EXPECT_EQ(silent.hear(), "");
  EXPECT_THAT(slow.hear(), testing::Not(HasSubstr("200 OK")));
}

TEST_F(FeedServerTest, RefusesPolitelyWhenAllConnectionsAreTaken) {
  auto const server = start({.connections = 2, .idle = 60s});
  Peer const first(server->port());
  Peer const second(server->port());
  Peer const third(server->port());
  EXPECT_THAT(third.hear(), StartsWith("HTTP/1.1 503"));
  first.say(kGet);
  EXPECT_THAT(first.hear(), StartsWith("HTTP/1.1 200")) << "whoever is in is served";
}

TEST_F(FeedServerTest, StopsWhileConnectionsAreIdle) {
  auto server = start({.idle = 24h});
  Peer const idle(server->port());
  Peer const begun(server->port());
  begun.say("GET /");
  server.reset();
}

TEST_F(FeedServerTest, SaysWhenItsPortIsTaken) {
  auto const server = start();
  auto const second = FeedHttpServer::start(keeper_, clock_, "127.0.0.1", server->port(), {});
  ASSERT_FALSE(second);
  EXPECT_THAT(second.error(), HasSubstr(std::to_string(server->port())));
}

}  // namespace
}  // namespace nimbara
