#include "demo/world/demo_weather.h"

#include "base/apparent_temperature.h"
#include "base/sun_moon.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
/// The sun counts as up when its upper limb does.
constexpr double kSunUp = -0.833;
/// What a rain gauge would not show is no rain.
constexpr double kLeastPrecipitation = 0.1;
constexpr double kSnowBelow = 0.5;     // °C
constexpr double kGrainsAbove = -8.0;  // °C; what falls in deep frost is snow
constexpr double kCmOfSnowPerMm = 0.7;

/// What keeps the values of one seed apart.
enum class Stream : std::uint64_t {
  front,
  strength,
  temperature,
  moisture,
  wind,
  convection,
  drizzle,
  glaze,
  climate,
  direction
};

std::uint64_t mixed(std::uint64_t x) {
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
  return x ^ (x >> 31);
}

/// The weather of a place as a sequence of chance: neighbours within about a kilometre share it.
class Chance {
 public:
  explicit Chance(Coordinate place)
      : seed_(mixed(static_cast<std::uint64_t>(std::llround(place.latitude * 100)) * 0x9e3779b97f4a7c15ULL +
                    static_cast<std::uint64_t>(std::llround(place.longitude * 100)))) {}

  /// 0 to 1, fixed for an index.
  double draw(Stream stream, std::int64_t index) const {
    std::uint64_t const bits =
        mixed(seed_ ^ mixed((static_cast<std::uint64_t>(stream) + 1) * 0x632be59bd9b4e019ULL +
                            static_cast<std::uint64_t>(index)));
    return static_cast<double>(bits >> 11) * 0x1.0p-53;
  }

  /// 0 to 1, smooth in time, with a new draw every `period` hours.
  double smooth(Stream stream, double hours, double period) const {
    double const position = hours / period;
    double const index = std::floor(position);
    double const part = (1 - std::cos((position - index) * std::numbers::pi)) / 2;
    auto const i = static_cast<std::int64_t>(index);
    return draw(stream, i) * (1 - part) + draw(stream, i + 1) * part;
  }

 private:
  std::uint64_t seed_;
};

/// A bell around `centre`.
double bell(double x, double centre, double width) {
  double const z = (x - centre) / width;
  return std::exp(-z * z);
}

/// 0 before, 1 behind.
double step(double x, double width) {
  return 1 / (1 + std::exp(-x / width));
}

/// What the fronts around a moment do together.
struct FrontEffect {
  double pressure = 0;
  double wind = 0;
  double veer = 0;
  double cloud = 0;
  double rain = 0;  // mm/h before the climate has its say
  double warmth = 0;
  double showers = 0;   // 0-1: the unsettled air behind a cold front
  double nearness = 0;  // 0-1
};

/// One front passes in each slot of three and a half days, somewhere in its middle.
constexpr double kSlotHours = 84;

void addFront(FrontEffect& effect, double sinceFront, double strength) {
  effect.pressure -= 26 * strength * bell(sinceFront, 0, 15);
  effect.wind += 48 * strength * bell(sinceFront, 1, 8);
  effect.veer += 90 * strength * step(sinceFront, 2) * bell(sinceFront, 0, 40);
  effect.cloud += 130 * strength * bell(sinceFront, -5, 13);
  effect.rain += 6.5 * strength * strength * bell(sinceFront, -1.5, 5);
  effect.warmth += strength * (4 * bell(sinceFront, -10, 12) - 5 * bell(sinceFront, 16, 18));
  effect.showers = std::max(effect.showers, strength * bell(sinceFront, 14, 7));
  effect.nearness = std::max(effect.nearness, strength * bell(sinceFront, -2, 14));
}

FrontEffect frontsAt(Chance const& chance, double hours) {
  FrontEffect effect;
  auto const slot = static_cast<std::int64_t>(std::floor(hours / kSlotHours));
  for (std::int64_t i = slot - 1; i <= slot + 1; ++i) {
    double const centre = (static_cast<double>(i) + 0.2 + 0.6 * chance.draw(Stream::front, i)) * kSlotHours;
    addFront(effect, hours - centre, 0.15 + 0.85 * chance.draw(Stream::strength, i));
  }
  return effect;
}

double seasonOf(Coordinate place, double hours) {
  double const dayOfYear = std::fmod(hours / 24, 365.2425);
  double const northern = std::cos((dayOfYear - 200) / 365.2425 * kTurn);
  return place.latitude >= 0 ? northern : -northern;
}

/// Mean temperature of latitude and season.
double climate(Coordinate place, double hours) {
  double const cosine = std::cos(place.latitude * kTurn / 360);
  double const sine = std::abs(std::sin(place.latitude * kTurn / 360));
  return -18 + 46 * std::pow(cosine, 1.3) + 14 * std::pow(sine, 1.2) * seasonOf(place, hours);
}

