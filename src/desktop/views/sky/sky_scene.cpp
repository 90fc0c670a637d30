#include "desktop/views/sky/sky_scene.h"

#include "base/sun_moon.h"

#include <array>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

struct Sky {
  double clouds;
  double fog;
  double rain;
  double snow;
  bool hasLightning;
};

/// In the order of `ConditionCategory`.
constexpr std::array kSkies = std::to_array<Sky>({
    {0, 0, 0, 0, false},         // clear
    {0.4, 0, 0, 0, false},       // partly cloudy
    {0.9, 0, 0, 0, false},       // cloudy
    {0.3, 1, 0, 0, false},       // fog
    {0.75, 0, 0.4, 0, false},    // light rain
    {1, 0, 1, 0, false},         // heavy rain
    {1, 0, 0.8, 0, true},        // thunderstorm
    {0.75, 0, 0, 0.4, false},    // light snow
    {1, 0, 0, 1, false},         // heavy snow
    {0.9, 0, 0.35, 0.4, false},  // sleet
});
static_assert(kSkies.size() == enumNames<ConditionCategory>.size());

/// Where a body stands between the edges of the view.
double alongView(double azimuth, Coordinate place) {
  double const fromMiddle = place.latitude >= 0 ? azimuth - 180 : azimuth;
  return 0.5 + 0.5 * std::sin(fromMiddle * std::numbers::pi / 180);
}

}  // namespace

SkyScene skyScene(WeatherConditionCode condition, Coordinate place, Instant now) {
  SkyScene scene;
  auto const sun = sunPosition(now, place), moon = moonPosition(now, place);
  scene.sunAltitude = sun.altitude;
  scene.sunAlong = alongView(sun.azimuth, place);
  scene.moonAltitude = moon.altitude;
  scene.moonAlong = alongView(moon.azimuth, place);
  MoonState const phase = moonState(now);
  scene.moonIllumination = phase.illumination;
  scene.moonLitOnRight = (phase.elongation < 180) == (place.latitude >= 0);
  if (condition == WeatherConditionCode::unknown) return scene;
  Sky const& sky = kSkies[static_cast<std::size_t>(category(condition))];
  scene.clouds = sky.clouds;
  scene.fog = sky.fog;
  scene.rain = sky.rain;
  scene.snow = sky.snow;
  scene.hasLightning = sky.hasLightning;
  return scene;
}

}  // namespace nimbara
