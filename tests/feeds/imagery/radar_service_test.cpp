#include "feeds/imagery/radar/radar_service.h"

#include "feeds/imagery/tile_service.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using test::at;
using testing::HasSubstr;
using State = RadarReading::State;

constexpr Coordinate kParis{48.86, 2.35};
constexpr Coordinate kDenver{39.74, -104.99};
constexpr char kLibre[] =
    R"({"host":"https://libre.example","radar":{"past":[{"time":1795341600,"path":"/v2/radar/1"}],"nowcast":[]}})";
constexpr char kViewer[] =
    R"({"host":"https://tilecache.rainviewer.com","radar":{"past":[{"time":1795341600,"path":"/v2/radar/2b"}]}})";
constexpr char kPng[] = "\x89PNG\r\n\x1a\n and the rest";

class RadarServiceTest : public testing::Test {
 protected:
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-22T10:07:00Z")};
  ImageryRequests requests_{http_, clock_};
  RadarService radar_{requests_,
                      clock_,
                      {{RadarSource::noaa, "https://noaa.example"},
                       {RadarSource::iowaMesonet, "https://iowa.example"},
                       {RadarSource::libreWxr, "https://libre.example"},
                       {RadarSource::rainViewer, "https://viewer.example"}}};
};

TEST_F(RadarServiceTest, AsksForTheListEveryFiveMinutes) {
  http_.willAnswer(200, kLibre);
  RadarReading const reading = radar_.frames(kParis);
  EXPECT_EQ(reading.state, State::current);
  EXPECT_EQ(reading.source, RadarSource::libreWxr);
  EXPECT_EQ(reading.coverage, "https://libre.example/v2/coverage/0/256/{z}/{x}/{y}/0/0_0.png");
  clock_.advance(RadarService::kRest - milliseconds(1));
  EXPECT_EQ(radar_.frames(kParis), reading);
  EXPECT_EQ(http_.requests.size(), 1U);
  clock_.advance(milliseconds(1));
  http_.willAnswer(200, kLibre);
  EXPECT_EQ(radar_.frames(kParis).checkedAt, clock_.now());
  EXPECT_EQ(http_.requests.size(), 2U);
}

TEST_F(RadarServiceTest, PutsTheNextInPlaceOfOneThatFails) {
  for (auto const& [status, body] : {std::pair(403, ""), {429, ""}, {500, ""}, {200, "<html>"}, {200, ""}}) {
    test::FakeHttpClient http;
    ImageryRequests requests(http, clock_);
    RadarService radar(requests, clock_,
                       {{RadarSource::libreWxr, "https://libre.example"},
                        {RadarSource::rainViewer, "https://viewer.example"}});
    http.willAnswer(status, body);
    http.willAnswer(200, kViewer);
    RadarReading const reading = radar.frames(kParis);
    EXPECT_EQ(reading.source, RadarSource::rainViewer) << status;
    ASSERT_EQ(reading.misses.size(), 1U);
    EXPECT_EQ(reading.misses[0].source, RadarSource::libreWxr);
  }
}

TEST_F(RadarServiceTest, LeavesOneThatFailedAloneForAQuarterOfAnHour) {
  http_.willAnswer(200, kLibre);
  ASSERT_EQ(radar_.frames(kParis).source, RadarSource::libreWxr);
  radar_.refuse(RadarSource::libreWxr, ServiceFailure::answered(429));
  http_.willAnswer(500, "");
  RadarReading const failed = radar_.frames(kParis);
  EXPECT_EQ(failed.state, State::failed);
  ASSERT_EQ(failed.misses.size(), 2U);
  EXPECT_EQ(failed.misses[0].failure.status, 429);
  clock_.advance(RadarService::kRestAfterFailure - milliseconds(1));
  EXPECT_EQ(radar_.frames(kParis).state, State::failed);
  EXPECT_EQ(http_.requests.size(), 2U);
  clock_.advance(milliseconds(1));
  http_.willAnswer(200, kLibre);
  EXPECT_EQ(radar_.frames(kParis).source, RadarSource::libreWxr);
}

TEST_F(RadarServiceTest, AsksSoonAgainWhereTheNetworkWasDown) {
  for (int i = 0; i < 2; ++i) http_.willFail({HttpError::Kind::unresolvedHost, "no name"});
  EXPECT_EQ(radar_.frames(kParis).state, State::failed);
  clock_.advance(RadarService::kRestWithoutNetwork);
  http_.willAnswer(200, kLibre);
  EXPECT_EQ(radar_.frames(kParis).state, State::current);
}