double solarHour(Coordinate place, double hours) {
  double const local = std::fmod(hours + place.longitude / 15, 24);
  return local < 0 ? local + 24 : local;
}

/// Warmest at three in the afternoon; clouds and high latitudes flatten the course.
double dayCourse(Coordinate place, double hours, double cloud) {
  double const amplitude = 6.5 * std::cos(place.latitude * kTurn / 360) + 1;
  return amplitude * (1 - 0.6 * cloud / 100) * std::cos((solarHour(place, hours) - 15) / 24 * kTurn);
}

double vapourPressure(double temperature) {
  return 6.112 * std::exp(17.62 * temperature / (243.12 + temperature));
}

double dewPointOf(double temperature, double humidity) {
  double const logarithm = std::log(vapourPressure(temperature) * humidity / 100 / 6.112);
  return std::min(temperature, 243.12 * logarithm / (17.62 - logarithm));
}

/// The kinds of falling water, told apart once; amount and kind together give the code.
enum class Fall {
  none,
  drizzle,
  rain,
  showers,
  thunder,
  freezingDrizzle,
  freezingRain,
  grains,
  snow,
  snowShowers
};

struct Water {
  Fall kind = Fall::none;
  double amount = 0;    // mm/h
  double violence = 0;  // 0-1 of a thunderstorm
};

/// Showers and thunder of warm, humid afternoons.
Water convection(Chance const& chance, Coordinate place, double hours, double temperature, double moisture) {
  double const warmth = std::clamp((temperature - 14) / 14, 0.0, 1.0);
  double const afternoon = bell(solarHour(place, hours), 17, 3.2);
  double const force = warmth * afternoon * (0.45 + moisture) * chance.smooth(Stream::convection, hours, 7);
  if (force < 0.28) return {};
  double const amount = 26 * (force - 0.28);
  return {force > 0.5 ? Fall::thunder : Fall::showers, amount, std::clamp((force - 0.5) / 0.45, 0.0, 1.0)};
}

Water frozen(double amount, bool behindFront, bool glaze, double temperature) {
  if (glaze && temperature > -4)
    return {amount < 0.6 ? Fall::freezingDrizzle : Fall::freezingRain, amount, 0};
  if (behindFront) return {Fall::snowShowers, amount, 0};
  return {amount < 0.18 && temperature > kGrainsAbove ? Fall::grains : Fall::snow, amount, 0};
}

Water fallingWater(Chance const& chance, Coordinate place, double hours, FrontEffect const& front,
                   double temperature, double moisture) {
  Water const heat = convection(chance, place, hours, temperature, moisture);
  double const tropics = 1 + 1.4 * std::clamp((temperature - 12) / 16, 0.0, 1.0);
  double const steady = front.rain * moisture * tropics - 0.12;
  double const shower = 5.5 * front.showers * chance.smooth(Stream::drizzle, hours, 3) * moisture - 0.9;
  double const amount = std::max(steady, shower);
  if (heat.amount > amount) return heat;
  if (amount < kLeastPrecipitation) return {};
  bool const behindFront = shower > steady;
  if (temperature < kSnowBelow) {
    return frozen(amount, behindFront, chance.smooth(Stream::glaze, hours, 30) > 0.68, temperature);
  }
  if (behindFront) return {Fall::showers, amount, 0};
  bool const fine = amount < 0.8 && chance.smooth(Stream::drizzle, hours, 20) > 0.4;
  return {fine ? Fall::drizzle : Fall::rain, amount, 0};
}

/// Codes of a kind by amount: light below the first bound, moderate below the second, heavy above.
struct FallCodes {
  Fall kind;
  double moderateFrom;
  double heavyFrom;
  int light, moderate, heavy;
};

constexpr FallCodes kFallCodes[] = {
    {Fall::drizzle, 0.25, 0.5, 51, 53, 55}, {Fall::rain, 2.5, 7.5, 61, 63, 65},
    {Fall::showers, 2.5, 5, 80, 81, 82},    {Fall::freezingDrizzle, 0.3, 0.3, 56, 57, 57},
    {Fall::freezingRain, 2, 2, 66, 67, 67}, {Fall::grains, 1, 1, 77, 77, 77},
    {Fall::snow, 0.6, 1.6, 71, 73, 75},     {Fall::snowShowers, 0.8, 0.8, 85, 86, 86},
};

int codeOf(Water const& water) {
  if (water.kind == Fall::thunder) return water.violence < 0.35 ? 95 : water.violence < 0.7 ? 96 : 99;
  auto const row = std::ranges::find(kFallCodes, water.kind, &FallCodes::kind);
  return water.amount < row->moderateFrom ? row->light
         : water.amount < row->heavyFrom  ? row->moderate
                                          : row->heavy;
}

