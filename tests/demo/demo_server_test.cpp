#include "demo/demo_server.h"

#include "platform/linux/http/curl_http_client.h"
#include "providers/openmeteo/open_meteo_client.h"
#include "providers/openmeteo/open_meteo_request.h"
#include "providers/wttr/wttr_client.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <thread>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

TEST(DemoFaults, AreReadFromTheirTexts) {
  EXPECT_EQ(parseDemoFault("openMeteo=500"), (DemoFault{Service::openMeteo, DemoFault::Kind::status500}));
  EXPECT_EQ(parseDemoFault("openMeteoGeocoding=drop"),
            (DemoFault{Service::openMeteoGeocoding, DemoFault::Kind::drop}));
  EXPECT_EQ(parseDemoFault("yrNo=elsewhere"), (DemoFault{Service::yrNo, DemoFault::Kind::elsewhere}));
  for (char const* const text :
       {"", "openMeteo", "openMeteo=", "openMeteo=404", "noService=500", "openMeteo=500=1"}) {
    auto const fault = parseDemoFault(text);
    ASSERT_FALSE(fault) << text;
    EXPECT_NE(fault.error().find('\''), std::string::npos);
  }
}

class DemoServerTest : public testing::Test {
 protected:
  Result<WttrResponse, APIError> ask(std::vector<DemoFault> faults) {
    auto const server = DemoServer::start(clock_, std::move(faults));
    EXPECT_TRUE(server) << server.error();
    OpenMeteoClient client(http_, clock_, {(*server)->baseUrl(), ""});
    std::stop_source stop;
    return client.fetchForecast(52.52, 13.41, stop.get_token());
  }

  static HttpRequest briefRequest(DemoServer const& server) {
    HttpRequest request;
    request.url = server.baseUrl() + openMeteoPath({52.52, 13.41});
    request.timeout = 300ms;
    return request;
  }

  FixedClock clock_{at("2026-11-21T09:20:00Z")};
  CurlHttpClient http_{{"nimbara-test/1", {}}};
};

TEST_F(DemoServerTest, ServesAndMisbehavesAsAsked) {
  EXPECT_TRUE(ask({}));
  EXPECT_TRUE(ask({{Service::openMeteoGeocoding, DemoFault::Kind::status500}}));
  EXPECT_EQ(ask({{Service::openMeteo, DemoFault::Kind::status500}}).error().text(),
            "Server returned HTTP 500");
  EXPECT_EQ(ask({{Service::openMeteo, DemoFault::Kind::garbage}}).error().kind,
            APIError::Case::decodingError);
  EXPECT_EQ(ask({{Service::openMeteo, DemoFault::Kind::drop}}).error().transport, HttpError::Kind::truncated);
  EXPECT_EQ(ask({{Service::openMeteo, DemoFault::Kind::loop}}).error().transport,
            HttpError::Kind::refusedRedirect);
  // One byte a second: whoever waits for the whole gives up.
  auto const server = DemoServer::start(clock_, {{Service::openMeteo, DemoFault::Kind::drip}});
  EXPECT_EQ(http_.get(briefRequest(**server)).error().kind, HttpError::Kind::timedOut);
}

TEST_F(DemoServerTest, AnswersForAnotherPlaceWhenAskedTo) {
  auto const here = ask({});
  auto const elsewhere = ask({{Service::openMeteo, DemoFault::Kind::elsewhere}});
  ASSERT_TRUE(here && elsewhere);
  EXPECT_NE(here->weather.at(0).maxtempC, elsewhere->weather.at(0).maxtempC);  // autumn and spring
  auto const server = DemoServer::start(clock_, {{Service::wttrIn, DemoFault::Kind::elsewhere}});
  WttrAPIClient wttr(http_, clock_, {(*server)->baseUrl(), ""}, {});
  EXPECT_EQ(wttr.fetchForecast(52.52, 13.41).error().kind, APIError::Case::noResults);
}

TEST_F(DemoServerTest, ServesOthersWhileManyAnswersAreHeldBack) {
  auto const server = DemoServer::start(clock_, {{Service::openMeteo, DemoFault::Kind::timeout}});
  std::stop_source stop;
  std::vector<std::jthread> waiting;
  for (int i = 0; i < 20; ++i) {
    waiting.emplace_back([&] {
      HttpRequest request = briefRequest(**server);
      request.timeout = 60s;
      EXPECT_EQ(http_.get(request, stop.get_token()).error().kind, HttpError::Kind::cancelled);
    });
  }
  WttrAPIClient wttr(http_, clock_, {(*server)->baseUrl(), ""}, {});
  for (int i = 0; i < 20; ++i) EXPECT_TRUE(wttr.fetchForecast(52.52, 13.41));
  stop.request_stop();
}

/// The client keeps its connection after the answer; the server must not wait for a next request.
TEST_F(DemoServerTest, StopsAtOnceWhileConnectionsAreIdle) {
  auto server = DemoServer::start(clock_, {});
  ASSERT_TRUE(http_.get(briefRequest(**server)));
  server->reset();
}

TEST_F(DemoServerTest, StopsWhileAnAnswerIsHeldBack) {
  auto server = DemoServer::start(clock_, {{Service::openMeteo, DemoFault::Kind::timeout}});
  ASSERT_TRUE(server);
  EXPECT_EQ(http_.get(briefRequest(**server)).error().kind, HttpError::Kind::timedOut);
  server->reset();  // returns although the answer never came
}

TEST_F(DemoServerTest, SaysWhenItsPortIsTaken) {
  auto const server = DemoServer::start(clock_, {});
  ASSERT_TRUE(server);
  int const port = std::stoi((*server)->baseUrl().substr(std::string("http://127.0.0.1:").size()));
  auto const second = DemoServer::start(clock_, {}, port);
  ASSERT_FALSE(second);
  EXPECT_NE(second.error().find(std::to_string(port)), std::string::npos);
}

}  // namespace
}  // namespace nimbara
