#include "platform/linux/http/curl_http_client.h"

#include "support/loopback_server.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <future>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace nimbara {
namespace {

using test::Connection;
using test::httpAnswer;
using test::LoopbackServer;
using Kind = HttpError::Kind;
using namespace std::chrono_literals;

class CurlHttpClientTest : public testing::Test {
 protected:
  HttpRequest request(std::string url) {
    HttpRequest made;
    made.url = std::move(url);
    return made;
  }

  CurlHttpClient client_{{"nimbara-test/1", {}}};
};

/// A handler that answers the first request with `bytes` and closes.
LoopbackServer::Handler once(std::string bytes) {
  return [bytes = std::move(bytes)](Connection& connection) {
    connection.readRequest();
    connection.write(bytes);
  };
}

TEST_F(CurlHttpClientTest, GivesStatusHeadersAndBodyAndSendsWhatItShould) {
  std::promise<std::string> seen;
  LoopbackServer const server([&](Connection& connection) {
    seen.set_value(connection.readRequest());
    connection.write(httpAnswer("{\"a\":1}", "ETag: \"x\"\r\nETag: \"y\"\r\n", "404 Not Found"));
  });
  HttpRequest wanted = request(server.url("/path?key=secret"));
  wanted.headers = {{"Accept", "application/json"}};
  auto const answer = client_.get(wanted);
  ASSERT_TRUE(answer) << answer.error().message;
  EXPECT_EQ(answer->status, 404);
  EXPECT_EQ(answer->body, "{\"a\":1}");
  EXPECT_EQ(answer->header("etag"), "\"y\"");
  EXPECT_EQ(answer->header("Last-Modified"), std::nullopt);
  std::string const sent = seen.get_future().get();
  EXPECT_TRUE(sent.starts_with("GET /path?key=secret HTTP/1.1\r\n")) << sent;
  EXPECT_NE(sent.find("User-Agent: nimbara-test/1\r\n"), std::string::npos) << sent;
  EXPECT_NE(sent.find("Accept: application/json\r\n"), std::string::npos) << sent;
  EXPECT_NE(sent.find("gzip"), std::string::npos) << sent;
}

TEST_F(CurlHttpClientTest, KeepsTheConnectionBetweenCalls) {
  LoopbackServer const server(LoopbackServer::always(httpAnswer("x")));
  for (int i = 0; i < 4; ++i) ASSERT_TRUE(client_.get(request(server.url())));
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(CurlHttpClientTest, UnpacksCompressedAnswers) {
  // "nimbara nimbara nimbara", packed by gzip.
  unsigned char const packed[] = {0x1f, 0x8b, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0x03,
                                  0xcb, 0xcb, 0xcc, 0x4d, 0x4a, 0x2c, 0x4a, 0x54, 0xc8, 0x43,
                                  0xa5, 0x01, 0x57, 0x11, 0x74, 0x72, 0x17, 0x00, 0x00, 0x00};
  std::string const body(reinterpret_cast<char const*>(packed), sizeof packed);
  LoopbackServer const server(LoopbackServer::always(httpAnswer(body, "Content-Encoding: gzip\r\n")));
  auto const answer = client_.get(request(server.url()));
  ASSERT_TRUE(answer) << answer.error().message;
  EXPECT_EQ(answer->body, "nimbara nimbara nimbara");
  HttpRequest small = request(server.url());
  small.maxBodyBytes = 22;  // the packed body has 30 bytes, the unpacked one 23
  EXPECT_EQ(client_.get(small).error().kind, Kind::bodyTooLarge);
}

struct BadAnswer {
  std::string name;
  std::string bytes;
  Kind kind;
};

void PrintTo(BadAnswer const& row, std::ostream* out) {
  *out << row.name;
}

class BadAnswerTest : public CurlHttpClientTest, public testing::WithParamInterface<BadAnswer> {};

TEST_P(BadAnswerTest, IsAnErrorAndNeverABody) {
  LoopbackServer const server(once(GetParam().bytes));
  HttpRequest wanted = request(server.url("/forecast?apikey=hidden"));
  wanted.maxBodyBytes = 10;
  wanted.timeout = 5s;
  auto const answer = client_.get(wanted);
  ASSERT_FALSE(answer) << answer->status << " " << answer->body;
  EXPECT_EQ(enumName(answer.error().kind), enumName(GetParam().kind)) << answer.error().message;
  EXPECT_FALSE(answer.error().message.empty());
  EXPECT_EQ(answer.error().message.find("hidden"), std::string::npos);
  EXPECT_EQ(answer.error().message.find('\n'), std::string::npos);
}

std::string const kChunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";

INSTANTIATE_TEST_SUITE_P(
    Rows, BadAnswerTest,
    testing::Values(
        BadAnswer{"NoAnswer", "", Kind::truncated},
        BadAnswer{"CutBody", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", Kind::truncated},
        BadAnswer{"CutChunk", kChunked + "8\r\nhalf", Kind::truncated},
        BadAnswer{"BrokenChunking", kChunked + "zz\r\nhalf\r\n", Kind::truncated},
        BadAnswer{"AnnouncedTooLarge", "HTTP/1.1 200 OK\r\nContent-Length: 11\r\n\r\n12345678901",
                  Kind::bodyTooLarge},
        BadAnswer{"ChunksTooLarge", kChunked + "6\r\n123456\r\n6\r\n123456\r\n0\r\n\r\n", Kind::bodyTooLarge},
        BadAnswer{"EndlessWithoutLength", "HTTP/1.1 200 OK\r\n\r\n12345678901", Kind::bodyTooLarge},
        BadAnswer{"BrokenGzip",
                  "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 9\r\n\r\nnot gzip!",
                  Kind::truncated},
        BadAnswer{"NotHttp", "SSH-2.0-OpenSSH_9.2\r\n\r\n", Kind::protocol},
        BadAnswer{"RedirectToOtherHost", httpAnswer("", "Location: http://localhost:1/\r\n", "302 Found"),
                  Kind::refusedRedirect},
        BadAnswer{"RedirectToOtherPort", httpAnswer("", "Location: http://127.0.0.1:1/\r\n", "302 Found"),
                  Kind::refusedRedirect},
        BadAnswer{"RedirectToFile", httpAnswer("", "Location: file:///etc/passwd\r\n", "302 Found"),
                  Kind::refusedRedirect}),
    [](auto const& row) { return row.param.name; });

TEST_F(CurlHttpClientTest, TakesABodyOfExactlyTheCap) {
  LoopbackServer const server(LoopbackServer::always(httpAnswer("1234567890")));
  HttpRequest wanted = request(server.url());
  wanted.maxBodyBytes = 10;
  EXPECT_TRUE(client_.get(wanted));
}

TEST_F(CurlHttpClientTest, RefusesAddressesThatAreNotHttp) {
  for (char const* const url : {"file:///etc/passwd", "ftp://127.0.0.1/", "no address", "", "http://"}) {
    auto const answer = client_.get(request(url));
    ASSERT_FALSE(answer) << url;
    EXPECT_EQ(answer.error().kind, Kind::invalidUrl) << url;
  }
}

TEST_F(CurlHttpClientTest, NamesTheHostThatCannotBeReached) {
  int closedPort = 0;
  {
    LoopbackServer const gone(once(""));
    closedPort = gone.port();
  }
  auto const refused = client_.get(request("http://127.0.0.1:" + std::to_string(closedPort) + "/"));
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().kind, Kind::connectionFailed);
  auto const unknown = client_.get(request("http://nimbara.invalid/?apikey=hidden"));
  ASSERT_FALSE(unknown);
  EXPECT_EQ(unknown.error().kind, Kind::unresolvedHost);
  EXPECT_EQ(unknown.error().message, "could not resolve host nimbara.invalid");
}

TEST_F(CurlHttpClientTest, FollowsRedirectsOnOneHostOnly) {
  LoopbackServer const server([](Connection& connection) {
    for (std::string asked = connection.readRequest(); !asked.empty(); asked = connection.readRequest()) {
      bool const first = asked.starts_with("GET /old?");
      connection.write(first ? httpAnswer("", "Location: /new?a=b\r\n", "301 Moved Permanently")
                             : httpAnswer(asked.substr(0, asked.find('\r'))));
    }
  });
  auto const answer = client_.get(request(server.url("/old?a=b")));
  ASSERT_TRUE(answer) << answer.error().message;
  EXPECT_EQ(answer->body, "GET /new?a=b HTTP/1.1");
}

TEST_F(CurlHttpClientTest, GivesUpOnRedirectsInACircle) {
  std::atomic<int> asked = 0;
  LoopbackServer const server([&](Connection& connection) {
    while (!connection.readRequest().empty()) {
      ++asked;
      connection.write(httpAnswer("", "Location: /again\r\n", "302 Found"));
    }
  });
  auto const answer = client_.get(request(server.url()));
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().kind, Kind::refusedRedirect);
  EXPECT_EQ(asked, 6);  // the request itself and five redirects
}

TEST_F(CurlHttpClientTest, NamesThePortThatARedirectLeadsTo) {
  LoopbackServer const server(
      LoopbackServer::always(httpAnswer("", "Location: http://127.0.0.1:1/\r\n", "302 Found")));
  auto const answer = client_.get(request(server.url()));
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().message, "127.0.0.1 redirects to http://127.0.0.1:1, which is not safe to follow");
}