int skyCode(double cloud) {
  return cloud < 12 ? 0 : cloud < 40 ? 1 : cloud < 80 ? 2 : 3;
}

bool isSnow(Fall kind) {
  return kind == Fall::snow || kind == Fall::snowShowers || kind == Fall::grains;
}

/// Clouds that rain are dense, and air that rain falls through is humid.
void applyWater(Water const& water, DemoWeather& out) {
  out.precipitation = water.amount;
  out.weatherCode = codeOf(water);
  out.snowfall = isSnow(water.kind) ? water.amount * kCmOfSnowPerMm : 0;
  out.cloudCover = std::max(out.cloudCover, water.kind == Fall::showers ? 55.0 : 85.0);
  out.humidity = std::max(out.humidity, 82.0);
  out.precipitationProbability = std::min(97.0, 52 + 15 * water.amount);
  double const murk = isSnow(water.kind) ? 14000 : 3000;
  out.visibility = std::max(900.0 + 200, 24140 - murk * water.amount);
}

/// Late at night and early in the morning, when still and humid air under a clear sky has cooled long enough.
bool isFoggy(DemoWeather const& weather, double moisture, double hourOfDay) {
  return hourOfDay < 8.5 && weather.windSpeed < 9 && weather.cloudCover < 55 && moisture > 0.6;
}

void applyFog(DemoWeather& out, double moisture) {
  out.weatherCode = out.temperature < 0 ? 48 : 45;
  out.humidity = 99;
  out.visibility = 60 + 800 * std::clamp((0.85 - moisture) / 0.3, 0.0, 1.0);
}

double uvIndexOf(double sunAltitude, double cloud) {
  if (sunAltitude <= 0) return 0;
  double const height = std::sin(sunAltitude * kTurn / 360);
  return 12.5 * std::pow(height, 1.4) * (1 - 0.65 * std::pow(cloud / 100, 2));
}

}  // namespace

DemoWeather demoWeather(Coordinate place, Instant instant) {
  Chance const chance(place);
  double const hours = static_cast<double>(instant.time_since_epoch().count()) / 3.6e6;
  FrontEffect const front = frontsAt(chance, hours);
  double const moisture = std::clamp(0.25 + 0.5 * chance.smooth(Stream::moisture, hours, 41) +
                                         0.35 * (chance.draw(Stream::climate, 0) - 0.3),
                                     0.05, 0.95);
  double const sunAltitude = sunPosition(instant, place).altitude;
  DemoWeather out;
  out.isDay = sunAltitude > kSunUp;
  out.cloudCover =
      std::clamp(front.cloud + 70 * moisture * chance.smooth(Stream::convection, hours, 11) - 8, 0.0, 100.0);
  out.temperature =
      std::clamp(climate(place, hours) + front.warmth + dayCourse(place, hours, out.cloudCover) +
                     7 * (chance.smooth(Stream::temperature, hours, 60) - 0.5),
                 -58.0, 48.0);
  out.pressure = std::clamp(
      1017 + front.pressure + 14 * (chance.smooth(Stream::temperature, hours, 130) - 0.5), 955.0, 1045.0);
  out.windSpeed = 2.5 + 15 * chance.smooth(Stream::wind, hours, 9) * (out.isDay ? 1 : 0.6) + front.wind;
  out.windDirection = std::fmod(360 * chance.draw(Stream::direction, 0) + front.veer +
                                    80 * (chance.smooth(Stream::direction, hours, 30) - 0.5) + 720,
                                360);
  out.humidity =
      std::clamp(38 + 50 * moisture - 9 * std::cos((solarHour(place, hours) - 15) / 24 * kTurn), 8.0, 98.0);
  out.visibility = 24140;
  out.weatherCode = skyCode(out.cloudCover);
  out.precipitationProbability = 45 * front.nearness * moisture;
  Water const water = fallingWater(chance, place, hours, front, out.temperature, moisture);
  if (water.kind != Fall::none) {
    applyWater(water, out);
  } else if (isFoggy(out, moisture, solarHour(place, hours))) {
    applyFog(out, moisture);
  }
  if (water.kind == Fall::thunder) out.windSpeed += 14 * water.violence;
  out.windGusts = out.windSpeed * (1.35 + 0.35 * chance.smooth(Stream::wind, hours, 5)) +
                  (water.kind == Fall::thunder ? 25 * water.violence : 0);
  out.dewPoint = dewPointOf(out.temperature, out.humidity);
  out.apparentTemperature = apparentTemperature(out.temperature, out.humidity, out.windSpeed);
  out.uvIndex = uvIndexOf(sunAltitude, out.cloudCover);
  return out;
}

}  // namespace nimbara
