#include "demo/forecasts/air_quality_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/time/calendar.h"
#include "demo/world/demo_draw.h"
#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::seconds;

constexpr int kMostDays = 7;
/// The model of the region ends here.
constexpr int kHoursWithValues = 97;
constexpr hours kSpell{120};

enum Stream : std::uint64_t { kBackground = 101, kHazy, kHazeStrength };

/// The town or the country around a place, as a number.
std::int64_t areaOf(Coordinate place) {
  return static_cast<std::int64_t>(std::floor(place.latitude * 2)) * 1000 +
         static_cast<std::int64_t>(std::floor(place.longitude * 2));
}

/// Grows and fades over a spell of hazy days; one spell of four is hazy.
double haze(std::int64_t area, Instant instant) {
  double const position = std::chrono::duration<double>(instant.time_since_epoch()) / kSpell;
  auto const spell = static_cast<std::int64_t>(std::floor(position));
  std::int64_t const index = area * 100'000 + spell;
  if (demoDraw(kHazy, index) > 0.25) return 0;
  return (20 + 90 * demoDraw(kHazeStrength, index)) *
         std::sin(std::numbers::pi * (position - static_cast<double>(spell)));
}

/// Highest at eight in the morning and eight in the evening of the sun's time.
double traffic(Coordinate place, Instant instant) {
  double const day = std::chrono::duration<double>(instant.time_since_epoch()) / days(1);
  double const sunHour = 24 * (day - std::floor(day)) + place.longitude / 15;
  return 0.5 + 0.5 * std::cos(2 * std::numbers::pi * (sunHour - 8) / 12);
}

struct Step {
  double concentration;
  double index;
};

double interpolated(std::span<Step const> steps, double concentration) {
  for (std::size_t i = 1; i < steps.size(); ++i) {
    auto const& [low, lowIndex] = steps[i - 1];
    auto const& [high, highIndex] = steps[i];
    if (concentration <= high) {
      return lowIndex + (concentration - low) / (high - low) * (highIndex - lowIndex);
    }
  }
  return steps.back().index;
}

double usIndex(double pm25) {
  constexpr Step kSteps[] = {{0, 0},       {9, 50},      {35.4, 100}, {55.4, 150},
                             {125.4, 200}, {225.4, 300}, {325.4, 500}};
  return std::round(interpolated(kSteps, pm25));
}

double tenths(double value) {
  return std::round(value * 10) / 10;
}

/// One hour of a place's air, in µg/m³.
struct AirMoment {
  AirMoment(Coordinate where, Instant when)
      : place(where), time(when), weather(demoWeather(where, when)), pm25(demoFineDust(where, when)) {}

  double pm10() const { return 1.6 * pm25; }
  double nitrogenDioxide() const { return 4 + 0.7 * pm25; }
  double ozone() const { return 45 + 9 * weather.uvIndex; }
  double sulphurDioxide() const { return 1 + 0.1 * pm25; }

  Coordinate place;
  Instant time;
  DemoWeather weather;
  double pm25;
};

double europeanIndex(AirMoment const& air) {
  constexpr Step kFineDust[] = {{0, 0}, {5, 20}, {15, 40}, {50, 60}, {90, 80}, {140, 100}, {1000, 444}};
  constexpr Step kDust[] = {{0, 0}, {15, 20}, {45, 40}, {120, 60}, {195, 80}, {270, 100}, {1000, 295}};
  constexpr Step kNitrogen[] = {{0, 0}, {10, 20}, {25, 40}, {60, 60}, {100, 80}, {150, 100}, {1000, 440}};
  constexpr Step kOzone[] = {{0, 0}, {60, 20}, {100, 40}, {120, 60}, {160, 80}, {180, 100}, {600, 520}};
  return std::round(std::max(
      {interpolated(kFineDust, tenths(air.pm25)), interpolated(kDust, tenths(air.pm10())),
       interpolated(kNitrogen, tenths(air.nitrogenDioxide())), interpolated(kOzone, tenths(air.ozone()))}));
}

