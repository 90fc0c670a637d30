#include "demo/forecasts/nowcast_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/time/http_date.h"
#include "demo/world/demo_condition.h"
#include "demo/world/demo_weather.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::minutes;

constexpr minutes kFrame{5};
constexpr minutes kQuarter{15};
constexpr int kMetSteps = 23;
constexpr std::string_view kMetCountries[] = {"NO", "SE", "FI", "DK"};

Instant flooredTo(minutes step, Instant instant) {
  auto const since = instant.time_since_epoch();
  return Instant(since - since % step);
}

/// mm/h at the middle of a step: the same rain that the forecast has by the hour.
DemoWeather weatherIn(Coordinate place, Instant from, minutes step) {
  return demoWeather(place, from + step / 2);
}

double roundedTo(int decimals, double value) {
  double const scale = std::pow(10.0, decimals);
  return std::round(value * scale) / scale;
}

/// There is one of each.
std::string_view coverageAt(Coordinate place) {
  constexpr double kNorthernmost = 69;
  constexpr double kEasternmost = 25;
  if (place.latitude < kNorthernmost) return "ok";
  return place.longitude < kEasternmost ? "temporarily unavailable" : "no coverage";
}

void writeMetStep(JsonWriter& json, Coordinate place, Instant time, bool isFirst) {
  DemoWeather const weather = weatherIn(place, time, kFrame);
  json.separate();
  json.beginObject();
  json.member("time", time);
  json.key("data");
  json.beginObject();
  json.key("instant");
  json.beginObject();
  json.key("details");
  json.beginObject();
  if (isFirst) json.member("air_temperature", roundedTo(1, weather.temperature));
  if (coverageAt(place) == "ok") json.member("precipitation_rate", roundedTo(2, weather.precipitation));
  json.endObject();
  json.endObject();
  if (isFirst) {
    json.key("next_1_hours");
    json.beginObject();
    json.key("summary");
    json.beginObject();
    DemoCondition const& condition = demoCondition(weather.weatherCode);
    json.member("symbol_code", std::string(condition.metSymbol) + (!condition.metHasDayForms ? ""
                                                                   : weather.isDay           ? "_day"
                                                                                             : "_night"));
    json.endObject();
    json.endObject();
  }
  json.endObject();
  json.endObject();
}

std::string metBody(Coordinate place, Instant begin) {
  JsonWriter json;
  json.beginObject();
  json.member("type", "Feature");
  json.key("properties");
  json.beginObject();
  json.key("meta");
  json.beginObject();
  json.member("updated_at", begin);
  json.member("radar_coverage", coverageAt(place));
  json.endObject();
  json.key("timeseries");
  json.beginList();
  for (int i = 0; i < kMetSteps; ++i) writeMetStep(json, place, begin + i * kFrame, i == 0);
  json.endList();
  json.endObject();
  json.endObject();
  return json.take();
}

/// Nine cells around the place, which have its rain.
void writeFrame(JsonWriter& json, Coordinate place, Instant end) {
  constexpr double kMmPerHour = 0.12;
  auto const value = static_cast<std::int64_t>(
      std::lround(weatherIn(place, end - kFrame, kFrame).precipitation / kMmPerHour));
  json.separate();
  json.beginObject();
  json.member("timestamp", end);
  json.member("source", "DEMO::RV::" + formatIso8601(end));
  json.member("precipitation_5", std::vector<std::vector<std::int64_t>>(3, {value, value, value}));
  json.endObject();
}

}  // namespace

DemoAnswer metNorwayNowcast(DemoRequest const& request, Instant now) {
  if (request.header("User-Agent").empty()) return {403, "<h1>403 Forbidden</h1>", {}};
  auto const asked = demoCoordinate(request.query("lat"), request.query("lon"));
  if (!asked) return {400, "lat and lon are required", {}};
  bool const isCovered =
      std::ranges::find(kMetCountries, describePlace(*asked).countryCode) != std::end(kMetCountries);
  if (!isCovered) return {422, R"({"error":"outside the area of the nowcast"})", {}};
  Instant const begin = flooredTo(kFrame, now);
  return {200,
          metBody(request.answeredPlace(*asked), begin),
          {{"Date", formatHttpDate(now)}, {"Expires", formatHttpDate(begin + kFrame)}}};
}

DemoAnswer brightSkyRadar(DemoRequest const& request, Instant now) {
  auto const asked = demoCoordinate(request.query("lat"), request.query("lon"));
  if (!asked) return {422, R"({"detail":"lat and lon are wanted"})", {}};
  bool const isCovered = asked->latitude >= 45.7 && asked->latitude <= 55.8 && asked->longitude >= 3.6 &&
                         asked->longitude <= 16.5;
  if (!isCovered) return {404, R"({"detail":"lat/lon lies outside the radar data range"})", {}};
  if (request.query("format") != "plain") return {400, R"({"detail":"only plain is served"})", {}};
  Instant const newest = flooredTo(kFrame, now) + std::chrono::hours(2);
  Instant const first = parseIso8601(request.query("date")).value_or(newest - std::chrono::hours(3));
  Instant const last = parseIso8601(request.query("last_date")).value_or(first + std::chrono::hours(2));
  JsonWriter json;
  json.beginObject();
  json.key("radar");
  json.beginList();
  Instant const oldest = newest - std::chrono::hours(8);
  for (Instant end = std::max(flooredTo(kFrame, first), oldest); end <= std::min(last, newest); end += kFrame)
    writeFrame(json, request.answeredPlace(*asked), end);
  json.endList();
  json.key("latlon_position");
  json.beginObject();
  json.member("x", 1.2);
  json.member("y", 0.9);
  json.endObject();
  json.endObject();
  return {200, json.take(), {}};
}

DemoAnswer openMeteoQuarters(DemoRequest const& request, Instant now) {
  constexpr int kMost = 96;
  constexpr double kStepsAnHour = 4;
  auto const asked = demoCoordinate(request.query("latitude"), request.query("longitude"));
  int const count = parseInteger(request.query("forecast_minutely_15")).value_or(kMost);
  if (!asked || count < 1 || count > kMost || request.query("timeformat") != "unixtime")
    return {400, R"({"error":true,"reason":"The request cannot be served."})", {}};
  Coordinate const place = request.answeredPlace(*asked);
  std::vector<std::int64_t> times;
  std::vector<double> amounts, rain, snow;
  std::vector<int> codes;
  Instant end = flooredTo(kQuarter, now);
  for (int i = 0; i < count; ++i, end += kQuarter) {
    DemoWeather const weather = weatherIn(place, end - kQuarter, kQuarter);
    bool const isSnow = weather.snowfall > 0;
    times.push_back(std::chrono::floor<std::chrono::seconds>(end).time_since_epoch().count());
    amounts.push_back(roundedTo(2, weather.precipitation / kStepsAnHour));
    rain.push_back(isSnow ? 0 : amounts.back());
    snow.push_back(roundedTo(2, weather.snowfall / kStepsAnHour));
    codes.push_back(weather.weatherCode);
  }
  JsonWriter json;
  json.beginObject();
  json.member("latitude", place.latitude);
  json.member("longitude", place.longitude);
  json.member("utc_offset_seconds", 0);
  json.key("minutely_15");
  json.beginObject();
  json.member("time", times);
  json.member("precipitation", amounts);
  json.member("rain", rain);
  json.member("snowfall", snow);
  json.member("weather_code", codes);
  json.endObject();
  json.endObject();
  return {200, json.take(), {}};
}

}  // namespace nimbara
