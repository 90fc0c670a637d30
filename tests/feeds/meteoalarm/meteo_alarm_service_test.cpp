#include "feeds/meteoalarm/meteo_alarm_service.h"

#include "support/answers/atom_feed.h"
#include "support/answers/cap_message.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <condition_variable>
#include <thread>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::AtomEntry;
using test::atomFeed;
using testing::Contains;
using testing::ElementsAre;
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

  /// Neither form of the feed can be had.
  void willAnswerTwice(int status, std::string const& body, HttpHeaders const& headers = {}) {
    for (int i = 0; i < 2; ++i) http.willAnswer(status, body, headers);
  }
  void willHangTwice() {
    for (int i = 0; i < 2; ++i) http.willFail({HttpError::Kind::timedOut, "timed out"});
  }

  std::string const feed = atomFeed({entryIn("DE001"), entryIn("DE002", "Hills")});
  Texts const texts = Texts::load("en");
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T12:00:00Z")};
  int lookUps = 0;
  MeteoAlarmService service{http, clock, {"https://feeds.example", {}, {}}, texts, [this](Coordinate place) {
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
}

TEST_F(MeteoAlarmServiceTest, KeepsAFeedAndItsValidatorsForEachCountry) {
  http.willAnswer(200, feed, {{"ETag", "\"de\""}, {"Last-Modified", "Sat, 21 Nov 2026 11:00:00 GMT"}});
  ask();
  http.willAnswer(200, atomFeed({}), {{"ETag", "\"at\""}});
  EXPECT_TRUE(ask(kHere, "AT").empty());
  EXPECT_EQ(http.requests[1].url, "https://feeds.example/feeds/meteoalarm-legacy-atom-austria");
  EXPECT_THAT(http.requests[1].headers, Not(Contains(Key("If-None-Match"))));
  EXPECT_EQ(ask().size(), 1U);
  EXPECT_TRUE(ask(kHere, "AT").empty());
  EXPECT_EQ(http.requests.size(), 2U) << "each country's feed is still at hand";
  clock.advance(300s);
  http.willAnswer(304, "");
  EXPECT_EQ(ask().size(), 1U);
  EXPECT_THAT(http.requests[2].headers, Contains(Pair("If-None-Match", "\"de\"")));
  EXPECT_THAT(http.requests[2].headers, Contains(Pair("If-Modified-Since", "Sat, 21 Nov 2026 11:00:00 GMT")));
  clock.advance(299s);
  EXPECT_EQ(ask().size(), 1U);
  EXPECT_EQ(http.requests.size(), 3U) << "304 has made the feed fresh again";
}

TEST_F(MeteoAlarmServiceTest, AsksOnceForACountryAndItsIslands) {
  http.willAnswer(200, feed);
  EXPECT_EQ(ask(kHere, "FI").at(0).event, "FI|wind|EMMA_ID:DE001");
  EXPECT_EQ(ask(kHere, "AX").at(0).event, "FI|wind|EMMA_ID:DE001");
  EXPECT_EQ(http.requests.size(), 1U);
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
    willAnswerTwice(bad.status, bad.body, {{"ETag", "\"bad\""}});
    std::size_t const asked = http.requests.size();
    MeteoAlarmAnswer const answer = service.fetch(kHere, "DE");
    EXPECT_EQ(answer.alerts, before) << bad.status;
    EXPECT_TRUE(answer.failure) << bad.status;
    EXPECT_EQ(answer.checkedAt, at("2026-11-21T12:00:00Z")) << bad.status;
    EXPECT_THAT(http.requests.at(asked).headers, Contains(Pair("If-None-Match", "\"a\""))) << bad.status;
    EXPECT_THAT(http.requests.back().headers, Not(Contains(Key("If-None-Match")))) << bad.status;
  }
  willHangTwice();
  EXPECT_EQ(ask(), before);
  clock.set(at("2026-11-22T06:00:00Z"));
  EXPECT_TRUE(ask().empty()) << "what has ended is not shown from an old feed either";
}

TEST_F(MeteoAlarmServiceTest, TellsNothingKnownFromNoWarnings) {
  willAnswerTwice(500, "");
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
  EXPECT_EQ(http.requests.size(), 3U);
}

