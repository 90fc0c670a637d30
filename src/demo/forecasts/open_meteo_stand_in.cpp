#include "demo/forecasts/open_meteo_stand_in.h"

#include "base/json/json.h"
#include "base/sun_moon.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/time/calendar.h"
#include "demo/forecasts/climate_stand_in.h"
#include "demo/forecasts/nowcast_stand_in.h"
#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr int kHoursADay = 24;
constexpr int kMostDays = 16;

/// How the service prints and names a variable.
struct HourVariable {
  std::string_view name;
  std::string_view unit;
  int decimals;
  double (*value)(DemoWeather const&);
};

constexpr HourVariable kHourVariables[] = {
    {"temperature_2m", "°C", 1, [](DemoWeather const& w) { return w.temperature; }},
    {"relative_humidity_2m", "%", 0, [](DemoWeather const& w) { return w.humidity; }},
    {"apparent_temperature", "°C", 1, [](DemoWeather const& w) { return w.apparentTemperature; }},
    {"dew_point_2m", "°C", 1, [](DemoWeather const& w) { return w.dewPoint; }},
    {"weather_code", "wmo code", 0, [](DemoWeather const& w) { return double(w.weatherCode); }},
    {"cloud_cover", "%", 0, [](DemoWeather const& w) { return w.cloudCover; }},
    {"precipitation_probability", "%", 0, [](DemoWeather const& w) { return w.precipitationProbability; }},
    {"precipitation", "mm", 2, [](DemoWeather const& w) { return w.precipitation; }},
    {"snowfall", "cm", 2, [](DemoWeather const& w) { return w.snowfall; }},
    {"wind_speed_10m", "km/h", 1, [](DemoWeather const& w) { return w.windSpeed; }},
    {"wind_direction_10m", "°", 0, [](DemoWeather const& w) { return w.windDirection; }},
    {"wind_gusts_10m", "km/h", 1, [](DemoWeather const& w) { return w.windGusts; }},
    {"pressure_msl", "hPa", 1, [](DemoWeather const& w) { return w.pressure; }},
    {"visibility", "m", 0, [](DemoWeather const& w) { return w.visibility; }},
    {"uv_index", "", 2, [](DemoWeather const& w) { return w.uvIndex; }},
    {"is_day", "", 0, [](DemoWeather const& w) { return w.isDay ? 1.0 : 0.0; }},
};

using Day = std::vector<DemoWeather>;

double highest(Day const& day, double (*value)(DemoWeather const&)) {
  return value(*std::ranges::max_element(day, {}, value));
}

double lowest(Day const& day, double (*value)(DemoWeather const&)) {
  return value(*std::ranges::min_element(day, {}, value));
}

double sum(Day const& day, double (*value)(DemoWeather const&)) {
  double total = 0;
  for (DemoWeather const& hour : day) total += value(hour);
  return total;
}

struct DayVariable {
  std::string_view name;
  std::string_view unit;
  int decimals;
  double (*value)(Day const&);
};

double temperatureOf(DemoWeather const& w) {
  return w.temperature;
}
double apparentOf(DemoWeather const& w) {
  return w.apparentTemperature;
}

constexpr DayVariable kDayVariables[] = {
    {"weather_code", "wmo code", 0,
     [](Day const& d) { return highest(d, [](DemoWeather const& w) { return double(w.weatherCode); }); }},
    {"temperature_2m_max", "°C", 1, [](Day const& d) { return highest(d, temperatureOf); }},
    {"temperature_2m_min", "°C", 1, [](Day const& d) { return lowest(d, temperatureOf); }},
    {"apparent_temperature_max", "°C", 1, [](Day const& d) { return highest(d, apparentOf); }},
    {"apparent_temperature_min", "°C", 1, [](Day const& d) { return lowest(d, apparentOf); }},
    {"uv_index_max", "", 2,
     [](Day const& d) { return highest(d, [](DemoWeather const& w) { return w.uvIndex; }); }},
    {"precipitation_sum", "mm", 2,
     [](Day const& d) { return sum(d, [](DemoWeather const& w) { return w.precipitation; }); }},
    {"precipitation_probability_max", "%", 0,
     [](Day const& d) {
       return highest(d, [](DemoWeather const& w) { return w.precipitationProbability; });
     }},
    {"snowfall_sum", "cm", 2,
     [](Day const& d) { return sum(d, [](DemoWeather const& w) { return w.snowfall; }); }},
    {"wind_speed_10m_max", "km/h", 1,
     [](Day const& d) { return highest(d, [](DemoWeather const& w) { return w.windSpeed; }); }},
    {"wind_direction_10m_dominant", "°", 0, [](Day const& d) { return d[kHoursADay / 2].windDirection; }},
};

