#include "demo/world/demo_rain.h"

#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

TEST(DemoRain, IsThatOfTheForecastWhereThereIsATownAndAtWholeDegrees) {
  Instant const now = test::at("2026-11-22T10:00:00Z");
  DemoRain rain(now);
  int wet = 0;
  for (DemoPlace const& town : demoPlaces()) {
    double const expected = demoWeather(town.coordinate, now).precipitation;
    wet += expected > 0 ? 1 : 0;
    EXPECT_DOUBLE_EQ(rain.at(town.coordinate), expected) << town.name;
  }
  EXPECT_GT(wet, 0);
  Coordinate const sea{-48, -120};
  EXPECT_DOUBLE_EQ(rain.at(sea), demoWeather(sea, now).precipitation);
}

}  // namespace
}  // namespace nimbara
