#include "demo/demo_server.h"
#include "demo/world/warnings/demo_issuers.h"
#include "feeds/brightsky/bright_sky_service.h"
#include "feeds/eccc/eccc_service.h"
#include "feeds/fpas/fpas_service.h"
#include "feeds/metalerts/met_alerts_service.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;

constexpr Coordinate kParis{48.85, 2.35};

/// The program's clients against the demo.
struct WarningStandIns : testing::Test {
  template <class Client>
  CapListing asked(Client& client, std::string_view country) {
    return client.fetch(demoIssuerOf(country)->place, country);
  }
  HttpResponse answerTo(std::string const& pathAndQuery) {
    HttpRequest request;
    request.url = base + pathAndQuery;
    return *http.get(request);
  }

  test::ManualClock clock{at("2026-11-21T09:20:00Z")};
  CurlHttpClient http{{"nimbara-test/1", {}}};
  std::unique_ptr<DemoServer> server = *DemoServer::start(clock, {});
  std::string base = server->baseUrl();
};

/// Over a week an alert is issued and goes on, and each list has the one status that was asked for.
TEST_F(WarningStandIns, AnswerForCanadaByStatus) {
  EcccService eccc(http, clock, base);
  int issued = 0;
  for (int step = 0; step < 7 * 8; ++step, clock.advance(3h)) {
    auto const listing = asked(eccc, "CA");
    ASSERT_FALSE(listing.failure) << formatIso8601(clock.now());
    EXPECT_FALSE(listing.messages.empty()) << formatIso8601(clock.now());
    for (CapMessage const& message : listing.messages) {
      EXPECT_EQ(message.alert->infos.size(), 2);
      EXPECT_FALSE(message.alert->infos.at(0).areas.at(0).polygons.empty());
      issued += message.alert->msgType == "Alert" ? 1 : 0;
    }
  }
  EXPECT_GT(issued, 0);
  std::string const items = "/collections/weather-alerts/items?bbox=-79.5,43.6,-79.3,43.8&status_en=";
  EXPECT_NE(answerTo(items + "active").body.find("\"features\":[]"), std::string::npos);
}

TEST_F(WarningStandIns, AnswerForSvalbardAndNotForParis) {
  MetAlertsService metAlerts(http, clock, {.baseUrl = base, .language = "en"});
  auto const listing = asked(metAlerts, "SJ");
  ASSERT_FALSE(listing.failure);
  ASSERT_FALSE(listing.messages.empty());
  CapInfo const& info = listing.messages.front().alert->infos.at(0);
  EXPECT_TRUE(info.onset && info.expires && valueOf(info.parameters, "awareness_level"));
  EXPECT_TRUE(metAlerts.fetch(kParis, "FR").isBlind);
}

TEST_F(WarningStandIns, AnswerForGermanyAndNotForParis) {
  BrightSkyService brightSky(http, base);
  std::size_t warnings = 0;
  for (int day = 0; day < 30; ++day, clock.advance(24h)) {
    auto const listing = asked(brightSky, "DE");
    ASSERT_FALSE(listing.failure);
    warnings += listing.messages.size();
  }
  EXPECT_GT(warnings, 0);
  EXPECT_TRUE(brightSky.fetch(kParis, "FR").isBlind);
}

TEST_F(WarningStandIns, AnswerThroughThePublicServer) {
  CapStore documents(http, clock, {});
  FpasService fpas(http, clock, documents, {base, {}});
  for (std::string_view const country : {"KE", "PH", "PE", "FJ"}) {
    auto const listing = asked(fpas, country);
    EXPECT_FALSE(listing.failure) << country;
    ASSERT_FALSE(listing.messages.empty()) << country;
    EXPECT_EQ(listing.messages.front().country, country);
  }
  EXPECT_TRUE(asked(fpas, "CN").isBlind) << "it cannot draw them";
  EXPECT_TRUE(asked(fpas, "TD").isBlind);
  auto const calm = asked(fpas, "NZ");
  EXPECT_TRUE(calm.messages.empty() && !calm.failure && !calm.isBlind);
}

}  // namespace
}  // namespace nimbara