constexpr std::string_view kSunVariables[] = {"sunrise", "sunset"};

DemoAnswer refusal(std::string const& reason) {
  JsonWriter writer;
  writer.beginObject();
  writer.member("error", true);
  writer.member("reason", reason);
  writer.endObject();
  return {400, writer.take(), {}};
}

/// A request that has been found answerable.
struct ForecastQuery {
  Coordinate place;
  std::vector<std::string_view> current, hourly, daily;
  int days = 7;
};

template <class Table>
auto const* findRow(Table const& table, std::string_view name) {
  auto const row = std::ranges::find_if(table, [name](auto const& entry) { return entry.name == name; });
  return row == std::ranges::end(table) ? nullptr : &*row;
}

std::vector<std::string_view> listOf(std::string_view text) {
  return text.empty() ? std::vector<std::string_view>{} : split(text, ',');
}

std::optional<std::string_view> unknownVariable(ForecastQuery const& query) {
  for (auto const* const list : {&query.current, &query.hourly}) {
    for (auto const name : *list) {
      if (findRow(kHourVariables, name) == nullptr) return name;
    }
  }
  for (auto const name : query.daily) {
    if (findRow(kDayVariables, name) == nullptr &&
        std::ranges::find(kSunVariables, name) == std::end(kSunVariables)) {
      return name;
    }
  }
  return std::nullopt;
}

/// One answer in the making: the answer's fixed offset and the members written so far.
class ForecastWriter {
 public:
  ForecastWriter(ForecastQuery const& query, Instant now)
      : query_(query),
        zone_(demoTimeZone(query.place)),
        offset_(Calendar::forZone(zone_).value_or(Calendar::utc()).offset(now)),
        now_(now),
        firstDay_(std::chrono::floor<days>(local(now))) {}

  std::string write() {
    json_.beginObject();
    // The grid cell, which is not quite the place that was asked for.
    json_.member("latitude", std::round(query_.place.latitude * 16) / 16);
    json_.member("longitude", std::round(query_.place.longitude * 16) / 16);
    json_.member("generationtime_ms", 0.25);
    json_.member("utc_offset_seconds", offset_.count());
    json_.member("timezone", zone_);
    json_.member("timezone_abbreviation", abbreviation());
    json_.member("elevation", 38.0);
    if (!query_.current.empty()) writeCurrent();
    if (!query_.hourly.empty()) writeHourly();
    if (!query_.daily.empty()) writeDaily();
    json_.endObject();
    return json_.take();
  }

 private:
  LocalTime local(Instant instant) const {
    return LocalTime(std::chrono::floor<seconds>(instant).time_since_epoch() + offset_);
  }
  Instant instant(LocalTime time) const { return Instant(time.time_since_epoch() - offset_); }

  std::string abbreviation() const {
    auto const wholeHours = std::chrono::duration_cast<hours>(offset_).count();
    if (wholeHours == 0) return "GMT";
    return (wholeHours > 0 ? "GMT+" : "GMT") + std::to_string(wholeHours);
  }

  void number(double value, int decimals) {
    double const scale = std::pow(10.0, decimals);
    json_.value(std::round(value * scale) / scale);
  }

  template <class Values>
  void list(std::string_view key, Values const& values, auto write) {
    json_.key(key);
    json_.beginList();
    for (auto const& value : values) {
      json_.separate();
      write(value);
    }
    json_.endList();
  }

  void unitsOf(std::string_view key, std::vector<std::string_view> const& names, bool isCurrent) {
    json_.key(key);
    json_.beginObject();
    json_.member("time", "iso8601");
    if (isCurrent) json_.member("interval", "seconds");
    for (auto const name : names) {
      auto const* const hour = findRow(kHourVariables, name);
      auto const* const day = findRow(kDayVariables, name);
      json_.member(name, hour != nullptr  ? hour->unit
                         : day != nullptr ? day->unit
                                          : std::string_view("iso8601"));
    }
    json_.endObject();
  }