/// From its first to its last month, grains a day's warmth sends out; none outside the region of the model
/// that knows pollen.
template <int first, int last, int most>
std::optional<double> pollen(AirMoment const& air) {
  bool const isKnown = air.place.latitude >= 30 && air.place.latitude <= 72 && air.place.longitude >= -25 &&
                       air.place.longitude <= 45;
  if (!isKnown) return std::nullopt;
  auto const month =
      static_cast<int>(static_cast<unsigned>(Date(std::chrono::floor<days>(air.time)).month()));
  if (month < first || month > last) return 0;
  double const warmth = std::clamp(air.weather.temperature / 20, 0.0, 1.5);
  return tenths(most * warmth / (1 + air.weather.precipitation));
}

struct Variable {
  std::string_view name;
  std::string_view unit;
  std::optional<double> (*value)(AirMoment const&);
};

using Number = std::optional<double>;

constexpr std::array kVariables = std::to_array<Variable>({
    {"pm2_5", "μg/m³", [](AirMoment const& air) { return Number(tenths(air.pm25)); }},
    {"pm10", "μg/m³", [](AirMoment const& air) { return Number(tenths(air.pm10())); }},
    {"nitrogen_dioxide", "μg/m³", [](AirMoment const& air) { return Number(tenths(air.nitrogenDioxide())); }},
    {"ozone", "μg/m³", [](AirMoment const& air) { return Number(tenths(air.ozone())); }},
    {"sulphur_dioxide", "μg/m³", [](AirMoment const& air) { return Number(tenths(air.sulphurDioxide())); }},
    {"us_aqi", "USAQI", [](AirMoment const& air) { return Number(usIndex(air.pm25)); }},
    {"us_aqi_pm2_5", "USAQI", [](AirMoment const& air) { return Number(usIndex(air.pm25)); }},
    {"us_aqi_pm10", "USAQI", [](AirMoment const& air) { return Number(std::round(air.pm10() * 50 / 54)); }},
    {"us_aqi_nitrogen_dioxide", "USAQI",
     [](AirMoment const& air) { return Number(std::round(air.nitrogenDioxide() / 1.88 * 50 / 53)); }},
    {"us_aqi_ozone", "USAQI",
     [](AirMoment const& air) { return Number(std::round(air.ozone() / 2 * 50 / 54)); }},
    {"us_aqi_sulphur_dioxide", "USAQI",
     [](AirMoment const& air) { return Number(std::round(air.sulphurDioxide() / 2.62 * 50 / 35)); }},
    {"european_aqi", "EAQI", [](AirMoment const& air) { return Number(europeanIndex(air)); }},
    {"uv_index", "", [](AirMoment const& air) { return Number(tenths(air.weather.uvIndex)); }},
    {"uv_index_clear_sky", "",
     [](AirMoment const& air) {
       return Number(tenths(air.weather.uvIndex / (1 - 0.7 * air.weather.cloudCover / 100)));
     }},
    {"alder_pollen", "grains/m³", &pollen<2, 3, 60>},
    {"birch_pollen", "grains/m³", &pollen<4, 5, 150>},
    {"grass_pollen", "grains/m³", &pollen<5, 8, 40>},
    {"mugwort_pollen", "grains/m³", &pollen<7, 9, 20>},
    {"olive_pollen", "grains/m³", &pollen<5, 6, 80>},
    {"ragweed_pollen", "grains/m³", &pollen<8, 9, 15>},
});

DemoAnswer refusal(std::string const& reason) {
  JsonWriter json;
  json.beginObject();
  json.member("error", true);
  json.member("reason", reason);
  json.endObject();
  return {400, json.take(), {}};
}

using Variables = std::vector<Variable const*>;

/// Nothing where one of the names is unknown.
std::optional<Variables> variablesOf(std::string const& names) {
  Variables variables;
  if (names.empty()) return variables;
  for (std::string_view const name : split(names, ',')) {
    auto const* const found = std::ranges::find(kVariables, name, &Variable::name);
    if (found == kVariables.end()) return std::nullopt;
    variables.push_back(found);
  }
  return variables;
}

