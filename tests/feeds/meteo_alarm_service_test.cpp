#include "feeds/meteo_alarm_service.h"

#include "support/atom_feed.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::AtomEntry;
using test::atomFeed;
using testing::Contains;
using testing::Key;
using testing::Not;
using testing::Pair;

constexpr Coordinate kHere{52.52, 13.41};
constexpr Coordinate kThere{48.14, 11.58};

AtomEntry entryIn(std::string const& code, std::string const& area = "Coast") {
  AtomEntry entry;
  entry.area = area;
  entry.more = AtomEntry::code("EMMA_ID", code);
  return entry;
}

class MeteoAlarmServiceTest : public testing::Test {
 protected:
  std::vector<WeatherAlert> ask(Coordinate place = kHere, std::string_view country = "DE") {
    return service.fetchAlerts(place.latitude, place.longitude, country);
  }

  std::string const feed = atomFeed({entryIn("DE001"), entryIn("DE002", "Hills")});
  Texts const texts = Texts::load("en");
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T12:00:00Z")};
  int lookUps = 0;
  MeteoAlarmService service{http, clock, "https://feeds.example", texts, [this](Coordinate place) {
                              ++lookUps;
                              return PlaceRegions{
                                  "DE", {}, {{"EMMA_ID", place == kHere ? "DE001" : "DE002"}}};
                            }};
};

TEST_F(MeteoAlarmServiceTest, AsksForTheCountrysFeed) {
  http.willAnswer(200, feed);
  auto const alerts = ask();
  ASSERT_EQ(alerts.size(), 1U);
  EXPECT_EQ(alerts[0].message, "Coast");
  ASSERT_EQ(http.requests.size(), 1U);
  EXPECT_EQ(http.requests[0].url, "https://feeds.example/feeds/meteoalarm-legacy-atom-germany");
  EXPECT_EQ(http.requests[0].timeout, 60s);
  EXPECT_GE(http.requests[0].maxBodyBytes, std::size_t{32} << 20);
  EXPECT_THAT(http.requests[0].headers, Not(Contains(Key("If-None-Match"))));
}

TEST_F(MeteoAlarmServiceTest, DownloadsOnceForTwoPlacesWithin300Seconds) {
  http.willAnswer(200, feed);
  EXPECT_EQ(ask().at(0).areaDesc, "Coast");
  clock.advance(299s);
  EXPECT_EQ(ask(kThere).at(0).areaDesc, "Hills");
  EXPECT_EQ(http.requests.size(), 1U);
  EXPECT_EQ(lookUps, 2);
  clock.advance(1s);
  http.willAnswer(200, atomFeed({}));
  EXPECT_TRUE(ask(kThere).empty());
  EXPECT_EQ(http.requests.size(), 2U);
  EXPECT_EQ(lookUps, 2);  // the place is the same as before
}

TEST_F(MeteoAlarmServiceTest, SendsValidatorsAndTakesNotModified) {
  http.willAnswer(200, feed, {{"ETag", "\"a\""}, {"Last-Modified", "Sat, 21 Nov 2026 11:00:00 GMT"}});
  ask();
  clock.advance(300s);
  http.willAnswer(304, "");
  EXPECT_EQ(ask().size(), 1U);
  EXPECT_THAT(http.requests[1].headers, Contains(Pair("If-None-Match", "\"a\"")));
  EXPECT_THAT(http.requests[1].headers, Contains(Pair("If-Modified-Since", "Sat, 21 Nov 2026 11:00:00 GMT")));
  clock.advance(299s);
  EXPECT_EQ(ask().size(), 1U);  // 304 has made the feed fresh again
  EXPECT_EQ(http.requests.size(), 2U);
}

TEST_F(MeteoAlarmServiceTest, KeepsValidatorsPerCountryAndTheFeedOfOne) {
  http.willAnswer(200, feed, {{"ETag", "\"de\""}});
  ask();
  http.willAnswer(200, atomFeed({}), {{"ETag", "\"at\""}});
  EXPECT_TRUE(ask(kHere, "AT").empty());
  EXPECT_THAT(http.requests[1].headers, Not(Contains(Key("If-None-Match"))));
  // Germany's feed has gone, so "not modified" is of no use and the feed is asked for whole.
  http.willAnswer(304, "");
  http.willAnswer(200, feed, {{"ETag", "\"de2\""}});
  EXPECT_EQ(ask().size(), 1U);
  ASSERT_EQ(http.requests.size(), 4U);
  EXPECT_THAT(http.requests[2].headers, Contains(Pair("If-None-Match", "\"de\"")));
  EXPECT_THAT(http.requests[3].headers, Not(Contains(Key("If-None-Match"))));
}

