// The JSON form of a country's feed, where the Atom form cannot be had, and both forms as several runs of the
// program share them, through a folder.
#include "base/files/file.h"
#include "feeds/meteoalarm/meteo_alarm_service.h"
#include "support/answers/atom_feed.h"
#include "support/answers/cap_json_message.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::AtomEntry;
using test::atomFeed;
using test::jsonFeed;
using test::JsonMessage;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::Pair;

constexpr Coordinate kHere{52.52, 13.41};
constexpr char kAtom[] = "https://feeds.example/feeds/meteoalarm-legacy-atom-germany";
constexpr char kJson[] = "https://feeds.example/api/v1/warnings/feeds-germany";

class MeteoAlarmSecondFeed : public testing::Test {
 protected:
  MeteoAlarmAnswer ask() { return service.fetch(kHere, "DE"); }
  std::vector<std::string> asked() {
    std::vector<std::string> urls;
    for (HttpRequest const& request : http.requests) urls.push_back(request.url);
    http.requests.clear();
    return urls;
  }
  void willHang() { http.willFail({HttpError::Kind::timedOut, "silence"}); }

  std::string const json = jsonFeed({{}});
  Texts const texts = Texts::load("en");
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T12:00:00Z")};
  MeteoAlarmService service{http, clock, {"https://feeds.example", {}, {}}, texts, [](Coordinate) {
                              return PlaceRegions{"DE", {}, {{"EMMA_ID", "DE001"}}};
                            }};
};

TEST_F(MeteoAlarmSecondFeed, IsAskedWhereTheFirstCannotBeHad) {
  std::string const cut = atomFeed({{}}).substr(0, 200);
  std::vector<test::FakeHttpClient::Answer> const bad{
      HttpResponse{500, {}, ""},
      HttpResponse{403, {}, ""},
      HttpResponse{404, {}, ""},
      HttpResponse{304, {}, ""},
      HttpResponse{200, {}, ""},
      HttpResponse{200, {}, cut},
      HttpResponse{200, {}, "<html>log in</html>"},
      std::unexpected(HttpError{HttpError::Kind::timedOut, "silence"}),
      std::unexpected(HttpError{HttpError::Kind::truncated, "cut"}),
      std::unexpected(HttpError{HttpError::Kind::bodyTooLarge, "large"}),
      std::unexpected(HttpError{HttpError::Kind::refusedRedirect, "elsewhere"})};
  for (std::size_t i = 0; i < bad.size(); ++i) {
    test::FakeHttpClient network;
    MeteoAlarmService fresh(network, clock, {"https://feeds.example", {}, {}}, texts, {});
    bad[i] ? network.willAnswer(bad[i]->status, bad[i]->body) : network.willFail(bad[i].error());
    network.willAnswer(200, json);
    auto const answer = fresh.fetch(kHere, "DE", PlaceRegions{"DE", {}, {{"EMMA_ID", "DE001"}}});
    ASSERT_EQ(network.requests.size(), 2) << i;
    EXPECT_EQ(network.requests[1].url, kJson);
    EXPECT_THAT(network.requests[1].headers, Contains(Pair("Accept", "application/json")));
    EXPECT_EQ(network.requests[1].timeout, 60s);
    EXPECT_TRUE(network.requests[0].longestSilence);
    EXPECT_EQ(answer.alerts.size(), 1) << i;
    EXPECT_EQ(answer.checkedAt, clock.now()) << i;
    EXPECT_FALSE(answer.failure) << i;
  }
}

TEST_F(MeteoAlarmSecondFeed, IsNotAskedOfAHostThatIsAway) {
  for (auto const kind : {HttpError::Kind::unresolvedHost, HttpError::Kind::connectionFailed,
                          HttpError::Kind::tlsFailed, HttpError::Kind::cancelled}) {
    http.willFail({kind, "away"});
    EXPECT_TRUE(ask().failure);
    EXPECT_THAT(asked(), ElementsAre(kAtom)) << enumName(kind);
  }
}

