#include "feeds/imagery/cloud_service.h"

#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::milliseconds;
using test::at;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

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
