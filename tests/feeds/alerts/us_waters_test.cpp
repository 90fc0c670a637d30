#include "feeds/alerts/routing/us_waters.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct Row {
  char const* name;
  Coordinate place;
  bool hasWater;
};

TEST(UsWaters, LieOffCoastsBaysAndGreatLakes) {
  for (Row const& row : {
           Row{"Chicago", {41.8781, -87.6298}, true},    {"Cleveland", {41.4993, -81.6944}, true},
           {"Duluth", {46.7867, -92.1005}, true},        {"Buffalo", {42.8864, -78.8784}, true},
           {"Oswego", {43.4553, -76.5105}, true},        {"Green Bay", {44.5133, -88.0133}, true},
           {"Bay City", {43.5945, -83.8889}, true},      {"Miami", {25.7617, -80.1918}, true},
           {"New York", {40.7128, -74.0060}, true},      {"Boston", {42.3601, -71.0589}, true},
           {"Annapolis", {38.9784, -76.4922}, true},     {"Galveston", {29.3013, -94.7977}, true},
           {"Seattle", {47.6062, -122.3321}, true},      {"San Francisco", {37.7749, -122.4194}, true},
           {"San Diego", {32.7157, -117.1611}, true},    {"Anchorage", {61.2181, -149.9003}, true},
           {"Honolulu", {21.3069, -157.8583}, true},     {"San Juan", {18.4655, -66.1057}, true},
           {"Hagåtña", {13.4745, 144.7504}, true},       {"Denver", {39.7392, -104.9903}, false},
           {"Indianapolis", {39.7684, -86.1581}, false}, {"Madison", {43.0731, -89.4012}, false},
           {"El Paso", {31.7619, -106.4850}, false},     {"Grand Rapids", {42.9634, -85.6681}, false},
           {"Grand Forks", {47.9253, -97.0329}, false},  {"Berlin", {52.52, 13.41}, false},
       }) {
    auto const water = usWatersOff(row.place);
    EXPECT_EQ(water.has_value(), row.hasWater) << row.name;
    if (!water) continue;
    EXPECT_TRUE(isValid(*water)) << row.name;
    EXPECT_LE(haversineKm(row.place, *water), 15) << row.name;
  }
}

/// Westwards from the shore of Lake Michigan in Chicago.
TEST(UsWaters, AreAskedForWithinTenKilometres) {
  constexpr Coordinate kShore{41.8819, -87.6100};
  constexpr double kKmPerLongitude = 82.8;
  EXPECT_TRUE(usWatersOff({kShore.latitude, kShore.longitude - 7 / kKmPerLongitude}));
  EXPECT_FALSE(usWatersOff({kShore.latitude, kShore.longitude - 14 / kKmPerLongitude}));
}

TEST(UsWaters, HaveZonesOfTheirOwn) {
  for (std::string_view const code : {"LMZ741", "ANZ338", "PZZ130", "GMZ530", "AMZ651", "PKZ740", "PHZ110"})
    EXPECT_TRUE(isMarineZone(code)) << code;
  for (std::string_view const code :
       {"ILZ014", "IAC113", "LMC741", "LMZ74", "LMZ7411", "", "MIZ001", "PRZ001"})
    EXPECT_FALSE(isMarineZone(code)) << code;
}

}  // namespace
}  // namespace nimbara