  void writeCurrent() {
    LocalTime const quarter = std::chrono::floor<std::chrono::duration<long, std::ratio<900>>>(local(now_));
    DemoWeather const weather = demoWeather(query_.place, instant(quarter));
    unitsOf("current_units", query_.current, true);
    json_.key("current");
    json_.beginObject();
    json_.member("time", formatLocalTime(quarter));
    json_.member("interval", 900);
    for (auto const name : query_.current) {
      auto const* const variable = findRow(kHourVariables, name);
      json_.key(name);
      number(variable->value(weather), variable->decimals);
    }
    json_.endObject();
  }

  Day const& day(int index) {
    while (static_cast<int>(weather_.size()) <= index) {
      Day& hoursOfDay = weather_.emplace_back();
      LocalTime const midnight = firstDay_ + days(weather_.size() - 1);
      for (int hour = 0; hour < kHoursADay; ++hour) {
        hoursOfDay.push_back(demoWeather(query_.place, instant(midnight + hours(hour))));
      }
    }
    return weather_[static_cast<std::size_t>(index)];
  }

  Day allHours() {
    Day all;
    for (int i = 0; i < query_.days; ++i) all.insert(all.end(), day(i).begin(), day(i).end());
    return all;
  }

  void writeHourly() {
    Day const all = allHours();
    unitsOf("hourly_units", query_.hourly, false);
    json_.key("hourly");
    json_.beginObject();
    LocalTime time = firstDay_;
    list("time", all, [&](DemoWeather const&) {
      json_.value(formatLocalTime(time));
      time += hours(1);
    });
    for (auto const name : query_.hourly) {
      auto const* const variable = findRow(kHourVariables, name);
      list(name, all,
           [&](DemoWeather const& weather) { number(variable->value(weather), variable->decimals); });
    }
    json_.endObject();
  }

  void writeDaily() {
    std::vector<int> indices(static_cast<std::size_t>(query_.days));
    for (int i = 0; i < query_.days; ++i) indices[static_cast<std::size_t>(i)] = i;
    unitsOf("daily_units", query_.daily, false);
    json_.key("daily");
    json_.beginObject();
    list("time", indices, [&](int i) { json_.value(formatDate(Date(firstDay_ + days(i)))); });
    for (auto const name : query_.daily) {
      if (auto const* const variable = findRow(kDayVariables, name)) {
        list(name, indices, [&](int i) { number(variable->value(day(i)), variable->decimals); });
      } else {
        list(name, indices, [&](int i) { json_.value(formatLocalTime(sunTime(i, name == "sunrise"))); });
      }
    }
    json_.endObject();
  }

  /// In polar night both stand at the day's begin, in polar day at its begin and end.
  LocalTime sunTime(int index, bool rise) const {
    LocalTime const midnight = firstDay_ + days(index);
    RiseSet const sun = sunRiseSet(instant(midnight), instant(midnight + days(1)), query_.place);
    auto const& event = rise ? sun.rise : sun.set;
    if (event) return local(*event);
    return !rise && sun.alwaysUp ? midnight + days(1) : midnight;
  }

  ForecastQuery const& query_;
  std::string zone_;
  seconds offset_;
  Instant now_;
  std::chrono::local_days firstDay_;
  std::vector<Day> weather_;
  JsonWriter json_;
};