TEST_F(RadarServiceTest, TellsNobodyFromNotChecked) {
  http_.willAnswer(200, kLibre);
  radar_.frames(kParis);
  radar_.noteUncovered(RadarSource::libreWxr, kParis);
  http_.willAnswer(200, kViewer);
  EXPECT_EQ(radar_.frames(kParis).source, RadarSource::rainViewer);
  radar_.noteUncovered(RadarSource::rainViewer, kParis);
  EXPECT_EQ(radar_.frames(kParis), RadarReading());
  clock_.advance(RadarService::kCoverageLife);
  http_.willAnswer(500, "");
  http_.willAnswer(500, "");
  EXPECT_EQ(radar_.frames(kParis).state, State::failed);
}

TEST_F(RadarServiceTest, AsksTheMesonetForNoList) {
  http_.willAnswer(503, "");
  RadarReading const reading = radar_.frames(kDenver);
  EXPECT_EQ(reading.source, RadarSource::iowaMesonet);
  EXPECT_EQ(reading.frames.size(), 12U);
  EXPECT_TRUE(reading.coverage.empty());
  EXPECT_EQ(http_.requests.size(), 1U);
}

TEST_F(RadarServiceTest, FetchesAPictureOnce) {
  test::TemporaryFolder const folder;
  TileService tiles(requests_, clock_, folder.path() / "pictures");
  RadarReading reading;
  RadarFrame const frame{at("2026-11-22T10:00:00Z"), false, "https://libre.example/a/{z}/{x}/{y}.png"};
  http_.willAnswer(200, kPng);
  EXPECT_EQ(tiles.picture(reading, frame, TileAddress{3, 2, 1}), std::string(kPng));
  EXPECT_EQ(http_.requests[0].url, "https://libre.example/a/3/2/1.png");
  EXPECT_EQ(TileService(requests_, clock_, folder.path() / "pictures")
                .picture(reading, frame, TileAddress{3, 2, 1}),
            std::string(kPng));
  // The newest of a supplier may have one address at all times.
  RadarFrame later = frame;
  later.time += minutes(5);
  http_.willAnswer(200, "<ServiceException/>");
  EXPECT_EQ(tiles.picture(reading, later, TileAddress{3, 2, 1}).error().kind,
            ServiceFailure::Kind::unreadable);
  http_.willAnswer(404, "");
  EXPECT_EQ(tiles.picture(reading, later, TileAddress{3, 2, 1}).error().status, 404);
}

TEST_F(RadarServiceTest, KeepsWithinSixtyRequestsAMinute) {
  for (std::size_t i = 0; i < RequestBudget::kAMinute; ++i) {
    http_.willAnswer(200, kPng);
    EXPECT_TRUE(requests_.get("https://one.example/" + std::to_string(i), 100, {}));
    clock_.advance(milliseconds(100));
  }
  auto const refused = requests_.get("https://one.example/61", 100, {});
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().kind, ServiceFailure::Kind::leftAlone);
  EXPECT_EQ(refused.error().nextTry, clock_.now() + seconds(54));
  http_.willAnswer(200, kPng);
  EXPECT_TRUE(requests_.get("https://two.example/", 100, {}));
  clock_.advance(seconds(54));
  http_.willAnswer(200, kPng);
  EXPECT_TRUE(requests_.get("https://one.example/61", 100, {}));
}

TEST(RequestBudget, HasSixAtOnceOverAllHosts) {
  RequestBudget budget;
  RequestBudget::Moment const now{};
  for (int i = 0; i < RequestBudget::kAtOnce; ++i) {
    EXPECT_FALSE(budget.isFull());
    EXPECT_EQ(budget.begin("host" + std::to_string(i), now), std::nullopt);
  }
  EXPECT_TRUE(budget.isFull());
  budget.end();
  EXPECT_FALSE(budget.isFull());
}

TEST(TileCache, ForgetsWhatWasWantedLongestAgo) {
  test::TemporaryFolder const folder;
  std::string const bytes(100, 'x');
  {
    TileCache cache(folder.path(), 450);
    for (char const* const key : {"a", "b", "c", "d"}) cache.keep(key, bytes);
    EXPECT_TRUE(cache.find("a"));
    cache.keep("e", bytes);
    EXPECT_FALSE(cache.find("b"));
    EXPECT_TRUE(cache.find("a"));
  }
  TileCache later(folder.path(), 450);
  later.keep("f", bytes);
  EXPECT_FALSE(later.find("c"));
  for (char const* const key : {"a", "d", "e", "f"}) EXPECT_TRUE(later.find(key)) << key;
  later.keep("too large", std::string(451, 'x'));
  EXPECT_FALSE(later.find("too large"));
}

}  // namespace
}  // namespace nimbara
