#include "demo/demo_server.h"
#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"
#include "demo/world/warnings/demo_warnings.h"
#include "feeds/meteoalarm/meteo_alarm_service.h"
#include "feeds/regions/region_update.h"
#include "feeds/regions/regions.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;

/// Hears nothing but errors from the first of the two feeds.
class SecondFeedOnly final : public HttpClient {
 public:
  explicit SecondFeedOnly(HttpClient& client) : client_(client) {}
  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop) override {
    bool const isFirst = request.url.find("/feeds/meteoalarm-legacy-atom-") != std::string::npos;
    return isFirst ? HttpResponse{500, {}, ""} : client_.get(request, std::move(stop));
  }

 private:
  HttpClient& client_;
};

class MeteoAlarmDemoTest : public testing::Test {
 protected:
  void SetUp() override {
    auto started = DemoServer::start(clock, {});
    ASSERT_TRUE(started) << started.error();
    server = std::move(*started);
  }

  std::vector<WeatherAlert> warningsOf(DemoPlace const& town) { return warningsOf(town, http); }
  std::vector<WeatherAlert> warningsOf(DemoPlace const& town, HttpClient& client) {
    MeteoAlarmService service(client, clock, {server->baseUrl(), {}, {}}, texts,
                              [&](Coordinate place) { return regions.at(place); });
    auto const answer = service.fetch(town.coordinate, town.countryCode);
    EXPECT_FALSE(answer.failure) << sentenceOf(*answer.failure);
    return answer.alerts;
  }

  Regions const regions{{}};
  test::ManualClock clock{at("2026-11-21T12:00:00Z")};
  Texts const texts = Texts::load("en");
  CurlHttpClient http{{"nimbara-test", {}}};
  std::unique_ptr<DemoServer> server;
};

DemoPlace const& town(std::string_view name) {
  return *std::ranges::find(demoPlaces(), name, &DemoPlace::name);
}

TEST_F(MeteoAlarmDemoTest, HasAnEditionOfOutlines) {
  test::TemporaryFolder const folder;
  auto const update = updateRegions(http, server->baseUrl(), regionFileIn(folder.path()));
  ASSERT_TRUE(update) << update.error();
  EXPECT_EQ(update->regions, 22U);
  EXPECT_EQ(update->skipped, 0U);
}

TEST_F(MeteoAlarmDemoTest, WarnsOfWhatTheWeatherBringsAndNothingElse) {
  int seen = 0;
  for (char const* const name : {"Berlin", "Paris", "Warsaw", "Helsinki", "Tromsø", "Reykjavík", "Madrid"}) {
    DemoPlace const& place = town(name);
    auto const expected = demoWarnings(place.coordinate, clock.now());
    auto const alerts = warningsOf(place);
    std::set<std::string_view> kinds;
    for (DemoWarning const& warning : expected) kinds.insert(warning.kind);
    EXPECT_EQ(alerts.size(), kinds.size()) << name;
    for (WeatherAlert const& alert : alerts) {
      EXPECT_EQ(alert.areaDesc, place.region) << name;
      EXPECT_NE(alert.title, "Flood Warning") << "that of the region beside";
      EXPECT_GT(alert.expires, clock.now());
      ++seen;
    }
  }
  EXPECT_GT(seen, 5);
}

TEST_F(MeteoAlarmDemoTest, SaysTheSameInItsSecondFeed) {
  DemoPlace neighbour = town("Tromsø");
  neighbour.coordinate.longitude += 0.3;
  std::vector<DemoPlace> places{neighbour};
  for (char const* const name : {"Berlin", "Warsaw", "London", "Tromsø", "Madrid"})
    places.push_back(town(name));
  SecondFeedOnly second(http);
  std::size_t warnings = 0;
  for (DemoPlace const& place : places) {
    auto const first = warningsOf(place);
    EXPECT_EQ(encodeJson(warningsOf(place, second)), encodeJson(first)) << place.name;
    warnings += first.size();
  }
  EXPECT_GT(warnings, 5);
}

TEST_F(MeteoAlarmDemoTest, TellsANeighboursWarningFromThePlacesOwn) {
  DemoPlace neighbour = town("Tromsø");
  neighbour.coordinate.longitude += 0.3;
  auto const alerts = warningsOf(neighbour);
  auto const flood = std::ranges::find(alerts, "Flood Warning", &WeatherAlert::title);
  ASSERT_NE(flood, alerts.end());
  EXPECT_GT(flood->distanceKm, 10);
  EXPECT_LE(flood->distanceKm, kProximityRadiusKm);
  neighbour.coordinate.longitude += 0.9;
  auto const there = warningsOf(neighbour);
  auto const same = std::ranges::find(there, "Flood Warning", &WeatherAlert::title);
  ASSERT_NE(same, there.end());
  EXPECT_EQ(same->distanceKm, std::nullopt);
  EXPECT_EQ(same->expires, flood->expires);
}

TEST_F(MeteoAlarmDemoTest, KeepsEventsThroughUpdates) {
  DemoPlace const& place = town("Helsinki");
  std::map<Uuid, int> rounds;
  for (int hour = 0; hour < 24; ++hour) {
    for (WeatherAlert const& alert : warningsOf(place)) ++rounds[alert.id];
    clock.advance(1h);
  }
  ASSERT_FALSE(rounds.empty());
  EXPECT_GT(std::ranges::max_element(rounds, {}, &std::pair<Uuid const, int>::second)->second, 5);
  EXPECT_LT(rounds.size(), 12U);
}

TEST(DemoWarnings, FitTheWeather) {
  Instant const now = at("2026-11-21T12:00:00Z");
  for (DemoPlace const& place : demoPlaces()) {
    for (DemoWarning const& warning : demoWarnings(place.coordinate, now)) {
      EXPECT_GT(warning.level, 0);
      EXPECT_GT(warning.end, now);
      EXPECT_LT(warning.begin, warning.end);
      EXPECT_LE(warning.end - warning.begin, 120h);
      if (warning.kind != "Wind") continue;
      EXPECT_GE(demoWeather(place.coordinate, warning.begin).windGusts, 60);
      EXPECT_GE(demoWeather(place.coordinate, warning.end - 1h).windGusts, 60);
    }
  }
}

}  // namespace
}  // namespace nimbara
