#include "platform/linux/network/consent_listener.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace nimbara {
namespace {

using Kind = ConsentReturn::Kind;
using std::chrono::seconds;

struct ReturnRow {
  std::string request;
  Kind kind;
  std::string value = "";
};

TEST(ConsentReturn, CountsOnlyWithTheRightState) {
  for (ReturnRow const& row : {
           ReturnRow{"GET /nimbara?state=s1&code=abc HTTP/1.1\r\nHost: x\r\n\r\n", Kind::code, "abc"},
           {"GET /nimbara?code=a%7Cb+c&state=s1 HTTP/1.1\r\n\r\n", Kind::code, "a|b c"},
           {"GET /nimbara?state=s1&error=access_denied HTTP/1.1\r\n\r\n", Kind::denied, "access_denied"},
           {"GET /nimbara?state=s2&code=abc HTTP/1.1\r\n\r\n", Kind::foreign},
           {"GET /nimbara?state=s2&error=access_denied HTTP/1.1\r\n\r\n", Kind::foreign},
           {"GET /nimbara?code=abc HTTP/1.1\r\n\r\n", Kind::foreign},
           {"GET /nimbara?state=s1 HTTP/1.1\r\n\r\n", Kind::foreign},
           {"GET /nimbara?state=s1&code= HTTP/1.1\r\n\r\n", Kind::foreign},
           {"GET /favicon.ico?state=s1&code=abc HTTP/1.1\r\n\r\n", Kind::foreign},
           {"POST /nimbara?state=s1&code=abc HTTP/1.1\r\n\r\n", Kind::foreign},
           {"GET ", Kind::foreign},
           {"", Kind::foreign},
       }) {
    EXPECT_EQ(consentReturn(row.request, "/nimbara", "s1"), (ConsentReturn{row.kind, row.value}))
        << row.request;
  }
  EXPECT_EQ(consentReturn("GET /nimbara?state=&code=a HTTP/1.1\r\n\r\n", "/nimbara", "").kind, Kind::foreign);
}

/// What a browser gets that sends `text`; with none it only connects and stays.
int connected(std::uint16_t port) {
  int const browser = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(connect(browser, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
  return browser;
}

std::string answerTo(std::uint16_t port, std::string const& text) {
  int const browser = connected(port);
  EXPECT_EQ(send(browser, text.data(), text.size(), MSG_NOSIGNAL), std::ssize(text));
  std::string answer;
  char buffer[2048];
  for (ssize_t count; (count = recv(browser, buffer, sizeof buffer, 0)) > 0;)
    answer.append(buffer, static_cast<std::size_t>(count));
  close(browser);
  return answer;
}

TEST(ConsentListener, PassesOverStrangersAndASlowBrowser) {
  auto const listener = ConsentListener::open(0);
  ASSERT_TRUE(listener) << listener.error();
  EXPECT_FALSE(ConsentListener::open(listener->port())) << "a second one is told that the port is taken";
  std::jthread const browser([port = listener->port()] {
    int const slow = connected(port);
    EXPECT_TRUE(
        answerTo(port, "GET /nimbara?state=wrong&code=evil HTTP/1.1\r\n\r\n").starts_with("HTTP/1.1 400"));
    EXPECT_NE(answerTo(port, "GET /nimbara?state=right&code=good HTTP/1.1\r\n\r\n").find("all done"),
              std::string::npos);
    close(slow);
  });
  EXPECT_EQ(listener->wait("/nimbara", "right", "all done", "not this", seconds(20), {}), "good");
}

TEST(ConsentListener, EndsWhereTheConsentIsRefusedOrNobodyComes) {
  auto const listener = ConsentListener::open(0);
  ASSERT_TRUE(listener) << listener.error();
  using Why = ConsentFailure::Kind;
  EXPECT_EQ(listener->wait("/nimbara", "s", "", "", seconds(0), {}).error().kind, Why::late);
  std::jthread const browser([port = listener->port()] {
    EXPECT_NE(answerTo(port, "GET /nimbara?state=s&error=access_denied HTTP/1.1\r\n\r\n").find("no link"),
              std::string::npos);
  });
  EXPECT_EQ(listener->wait("/nimbara", "s", "linked", "no link", seconds(20), {}).error(),
            (ConsentFailure{Why::denied, "access_denied"}));
}

TEST(ConsentListener, EndsWhenItIsStopped) {
  auto const listener = ConsentListener::open(0);
  ASSERT_TRUE(listener) << listener.error();
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(listener->wait("/", "s", "", "", seconds(20), stop.get_token()).error().kind,
            ConsentFailure::Kind::stopped);
}

}  // namespace
}  // namespace nimbara
