#include "desktop/imagery/cloud_veil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QBuffer>

namespace nimbara {
namespace {

std::string pngOf(QImage const& picture) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  picture.save(&buffer, "PNG");
  return buffer.data().toStdString();
}

/// Warm ground with a belt of cold tops between 30° and 60° E.
QImage infrared(int width = 360, int height = 146) {
  QImage picture(width, height, QImage::Format_ARGB32);
  picture.fill(qRgb(80, 80, 80));
  for (int y = 0; y < height; ++y)
    for (int x = width * 7 / 12; x < width * 8 / 12; ++x) picture.setPixel(x, y, qRgb(240, 240, 240));
  return picture;
}

TEST(CloudVeil, ColdIsThickAndTheMiddleShadeClear) {
  auto const veil = cloudVeil(pngOf(infrared()));
  ASSERT_TRUE(veil);
  EXPECT_GT(cloudsAt(*veil, {10, 45}), 200);
  EXPECT_EQ(cloudsAt(*veil, {10, 20}), 0);
  EXPECT_EQ(cloudsAt(*veil, {-70, -179.9}), 0);
  EXPECT_GT(cloudsAt(*veil, {72.7, 45}), 200);
  EXPECT_EQ(cloudsAt(*veil, {72.8, 45}), 0);
  EXPECT_EQ(cloudsAt(*veil, {-72.8, 45}), 0);
}

TEST(CloudVeil, HolesHideNothing) {
  QImage holed = infrared();
  for (int y = 0; y < 60; ++y)
    for (int x = 210; x < 240; ++x) holed.setPixel(x, y, 0);
  auto const veil = cloudVeil(pngOf(holed));
  ASSERT_TRUE(veil);
  EXPECT_EQ(cloudsAt(*veil, {40, 45}), 0);
  EXPECT_GT(cloudsAt(*veil, {-40, 45}), 200);
}

TEST(CloudVeil, APictureThatShowsNothingIsNone) {
  QImage plain(64, 26, QImage::Format_ARGB32);
  for (QRgb const colour : {qRgba(0, 0, 0, 0), qRgb(0, 0, 0), qRgb(255, 255, 255)}) {
    plain.fill(colour);
    EXPECT_FALSE(cloudVeil(pngOf(plain))) << colour;
  }
  plain.fill(qRgba(10, 20, 30, 0));
  for (int x = 0; x < 64; ++x) plain.setPixel(x, 3, qRgba(x, x, x, 0));
  for (int y = 0; y < 26; ++y) plain.setPixel(5, y, qRgba(9, 9, 9, 0));
  EXPECT_FALSE(cloudVeil(pngOf(plain)));
  EXPECT_FALSE(cloudVeil("<html>"));
  EXPECT_FALSE(cloudVeil(""));
}

TEST(CloudVeil, GoesAroundTheWorld) {
  QImage picture = infrared();
  for (int y = 0; y < picture.height(); ++y)
    for (int const x : {0, 1, 358, 359}) picture.setPixel(x, y, qRgb(240, 240, 240));
  auto const veil = cloudVeil(pngOf(picture));
  ASSERT_TRUE(veil);
  for (double const longitude : {-180.0, -179.0, 179.0, 180.0, 539.0, -181.0})
    EXPECT_GT(cloudsAt(*veil, {0, longitude}), 200) << longitude;
}

TEST(CloudVeil, LiesOnTheEarthAndOnAMap) {
  auto const veil = cloudVeil(pngOf(infrared()));
  ASSERT_TRUE(veil);
  QImage earth(72, 36, QImage::Format_RGBA8888);
  earth.fill(QColor(10, 20, 30, 200));
  QImage const under = underClouds(earth, *veil);
  auto const texel = [&under](int x, int y) { return under.constScanLine(y) + qsizetype{4} * x; };
  EXPECT_GT(texel(45, 18)[0], 190);
  EXPECT_LT(texel(45, 18)[3], 50);
  EXPECT_EQ(texel(20, 18)[0], 10);
  EXPECT_EQ(texel(45, 1)[0], 10);  // 82.5° N
  EXPECT_EQ(texel(45, 1)[3], 200);

  MapView const view{mercatorOf({0, 0}), 2, 512, 512};
  QImage const map = cloudsOnMap(*veil, view);
  MapPoint const cloudy = pixelOf(view, mercatorOf({10, 45})), clear = pixelOf(view, mercatorOf({10, 10}));
  EXPECT_GT(qAlpha(map.pixel(int(cloudy.x), int(cloudy.y))), 200);
  EXPECT_EQ(map.pixel(int(clear.x), int(clear.y)), 0U);
}

}  // namespace
}  // namespace nimbara
