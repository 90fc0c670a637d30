#include "feeds/regions/region_renewal.h"

#include "feeds/regions/regions.h"
#include "support/answers/outlines.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::SizeIs;

constexpr Coordinate kBerlin{52.52, 13.41};
constexpr Coordinate kTokyo{35.68, 139.69};

class RegionRenewalTest : public testing::Test {
 protected:
  bool isDue(std::vector<Coordinate> const& places = {kTokyo, kBerlin}) const {
    return renewal.isDue(places);
  }
  void listNames(std::string const& day) {
    http.willAnswer(200, R"([{"name":"MeteoAlarm_Geocodes_)" + day + R"(.json"}])");
  }

  test::TemporaryFolder folder;
  test::FakeHttpClient http;
  test::ManualClock clock{test::at("2026-11-22T06:00:00Z")};
  RegionRenewal renewal{http, clock, "https://docs.example", folder.path()};
};

TEST_F(RegionRenewalTest, IsDueWhereAPlaceNeedsIt) {
  EXPECT_TRUE(isDue());
  EXPECT_FALSE(isDue({kTokyo}));
  EXPECT_FALSE(isDue({}));
  EXPECT_FALSE(RegionRenewal(http, clock, "https://docs.example", {}).isDue(std::vector{kBerlin}));
}

TEST_F(RegionRenewalTest, TakesANewerEditionOnceAMonth) {
  listNames("2031_01_31");
  http.willAnswer(200, test::collection({test::feature("DE1", "DE", "Alpha", test::square(kBerlin, 0.5))}));
  Regions const running(regionFileIn(folder.path()));
  ASSERT_FALSE(running.isUpdated());
  auto const done = renewal.run({});
  ASSERT_TRUE(done) << done.error();
  ASSERT_TRUE(*done);
  EXPECT_EQ((*done)->edition, "MeteoAlarm_Geocodes_2031_01_31.json");
  EXPECT_THAT(running.at(kBerlin).codes, testing::Contains(RegionCode{"EMMA_ID", "DE1"}));
  EXPECT_FALSE(isDue());
  clock.advance(30 * 24h - 1s);
  EXPECT_FALSE(isDue());
  clock.advance(1s);
  EXPECT_TRUE(isDue());
}

TEST_F(RegionRenewalTest, FetchesNothingThatItHas) {
  listNames("2026_02_20");
  auto const done = renewal.run({});
  ASSERT_TRUE(done) << done.error();
  EXPECT_FALSE(*done);
  EXPECT_THAT(http.requests, SizeIs(1));
  EXPECT_FALSE(isDue());
}

TEST_F(RegionRenewalTest, TriesAgainADayAfterAFailure) {
  http.willAnswer(503, "");
  auto const done = renewal.run({});
  ASSERT_FALSE(done);
  EXPECT_THAT(done.error(), HasSubstr("status 503"));
  clock.advance(24h - 1s);
  EXPECT_FALSE(isDue());
  clock.advance(1s);
  EXPECT_TRUE(isDue());
}

TEST_F(RegionRenewalTest, DoesNotTrustADateBeyondAMonth) {
  folder.write("regions.due", "2027-06-01T00:00:00Z\n");
  EXPECT_TRUE(isDue());
  folder.write("regions.due", "rubbish");
  EXPECT_TRUE(isDue());
  folder.write("regions.due", "2026-12-01T00:00:00Z\n");
  EXPECT_FALSE(isDue());
}

}  // namespace
}  // namespace nimbara