TEST_F(MeteoAlarmServiceTest, TakesGivenRegionsInPlaceOfItsLookUp) {
  http.willAnswer(200, feed);
  auto const answer = service.fetch(kHere, "DE", PlaceRegions{"DE", {"Hills"}, {}});
  ASSERT_EQ(answer.alerts.size(), 1U);
  EXPECT_EQ(answer.alerts[0].areaDesc, "Hills");
  EXPECT_EQ(lookUps, 0);
}

TEST_F(MeteoAlarmServiceTest, DoesNotWaitAgainForAServiceThatHangs) {
  willHangTwice();
  EXPECT_TRUE(service.fetch(kHere, "DE").failure);
  EXPECT_TRUE(service.fetch(kThere, "DE").failure);
  EXPECT_EQ(http.requests.size(), 2U);
  http.willAnswer(200, atomFeed({}));
  EXPECT_FALSE(service.fetch(kHere, "AT").failure) << "another country's feed is another matter";
  clock.advance(30s);
  http.willAnswer(200, feed);
  EXPECT_FALSE(service.fetch(kHere, "DE").failure);
}

/// Answers of one address wait until they are let go.
class HangingHttpClient final : public HttpClient {
 public:
  explicit HangingHttpClient(std::string body) : body_(std::move(body)) {}

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token) override {
    std::unique_lock lock(mutex_);
    ++requests_;
    changed_.notify_all();
    if (request.url.ends_with("germany")) changed_.wait(lock, [this] { return isLetGo_; });
    return HttpResponse{200, {}, body_};
  }
  void waitForRequest() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return requests_ > 0; });
  }
  void letGo() {
    std::lock_guard const lock(mutex_);
    isLetGo_ = true;
    changed_.notify_all();
  }
  int requests() {
    std::lock_guard const lock(mutex_);
    return requests_;
  }

 private:
  std::string body_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isLetGo_ = false;
  int requests_ = 0;
};

TEST_F(MeteoAlarmServiceTest, LetsACountryThatHangsDelayNoOther) {
  HangingHttpClient hanging(feed);
  PlaceRegions const regions{"DE", {}, {{"EMMA_ID", "DE001"}}};
  MeteoAlarmService many(hanging, clock, {"https://feeds.example", {}, {}}, texts, {});
  std::size_t here = 0;
  std::size_t there = 0;
  std::jthread first([&] { here = many.fetch(kHere, "DE", regions).alerts.size(); });
  hanging.waitForRequest();
  EXPECT_EQ(many.fetch(kThere, "AT", regions).alerts.size(), 1U) << "while Germany's feed hangs";
  std::stop_source given;
  given.request_stop();
  EXPECT_FALSE(many.fetch(kThere, "DE", regions, given.get_token()).checkedAt)
      << "who gives up need not wait";
  std::jthread second([&] { there = many.fetch(kThere, "DE", regions).alerts.size(); });
  hanging.letGo();
  first.join();
  second.join();
  EXPECT_EQ(here, 1U);
  EXPECT_EQ(there, 1U);
  EXPECT_EQ(hanging.requests(), 2) << "one for each country";
}

AtomEntry linked(std::string const& code, std::string const& link) {
  AtomEntry entry = entryIn(code);
  entry.more += "<link href=\"" + link + "\" type=\"application/cap+xml\"/>";
  return entry;
}

TEST_F(MeteoAlarmServiceTest, ReadsWhatTheEntrysDocumentSays) {
  test::TemporaryFolder folder;
  std::string const body =
      atomFeed({linked("DE001", "https://feeds.meteoalarm.org/api/v1/warnings/feeds-germany/1")});
  test::CapBlock german;
  german.language = "de-DE";
  german.description = "Starker Wind aus West.";
  test::CapBlock english;
  english.level = "3; orange; Severe";
  std::string const document = test::capMessage({german, english});
  auto const made = [&](std::string language) {
    return MeteoAlarmService(http, clock, {"https://feeds.example", folder.path(), std::move(language)},
                             texts,
                             [](Coordinate) { return PlaceRegions{"DE", {}, {{"EMMA_ID", "DE001"}}}; });
  };
  MeteoAlarmService forGermans = made("de_DE.UTF-8");
  http.willAnswer(200, body);
  http.willAnswer(200, document);
  WeatherAlert const alert = forGermans.fetch(kHere, "DE").alerts.at(0);
  EXPECT_EQ(alert.text, "Starker Wind aus West.");
  EXPECT_EQ(alert.issuer, "Weather Service of Testland");
  EXPECT_EQ(alert.issued, at("2026-11-21T05:30:00Z"));
  EXPECT_EQ(alert.isFullText, true);
  EXPECT_EQ(alert.link, "https://feeds.meteoalarm.org/api/v1/warnings/feeds-germany/1");
  ASSERT_EQ(http.requests.size(), 2U);
  EXPECT_EQ(http.requests[1].url, "https://feeds.example/api/v1/warnings/feeds-germany/1");
  MeteoAlarmService forOthers = made("");
  http.willAnswer(200, body);
  WeatherAlert const inEnglish = forOthers.fetch(kHere, "DE").alerts.at(0);
  EXPECT_EQ(inEnglish.text, "Strong wind from the west.");
  EXPECT_EQ(inEnglish.colour, "orange");
  EXPECT_EQ(http.requests.size(), 3U) << "the document is at hand";
}

