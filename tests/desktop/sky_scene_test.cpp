#include "desktop/views/sky/sky_scene.h"

#include "desktop/states/states.h"
#include "desktop/window/painting/sky_scenery.h"
#include "offscreen.h"

#include <QPainter>

namespace nimbara {
namespace {

using namespace nimbara::test;

struct SunRow {
  char const* name;
  Coordinate place;
  char const* now;
  double low, high;  // of the sun's way along the view
};

void PrintTo(SunRow const& row, std::ostream* out) {
  *out << row.name;
}

class Sun : public testing::TestWithParam<SunRow> {};

TEST_P(Sun, CrossesTheViewTowardsTheEquator) {
  SkyScene const scene = skyScene(WeatherConditionCode::sunny, GetParam().place, at(GetParam().now));
  EXPECT_GT(scene.sunAltitude, 5);
  EXPECT_GT(scene.sunAlong, GetParam().low);
  EXPECT_LT(scene.sunAlong, GetParam().high);
}

INSTANTIATE_TEST_SUITE_P(Rows, Sun,
                         testing::Values(SunRow{"northMorning", {50, 0}, "2026-06-21T07:00:00Z", 0, 0.1},
                                         SunRow{"northNoon", {50, 0}, "2026-06-21T12:00:00Z", 0.45, 0.55},
                                         SunRow{"northEvening", {50, 0}, "2026-06-21T17:00:00Z", 0.9, 1},
                                         SunRow{"southMorning", {-35, 0}, "2026-12-21T07:00:00Z", 0.9, 1},
                                         SunRow{"southNoon", {-35, 0}, "2026-12-21T12:00:00Z", 0.45, 0.55},
                                         SunRow{"southEvening", {-35, 0}, "2026-12-21T17:00:00Z", 0, 0.1}),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(SkyScene, HasTheWeatherOfItsCondition) {
  using enum WeatherConditionCode;
  auto const sceneOf = [](WeatherConditionCode code) { return skyScene(code, {}, kNow); };
  for (auto const code : {sunny, unknown}) EXPECT_EQ(sceneOf(code).clouds, 0);
  EXPECT_LT(sceneOf(partlyCloudy).clouds, sceneOf(overcast).clouds);
  EXPECT_LT(sceneOf(lightRain).rain, sceneOf(heavyRain).rain);
  EXPECT_LT(sceneOf(lightSnow).snow, sceneOf(heavySnow).snow);
  EXPECT_EQ(sceneOf(heavySnow).rain, 0);
  EXPECT_TRUE(sceneOf(lightSleet).rain > 0 && sceneOf(lightSleet).snow > 0);
  EXPECT_TRUE(sceneOf(thunderyShowers).hasLightning);
  EXPECT_FALSE(sceneOf(heavyRain).hasLightning);
  EXPECT_GT(sceneOf(fog).fog, 0);
}

TEST(SkyScene, LightsTheMoonOnTheOtherSideOfTheEquator) {
  SkyScene const north = skyScene(WeatherConditionCode::sunny, {50, 0}, kNow);
  SkyScene const south = skyScene(WeatherConditionCode::sunny, {-50, 0}, kNow);
  EXPECT_NE(north.moonLitOnRight, south.moonLitOnRight);
  EXPECT_EQ(north.moonIllumination, south.moonIllumination);
}

/// The item's picture.
struct Scenery : OffscreenTest {
  static QImage paint(SkyScene const& scene, bool fadesToRight = false) {
    SkyScenery item;
    item.setSize({400, 200});
    item.show(scene);
    EXPECT_TRUE(item.setProperty("fadesToRight", fadesToRight));
    QImage picture(400, 200, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    item.paint(&painter);
    return picture;
  }
  static SkyScene sunny(double altitude, double along = 0.5, double clouds = 0) {
    SkyScene scene;
    scene.sunAltitude = altitude;
    scene.sunAlong = along;
    scene.clouds = clouds;
    return scene;
  }
  /// Pixels between two columns that something was painted on.
  static int painted(QImage const& picture, int from, int until) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = from; x < until; ++x) count += qAlpha(picture.pixel(x, y)) > 8;
    }
    return count;
  }
};

TEST_F(Scenery, LeavesTheSideOfTheTextsFree) {
  SkyScene storm = sunny(30, 0.5, 1);
  storm.rain = storm.snow = storm.fog = 1;
  storm.hasLightning = true;
  QImage const ordinary = paint(storm);
  EXPECT_EQ(painted(ordinary, 0, 4), 0);
  EXPECT_GT(painted(ordinary, 200, 400), 10'000);
  QImage const other = paint(storm, true);
  EXPECT_EQ(painted(other, 396, 400), 0);
  EXPECT_GT(painted(other, 0, 200), 1'000);
}

TEST_F(Scenery, HasStarsAtNightOnlyAndNotThroughClouds) {
  EXPECT_GT(painted(paint(sunny(-20)), 0, 400), 50);
  QImage const covered = paint(sunny(-20, 0.5, 1));
  QImage const coveredDay = paint(sunny(-8, 0.5, 1));
  EXPECT_EQ(painted(covered, 0, 400), painted(coveredDay, 0, 400)) << "clouds alone";
}

TEST_F(Scenery, ShowsTheMoonsDarkLimb) {
  SkyScene scene = sunny(-20);
  scene.moonAltitude = 30;
  scene.moonIllumination = 0.2;
  scene.moonLitOnRight = true;
  QImage const picture = paint(scene);
  QColor const dark = picture.pixelColor(236 - 12, 105), lit = picture.pixelColor(236 + 17, 105);
  EXPECT_GT(dark.alpha(), 200);
  EXPECT_GT(lit.lightness(), dark.lightness() + 80);
  EXPECT_LT(picture.pixelColor(236 - 24, 105).alpha(), 120) << "beside the disc";
}

TEST_F(Scenery, ShowsTheSunWhereItStands) {
  QImage const morning = paint(sunny(30, 0.1));
  QImage const evening = paint(sunny(30, 0.9));
  auto const brightest = [](QImage const& picture) {
    int best = 0, column = 0;
    for (int x = 0; x < picture.width(); ++x) {
      for (int y = 0; y < picture.height(); ++y) {
        if (int const alpha = qAlpha(picture.pixel(x, y)); alpha > best) {
          best = alpha;
          column = x;
        }
      }
    }
    return column;
  };
  EXPECT_LT(brightest(morning) + 100, brightest(evening));
}

}  // namespace
}  // namespace nimbara