TEST_F(MeteoAlarmServiceTest, KeepsWhatItKnewThroughFailures) {
  http.willAnswer(200, feed, {{"ETag", "\"a\""}});
  auto const before = ask();
  std::string const cut = feed.substr(0, feed.size() - 30);
  struct Bad {
    int status;
    std::string body;
  };
  for (Bad const& bad :
       {Bad{500, ""}, {200, cut}, {200, ""}, {200, "<html>log in</html>"}, {406, ""}, {503, feed}}) {
    clock.advance(301s);
    http.willAnswer(bad.status, bad.body, {{"ETag", "\"bad\""}});
    MeteoAlarmAnswer const answer = service.fetch(kHere, "DE");
    EXPECT_EQ(answer.alerts, before) << bad.status;
    EXPECT_TRUE(answer.failure) << bad.status;
    EXPECT_EQ(answer.checkedAt, at("2026-11-21T12:00:00Z")) << bad.status;
    EXPECT_THAT(http.requests.back().headers, Contains(Pair("If-None-Match", "\"a\""))) << bad.status;
  }
  http.willFail({HttpError::Kind::timedOut, "timed out"});
  EXPECT_EQ(ask(), before);
  clock.set(at("2026-11-22T06:00:00Z"));
  EXPECT_TRUE(ask().empty()) << "what has ended is not shown from an old feed either";
}

TEST_F(MeteoAlarmServiceTest, TellsNothingKnownFromNoWarnings) {
  http.willAnswer(500, "");
  MeteoAlarmAnswer const unknown = service.fetch(kHere, "DE");
  EXPECT_TRUE(unknown.alerts.empty());
  EXPECT_FALSE(unknown.checkedAt);
  EXPECT_TRUE(unknown.failure);
  http.willAnswer(200, atomFeed({}));
  MeteoAlarmAnswer const none = service.fetch(kHere, "DE");
  EXPECT_EQ(none.checkedAt, clock.now());
  EXPECT_FALSE(none.failure);
  MeteoAlarmAnswer const withoutFeed = service.fetch(kHere, "TR");
  EXPECT_TRUE(withoutFeed.alerts.empty());
  EXPECT_FALSE(withoutFeed.failure);
  EXPECT_EQ(http.requests.size(), 2U);
}

TEST_F(MeteoAlarmServiceTest, LetsAMissingFeedRestForADay) {
  http.willAnswer(404, "");
  EXPECT_TRUE(service.fetch(kHere, "UA").failure);
  clock.advance(24h - 1s);
  EXPECT_TRUE(service.fetch(kHere, "UA").failure);
  EXPECT_EQ(http.requests.size(), 1U);
  clock.advance(1s);
  http.willAnswer(200, atomFeed({}));
  EXPECT_FALSE(service.fetch(kHere, "UA").failure);
}

TEST_F(MeteoAlarmServiceTest, DoesNotTrustAClockThatWasSetBack) {
  http.willAnswer(200, feed);
  ask();
  clock.set(clock.now() - 1h);
  http.willAnswer(200, feed);
  ask();
  EXPECT_EQ(http.requests.size(), 2U);
}

TEST_F(MeteoAlarmServiceTest, TakesGivenRegionsInPlaceOfItsLookUp) {
  http.willAnswer(200, feed);
  auto const answer = service.fetch(kHere, "DE", PlaceRegions{"DE", {"Hills"}, {}});
  ASSERT_EQ(answer.alerts.size(), 1U);
  EXPECT_EQ(answer.alerts[0].areaDesc, "Hills");
  EXPECT_EQ(lookUps, 0);
}

TEST_F(MeteoAlarmServiceTest, LeavesNoWarningsOfNothing) {
  AtomEntry green = entryIn("DE001");
  green.title = "Green Wind Warning issued for Testland - Coast";
  AtomEntry cancelled = entryIn("DE001");
  cancelled.more += "<cap:message_type>Cancel</cap:message_type>";
  AtomEntry test = entryIn("DE001");
  test.more += "<cap:status>Test</cap:status>";
  AtomEntry ended = entryIn("DE001");
  ended.expires = "2026-11-21T12:00:00Z";
  http.willAnswer(200, atomFeed({green, cancelled, test, ended}));
  EXPECT_TRUE(ask().empty());
}

}  // namespace
}  // namespace nimbara
