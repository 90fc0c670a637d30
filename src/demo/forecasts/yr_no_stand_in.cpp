#include "demo/forecasts/yr_no_stand_in.h"

#include "base/json/json.h"
#include "base/time/http_date.h"
#include "demo/world/demo_condition.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr hours kHourlySpan{60};
constexpr hours kWholeSpan{9 * 24};
constexpr int kLongStep = 6;
constexpr int kLookAhead = 12;
constexpr std::size_t kMostDecimals = 4;

struct Variable {
  std::string_view name;
  double (*value)(DemoWeather const&);
};

constexpr Variable kVariables[] = {
    {"air_pressure_at_sea_level", [](DemoWeather const& w) { return w.pressure; }},
    {"air_temperature", [](DemoWeather const& w) { return w.temperature; }},
    {"cloud_area_fraction", [](DemoWeather const& w) { return w.cloudCover; }},
    {"dew_point_temperature", [](DemoWeather const& w) { return w.dewPoint; }},
    {"fog_area_fraction", [](DemoWeather const& w) { return w.visibility < 1000 ? 100.0 : 0.0; }},
    {"relative_humidity", [](DemoWeather const& w) { return w.humidity; }},
    {"ultraviolet_index_clear_sky", [](DemoWeather const& w) { return w.uvIndex; }},
    {"wind_from_direction", [](DemoWeather const& w) { return w.windDirection; }},
    {"wind_speed", [](DemoWeather const& w) { return w.windSpeed / 3.6; }},
    {"wind_speed_of_gust", [](DemoWeather const& w) { return w.windGusts / 3.6; }},
};

double oneDecimal(double value) {
  return std::round(value * 10) / 10;
}

/// What the hours from a step on bring.
class Period {
 public:
  Period(Coordinate place, Instant begin, int length) {
    for (int i = 0; i < length; ++i) hours_.push_back(demoWeather(place, begin + hours(i)));
  }

  double sum() const {
    double total = 0;
    for (DemoWeather const& hour : hours_) total += hour.precipitation;
    return total;
  }
  double highest(double DemoWeather::* value) const {
    return (*std::ranges::max_element(hours_, {}, value)).*value;
  }
  double lowest(double DemoWeather::* value) const {
    return (*std::ranges::min_element(hours_, {}, value)).*value;
  }
  /// That of the most severe hour, by day or by night as it begins.
  std::string symbol() const {
    DemoCondition const& gravest =
        demoCondition(std::ranges::max_element(hours_, {}, &DemoWeather::weatherCode)->weatherCode);
    std::string const suffix = hours_.front().isDay ? "_day" : "_night";
    return std::string(gravest.metSymbol) + (gravest.metHasDayForms ? suffix : "");
  }

 private:
  std::vector<DemoWeather> hours_;
};

class StepWriter {
 public:
  StepWriter(JsonWriter& json, Coordinate place) : json_(json), place_(place) {}

  void write(Instant time, bool isHourly, bool isLast) {
    json_.separate();
    json_.beginObject();
    json_.member("time", time);
    json_.key("data");
    json_.beginObject();
    writeInstant(time);
    if (!isLast) {
      writePeriod("next_12_hours", time, kLookAhead);
      if (isHourly) writePeriod("next_1_hours", time, 1);
      writePeriod("next_6_hours", time, kLongStep);
    }
    json_.endObject();
    json_.endObject();
  }

 private:
  void writeInstant(Instant time) {
    DemoWeather const weather = demoWeather(place_, time);
    json_.key("instant");
    json_.beginObject();
    json_.key("details");
    json_.beginObject();
    for (Variable const& variable : kVariables)
      json_.member(variable.name, oneDecimal(variable.value(weather)));
    json_.endObject();
    json_.endObject();
  }

  void writePeriod(std::string_view key, Instant time, int length) {
    Period const period(place_, time, length);
    json_.key(key);
    json_.beginObject();
    json_.key("summary");
    json_.beginObject();
    json_.member("symbol_code", period.symbol());
    json_.endObject();
    json_.key("details");
    json_.beginObject();
    if (length == kLongStep) {
      json_.member("air_temperature_max", oneDecimal(period.highest(&DemoWeather::temperature)));
      json_.member("air_temperature_min", oneDecimal(period.lowest(&DemoWeather::temperature)));
    }
    if (length < kLookAhead) json_.member("precipitation_amount", oneDecimal(period.sum()));
    json_.member("probability_of_precipitation",
                 oneDecimal(period.highest(&DemoWeather::precipitationProbability)));
    json_.endObject();
    json_.endObject();
  }

  JsonWriter& json_;
  Coordinate place_;
};

void writeUnits(JsonWriter& json) {
  json.key("units");
  json.beginObject();
  for (auto const& [name, unit] :
       {std::pair{"air_temperature", "celsius"}, std::pair{"precipitation_amount", "mm"},
        std::pair{"wind_speed", "m/s"}, std::pair{"air_pressure_at_sea_level", "hPa"}}) {
    json.member(name, unit);
  }
  json.endObject();
}

void writeSteps(JsonWriter& json, Coordinate place, Instant begin) {
  StepWriter steps(json, place);
  Instant const end = std::chrono::floor<std::chrono::days>(begin + kWholeSpan);
  Instant time = begin;
  while (time <= end) {
    // The long steps stand on the synoptic hours.
    bool const isHourly = time < begin + kHourlySpan ||
                          (time - std::chrono::floor<std::chrono::days>(time)) % hours(kLongStep) != hours(0);
    steps.write(time, isHourly, time == end);
    time += hours(isHourly ? 1 : kLongStep);
  }
}

std::string forecastBody(Coordinate place, Instant begin) {
  JsonWriter json;
  json.beginObject();
  json.member("type", "Feature");
  json.key("geometry");
  json.beginObject();
  json.member("type", "Point");
  json.member("coordinates", std::vector<double>{place.longitude, place.latitude, 38});
  json.endObject();
  json.key("properties");
  json.beginObject();
  json.key("meta");
  json.beginObject();
  json.member("updated_at", begin);
  writeUnits(json);
  json.endObject();
  json.key("timeseries");
  json.beginList();
  writeSteps(json, place, begin);
  json.endList();
  json.endObject();
  json.endObject();
  return json.take();
}

bool hasTooManyDecimals(std::string_view number) {
  auto const point = number.find('.');
  return point != std::string_view::npos && number.size() - point - 1 > kMostDecimals;
}

}  // namespace

DemoAnswer yrNoForecast(DemoRequest const& request, Instant now) {
  std::string const latitude = request.query("lat");
  std::string const longitude = request.query("lon");
  bool const refused =
      request.header("User-Agent").empty() || hasTooManyDecimals(latitude) || hasTooManyDecimals(longitude);
  if (refused) return {403, "<h1>403 Forbidden</h1>", {}};
  auto const asked = demoCoordinate(latitude, longitude);
  if (!asked) return {400, "lat and lon are required", {}};
  Instant const hour = std::chrono::floor<hours>(now);
  std::string const modified = formatHttpDate(hour);
  DemoAnswer answer{200,
                    {},
                    {{"Date", formatHttpDate(now)},
                     {"Expires", formatHttpDate(hour + hours(1))},
                     {"Last-Modified", modified}}};
  if (request.header("If-Modified-Since") == modified) {
    answer.status = 304;
  } else {
    answer.body = forecastBody(request.answeredPlace(*asked), hour);
  }
  return answer;
}

}  // namespace nimbara
