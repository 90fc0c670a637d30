#include "app/services/feed_services.h"

#include "app/settings/service_directory.h"
#include "base/words/texts.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/fires/wildfire_service.h"
#include "feeds/quakes/earthquake_service.h"
#include "feeds/storms/lightning_source.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;

class FeedServicesTest : public testing::Test {
 protected:
  FeedState fires(FeedServices& feeds) { return feeds.wildfires().fetchFires({50, 10}, 50).state; }
  FeedState strikes(FeedServices& feeds) {
    return feeds.lightning().fetchStrikes({50, 10}, 20, clock_.now() - std::chrono::hours(1)).state;
  }
  std::unique_ptr<FeedServices> feeds(Configuration const& configuration, std::string const& base) {
    return std::make_unique<FeedServices>(
        http_, clock_, ServiceDirectory(configuration, base),
        FeedServices::Options{"me", {}, {}, std::make_shared<Texts const>(Texts::load("en"))});
  }

  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
};

TEST_F(FeedServicesTest, HaveNoSourceOfFiresAndLightningUntilTheUserNamesThem) {
  auto const unset = feeds({}, "");
  EXPECT_EQ(fires(*unset), FeedState::notConfigured);
  EXPECT_EQ(strikes(*unset), FeedState::notConfigured);
  EXPECT_TRUE(http_.requests.empty());
  Configuration named;
  named.services["firms"] = {{}, "0123"};
  named.services["lightning"] = {"https://sparks.example", {}};
  auto const set = feeds(named, "");
  EXPECT_EQ(fires(*set), FeedState::failed);
  EXPECT_EQ(strikes(*set), FeedState::failed);
  ASSERT_EQ(http_.requests.size(), 2);
  EXPECT_TRUE(http_.requests[0].url.starts_with("https://firms.modaps.eosdis.nasa.gov/api/area/csv/0123/"));
  EXPECT_TRUE(http_.requests[1].url.starts_with("https://sparks.example/lightning/"));
}

TEST_F(FeedServicesTest, AskThePublicSourcesUnlessTheUserHasARelay) {
  struct Row {
    std::string relay;
    std::string base;
    std::vector<std::string> asked;
  };
  for (Row const& row : {Row{"",
                             "",
                             {"https://earthquake.usgs.gov/earthquakes/feed/v1.0/summary/all_day.geojson",
                              "https://celestrak.org/NORAD/elements/gp.php?GROUP=weather&FORMAT=CSV"}},
                         Row{"https://relay.example",
                             "",
                             {"https://relay.example/api/feed.php?f=quakes",
                              "https://relay.example/api/feed.php?f=satellites&p=weather"}},
                         Row{"",
                             "http://127.0.0.1:1",
                             {"http://127.0.0.1:1/earthquakes/feed/v1.0/summary/all_day.geojson",
                              "http://127.0.0.1:1/NORAD/elements/gp.php?GROUP=weather&FORMAT=CSV"}},
                         Row{"https://relay.example",
                             "http://127.0.0.1:1",
                             {"http://127.0.0.1:1/api/feed.php?f=quakes",
                              "http://127.0.0.1:1/api/feed.php?f=satellites&p=weather"}}}) {
    Configuration configuration;
    if (!row.relay.empty()) configuration.services["feedServer"].host = row.relay;
    auto const made = feeds(configuration, row.base);
    http_.requests.clear();
    made->earthquakes().fetchEarthquakes();
    std::ignore = made->elements()("weather", {});
    std::vector<std::string> asked;
    for (HttpRequest const& request : http_.requests) asked.push_back(request.url);
    EXPECT_EQ(asked, row.asked);
  }
}

/// Of those that were asked, each once, in their order. Nobody answers.
struct WarningsRow {
  char const* name;
  Coordinate place;
  char const* chosen;
  std::vector<std::string> hosts;
};

void PrintTo(WarningsRow const& row, std::ostream* out) {
  *out << row.name;
}

struct AskedForWarnings : FeedServicesTest, testing::WithParamInterface<WarningsRow> {};

TEST_P(AskedForWarnings, AreTheSourcesOfTheRouteInTheirOrder) {
  FeedServices::Options options{"me", {}, {}, std::make_shared<Texts const>(Texts::load("en"))};
  options.chosenSource = [](Coordinate) { return std::string(GetParam().chosen); };
  FeedServices feeds(http_, clock_, ServiceDirectory({}, ""), options);
  GovAlerts const alerts = feeds.govAlerts().fetchAlerts(govAlertPlace(GetParam().place));
  std::vector<std::string> hosts;
  for (HttpRequest const& request : http_.requests) {
    std::string const host = request.url.substr(0, request.url.find('/', std::string("https://").size()));
    if (hosts.empty() || hosts.back() != host) hosts.push_back(host);
  }
  EXPECT_EQ(hosts, GetParam().hosts);
  ASSERT_EQ(alerts.sources.size(), 1);
  EXPECT_EQ(alerts.sources[0].failedSince, clock_.now());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AskedForWarnings,
    testing::Values(
        WarningsRow{"Denver", {39.74, -104.99}, "", {"https://api.weather.gov"}},
        WarningsRow{"Berlin", {52.52, 13.41}, "", {"https://feeds.meteoalarm.org"}},
        WarningsRow{"BerlinByChoice", {52.52, 13.41}, "brightsky", {"https://api.brightsky.dev"}},
        WarningsRow{"Toronto", {43.65, -79.38}, "", {"https://api.weather.gc.ca"}},
        WarningsRow{"Svalbard",
                    {78.22, 15.65},
                    "",
                    {"https://api.met.no", "https://severeweather.wmo.int", "https://alerts.kde.org"}},
        WarningsRow{
            "Tokyo", {35.68, 139.69}, "", {"https://severeweather.wmo.int", "https://alerts.kde.org"}},
        WarningsRow{"TokyoByChoice",
                    {35.68, 139.69},
                    "fpas",
                    {"https://alerts.kde.org", "https://severeweather.wmo.int"}}),
    [](auto const& row) { return row.param.name; });

TEST_F(FeedServicesTest, NeverSendTheUsersKeysToAStandIn) {
  Configuration named;
  named.services["firms"] = {{}, "0123"};
  auto const standIn = feeds(named, "http://127.0.0.1:1");
  EXPECT_EQ(fires(*standIn), FeedState::failed);
  EXPECT_EQ(strikes(*standIn), FeedState::failed);
  ASSERT_EQ(http_.requests.size(), 2);
  for (HttpRequest const& request : http_.requests) EXPECT_EQ(request.url.find("0123"), std::string::npos);
}

}  // namespace
}  // namespace nimbara
