#include "globe/earth_frame.h"

#include "base/sun_moon.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace nimbara {
namespace {

constexpr double kDegrees = 180 / std::numbers::pi;

SGP4::Moment moment(std::string const& text) {
  return SGP4::momentOf(test::at(text));
}

TEST(SiderealTime, AgreesWithTheAlmanac) {
  // Meeus, examples 12.a and 12.b: 13h 10m 46.3668s and 8h 34m 57.0896s.
  EXPECT_NEAR(SGP4::siderealTime(moment("1987-04-10T00:00:00Z")) * kDegrees, 197.693195, 2e-6);
  EXPECT_NEAR(SGP4::siderealTime(moment("1987-04-10T19:21:00Z")) * kDegrees, 128.7378734, 2e-6);
}

TEST(SiderealTime, ADayTurnsByLittleMoreThanOnce) {
  double const first = SGP4::siderealTime(moment("2026-11-21T00:00:00Z"));
  double const second = SGP4::siderealTime(moment("2026-11-22T00:00:00Z"));
  EXPECT_NEAR((second - first) * kDegrees, 0.98564737, 1e-6);
}

TEST(Moments, KeepDaysAndFractionsApart) {
  auto const [day, fraction] = moment("2026-11-21T06:00:00.001Z");
  EXPECT_EQ(day, 2461365.5);
  EXPECT_DOUBLE_EQ(fraction, 0.25 + 0.001 / 86400);
  EXPECT_EQ(moment("1957-10-04T00:00:00Z").day, 2436115.5);
}

TEST(SunDirection, IsThatOfTheAlmanac) {
  // Meeus, example 25.a: 1992 October 13, 0h TD, apparent place 13h 13m 31.4s, -7° 47' 06"; the mean
  // equinox's right ascension is larger by the equation of the equinoxes, here 0.004°.
  Vector3 const sun = sunDirection(moment("1992-10-12T23:59:01Z"));
  EXPECT_NEAR(std::atan2(sun[1], sun[0]) * kDegrees + 360, 198.38083, 0.01);
  EXPECT_NEAR(std::asin(sun[2]) * kDegrees, -7.78507, 0.01);
  EXPECT_NEAR(dot(sun, sun), 1, 1e-12);
}

TEST(SunDirection, AgreesWithTheSunOfTheForecasts) {
  for (std::string const text : {"1960-03-01T03:00:00Z", "2000-06-21T12:00:00Z", "2026-11-21T17:40:00Z"}) {
    for (Coordinate const place :
         {Coordinate{52.52, 13.41}, Coordinate{-33.9, 151.2}, Coordinate{78.2, -15.6}}) {
      Vector3 far = EarthRotation::at(moment(text)).toEarthFixed(sunDirection(moment(text)));
      for (double& part : far) part *= 149'597'871;
      auto const look = Observer(place).look(far);
      auto const expected = sunPosition(test::at(text), place);
      EXPECT_NEAR(look.elevation, expected.altitude, 0.02) << text;
      EXPECT_NEAR(std::remainder(look.azimuth - expected.azimuth, 360), 0, 0.03) << text;
    }
  }
}

TEST(GroundPosition, IsGeodeticWithHeightsAboveTheEquatorsRadius) {
  struct Row {
    Vector3 position;
    double latitude, longitude, altitude;
  };
  double const r = SGP4::kEarthRadiusKm;
  Row const rows[] = {{{r + 400, 0, 0}, 0, 0, 400},
                      {{0, r + 400, 0}, 0, 90, 400},
                      {{0, -7000, 0}, 0, -90, 7000 - r},
                      {{0, 0, 7000}, 90, 0, 7000 - r},
                      {{0, 0, -7000}, -90, 0, 7000 - r},
                      // Vallado, example 3-3: 34.352496° geodetic at 46.4464°.
                      {{6524.834, 6862.875, 6448.296},
                       34.352496,
                       46.4464,
                       std::sqrt(6524.834 * 6524.834 + 6862.875 * 6862.875 + 6448.296 * 6448.296) - r}};
  for (auto const& [position, latitude, longitude, altitude] : rows) {
    auto const ground = groundPosition(position);
    EXPECT_NEAR(ground.latitude, latitude, 1e-6);
    EXPECT_NEAR(ground.longitude, longitude, 1e-4);
    EXPECT_NEAR(ground.altitudeKm, altitude, 1e-9);
  }
}

TEST(Observer, LooksIntoAllDirections) {
  Observer const observer({0, 0});
  struct Row {
    Vector3 target;
    double azimuth, elevation;
  };
  Row const rows[] = {{{7000, 0, 0}, 0, 90},         {{6378.137, 100, 0}, 90, 0},
                      {{6378.137, -100, 0}, 270, 0}, {{6378.137, 0, 100}, 0, 0},
                      {{6378.137, 0, -100}, 180, 0}, {{6478.137, 0, 100}, 0, 45},
                      {{6278.137, 100, 0}, 90, -45}};
  for (auto const& [target, azimuth, elevation] : rows) {
    auto const look = observer.look(target);
    EXPECT_NEAR(look.elevation, elevation, 1e-9);
    if (elevation < 90) {
      EXPECT_NEAR(look.azimuth, azimuth, 1e-9);
    }
  }
}

TEST(Light, FallsFromFullThroughPenumbraToUmbra) {
  Vector3 const sun{1, 0, 0};
  double const r = SGP4::kEarthRadiusKm;
  // Cones at 7000 km behind the earth: umbra r - 32.3 km, penumbra r + 32.9 km.
  struct Row {
    Vector3 position;
    double low, high;
  };
  Row const rows[] = {{{7000, 0, 0}, 1, 1},
                      {{0, r + 1, 0}, 1, 1},
                      {{-7000, 0, 0}, 0, 0},
                      {{-7000, r - 33, 0}, 0, 0},
                      {{-7000, r - 31, 0}, 0.01, 0.05},
                      {{-7000, 0, r}, 0.45, 0.55},
                      {{-7000, 0, r + 32}, 0.95, 0.999},
                      {{-7000, 0, r + 34}, 1, 1},
                      {{-42164, 0, 5000}, 0, 0}};
  for (auto const& [position, low, high] : rows) {
    double const lit = litFraction(position, sun);
    EXPECT_GE(lit, low) << position[1];
    EXPECT_LE(lit, high) << position[1];
    EXPECT_EQ(isSunlit(position, sun), lit >= 0.5);
  }
}

}  // namespace
}  // namespace nimbara
