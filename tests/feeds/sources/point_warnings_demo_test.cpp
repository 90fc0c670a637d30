// The two services that list warnings for a point, against the demo's stand-ins.

#include "demo/demo_server.h"
#include "feeds/brightsky/bright_sky_service.h"
#include "feeds/metalerts/met_alerts_service.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;

constexpr Coordinate kLongyearbyen{78.22, 15.65};
constexpr Coordinate kBerlin{52.52, 13.41};

class PointWarningsDemoTest : public testing::Test {
 protected:
  void start(std::vector<DemoFault> faults = {}) {
    auto started = DemoServer::start(clock, std::move(faults));
    ASSERT_TRUE(started) << started.error();
    server = std::move(*started);
  }

  /// Of the first of ten days on which there are warnings.
  template <class Service>
  CapListing firstWith(Service& service, Coordinate place, std::string_view country) {
    CapListing listing;
    for (int day = 0; day < 10 && listing.messages.empty(); ++day, clock.advance(24h))
      listing = service.fetch(place, country);
    return listing;
  }

  test::ManualClock clock{at("2026-11-22T12:00:00Z")};
  CurlHttpClient http{{"nimbara-test", {}}};
  std::unique_ptr<DemoServer> server;
};

TEST_F(PointWarningsDemoTest, MetAlertsWarnsInTwoLanguagesAndOnlyInItsArea) {
  start();
  MetAlertsService norwegian(http, clock, {server->baseUrl(), "nn"});
  CapListing const listing = firstWith(norwegian, kLongyearbyen, "SJ");
  ASSERT_FALSE(listing.failure) << sentenceOf(*listing.failure);
  ASSERT_FALSE(listing.messages.empty());
  CapInfo const& info = listing.messages[0].alert->infos.at(0);
  EXPECT_EQ(info.language, "no");
  EXPECT_TRUE(info.onset && info.expires && *info.onset < *info.expires);
  EXPECT_FALSE(info.areas.at(0).polygons.empty());
  EXPECT_TRUE(valueOf(info.parameters, "awareness_level"));
  MetAlertsService english(http, clock, {server->baseUrl(), "pl"});
  CapListing const other = english.fetch(kBerlin, "DE");
  EXPECT_TRUE(other.isBlind);
  EXPECT_FALSE(other.failure);
}

TEST_F(PointWarningsDemoTest, BrightSkyWarnsMunicipalitiesOfGermanyOnly) {
  start();
  BrightSkyService service(http, server->baseUrl());
  CapListing const listing = firstWith(service, kBerlin, "DE");
  ASSERT_FALSE(listing.failure) << sentenceOf(*listing.failure);
  ASSERT_FALSE(listing.messages.empty());
  CapAlert const& alert = *listing.messages[0].alert;
  EXPECT_EQ(alert.status, "Actual");
  ASSERT_EQ(alert.infos.size(), 2U);
  EXPECT_EQ(alert.infos[1].language, "de");
  CapListing const abroad = service.fetch({48.86, 2.35}, "FR");
  EXPECT_TRUE(abroad.isBlind);
  EXPECT_FALSE(abroad.failure);
}

TEST_F(PointWarningsDemoTest, EachWayOfFailingIsAFailure) {
  for (auto const kind : {DemoFault::Kind::status500, DemoFault::Kind::garbage, DemoFault::Kind::drop,
                          DemoFault::Kind::empty, DemoFault::Kind::exception}) {
    start({{Service::metAlerts, kind}, {Service::brightSky, kind}});
    MetAlertsService metAlerts(http, clock, {server->baseUrl(), "en"});
    BrightSkyService brightSky(http, server->baseUrl());
    EXPECT_TRUE(metAlerts.fetch(kLongyearbyen, "SJ").failure) << enumName(kind);
    EXPECT_TRUE(brightSky.fetch(kBerlin, "DE").failure) << enumName(kind);
  }
}

}  // namespace
}  // namespace nimbara