TEST_F(CurlHttpClientTest, NeverLeavesHttps) {
  LoopbackServer const server(
      LoopbackServer::always(httpAnswer("", "Location: http://127.0.0.1:1/\r\n", "302 Found")), true);
  test::TemporaryFolder const folder;
  std::string const file = (folder.path() / "ca.pem").string();
  std::ofstream(file) << server.certificate();
  CurlHttpClient trusting({"nimbara-test/1", file});
  auto const answer = trusting.get(request(server.url()));
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().kind, Kind::refusedRedirect);
}

TEST_F(CurlHttpClientTest, VerifiesCertificates) {
  LoopbackServer const server(LoopbackServer::always(httpAnswer("secret")), true);
  auto const refused = client_.get(request(server.url()));
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().kind, Kind::tlsFailed);
  test::TemporaryFolder const folder;
  std::string const file = (folder.path() / "ca.pem").string();
  std::ofstream(file) << server.certificate();
  CurlHttpClient trusting({"nimbara-test/1", file});
  auto const accepted = trusting.get(request(server.url()));
  ASSERT_TRUE(accepted) << accepted.error().message;
  EXPECT_EQ(accepted->body, "secret");
}

TEST_F(CurlHttpClientTest, EndsInTimeWhenTheServerHangsOrDrips) {
  LoopbackServer const silent([](Connection& connection) { connection.waitForEnd(); });
  LoopbackServer const dripping([](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nx");
    connection.waitForEnd();
  });
  for (auto const* const server : {&silent, &dripping}) {
    HttpRequest wanted = request(server->url());
    wanted.timeout = 150ms;
    auto const answer = client_.get(wanted);
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error().kind, Kind::timedOut) << answer.error().message;
  }
}