TEST_F(MeteoAlarmServiceTest, TriesTheDocumentAgainAndFollowsNoLinkElsewhere) {
  http.willAnswer(200, atomFeed({linked("DE001", "https://feeds.example/1"),
                                 linked("DE002", "https://elsewhere.example/1")}));
  http.willAnswer(404, "");
  WeatherAlert const first = ask().at(0);
  EXPECT_EQ(first.text, "Moderate wind warning");
  EXPECT_EQ(first.isFullText, false);
  EXPECT_EQ(ask(kThere).at(0).isFullText, false);
  EXPECT_EQ(http.requests.size(), 2U);
  clock.advance(300s);
  http.willAnswer(304, "");
  http.willAnswer(200, test::capMessage({{}}));
  WeatherAlert const second = ask().at(0);
  EXPECT_EQ(second.text, "Strong wind from the west.");
  EXPECT_EQ(second.id, first.id);
}

TEST_F(MeteoAlarmServiceTest, ListsApartWhatNobodyCanPlace) {
  AtomEntry drawn = entryIn("DE901", "Drawn");
  drawn.more += "<cap:polygon>10,10 11,10 11,11</cap:polygon>";
  AtomEntry ended = entryIn("DE902", "Ended");
  ended.expires = "2026-11-21T11:00:00Z";
  AtomEntry inOtherWords = entryIn("DE903", "Verloren");
  AtomEntry graver = entryIn("DE903", "Lost");
  graver.severity = "Extreme";
  std::string const body = atomFeed({entryIn("DE001"), entryIn("DE002", "Hills"), entryIn("DE900", "Nowhere"),
                                     graver, inOtherWords, drawn, ended});
  auto const isKnown = [](std::string_view country, RawEntry const& entry) {
    EXPECT_EQ(country, "DE");
    return entry.otherCodes.front().code < "DE900";
  };
  MeteoAlarmService placing(http, clock, {"https://feeds.example", {}, {}}, texts, {}, isKnown);
  http.willAnswer(200, body);
  MeteoAlarmAnswer const answer = placing.fetch(kHere, "DE", PlaceRegions{"DE", {}, {{"EMMA_ID", "DE001"}}});
  ASSERT_EQ(answer.alerts.size(), 1U);
  EXPECT_EQ(answer.alerts[0].areaDesc, "Coast");
  auto const areas = [](MeteoAlarmAnswer const& of) {
    std::vector<std::string> names;
    for (WeatherAlert const& alert : of.unplaced) names.push_back(alert.areaDesc.value_or(""));
    return names;
  };
  EXPECT_THAT(areas(answer), ElementsAre("Lost", "Nowhere")) << "each by its name, the severest first";
  EXPECT_EQ(answer.unplaced[0].event, "DE|wind|unplaced:EMMA_ID:DE903");
  EXPECT_EQ(answer.unplaced[0].severity, AlertSeverity::critical);
  EXPECT_EQ(answer.unplaced[1].event, "DE|wind|unplaced:EMMA_ID:DE900");
  EXPECT_EQ(answer.unplaced[1].severity, AlertSeverity::advisory);
  MeteoAlarmAnswer const nothingKnown = placing.fetch(kHere, "DE", PlaceRegions{"DE", {}, {}});
  EXPECT_THAT(areas(nothingKnown), ElementsAre("Lost", "Coast", "Hills", "Nowhere"));
  http.willAnswer(200, body);
  EXPECT_TRUE(service.fetch(kHere, "DE").unplaced.empty()) << "nobody says which areas are known";
}

}  // namespace
}  // namespace nimbara
