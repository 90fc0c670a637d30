#include "feeds/imagery/radar/radar_service.h"

#include "feeds/imagery/cloud_service.h"
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
using testing::AllOf;
using testing::IsEmpty;

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
  for (auto const& [status, body] : {std::pair(403, ""), std::pair{429, ""}, std::pair{500, ""},
                                     std::pair{200, "<html>"}, std::pair{200, ""}}) {
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

std::string listOf(std::string const& layer, std::string const& times) {
  return "<WMS_Capabilities><Capability><Layer><Layer><Name>" + layer + "</Name><Dimension name=\"time\">" +
         times + "</Dimension></Layer></Layer></Capability></WMS_Capabilities>";
}

std::string globalList(std::string const& times) {
  return listOf("global_longwave_imagery_mosaic", times);
}

std::string europeanList(std::string const& times) {
  return listOf("worldcloudmap_ir108", times);
}

class CloudServiceTest : public testing::Test {
 protected:
  CloudReading fetch() {
    return clouds_.fetch([](std::string_view bytes) { return bytes.starts_with("clouds"); });
  }

  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-22T10:07:00Z")};
  ImageryRequests requests_{http_, clock_};
  test::TemporaryFolder folder_;
  CloudService clouds_{requests_, clock_, {"https://noaa.example", "https://europe.example", folder_.path()}};
};

TEST_F(CloudServiceTest, TakesTheNewestListedTimeAndRestsForAnHour) {
  http_.willAnswer(200, globalList("2026-11-22T07:00:00Z,2026-11-22T08:00:00Z,2026-11-22T11:00:00Z"));
  http_.willAnswer(200, "clouds");
  CloudReading const reading = fetch();
  ASSERT_TRUE(reading.picture);
  EXPECT_EQ(reading.picture->source, CloudSource::nowCoast);
  EXPECT_EQ(reading.picture->time, at("2026-11-22T08:00:00Z"));
  ASSERT_EQ(http_.requests.size(), 2U);
  EXPECT_THAT(http_.requests[1].url,
              AllOf(HasSubstr("https://noaa.example/geoserver/satellite/ows?"),
                    HasSubstr("&bbox=-180,-72.7,180,72.7&"), HasSubstr("&time=2026-11-22T08:00:00Z")));
  clock_.advance(CloudService::kRest - milliseconds(1));
  fetch();
  EXPECT_EQ(http_.requests.size(), 2U);
  clock_.advance(milliseconds(1));
  // The picture of a time that is still the newest is on disk.
  http_.willAnswer(200, globalList("2026-11-22T08:00:00Z"));
  EXPECT_TRUE(fetch().misses.empty());
  EXPECT_EQ(http_.requests.size(), 3U);
}

struct Replaced {
  char const* name;
  int status;
  std::string list;
  std::string picture;  ///< empty: is not asked for
  friend void PrintTo(Replaced const& row, std::ostream* out) { *out << row.name; }
};

class CloudReplacementTest : public CloudServiceTest, public testing::WithParamInterface<Replaced> {};

TEST_P(CloudReplacementTest, EuropeIsAskedInstead) {
  http_.willAnswer(GetParam().status, GetParam().list);
  if (!GetParam().picture.empty()) http_.willAnswer(200, GetParam().picture);
  http_.willAnswer(200, europeanList("2026-11-22T06:00:00Z"));
  http_.willAnswer(200, "clouds of Europe");
  CloudReading const reading = fetch();
  ASSERT_TRUE(reading.picture);
  EXPECT_EQ(reading.picture->source, CloudSource::eumetView);
  ASSERT_EQ(reading.misses.size(), 1U);
  EXPECT_EQ(reading.misses[0].source, CloudSource::nowCoast);
}

INSTANTIATE_TEST_SUITE_P(
    All, CloudReplacementTest,
    testing::Values(Replaced{"refused", 403, "", ""}, Replaced{"busy", 429, "", ""},
                    Replaced{"aPage", 200, "<html>", ""}, Replaced{"noTimes", 200, globalList(""), ""},
                    Replaced{"anotherLayer", 200, europeanList("2026-11-22T08:00:00Z"), ""},
                    Replaced{"sixHoursOld", 200, globalList("2026-11-22T04:07:00Z"), ""},
                    Replaced{"allToCome", 200, globalList("2026-11-22T10:13:00Z"), ""},
                    Replaced{"aBlankPicture", 200, globalList("2026-11-22T08:00:00Z"), "blank"}),
    [](auto const& info) { return std::string(info.param.name); });

TEST_F(CloudServiceTest, KeepsTheLastPictureWhereBothFail) {
  http_.willAnswer(200, globalList("2026-11-22T04:07:01Z"));
  http_.willAnswer(200, "clouds");
  ASSERT_TRUE(fetch().picture);
  clock_.advance(CloudService::kRest);
  http_.willAnswer(500, "");
  http_.willAnswer(500, "");
  CloudReading const reading = fetch();
  EXPECT_TRUE(reading.picture);
  EXPECT_EQ(reading.misses.size(), 2U);
  EXPECT_EQ(reading.checkedAt, at("2026-11-22T10:07:00Z"));
}

TEST_F(CloudServiceTest, ABlankPictureIsNotKeptOnDisk) {
  for (int turn = 0; turn < 2; ++turn) {
    http_.willAnswer(200, globalList("2026-11-22T10:00:00Z"));
    http_.willAnswer(200, "blank");
    http_.willAnswer(500, "");
    EXPECT_FALSE(fetch().picture);
    clock_.advance(CloudService::kRest);
  }
  EXPECT_EQ(http_.requests.size(), 6U);
}

}  // namespace
}  // namespace nimbara
