#include "desktop/views/globe/globe_camera.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace nimbara {
namespace {

constexpr GlobeCamera kAboveGreenwich{0, 0, 1, 800, 600};

Vector3 above(Coordinate place, double radii) {
  Vector3 const up = directionTo(place);
  return {up[0] * radii, up[1] * radii, up[2] * radii};
}

TEST(GlobeCamera, ShowsNorthAboveAndEastToTheRight) {
  auto const middle = GlobeSight(kAboveGreenwich).project(above({0, 0}, 1));
  ASSERT_TRUE(middle);
  EXPECT_NEAR(middle->x, 400, 1e-9);
  EXPECT_NEAR(middle->y, 300, 1e-9);
  EXPECT_LT(GlobeSight(kAboveGreenwich).project(above({30, 0}, 1))->y, 300);
  EXPECT_GT(GlobeSight(kAboveGreenwich).project(above({0, 30}, 1))->x, 400);
  GlobeCamera const elsewhere{52, 170, 2, 800, 600};
  EXPECT_NEAR(GlobeSight(elsewhere).project(above({52, 170}, 1.3))->x, 400, 1e-9);
  EXPECT_GT(GlobeSight(elsewhere).project(above({52, -170}, 1))->x, 400) << "beyond the 180th meridian";
}

TEST(GlobeCamera, FindsByItsRaysWhatItProjects) {
  GlobeCamera const camera{35, -70, 1.7, 900, 700};
  for (Coordinate const place : {Coordinate{35, -70}, {10, -60}, {60, -100}, {-20, -75}}) {
    Vector3 const point = above(place, 1.1);
    auto const at = GlobeSight(camera).project(point);
    ASSERT_TRUE(at);
    Vector3 const ray = GlobeSight(camera).rayThrough(*at), eye = camera.eye();
    Vector3 const way{point[0] - eye[0], point[1] - eye[1], point[2] - eye[2]};
    EXPECT_NEAR(dot(ray, way) / std::sqrt(dot(way, way)), 1, 1e-12);
  }
}

TEST(GlobeCamera, KeepsTheEarthsRimWhereItSays) {
  for (double const zoom : {0.1, 1.0, 5.0}) {
    GlobeCamera const camera{0, 0, zoom, 800, 600};
    // A line of sight that touches the earth makes a right angle with the radius there.
    double const angle = std::acos(1 / camera.distance());
    auto const rim = GlobeSight(camera).project({std::cos(angle), std::sin(angle), 0});
    ASSERT_TRUE(rim);
    EXPECT_NEAR(rim->x - 400, camera.earthRadius(), 1e-6);
  }
}

TEST(GlobeCamera, HidesWhatIsBeyondTheEarthOrBehindTheEye) {
  EXPECT_FALSE(GlobeSight(kAboveGreenwich).isHiddenByEarth(above({0, 0}, 1)));
  EXPECT_TRUE(GlobeSight(kAboveGreenwich).isHiddenByEarth(above({0, 180}, 1)));
  EXPECT_TRUE(GlobeSight(kAboveGreenwich).isHiddenByEarth(above({0, 180}, 6.6)));
  EXPECT_FALSE(GlobeSight(kAboveGreenwich).isHiddenByEarth(above({0, 90}, 6.6)));
  EXPECT_TRUE(GlobeSight(kAboveGreenwich).project(above({0, 180}, 6.6)));
  EXPECT_FALSE(GlobeSight(kAboveGreenwich).project(above({0, 0}, kAboveGreenwich.distance() + 0.1)));
}

TEST(GlobeCamera, KeepsWithinItsBounds) {
  EXPECT_EQ(kAboveGreenwich.turned(500, 0).latitude, GlobeCamera::kHighestLatitude);
  EXPECT_NEAR(kAboveGreenwich.turned(0, 190).longitude, -170, 1e-9);
  EXPECT_EQ(kAboveGreenwich.zoomed(1e9).zoom, GlobeCamera::kMostZoom);
  EXPECT_EQ(kAboveGreenwich.zoomed(0).zoom, GlobeCamera::kLeastZoom);
}

TEST(GlobeCamera, MovesTheSurfaceWithThePointer) {
  PicturePoint const before = *GlobeSight(kAboveGreenwich).project(above({0, 0}, 1));
  GlobeCamera const after = kAboveGreenwich.dragged(20, 10);
  PicturePoint const moved = *GlobeSight(after).project(above({0, 0}, 1));
  EXPECT_NEAR(moved.x - before.x, 20, 0.5);
  EXPECT_NEAR(moved.y - before.y, 10, 0.5);
}

struct Picking : testing::Test {
  std::optional<std::uint32_t> pick(double x, double y, double reach = 14) const {
    return nearestInPicture(kAboveGreenwich, {x, y}, reach, positions, indices);
  }
  void add(Vector3 const& at) {
    indices.push_back(static_cast<std::uint32_t>(positions.size() / 3));
    for (double const part : at) positions.push_back(static_cast<float>(part));
  }

  std::vector<float> positions;
  std::vector<std::uint32_t> indices;
};

TEST_F(Picking, TakesTheNearestWithinReach) {
  add(above({0, 0}, 1.1));
  add(above({0, 2}, 1.1));
  PicturePoint const second = *GlobeSight(kAboveGreenwich).project(above({0, 2}, 1.1));
  EXPECT_EQ(pick(400, 300), 0U);
  EXPECT_EQ(pick(second.x + 3, second.y), 1U);
  EXPECT_EQ(pick(400, 300 + 13.5), 0U);
  EXPECT_EQ(pick(400, 300 + 14.5), std::nullopt);
}

TEST_F(Picking, PassesOverWhatIsNotSeen) {
  add(above({0, 180}, 1.1));
  add({0, 0, 0});
  add({std::numeric_limits<double>::quiet_NaN(), 0, 0});
  EXPECT_EQ(pick(400, 300), std::nullopt);
  add(above({0, 0.1}, 1.1));
  EXPECT_EQ(pick(400, 300), 3U);
  indices.pop_back();
  EXPECT_EQ(pick(400, 300), std::nullopt) << "groups that are switched off";
}

}  // namespace
}  // namespace nimbara
