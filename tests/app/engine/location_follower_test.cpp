#include "app/engine/clocks/location_follower.h"

#include "support/instants.h"

#include <gtest/gtest.h>

#include <latch>
#include <vector>

namespace nimbara {
namespace {

LocationFix fixAt(double latitude, double accuracyMetres = 50) {
  return {{latitude, 10}, accuracyMetres, test::at("2026-11-22T06:00:00Z")};
}

TEST(SignificantMoves, AreLongerThanTheThresholdAndThanTheDoubt) {
  constexpr double kKm = 1 / 111.195;  // degrees of latitude
  struct Row {
    std::optional<LocationFix> known;
    LocationFix fix;
    bool isMove;
  };
  for (Row const& row :
       {Row{{}, fixAt(50), true}, Row{fixAt(50), fixAt(50), false},
        Row{fixAt(50), fixAt(50 + 0.99 * kKm), false}, Row{fixAt(50), fixAt(50 + 1.01 * kKm), true},
        Row{fixAt(50), fixAt(50 - 24 * kKm, 25'000), false},
        Row{fixAt(50), fixAt(50 - 26 * kKm, 25'000), true}}) {
    EXPECT_EQ(isSignificantMove(row.known, row.fix), row.isMove) << row.fix.coordinate.latitude;
  }
}

TEST(LocationFollower, TellsOfEachMoveOnceUntilItIsNotWanted) {
  std::vector<double> told;
  std::latch hasMoved(1);
  LocationFollower follower({[&](LocationSource::Moved const& moved, std::stop_token stop) {
                               for (double const latitude : {50.0, 50.001, 51.0, 51.001, 50.0})
                                 moved(fixAt(latitude));
                               hasMoved.count_down();
                               std::latch ending(1);
                               std::stop_callback const end(stop, [&] { ending.count_down(); });
                               ending.wait();
                               return LocationError{LocationError::Kind::cancelled, "cancelled"};
                             },
                             [] { return std::optional(fixAt(50)); },
                             [&](LocationFix const& fix) { told.push_back(fix.coordinate.latitude); }});
  follower.want(true);
  follower.want(true);
  hasMoved.wait();
  follower.want(false);
  EXPECT_EQ(told, (std::vector{51.0, 50.0}));
  EXPECT_EQ(follower.problem(), "");
}

TEST(LocationFollower, BeginsAgainAfterTheServiceHasEndedIt) {
  std::atomic<int> begun = 0;
  LocationFollower follower({[&](LocationSource::Moved const&, std::stop_token) {
                               ++begun;
                               return LocationError{LocationError::Kind::denied, "it is denied"};
                             },
                             [] { return std::optional<LocationFix>(); }, [](LocationFix const&) {}});
  follower.want(true);
  while (follower.problem().empty()) std::this_thread::yield();
  EXPECT_EQ(follower.problem(), "it is denied");
  follower.want(true);
  while (follower.problem().empty()) std::this_thread::yield();
  EXPECT_EQ(begun, 2);
  follower.want(false);
  EXPECT_EQ(follower.problem(), "");
}

}  // namespace
}  // namespace nimbara
