#include "feeds/space/kp_scale.h"

#include "feeds/space/geomagnetic_latitude.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

constexpr Coordinate kTromso{69.65, 18.96}, kEdinburgh{55.95, -3.19}, kBerlin{52.52, 13.41},
    kMinneapolis{44.98, -93.27}, kHobart{-42.88, 147.33}, kSingapore{1.35, 103.8};

TEST(GeomagneticLatitude, IsNotThatOfTheGlobe) {
  struct Row {
    Coordinate place;
    double degrees;  ///< corrected geomagnetic, as tables of 2020 have it
  };
  for (Row const& row : {Row{kTromso, 66.6}, Row{kEdinburgh, 53}, Row{kBerlin, 48.3}, Row{kMinneapolis, 54.6},
                         Row{kHobart, 53.9}, Row{{64.15, -21.94}, 64.2}, Row{{-45.87, 170.5}, 53.2}}) {
    EXPECT_NEAR(geomagneticLatitude(row.place), row.degrees, 2) << row.place.latitude;
  }
}

TEST(GeomagneticLatitude, IsKnownEverywhere) {
  for (Coordinate const place : {Coordinate{90, 0}, Coordinate{-90, 0}, Coordinate{83, -85},
                                 Coordinate{0, 180}, Coordinate{0, -180}, Coordinate{-12, -77}}) {
    double const degrees = geomagneticLatitude(place);
    EXPECT_GE(degrees, 0) << place.latitude;
    EXPECT_LE(degrees, 90) << place.latitude;
  }
  EXPECT_GT(geomagneticLatitude({83, -85}), 80) << "near the pole";
  EXPECT_LT(geomagneticLatitude(kSingapore), 15);
}

TEST(AuroraSight, ComesNearerWithTheIndex) {
  using enum AuroraSight;
  struct Row {
    Coordinate place;
    double kp;
    AuroraSight sight;
  };
  for (Row const& row :
       {Row{kBerlin, 1.67, none}, Row{kBerlin, 6, none}, Row{kBerlin, 7, low}, Row{kBerlin, 9, low},
        Row{kEdinburgh, 4, none}, Row{kEdinburgh, 5, low}, Row{kEdinburgh, 8, high}, Row{kTromso, 0, high},
        Row{kMinneapolis, 2, none}, Row{kMinneapolis, 5, low}, Row{kHobart, 2, none}, Row{kHobart, 5, low},
        Row{kSingapore, 9, none}, Row{kTromso, -1, high}, Row{kBerlin, 12, low}}) {
    EXPECT_EQ(auroraSight(row.place, row.kp), row.sight) << row.place.latitude << " " << row.kp;
  }
}

TEST(KpLevel, CountsTheStorms) {
  struct Row {
    double kp;
    int level;
  };
  for (Row const& row : {Row{0, 0}, Row{2.49, 0}, Row{2.5, 1}, Row{3.67, 2}, Row{4.49, 2}, Row{4.67, 3},
                         Row{5.33, 3}, Row{6, 4}, Row{7, 5}, Row{8, 6}, Row{8.99, 6}, Row{9, 7}}) {
    EXPECT_EQ(kpLevel(row.kp), row.level) << row.kp;
  }
}

}  // namespace
}  // namespace nimbara
