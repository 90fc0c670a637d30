#include "gazetteer/sphere_tree.h"
#include "tools/pack_gazetteer/geobuf.h"
#include "tools/pack_gazetteer/landmarks.h"
#include "tools/pack_gazetteer/search_keys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace nimbara::gazetteer {
namespace {

std::string field(int number, std::string const& bytes) {
  return std::string{static_cast<char>(number << 3 | 2), static_cast<char>(bytes.size())} + bytes;
}

/// One feature of zone "A/B" with precision 1: coordinates are differences in tenths of a degree, zigzag
/// coded.
std::string collection(std::string const& geometry) {
  std::string const value = field(13, field(1, "A/B"));
  std::string const feature = field(1, geometry) + value + field(14, std::string("\0\0", 2));
  return field(1, "tzid") + std::string("\x18\x01", 2) + field(4, field(1, feature));
}

std::string polygon() {
  return std::string("\x08\x04", 2) + field(3, std::string("\x02\x04\x14\x00\x00\x14", 6));
}

TEST(Geobuf, IsReadRingByRing) {
  auto const features = readGeobuf(collection(polygon()));
  ASSERT_EQ(features.size(), 1U);
  EXPECT_EQ(features[0].zone, "A/B");
  EXPECT_THAT(features[0].rings, testing::ElementsAre(testing::ElementsAre(
                                     Coordinate{0.2, 0.1}, Coordinate{0.2, 1.1}, Coordinate{1.2, 1.1})));
}

TEST(Geobuf, CountsTheRingsOfManyPolygons) {
  // Two polygons: one of two rings with two points and one point, one of a single ring with one point.
  std::string const lengths = field(2, std::string("\x02\x02\x02\x01\x01\x01", 6));
  std::string const geometry =
      std::string("\x08\x05", 2) + lengths + field(3, std::string("\x02\x02\x02\x02\x04\x04\x06\x06", 8));
  auto const features = readGeobuf(collection(geometry));
  std::vector<std::size_t> sizes;
  for (Ring const& ring : features.at(0).rings) sizes.push_back(ring.size());
  EXPECT_THAT(sizes, testing::ElementsAre(2, 1, 1));
  EXPECT_EQ(features[0].rings[1][0], (Coordinate{0.2, 0.2})) << "each ring begins anew";
}

TEST(Geobuf, RefusesWhatIsCutOffOrNoPolygon) {
  std::string const whole = collection(polygon());
  for (std::size_t length = 1; length < whole.size(); ++length) {
    try {
      for (Feature const& feature : readGeobuf(whole.substr(0, length))) EXPECT_EQ(feature.zone, "A/B");
    } catch (std::exception const&) {
      // Cut within a field.
    }
  }
  EXPECT_ANY_THROW(readGeobuf(collection(std::string("\x08\x02", 2))));
  EXPECT_ANY_THROW(readGeobuf(std::string(20, '\xFF')));
}

std::vector<LandmarkRecord> drawnLandmarks(int count) {
  std::mt19937 random(3);
  std::uniform_int_distribution<std::int32_t> degrees(-9'000'000, 9'000'000);
  std::vector<LandmarkRecord> records;
  for (int i = 0; i < count; ++i) {
    PointRecord const at{degrees(random), degrees(random)};
    auto const quadrant = static_cast<std::uint16_t>((at.latitude > 0 ? 1 : 0) + (at.longitude > 0 ? 2 : 0));
    records.push_back({at, static_cast<std::uint16_t>(i % 2), quadrant});
  }
  return records;
}

std::uint16_t nearestRegion(std::vector<LandmarkRecord> const& tree, LandmarkRecord const& from) {
  auto const found = SphereTree(
                         tree.size(), [&](std::size_t i) { return tree[i].at; },
                         [&](std::size_t i) { return tree[i].country == from.country; })
                         .nearest(coordinateOf(from.at), kEverywhereKm);
  return tree.at(found.value()).region;
}

TEST(Landmarks, AreFewAndTellWhatAllTold) {
  auto const all = drawnLandmarks(1500);
  auto few = condensed(all);
  EXPECT_LT(few.size(), all.size() / 3);
  orderAsTree(few.data(), few.data() + few.size(), [](LandmarkRecord const& record) { return record.at; });
  for (LandmarkRecord const& record : all) EXPECT_EQ(nearestRegion(few, record), record.region);
}

TEST(Landmarks, OfOneRegionAreOne) {
  auto all = drawnLandmarks(50);
  for (LandmarkRecord& record : all) record.country = record.region = 7;
  EXPECT_EQ(condensed(all).size(), 1U);
  EXPECT_TRUE(condensed({}).empty());
}

Town town(std::int32_t population) {
  Town made;
  made.name = "Lisbon";
  made.alternates = "Lisboa,LIS,Lisbonne,Lisbon City,Olisipo,LSBN,リスボン,lisbon";
  made.population = population;
  return made;
}

TEST(SearchKeys, DependOnTheCitysSize) {
  EXPECT_THAT(searchKeys(town(20'000)), testing::UnorderedElementsAre("lisbon", "olisipo"));
  EXPECT_THAT(searchKeys(town(250'000)),
              testing::UnorderedElementsAre("lisbon", "lisboa", "lisbonne", "lisbon city", "olisipo"));
  EXPECT_THAT(
      searchKeys(town(2'000'000)),
      testing::UnorderedElementsAre("lisbon", "lisboa", "lisbonne", "lisbon city", "olisipo", "リスホン"));
}

}  // namespace
}  // namespace nimbara::gazetteer
