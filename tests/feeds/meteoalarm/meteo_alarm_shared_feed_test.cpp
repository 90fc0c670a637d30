// The feeds of a country as several runs of the program share them, through a folder.
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
using testing::Contains;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::Pair;

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

TEST_F(MeteoAlarmSharedFeed, AsksAgainAtOnceAfterOtherFailures) {
  for (HttpError::Kind const kind :
       {HttpError::Kind::unresolvedHost, HttpError::Kind::connectionFailed, HttpError::Kind::cancelled}) {
    http.willFail({kind, "away"});
    EXPECT_TRUE(run().failure);
    EXPECT_EQ(asked(), 1) << enumName(kind);
  }
  http.willAnswer(200, feed());
  EXPECT_FALSE(run().failure);
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
