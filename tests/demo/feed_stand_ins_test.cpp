#include "demo/demo_server.h"
#include "demo/feeds/swpc_stand_in.h"
#include "demo/feeds/usgs_stand_in.h"
#include "demo/feeds/warnings/nws_stand_in.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/quakes/earthquake_service.h"
#include "feeds/source_feeds.h"
#include "feeds/space/geomagnetic_service.h"
#include "feeds/space/kp_forecast_service.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

constexpr Coordinate kDenver{39.74, -104.98};

std::string nwsBody(Coordinate place, Instant now) {
  DemoRequest request;
  request.query = [&](std::string_view) {
    return std::to_string(place.latitude) + "," + std::to_string(place.longitude);
  };
  request.header = [](std::string_view name) { return name == "User-Agent" ? "test" : ""; };
  return nwsActiveAlerts(request, now).body;
}

class FeedStandIns : public testing::Test {
 protected:
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  CurlHttpClient http_{{"nimbara-test/1", {}}};
  std::unique_ptr<DemoServer> server_ = *DemoServer::start(clock_, {});
};

TEST_F(FeedStandIns, AnswerTheServicesOfTheProgram) {
  std::string const& base = server_->baseUrl();
  SourceFeeds sources(http_, clock_, {.usgsBase = base, .celestrakBase = base, .folder = {}});
  EarthquakeService quakes(sources, clock_, {{}, true});
  auto const reading = quakes.fetchEarthquakes();
  EXPECT_EQ(reading.problem(), "");
  auto const& events = reading.data;
  RelayFeedSource relay(http_, clock_, base);
  EXPECT_EQ(relay.get({})->body, sources.get({})->body);
  EXPECT_GT(events.size(), 100);
  EXPECT_TRUE(std::ranges::is_sorted(events, std::ranges::greater{}, &EarthquakeEvent::time));
  for (EarthquakeEvent const& event : events) EXPECT_TRUE(isValid(event.coordinate())) << event.id;
  GeomagneticService geomagnetic(http_, clock_, base);
  // The newest bin has no value yet.
  EXPECT_NEAR(geomagnetic.currentKp().data.now.value_or(-1), demoKp(clock_.now() - 1h), 0.01);
  KpForecastService kpForecast(http_, clock_, base);
  auto const ahead = kpForecast.fetchForecast();
  EXPECT_TRUE(ahead.isCurrent()) << ahead.problem();
  ASSERT_FALSE(ahead.data.empty());
  EXPECT_EQ(ahead.data.front().begin, at("2026-11-21T09:00:00Z"));
  EXPECT_EQ(ahead.data.back().begin, at("2026-11-24T09:00:00Z"));
  NWSAlertService nws(http_, clock_, {base, "me"});
  EXPECT_TRUE(nws.fetchAlerts(kDenver.latitude, kDenver.longitude).ok);
  clock_.advance(120s);
  EXPECT_TRUE(nws.fetchAlerts(kDenver.latitude, kDenver.longitude).ok) << "perhaps by a 304";
  EXPECT_FALSE(nws.fetchAlerts(52.52, 13.41).ok);
}

TEST_F(FeedStandIns, RefuseAFeedThatIsNone) {
  HttpRequest request;
  request.url = server_->baseUrl() + "/api/feed.php?f=rubbish";
  EXPECT_EQ(http_.get(request)->status, 400);
}

/// Ten times fewer a step of magnitude, within what chance allows.
TEST(DemoQuakes, FollowGutenbergAndRichter) {
  std::map<int, int> atLeast;
  std::set<std::string> days;
  for (int day = 0; day < 30; ++day) {
    auto const events = parseEarthquakes(demoQuakes(at("2026-10-01T00:00:00Z") + day * 24h));
    ASSERT_TRUE(events);
    for (EarthquakeEvent const& event : *events) {
      for (int step = 5; step <= 6; ++step) atLeast[step] += event.magnitude >= step ? 1 : 0;
    }
  }
  EXPECT_GT(atLeast[5], 100);
  EXPECT_GT(atLeast[5], 5 * atLeast[6]);
  EXPECT_GT(atLeast[6], 10);
}

TEST(DemoQuakes, StayTheSameWhileTheyAreListed) {
  auto const earlier = *parseEarthquakes(demoQuakes(at("2026-11-21T09:20:00Z")));
  auto const later = *parseEarthquakes(demoQuakes(at("2026-11-21T10:20:00Z")));
  std::map<std::string, EarthquakeEvent> byId;
  for (EarthquakeEvent const& event : later) byId[event.id] = event;
  std::size_t same = 0;
  for (EarthquakeEvent const& event : earlier) {
    if (byId.contains(event.id)) same += byId[event.id] == event ? 1 : 0;
  }
  EXPECT_GT(same, earlier.size() * 8 / 10);
  EXPECT_LT(same, earlier.size());
}

TEST(DemoKp, StaysOnItsScaleAndHasStorms) {
  double highest = 0;
  for (int bin = 0; bin < 8 * 60; ++bin) {
    double const kp = demoKp(at("2026-10-01T00:00:00Z") + bin * 3h);
    ASSERT_TRUE(kp >= 0 && kp <= 9);
    highest = std::max(highest, kp);
  }
  EXPECT_GE(highest, 5);
}

/// A winter of a place, hour by hour: events come and go, each under one identifier, and never a test.
TEST(DemoAlerts, KeepTheirIdentifiersThroughUpdatesAndCancellations) {
  std::map<std::string, int> hoursSeen;
  std::map<std::string, std::string> titles;
  std::set<std::string> types;
  int gaps = 0;
  std::set<std::string> before;
  KnownEvents roots;
  for (int hour = 0; hour < 24 * 90; ++hour) {
    Instant const now = at("2026-11-01T00:10:00Z") + hour * 1h;
    auto const list = parseNwsAlerts(nwsBody(kDenver, now));
    ASSERT_TRUE(list && list->unreadable == 0);
    for (NWSAlert const& message : list->alerts) types.insert(message.messageType);
    std::set<std::string> present;
    for (WeatherAlert const& event : liveEvents(list->alerts, now, roots)) {
      EXPECT_NE(event.title, "Tsunami Warning");
      EXPECT_GT(*event.expires, now);
      std::string const id = event.id.text();
      EXPECT_TRUE(present.insert(id).second);
      EXPECT_TRUE(titles.emplace(id, event.title).first->second == event.title);
      if (hoursSeen[id]++ > 0 && !before.contains(id)) ++gaps;
    }
    before = present;
  }
  EXPECT_EQ(types, (std::set<std::string>{"Alert", "Cancel", "Update"}));
  EXPECT_GE(hoursSeen.size(), 3);
  EXPECT_EQ(gaps, 0) << "an event that is over does not come back";
  for (auto const& [id, hours] : hoursSeen) EXPECT_GE(hours, 12) << titles[id];
}

}  // namespace
}  // namespace nimbara