TEST_F(CurlHttpClientTest, GivesUpEarlyOnAServerThatFallsSilent) {
  LoopbackServer const silent([](Connection& connection) { connection.waitForEnd(); });
  HttpRequest wanted = request(silent.url());
  wanted.timeout = 60s;
  wanted.longestSilence = 1s;
  auto const begin = std::chrono::steady_clock::now();
  auto const answer = client_.get(wanted);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().kind, Kind::timedOut);
  EXPECT_EQ(answer.error().message, "127.0.0.1 sent nothing for 1 s");
}

TEST_F(CurlHttpClientTest, TellsAHostThatCannotBeReachedInTimeFromOneThatIsSilent) {
  // Nobody takes connections here, and the queue of those that wait is full.
  int const listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
  ASSERT_EQ(getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
  ASSERT_EQ(listen(listener, 0), 0);
  std::vector<int> waiting;
  for (int i = 0; i < 8; ++i) {
    waiting.push_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    std::ignore = connect(waiting.back(), reinterpret_cast<sockaddr*>(&address), size);
  }
  HttpRequest wanted = request("http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/");
  wanted.timeout = 150ms;
  auto const answer = client_.get(wanted);
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().kind, Kind::connectionFailed) << answer.error().message;
  for (int const each : waiting) close(each);
  close(listener);
}

TEST_F(CurlHttpClientTest, StopsAtOnceWhenAsked) {
  std::promise<void> asked;
  LoopbackServer const server([&](Connection& connection) {
    connection.readRequest();
    asked.set_value();
    connection.waitForEnd();
  });
  std::stop_source stop;
  auto pending =
      std::async(std::launch::async, [&] { return client_.get(request(server.url()), stop.get_token()); });
  asked.get_future().wait();
  stop.request_stop();
  auto const answer = pending.get();
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().kind, Kind::cancelled) << "and not at its time limit";
}

TEST_F(CurlHttpClientTest, AsksNothingWhenAlreadyStopped) {
  LoopbackServer const server(LoopbackServer::always(httpAnswer("x")));
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(client_.get(request(server.url()), stop.get_token()).error().kind, Kind::cancelled);
  EXPECT_EQ(server.connections(), 0);
}

TEST_F(CurlHttpClientTest, TakesTheProxyOfTheEnvironment) {
  std::promise<std::string> seen;
  LoopbackServer const proxy([&](Connection& connection) {
    seen.set_value(connection.readRequest());
    connection.write(httpAnswer("by proxy"));
  });
  setenv("http_proxy", proxy.url("").c_str(), 1);
  auto const answer = client_.get(request("http://weather.example/v1"));
  unsetenv("http_proxy");
  ASSERT_TRUE(answer) << answer.error().message;
  EXPECT_EQ(answer->body, "by proxy");
  EXPECT_TRUE(seen.get_future().get().starts_with("GET http://weather.example/v1 HTTP/1.1\r\n"));
}

TEST_F(CurlHttpClientTest, ServesSeveralThreadsSideBySide) {
  LoopbackServer const hanging([](Connection& connection) { connection.waitForEnd(); });
  LoopbackServer const quick(LoopbackServer::always(httpAnswer("x")));
  std::stop_source stop;
  auto stuck =
      std::async(std::launch::async, [&] { return client_.get(request(hanging.url()), stop.get_token()); });
  EXPECT_TRUE(client_.get(request(quick.url())));  // does not wait for the one that hangs
  stop.request_stop();
  EXPECT_FALSE(stuck.get());
}

}  // namespace
}  // namespace nimbara
