#include "app/engine/engine_stations.h"

#include "app/settings/service_directory.h"
#include "platform/linux/network/consent_listener.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <future>
#include <sys/socket.h>
#include <unistd.h>

namespace nimbara {
namespace {

using Outcome = LinkEnd::Outcome;
using testing::HasSubstr;

constexpr char kStations[] =
    R"({"status":"ok","body":{"devices":[{"_id":"a","station_name":"Home","place":{"location":[13.4,52.5]},)"
    R"("modules":[{"_id":"o","type":"NAModule1","reachable":true,)"
    R"("dashboard_data":{"time_utc":1795262100,"Temperature":3.4}}]}]}})";
constexpr char kTokens[] = R"({"access_token":"a1","refresh_token":"r1","expires_in":10800})";

/// What a browser gets that comes back with `query`.
std::string browserWith(std::string const& query) {
  int const browser = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  constexpr std::uint16_t kPort = 8917;
  address.sin_port = htons(kPort);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  std::string answer;
  if (connect(browser, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0) {
    std::string const request = "GET /nimbara?" + query + " HTTP/1.1\r\n\r\n";
    EXPECT_EQ(send(browser, request.data(), request.size(), MSG_NOSIGNAL), std::ssize(request));
    char buffer[2048];
    for (ssize_t count = 0; (count = recv(browser, buffer, sizeof buffer, 0)) > 0;)
      answer.append(buffer, static_cast<std::size_t>(count));
  }
  close(browser);
  return answer;
}

struct EngineStationsTest : testing::Test {
  EngineStationsTest() {
    stations_.follow([this](StationDesk const& desk) {
      if (!desk.consentUrl.empty() && onConsent) std::exchange(onConsent, {})(desk.consentUrl);
      std::lock_guard const lock(mutex_);
      last_ = desk;
      told_.notify_all();
    });
  }
  ~EngineStationsTest() override { stations_.stop(); }

  /// After the thing asked for last has been done.
  StationDesk done(std::function<bool(StationDesk const&)> const& isDone) {
    std::unique_lock lock(mutex_);
    constexpr std::chrono::seconds kPatience{20};
    EXPECT_TRUE(
        told_.wait_for(lock, kPatience, [&] { return last_.task == StationTask::none && isDone(last_); }));
    return last_;
  }
  StationDesk ended() {
    return done([](StationDesk const& desk) { return desk.end.has_value(); });
  }

  test::TemporaryFolder folder_;
  test::ManualClock clock_{test::at("2026-11-21T12:00:00Z")};
  test::FakeHttpClient http_;
  FeedServices feeds_{http_,
                      clock_,
                      ServiceDirectory({}, ""),
                      {.contact = {},
                       .cacheDirectory = folder_.path() / "cache",
                       .dataDirectory = folder_.path() / "data",
                       .texts = std::make_shared<Texts const>(Texts::load("en")),
                       .language = {}}};
  std::atomic<int> changes_ = 0;
  std::optional<Place> place_ = Place{{52.5, 13.4}, "Berlin", "", ""};
  std::function<void(std::string const&)> onConsent;
  std::mutex mutex_;
  std::condition_variable told_;
  StationDesk last_;
  EngineStations stations_{{always(feeds_), [] { return std::make_shared<Wording const>(); },
                            [this] { return place_; }, [this] { ++changes_; }, false}};
};

// One test, since there is one port.
TEST_F(EngineStationsTest, LinksAnAccountByTheConsentPage) {
  constexpr std::uint16_t kPort = 8917;
  auto const isAfter = [](Outcome before) {
    return [before](StationDesk const& desk) { return desk.end && desk.end->outcome != before; };
  };
  {
    auto const other = ConsentListener::open(kPort);
    if (!other) GTEST_SKIP() << "another program listens on the port";
    stations_.linkAccount("id", "secret", "");
    EXPECT_EQ(ended().end->outcome, Outcome::portTaken);
  }
  onConsent = [this](std::string const&) { stations_.cancel(); };
  stations_.linkAccount("id", "secret", "");
  EXPECT_EQ(done(isAfter(Outcome::portTaken)).end->outcome, Outcome::cancelled);
  EXPECT_TRUE(http_.requests.empty());
  EXPECT_EQ(changes_, 0);

  http_.willAnswer(200, kTokens);
  http_.willAnswer(200, kStations);
  std::future<std::string> page;
  onConsent = [&page](std::string const& url) {
    EXPECT_THAT(url, HasSubstr("scope=read_station&state="));
    std::string const state = url.substr(url.find("state=") + 6, url.rfind('&') - url.find("state=") - 6);
    page = std::async(std::launch::async, [state] {
      EXPECT_THAT(browserWith("state=wrong&code=evil"), HasSubstr("400 Bad Request"));
      return browserWith("state=" + state + "&code=good");
    });
  };
  stations_.linkAccount("id", "secret", "");
  StationDesk const desk = done(isAfter(Outcome::cancelled));
  EXPECT_EQ(desk.end->outcome, Outcome::linked);
  EXPECT_THAT(page.get(), HasSubstr("Your weather station is linked."));
  EXPECT_THAT(*http_.requests.front().body,
              HasSubstr("code=good&redirect_uri=http%3A%2F%2Flocalhost%3A8917"));
  ASSERT_NE(desk.reading.station(), nullptr);
  EXPECT_EQ(desk.reading.station()->name, "Home");
  EXPECT_TRUE(desk.hasAccount);
  EXPECT_EQ(desk.consentUrl, "");
  EXPECT_EQ(changes_, 1);
}

TEST_F(EngineStationsTest, SaysThatATokenIsNotAccepted) {
  http_.willAnswer(400, R"({"error":"invalid_grant"})");
  stations_.linkAccount("id", "secret", "stale");
  StationDesk const desk = ended();
  EXPECT_EQ(desk.end->outcome, Outcome::notAccepted);
  EXPECT_FALSE(desk.hasAccount);
}

/// Four public stations around 52.5, 13.4, the last one much too warm.
std::string publicStations() {
  std::string all;
  int number = 0;
  for (char const* const celsius : {"3.0", "3.2", "3.4", "19"}) {
    std::string const name = "p" + std::to_string(++number);
    all += std::string(all.empty() ? "" : ",") + R"({"_id":")" + name +
           R"(","place":{"location":[13.4,52.50)" + std::to_string(number) +
           R"(]},"measures":{"m":{"res":{"1795262100":[)" + celsius +
           R"(,80]},"type":["temperature","humidity"]}}})";
  }
  return R"({"status":"ok","body":[)" + all + "]}";
}

TEST_F(EngineStationsTest, LooksAroundThePlaceAndShowsTheMedianOrOneOfThem) {
  auto const around = [this](std::function<bool(StationsAround const&)> const& isDone) {
    return *done([&](StationDesk const& desk) { return desk.around && isDone(*desk.around); }).around;
  };
  stations_.lookAround();
  EXPECT_EQ(around([](auto const& each) { return each.problem.has_value(); }).problem->kind,
            StationProblem::Kind::notLinked);
  EXPECT_TRUE(http_.requests.empty());

  http_.willAnswer(200, kTokens);
  http_.willAnswer(200, kStations);
  stations_.linkAccount("id", "secret", "first");
  ended();
  http_.willAnswer(200, publicStations());
  stations_.lookAround();
  auto const found = around([](auto const& each) { return !each.stations.nearest.empty(); });
  EXPECT_EQ(found.place, "Berlin");
  EXPECT_EQ(found.stations.used, 3);
  EXPECT_EQ(found.stations.outliers, std::vector<std::string>{"p4"});
  EXPECT_THAT(http_.requests.back().url, HasSubstr("/api/getpublicdata?lat_ne=52.54"));

  http_.willAnswer(200, publicStations());
  stations_.chooseAround("");
  StationDesk const median =
      done([](StationDesk const& desk) { return desk.reading.kind == StationLinkKind::around; });
  ASSERT_TRUE(median.reading.together);
  EXPECT_EQ(median.reading.together->leftOut, 1);
  EXPECT_EQ(median.reading.around, "Berlin");

  http_.willAnswer(200, publicStations());
  stations_.chooseAround("p2");
  StationDesk const one = done([](StationDesk const& desk) { return desk.reading.chosen == "p2"; });
  ASSERT_NE(one.reading.station(), nullptr);
  EXPECT_EQ(one.reading.station()->id, "p2");
  EXPECT_EQ(one.reading.together, std::nullopt);

  http_.willAnswer(403, R"({"error":{"code":26,"message":"User usage reached"}})");
  stations_.lookAround();
  EXPECT_EQ(around([](auto const& each) { return each.problem.has_value(); }).problem->kind,
            StationProblem::Kind::tooMany);

  http_.willAnswer(200, kStations);
  stations_.choose("a");
  EXPECT_EQ(done([](StationDesk const& desk) { return desk.reading.chosen == "a"; }).reading.kind,
            StationLinkKind::account);
}

TEST_F(EngineStationsTest, LooksAroundNothingWithoutAPlace) {
  place_.reset();
  stations_.lookAround();
  stations_.chooseAround("p1");
  stations_.linkAddress("192.168.1.20", "");
  EXPECT_EQ(ended().around, nullptr);
  EXPECT_EQ(changes_, 0);
}

TEST_F(EngineStationsTest, LinksAnAddressAndForgetsIt) {
  for (int i = 0; i < 2; ++i)
    http_.willAnswer(200, R"({"common_list":[{"id":"0x02","val":"3.4","unit":"C"}]})");
  stations_.linkAddress("192.168.1.20", "Roof");
  StationDesk const linked = ended();
  EXPECT_EQ(linked.end->outcome, Outcome::linked);
  ASSERT_NE(linked.reading.station(), nullptr);
  EXPECT_EQ(linked.reading.station()->name, "Roof");
  EXPECT_EQ(linked.reading.station()->latitude, 52.5) << "where the user is looking";
  EXPECT_FALSE(linked.hasAccount);
  stations_.unlink();
  done([](StationDesk const& desk) { return desk.reading.kind == StationLinkKind::none; });
  EXPECT_EQ(changes_, 2);
  place_.reset();
  http_.willAnswer(200, R"({"common_list":[{"id":"0x02","val":"3.4","unit":"C"}]})");
  stations_.linkAddress("192.168.1.20", "");
  EXPECT_EQ(ended().end->outcome, Outcome::noPlace);
  stations_.linkAddress("192.168.1.20", "");
  EXPECT_EQ(done([](StationDesk const& desk) {
              return desk.end && desk.end->outcome != Outcome::noPlace;
            }).end->outcome,
            Outcome::failed)
      << "nobody answers";
}

}  // namespace
}  // namespace nimbara