void writeUnits(JsonWriter& json, std::string_view key, Variables const& variables) {
  json.key(key);
  json.beginObject();
  json.member("time", "iso8601");
  if (key.starts_with("current")) json.member("interval", "seconds");
  for (Variable const* const variable : variables) json.member(variable->name, variable->unit);
  json.endObject();
}

std::string localText(Instant instant, seconds offset) {
  return formatLocalTime(LocalTime(std::chrono::floor<seconds>(instant).time_since_epoch() + offset));
}

void writeCurrent(JsonWriter& json, Variables const& variables, Coordinate place, Instant now,
                  seconds offset) {
  Instant const hour = std::chrono::floor<hours>(now);
  AirMoment const air(place, hour);
  writeUnits(json, "current_units", variables);
  json.key("current");
  json.beginObject();
  json.member("time", localText(hour, offset));
  json.member("interval", 3600);
  for (Variable const* const variable : variables) json.memberOrNull(variable->name, variable->value(air));
  json.endObject();
}

void writeHourly(JsonWriter& json, Variables const& variables, Coordinate place, Instant begin, int count,
                 seconds offset) {
  std::vector<std::string> times;
  std::vector<std::optional<AirMoment>> air;
  for (int hour = 0; hour < count; ++hour) {
    Instant const time = begin + hours(hour);
    times.push_back(localText(time, offset));
    air.push_back(hour < kHoursWithValues ? std::optional<AirMoment>(std::in_place, place, time)
                                          : std::nullopt);
  }
  writeUnits(json, "hourly_units", variables);
  json.key("hourly");
  json.beginObject();
  json.member("time", times);
  for (Variable const* const variable : variables) {
    std::vector<std::optional<double>> values;
    values.reserve(air.size());
    for (auto const& hour : air) values.push_back(hour ? variable->value(*hour) : std::nullopt);
    json.member(variable->name, values);
  }
  json.endObject();
}

}  // namespace

double demoFineDust(Coordinate place, Instant instant) {
  std::int64_t const area = areaOf(place);
  DemoWeather const weather = demoWeather(place, instant);
  double const sources = 4 + 12 * demoDraw(kBackground, area) * (0.4 + 0.6 * traffic(place, instant));
  double const carriedOff = 1 / (1 + weather.windSpeed / 30 + weather.precipitation);
  return 1 + (sources + haze(area, instant)) * (0.3 + 0.7 * carriedOff);
}

DemoAnswer airQualityForecast(DemoRequest const& request, Instant now) {
  auto const asked = demoCoordinate(request.query("latitude"), request.query("longitude"));
  if (!asked) return refusal("Parameter 'latitude' and 'longitude' must be on the globe.");
  Coordinate const place = request.answeredPlace(*asked);
  auto const current = variablesOf(request.query("current"));
  auto const hourly = variablesOf(request.query("hourly"));
  if (!current || !hourly) return refusal("Cannot initialize variable from invalid String value.");
  std::string const dayText = request.query("forecast_days");
  int const dayCount = dayText.empty() ? 5 : parseInteger(dayText).value_or(0);
  if (dayCount < 1 || dayCount > kMostDays) return refusal("Forecast days is invalid. Allowed range 1 to 7.");
  std::string const zone = request.query("timezone") == "auto" ? demoTimeZone(place) : "GMT";
  seconds const offset = Calendar::forZone(zone).value_or(Calendar::utc()).offset(now);
  Instant const begin = std::chrono::floor<days>(now + offset) - offset;
  JsonWriter json;
  json.beginObject();
  json.member("latitude", place.latitude);
  json.member("longitude", place.longitude);
  json.member("utc_offset_seconds", offset.count());
  json.member("timezone", zone);
  if (!current->empty()) writeCurrent(json, *current, place, now, offset);
  if (!hourly->empty()) writeHourly(json, *hourly, place, begin, 24 * dayCount, offset);
  json.endObject();
  return {200, json.take(), {}};
}

}  // namespace nimbara