/// Of many places at once: hours from the present one on, in unix time.
DemoAnswer openMeteoGrid(DemoRequest const& asked, Instant now) {
  constexpr int kMostHours = 384;
  std::string const latitudeText = asked.query("latitude"), longitudeText = asked.query("longitude");
  auto const latitudes = split(latitudeText, ','), longitudes = split(longitudeText, ',');
  std::string const hourly = asked.query("hourly");
  auto const variables = listOf(hourly);
  int const count = std::clamp(parseInteger(asked.query("forecast_hours")).value_or(0), 1, kMostHours);
  if (latitudes.size() != longitudes.size())
    return refusal("Parameter 'latitude' and 'longitude' must have the same number of elements");
  Instant const first = std::chrono::floor<hours>(now);
  JsonWriter json;
  json.beginList();
  for (std::size_t i = 0; i < latitudes.size(); ++i) {
    auto const place = demoCoordinate(latitudes[i], longitudes[i]);
    if (!place) return refusal("Latitude must be in range of -90 to 90°.");
    Day weather;
    weather.reserve(static_cast<std::size_t>(count));
    for (int hour = 0; hour < count; ++hour)
      weather.push_back(demoWeather(asked.answeredPlace(*place), first + hours(hour)));
    json.separate();
    json.beginObject();
    json.member("latitude", place->latitude);
    json.member("longitude", place->longitude);
    json.member("utc_offset_seconds", 0);
    json.key("hourly");
    json.beginObject();
    json.key("time");
    json.beginList();
    for (int hour = 0; hour < count; ++hour) {
      json.separate();
      json.value(static_cast<std::int64_t>(
          std::chrono::floor<seconds>(first + hours(hour)).time_since_epoch().count()));
    }
    json.endList();
    for (auto const name : variables) {
      auto const* const variable = findRow(kHourVariables, name);
      if (variable == nullptr)
        return refusal("Cannot initialize variable from invalid String value " + oneLine(name, 40) + ".");
      json.key(name);
      json.beginList();
      for (DemoWeather const& hour : weather) {
        double const scale = std::pow(10.0, variable->decimals);
        json.separate();
        json.value(std::round(variable->value(hour) * scale) / scale);
      }
      json.endList();
    }
    json.endObject();
    json.endObject();
  }
  json.endList();
  return {200, json.take(), {}};
}

std::string rangeReason(std::string_view name, std::string_view range, std::string const& given) {
  return std::string(name) + " must be in range of " + std::string(range) +
         "°. Given: " + oneLine(given, 20) + ".";
}

}  // namespace

DemoAnswer openMeteoForecast(DemoRequest const& asked, Instant now) {
  DemoLookup const& query = asked.query;
  if (!query("past_days").empty()) return openMeteoPastDays(asked, now);
  if (!query("minutely_15").empty()) return openMeteoQuarters(asked, now);
  if (query("latitude").contains(',')) return openMeteoGrid(asked, now);
  auto const latitude = parseDouble(query("latitude"));
  auto const longitude = parseDouble(query("longitude"));
  if (!latitude || std::abs(*latitude) > 90)
    return refusal(rangeReason("Latitude", "-90 to 90", query("latitude")));
  if (!longitude || std::abs(*longitude) > 180) {
    return refusal(rangeReason("Longitude", "-180 to 180", query("longitude")));
  }
  std::string const current = query("current");
  std::string const hourly = query("hourly");
  std::string const daily = query("daily");
  std::string const dayCount = query("forecast_days");
  ForecastQuery request{asked.answeredPlace({*latitude, *longitude}), listOf(current), listOf(hourly),
                        listOf(daily), 7};
  if (auto const name = unknownVariable(request)) {
    return refusal("Cannot initialize variable from invalid String value " + oneLine(*name, 40) + ".");
  }
  if (!dayCount.empty()) request.days = parseInteger(dayCount).value_or(0);
  if (request.days < 1 || request.days > kMostDays) {
    return refusal("Forecast days is invalid. Allowed range 1 to 16. Given " + oneLine(dayCount, 20) + ".");
  }
  return {200, ForecastWriter(request, now).write(), {}};
}

DemoAnswer openMeteoSearch(DemoRequest const& request, Instant) {
  DemoLookup const& query = request.query;
  auto const count = static_cast<std::size_t>(std::clamp(parseInteger(query("count")).value_or(10), 1, 100));
  auto const found = findDemoPlaces(query("name"), count);
  JsonWriter json;
  json.beginObject();
  if (!found.empty()) {
    json.key("results");
    json.beginList();
    for (DemoPlace const* const place : found) {
      json.separate();
      json.beginObject();
      json.member("id", place->id);
      json.member("name", place->name);
      json.member("latitude", place->coordinate.latitude);
      json.member("longitude", place->coordinate.longitude);
      json.member("feature_code", "PPL");
      json.member("country_code", place->countryCode);
      json.member("timezone", place->timeZone);
      json.member("population", place->population);
      json.member("country", place->country);
      if (!place->region.empty()) json.member("admin1", place->region);
      json.endObject();
    }
    json.endList();
  }
  json.member("generationtime_ms", 0.5);
  json.endObject();
  return {200, json.take(), {}};
}

}  // namespace nimbara