TEST_F(MeteoAlarmSecondFeed, GivesTheSameAlertsAsTheFirst) {
  test::CapBlock block;
  AtomEntry entry;
  entry.more = AtomEntry::code("EMMA_ID", "DE001") +
               "<cap:identifier>2.49.0.0.1</cap:identifier><cap:status>Actual</cap:status>"
               "<cap:message_type>Alert</cap:message_type>"
               "<link href=\"https://feeds.meteoalarm.org/api/v1/warnings/feeds-germany/1\" "
               "type=\"application/cap+xml\"/>";
  http.willAnswer(200, atomFeed({entry}));
  http.willAnswer(200, test::capMessage({block}));
  auto const first = ask().alerts;
  EXPECT_THAT(asked(), ElementsAre(kAtom, std::string(kJson) + "/1"));
  clock.advance(300s);
  http.willAnswer(500, "");
  http.willAnswer(200, json);
  auto second = ask().alerts;
  EXPECT_THAT(asked(), ElementsAre(kAtom, kJson)) << "no document is needed";
  ASSERT_EQ(first.size(), 1);
  ASSERT_EQ(second.size(), 1);
  EXPECT_EQ(second[0].messages.value().at(0).identifier, first[0].messages.value().at(0).identifier);
  // The second list of this test names no sender, the document of the first does.
  second[0].messages = first[0].messages;
  EXPECT_EQ(second, first);
  EXPECT_EQ(second[0].text, "Strong wind from the west.");
  EXPECT_EQ(second[0].instruction, "Stay at home.");
  EXPECT_EQ(second[0].isFullText, true);
}

TEST_F(MeteoAlarmSecondFeed, ServesTheTextsOfTheFirst) {
  http.willAnswer(500, "");
  http.willAnswer(200, json);
  ask();
  clock.advance(300s);
  AtomEntry entry;
  entry.more = AtomEntry::code("EMMA_ID", "DE001") +
               "<cap:identifier>2.49.0.0.1</cap:identifier>"
               "<link href=\"https://feeds.example/1\" type=\"application/cap+xml\"/>";
  http.willAnswer(200, atomFeed({entry}));
  asked();
  EXPECT_EQ(ask().alerts.at(0).text, "Strong wind from the west.");
  EXPECT_THAT(asked(), ElementsAre(kAtom));
}

TEST_F(MeteoAlarmSecondFeed, LastsAsLongAsTheFirstAndGivesWayToIt) {
  http.willAnswer(500, "");
  http.willAnswer(200, json, {{"ETag", "\"j\""}});
  EXPECT_EQ(ask().alerts.size(), 1);
  clock.advance(299s);
  EXPECT_EQ(ask().alerts.size(), 1);
  EXPECT_THAT(asked(), ElementsAre(kAtom, kJson));
  clock.advance(1s);
  http.willAnswer(500, "");
  http.willAnswer(304, "");
  EXPECT_EQ(ask().checkedAt, clock.now());
  EXPECT_THAT(http.requests.at(1).headers, Contains(Pair("If-None-Match", "\"j\"")));
  EXPECT_THAT(asked(), ElementsAre(kAtom, kJson));
  clock.advance(300s);
  http.willAnswer(200, atomFeed({}));
  EXPECT_TRUE(ask().alerts.empty());
  EXPECT_THAT(asked(), ElementsAre(kAtom));
}

TEST_F(MeteoAlarmSecondFeed, IsAskedAloneWhileTheFirstRests) {
  http.willAnswer(404, "");
  http.willAnswer(200, json);
  ask();
  clock.advance(300s);
  http.willAnswer(200, json);
  EXPECT_FALSE(ask().failure);
  EXPECT_THAT(asked(), ElementsAre(kAtom, kJson, kJson));
}

TEST_F(MeteoAlarmSecondFeed, LeavesTheReasonOfTheFirstWhereItFailsToo) {
  http.willAnswer(503, "");
  http.willAnswer(200, R"({"warnings":[{"alert":{}}]})");
  EXPECT_EQ(ask().failure, ServiceFailure::answered(503));
  willHang();
  willHang();
  MeteoAlarmAnswer const answer = ask();
  EXPECT_TRUE(answer.failure);
  EXPECT_FALSE(answer.checkedAt);
  EXPECT_TRUE(answer.alerts.empty());
  asked();
  EXPECT_TRUE(ask().failure);
  EXPECT_THAT(asked(), testing::IsEmpty()) << "both hang, and rest";
}

class MeteoAlarmSharedFeed : public testing::Test {
 protected:
  /// A run of its own, which asks once.
  MeteoAlarmAnswer run(std::string const& host = "https://feeds.example") {
    http.requests.clear();
    MeteoAlarmService service(http, clock, {host, {}, {}, folder.path() / "Feeds"}, texts, {});
    return service.fetch({52.52, 13.41}, "DE", PlaceRegions{"DE", {}, {{"EMMA_ID", "DE001"}}});
  }
  std::size_t asked() const { return http.requests.size(); }

