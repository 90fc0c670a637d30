#include "feeds/nowcast/nowcast_service.h"

#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using test::at;
using testing::HasSubstr;
using testing::StartsWith;
using State = NowcastReading::State;

constexpr Coordinate kOslo{59.9139, 10.7522};
constexpr Coordinate kHamburg{53.5511, 9.9937};
constexpr Coordinate kBerlin{52.520008, 13.404954};
constexpr Coordinate kNewYork{40.7128, -74.006};
constexpr Coordinate kTokyo{35.6762, 139.6503};

std::string met(std::string const& rate, std::string const& coverage = "ok") {
  return R"({"properties":{"meta":{"updated_at":"2026-11-21T09:18:00Z","radar_coverage":")" + coverage +
         R"("},"timeseries":[{"time":"2026-11-21T09:20:00Z","data":{"instant":{"details":{"precipitation_rate":0}}}},
{"time":"2026-11-21T10:40:00Z","data":{"instant":{"details":{"precipitation_rate":)" +
         rate + "}}}}]}}";
}

constexpr char kRadar[] = R"({"radar":[{"timestamp":"2026-11-21T11:20:00Z","precipitation_5":[[0]]}],
  "latlon_position":{"x":0,"y":0}})";
constexpr char kQuarters[] = R"({"minutely_15":{"time":[1795259700],"precipitation":[0]}})";
constexpr char kOutside[] = R"({"detail":"lat/lon lies outside the radar data range"})";

class NowcastServiceTest : public testing::Test {
 protected:
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  NowcastService service_{
      http_, clock_, {"https://met.example", "https://sky.example", "https://om.example", "se cret"}};
};

TEST_F(NowcastServiceTest, AsksTheFirstSourceOfThePlace) {
  http_.willAnswer(200, met("0"));
  NowcastReading const reading = service_.fetch(kOslo);
  EXPECT_EQ(reading.state, State::current);
  EXPECT_EQ(reading.nowcast.source, "metNorway");
  EXPECT_EQ(reading.checkedAt, clock_.now());
  EXPECT_TRUE(reading.misses.empty());
  ASSERT_EQ(http_.requests.size(), 1U);
  EXPECT_EQ(http_.requests[0].url,
            "https://met.example/weatherapi/nowcast/2.0/complete?lat=59.9139&lon=10.7522");
  http_.willAnswer(200, kRadar);
  EXPECT_EQ(service_.fetch(kBerlin).nowcast.source, "brightSky");
  EXPECT_THAT(http_.requests[1].url, StartsWith("https://sky.example/radar?lat=52.5200&lon=13.4050&"));
  http_.willAnswer(200, kQuarters);
  EXPECT_EQ(service_.fetch(kNewYork).nowcast.kind, NowcastKind::model15);
  EXPECT_EQ(http_.requests[2].url,
            "https://om.example/v1/forecast?latitude=40.7128&longitude=-74.0060"
            "&minutely_15=precipitation,rain,snowfall,weather_code&forecast_minutely_15=10"
            "&timeformat=unixtime&apikey=se%20cret");
}

TEST_F(NowcastServiceTest, AsksNobodyWhereNobodyOffersIt) {
  NowcastReading const reading = service_.fetch(kTokyo);
  EXPECT_EQ(reading, NowcastReading());
  EXPECT_EQ(reading.state, State::none);
  EXPECT_TRUE(http_.requests.empty());
}

TEST_F(NowcastServiceTest, GoesOnToTheNextSource) {
  struct Row {
    int status;
    std::string body;
    std::string reason;  ///< of the first source's failure; empty where it has nothing to do with the place
  };
  for (Row const& row : {
           Row{422, "outside", ""},
           {200, met("0", "no coverage"), ""},
           {200, met("0", "temporarily unavailable"), "its radar is temporarily unavailable"},
           {500, "", "the service returned status 500"},
           {429, "", "the service returned status 429"},
           {404, "", "the service returned status 404"},
           {200, "<html>log in</html>", "the response is not a valid nowcast"},
           {200, "", "the response is not a valid nowcast"},
           {200, met("0").substr(0, 120), "the response is not a valid nowcast"},
           {200, met("0", "other"), "the response is not a valid nowcast"},
       }) {
    test::FakeHttpClient http;
    NowcastService service(http, clock_,
                           {"https://met.example", "https://sky.example", "https://om.example", ""});
    http.willAnswer(row.status, row.body);
    http.willAnswer(200, kRadar);
    NowcastReading const reading = service.fetch(kHamburg);
    EXPECT_EQ(reading.state, State::current) << row.body;
    EXPECT_EQ(reading.nowcast.source, "brightSky") << row.body;
    ASSERT_EQ(reading.misses.size(), row.reason.empty() ? 0U : 1U) << row.status << row.body;
    if (row.reason.empty()) continue;
    EXPECT_EQ(reading.misses[0].source, NowcastSource::metNorway);
    EXPECT_THAT(sentenceOf(reading.misses[0]), StartsWith(row.reason));
  }
}

TEST_F(NowcastServiceTest, NamesEverySourceThatFailed) {
  http_.willFail({HttpError::Kind::timedOut, "no answer"});
  http_.willAnswer(200, R"({"radar":[],"latlon_position":{"x":0,"y":0}})");
  http_.willAnswer(503, "");
  NowcastReading const reading = service_.fetch(kHamburg);
  EXPECT_EQ(reading.state, State::failed);
  EXPECT_EQ(reading.nowcast, Nowcast());
  ASSERT_EQ(reading.misses.size(), 3U);
  EXPECT_EQ(reading.misses[0].failure.transport, HttpError::Kind::timedOut);
  EXPECT_TRUE(reading.misses[1].isRadarDown);
  EXPECT_EQ(reading.misses[2].failure.status, 503);
}

TEST_F(NowcastServiceTest, IsUncheckedWhenTheOnlyOneThatMayCoverItFails) {
  http_.willAnswer(500, "");
  EXPECT_EQ(service_.fetch(kOslo).state, State::failed);
  EXPECT_EQ(service_.fetch(kOslo).state, State::failed) << "it is left alone for a while";
  EXPECT_EQ(http_.requests.size(), 1U);
  clock_.advance(minutes(1));
  http_.willAnswer(422, "");
  EXPECT_EQ(service_.fetch(kOslo).state, State::none) << "and then it says that it has nothing here";
  clock_.advance(hours(24) - minutes(1));
  EXPECT_EQ(service_.fetch(kOslo).state, State::none);
  EXPECT_EQ(http_.requests.size(), 2U);
  clock_.advance(minutes(1));
  service_.fetch(kOslo);
  EXPECT_EQ(http_.requests.size(), 3U);
}

TEST_F(NowcastServiceTest, TakesOnlyItsOwnRefusalForTheEdgeOfTheRadar) {
  http_.willAnswer(404, kOutside);
  http_.willAnswer(200, kQuarters);
  EXPECT_TRUE(service_.fetch(kBerlin).misses.empty());
  clock_.advance(hours(24));
  http_.willAnswer(404, R"({"detail":"Not Found"})");
  http_.willAnswer(200, R"({"minutely_15":{"time":[1795346100],"precipitation":[0]}})");
  EXPECT_EQ(service_.fetch(kBerlin).misses.size(), 1U);
}

TEST_F(NowcastServiceTest, DoesNotShowWhatIsOver) {
  clock_.advance(hours(3));
  http_.willAnswer(200, met("0"));
  NowcastReading const reading = service_.fetch(kOslo);
  EXPECT_EQ(reading.state, State::failed);
  EXPECT_EQ(sentenceOf(reading.misses.at(0)), "the nowcast ends before the present moment");
}

struct RestRow {
  std::string rate;
  minutes rest;
};

TEST_F(NowcastServiceTest, RestsWhileItIsDry) {
  for (RestRow const& row : {RestRow{"0", minutes(15)}, {"0.09", minutes(15)}, {"0.1", minutes(5)}}) {
    test::FakeHttpClient http;
    test::ManualClock clock(at("2026-11-21T09:20:00Z"));
    NowcastService service(http, clock, {"https://met.example", "", "", ""});
    http.willAnswer(200, met(row.rate));
    service.fetch(kOslo);
    clock.advance(row.rest - std::chrono::milliseconds(1));
    EXPECT_EQ(service.fetch(kOslo).state, State::current);
    EXPECT_EQ(http.requests.size(), 1U) << row.rate;
    clock.advance(std::chrono::milliseconds(1));
    service.fetch(kOslo);
    EXPECT_EQ(http.requests.size(), 2U) << row.rate;
  }
}

TEST_F(NowcastServiceTest, WaitsForTheEndThatTheServiceStatesAndHasItConfirmed) {
  http_.willAnswer(200, met("1"),
                   {{"Date", "Sat, 21 Nov 2026 09:20:00 GMT"},
                    {"Expires", "Sat, 21 Nov 2026 09:28:00 GMT"},
                    {"Last-Modified", "Sat, 21 Nov 2026 09:18:00 GMT"}});
  service_.fetch(kOslo);
  clock_.advance(minutes(7));
  service_.fetch(kOslo);
  EXPECT_EQ(http_.requests.size(), 1U);
  clock_.advance(minutes(1));
  http_.willAnswer(304, "");
  NowcastReading const reading = service_.fetch(kOslo);
  EXPECT_EQ(reading.state, State::current);
  EXPECT_EQ(reading.checkedAt, clock_.now());
  ASSERT_EQ(http_.requests.size(), 2U);
  EXPECT_THAT(http_.requests[1].headers, testing::Contains(std::pair<std::string, std::string>(
                                             "If-Modified-Since", "Sat, 21 Nov 2026 09:18:00 GMT")));
}

TEST_F(NowcastServiceTest, KeepsAnAnswerForItsPlaceOnly) {
  http_.willAnswer(200, met("0"));
  http_.willAnswer(200, met("1"));
  EXPECT_NE(service_.fetch(kOslo).nowcast, service_.fetch({59.92, 10.7522}).nowcast);
  EXPECT_EQ(http_.requests.size(), 2U);
}

/// Two programs of one user.
class SharedNowcasts : public NowcastServiceTest {
 protected:
  NowcastService program() {
    return {http_,
            clock_,
            {"https://met.example", "https://sky.example", "https://om.example", "", folder_.path()}};
  }
  test::TemporaryFolder folder_;
};

TEST_F(SharedNowcasts, AskOnce) {
  http_.willAnswer(200, met("1"));
  NowcastReading const asked = program().fetch(kOslo);
  EXPECT_EQ(program().fetch(kOslo), asked);
  EXPECT_EQ(program().kept(kOslo), asked);
  EXPECT_EQ(http_.requests.size(), 1U);
  clock_.advance(minutes(5));
  EXPECT_EQ(program().nextAsk(kOslo), clock_.now() + minutes(15)) << "a program that has not looked";
  http_.willAnswer(200, met("0"));
  auto other = program();
  EXPECT_NE(other.fetch(kOslo).nowcast, asked.nowcast);
  EXPECT_EQ(other.nextAsk(kOslo), clock_.now() + minutes(15));
  EXPECT_EQ(http_.requests.size(), 2U);
}

TEST_F(SharedNowcasts, ShowWhatWasKeptForHalfAnHour) {
  EXPECT_EQ(program().kept(kOslo), std::nullopt) << "nobody has asked";
  EXPECT_EQ(program().kept(kTokyo), NowcastReading()) << "nobody offers it";
  http_.willAnswer(200, met("1"));
  program().fetch(kOslo);
  clock_.advance(minutes(30) - std::chrono::milliseconds(1));
  EXPECT_EQ(program().kept(kOslo)->nowcast.source, "metNorway");
  clock_.advance(std::chrono::milliseconds(1));
  EXPECT_EQ(program().kept(kOslo), std::nullopt);
  EXPECT_EQ(http_.requests.size(), 1U);
}

TEST_F(SharedNowcasts, LeaveAServiceThatRefusesAloneTogether) {
  http_.willAnswer(503, "");
  program().fetch(kOslo);
  NowcastReading const kept = *program().kept(kOslo);
  EXPECT_EQ(kept.state, State::failed);
  EXPECT_EQ(program().fetch(kOslo), kept);
  EXPECT_EQ(http_.requests.size(), 1U);
  clock_.advance(minutes(1));
  http_.willAnswer(200, met("0"));
  EXPECT_EQ(program().fetch(kOslo).state, State::current);
}

TEST_F(SharedNowcasts, AreNotReadFromADamagedFileOrTheFuture) {
  http_.willAnswer(200, met("0"));
  program().fetch(kOslo);
  clock_.advance(-minutes(1));
  EXPECT_EQ(program().kept(kOslo), std::nullopt);
  for (auto const& entry : std::filesystem::directory_iterator(folder_.path()))
    std::filesystem::resize_file(entry.path(), 20);
  clock_.advance(minutes(1));
  EXPECT_EQ(program().kept(kOslo), std::nullopt);
}

TEST_F(SharedNowcasts, KeepThoseOfTheLastPlaces) {
  for (int i = 0; i < 70; ++i) {
    http_.willAnswer(200, met("0"));
    program().fetch({59 + i * 0.01, 10});
  }
  using std::filesystem::directory_iterator;
  EXPECT_EQ(std::distance(directory_iterator(folder_.path()), directory_iterator()), 64);
}

}  // namespace
}  // namespace nimbara