  static std::string feed() {
    AtomEntry entry;
    entry.more = AtomEntry::code("EMMA_ID", "DE001");
    return atomFeed({entry});
  }

  test::TemporaryFolder folder;
  Texts const texts = Texts::load("en");
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T12:00:00Z")};
};

TEST_F(MeteoAlarmSharedFeed, IsAskedForOnceInFiveMinutesByAllRuns) {
  http.willAnswer(200, feed(), {{"ETag", "\"a\""}});
  auto const first = run();
  EXPECT_EQ(asked(), 1);
  ASSERT_EQ(first.alerts.size(), 1);
  clock.advance(299s);
  auto const second = run();
  EXPECT_EQ(asked(), 0);
  EXPECT_EQ(second.alerts, first.alerts);
  EXPECT_EQ(second.checkedAt, first.checkedAt);
  EXPECT_FALSE(second.failure);
  clock.advance(1s);
  http.willAnswer(304, "");
  EXPECT_EQ(run().checkedAt, clock.now());
  EXPECT_THAT(http.requests.at(0).headers, Contains(Pair("If-None-Match", "\"a\"")));
  clock.advance(299s);
  EXPECT_EQ(run().alerts, first.alerts);
  EXPECT_EQ(asked(), 0) << "a confirmation counts for all runs too";
}

TEST_F(MeteoAlarmSharedFeed, RestsForAnHourAfter404InAllRuns) {
  for (int i = 0; i < 2; ++i) http.willAnswer(404, "");
  EXPECT_EQ(run().failure, ServiceFailure::answered(404));
  EXPECT_EQ(asked(), 2);
  for (auto const minutes : {30min, 29min}) {
    clock.advance(minutes);
    EXPECT_EQ(run().failure, ServiceFailure::answered(404));
    EXPECT_EQ(asked(), 0);
  }
  clock.advance(1min);
  http.willAnswer(200, feed());
  EXPECT_EQ(run().alerts.size(), 1);
  EXPECT_EQ(asked(), 1);
}

TEST_F(MeteoAlarmSharedFeed, RestsForHalfAMinuteAfterAHang) {
  http.willFail({HttpError::Kind::timedOut, "silence"});
  http.willAnswer(200, jsonFeed({{}}));
  EXPECT_EQ(run().alerts.size(), 1);
  EXPECT_EQ(run().alerts.size(), 1) << "from the list that was fetched in its place";
  EXPECT_EQ(asked(), 0);
  for (int i = 0; i < 2; ++i) http.willFail({HttpError::Kind::timedOut, "silence"});
  clock.advance(300s);
  EXPECT_TRUE(run().failure);
  EXPECT_EQ(asked(), 2);
  clock.advance(29s);
  auto const resting = run();
  EXPECT_EQ(asked(), 0);
  EXPECT_EQ(resting.failure->transport, HttpError::Kind::timedOut);
  EXPECT_EQ(resting.alerts.size(), 1) << "what was known stays";
  clock.advance(1s);
  run();
  EXPECT_EQ(asked(), 2);
}

TEST_F(MeteoAlarmSharedFeed, IsNotTakenFromAnotherHost) {
  http.willAnswer(200, feed(), {{"ETag", "\"a\""}});
  run();
  http.willAnswer(200, atomFeed({}));
  EXPECT_THAT(run("https://other.example").alerts, IsEmpty());
  EXPECT_EQ(asked(), 1);
  EXPECT_THAT(http.requests.at(0).headers, Not(Contains(Key("If-None-Match"))));
}

TEST_F(MeteoAlarmSharedFeed, IsAskedForAnewWhereItsFileIsDamagedOrFromTheFuture) {
  http.willAnswer(200, feed(), {{"ETag", "\"a\""}});
  run();
  ASSERT_TRUE(writeFileAtomically(folder.path() / "Feeds" / "germany.atom", "<feed><entry>"));
  http.willAnswer(200, feed());
  EXPECT_EQ(run().alerts.size(), 1);
  EXPECT_EQ(asked(), 1);
  EXPECT_THAT(http.requests.at(0).headers, Not(Contains(Key("If-None-Match"))));
  clock.set(clock.now() - 1h);
  http.willAnswer(200, feed());
  run();
  EXPECT_EQ(asked(), 1) << "a clock that was set back";
}

}  // namespace
}  // namespace nimbara
