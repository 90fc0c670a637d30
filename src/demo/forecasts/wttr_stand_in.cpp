#include "demo/forecasts/wttr_stand_in.h"

#include "base/json/json.h"
#include "base/sun_moon.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/time/calendar.h"
#include "base/units.h"
#include "demo/world/demo_condition.h"
#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr int kDays = 3;
constexpr int kHoursAnEntry = 3;
constexpr std::array<std::string_view, 16> kPoints{"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE",
                                                   "S", "SSW", "SW", "WSW", "W", "WNW", "NW", "NNW"};

std::string celsius(double value) {
  return roundedText(value);
}
std::string fahrenheit(double value) {
  return roundedText(fahrenheitFromCelsius(value));
}

struct Variable {
  std::string_view key;
  std::string (*text)(DemoWeather const&);
};

/// What the present and the entries have alike.
constexpr Variable kShared[] = {
    {"FeelsLikeC", [](DemoWeather const& w) { return celsius(w.apparentTemperature); }},
    {"FeelsLikeF", [](DemoWeather const& w) { return fahrenheit(w.apparentTemperature); }},
    {"cloudcover", [](DemoWeather const& w) { return roundedText(w.cloudCover); }},
    {"humidity", [](DemoWeather const& w) { return roundedText(w.humidity); }},
    {"pressure", [](DemoWeather const& w) { return roundedText(w.pressure); }},
    {"uvIndex", [](DemoWeather const& w) { return roundedText(w.uvIndex); }},
    {"visibility", [](DemoWeather const& w) { return roundedText(w.visibility / 1000); }},
    {"weatherCode", [](DemoWeather const& w) { return std::string(demoCondition(w.weatherCode).wwo); }},
    {"winddirDegree", [](DemoWeather const& w) { return roundedText(w.windDirection); }},
    {"winddir16Point",
     [](DemoWeather const& w) {
       return std::string(
           kPoints[static_cast<std::size_t>((w.windDirection + 11.25) / 22.5) % kPoints.size()]);
     }},
    {"windspeedKmph", [](DemoWeather const& w) { return roundedText(w.windSpeed); }},
    {"windspeedMiles", [](DemoWeather const& w) { return roundedText(convert(w.windSpeed, WindUnit::mph)); }},
};

constexpr Variable kOfPresent[] = {
    {"temp_C", [](DemoWeather const& w) { return celsius(w.temperature); }},
    {"temp_F", [](DemoWeather const& w) { return fahrenheit(w.temperature); }},
    {"precipMM", [](DemoWeather const& w) { return fixedDecimal(w.precipitation, 1); }},
};

constexpr Variable kOfEntry[] = {
    {"tempC", [](DemoWeather const& w) { return celsius(w.temperature); }},
    {"tempF", [](DemoWeather const& w) { return fahrenheit(w.temperature); }},
    {"DewPointC", [](DemoWeather const& w) { return celsius(w.dewPoint); }},
    {"DewPointF", [](DemoWeather const& w) { return fahrenheit(w.dewPoint); }},
    {"WindGustKmph", [](DemoWeather const& w) { return roundedText(w.windGusts); }},
    {"chanceofrain",
     [](DemoWeather const& w) { return w.snowfall > 0 ? "0" : roundedText(w.precipitationProbability); }},
    {"chanceofsnow",
     [](DemoWeather const& w) { return w.snowfall > 0 ? roundedText(w.precipitationProbability) : "0"; }},
    {"chanceofthunder", [](DemoWeather const& w) { return std::string(w.weatherCode >= 95 ? "80" : "0"); }},
    {"chanceoffog", [](DemoWeather const& w) { return std::string(w.visibility < 1000 ? "90" : "0"); }},
    {"chanceofsunshine", [](DemoWeather const& w) { return roundedText(100 - w.cloudCover); }},
};

template <std::size_t count>
void writeTexts(JsonWriter& json, Variable const (&variables)[count], DemoWeather const& weather) {
  for (Variable const& variable : variables) json.member(variable.key, variable.text(weather));
}

void writeValue(JsonWriter& json, std::string_view key, std::string_view value) {
  json.key(key);
  json.beginList();
  json.separate();
  json.beginObject();
  json.member("value", value);
  json.endObject();
  json.endList();
}

class AnswerWriter {
 public:
  AnswerWriter(Coordinate place, Instant now)
      : place_(place),
        now_(now),
        calendar_(Calendar::forZone(demoTimeZone(place)).value_or(Calendar::utc())) {}

  std::string write() {
    json_.beginObject();
    list("current_condition", 1, [this](int) { writePresent(); });
    list("nearest_area", 1, [this](int) { writeArea(); });
    list("weather", kDays, [this](int day) { writeDay(addDays(calendar_.day(now_), day)); });
    json_.endObject();
    return json_.take();
  }

 private:
  void list(std::string_view key, int count, auto const& writeMembers) {
    json_.key(key);
    json_.beginList();
    for (int i = 0; i < count; ++i) {
      json_.separate();
      json_.beginObject();
      writeMembers(i);
      json_.endObject();
    }
    json_.endList();
  }

  void writeShared(DemoWeather const& weather) {
    writeTexts(json_, kShared, weather);
    writeValue(json_, "weatherDesc", demoCondition(weather.weatherCode).description);
    writeValue(json_, "weatherIconUrl", "");
  }

  void writePresent() {
    DemoWeather const weather = demoWeather(place_, now_);
    LocalTime const local = calendar_.local(now_);
    json_.member("localObsDateTime", formatDate(calendar_.day(now_)) + " " + formatClock12(local));
    json_.member("observation_time", formatClock12(Calendar::utc().local(now_)));
    writeTexts(json_, kOfPresent, weather);
    writeShared(weather);
  }

  void writeArea() {
    auto const distance = [this](DemoPlace const& known) { return haversineKm(known.coordinate, place_); };
    DemoPlace const& town = *std::ranges::min_element(demoPlaces(), {}, distance);
    writeValue(json_, "areaName", town.name);
    writeValue(json_, "country", town.country);
    writeValue(json_, "region", town.region);
    json_.member("latitude", fixedDecimal(place_.latitude, 3));
    json_.member("longitude", fixedDecimal(place_.longitude, 3));
    json_.member("population", std::to_string(town.population));
  }

  void writeEntry(Date date, int hour) {
    Instant const begin = calendar_.instant(std::chrono::local_days(date) + hours(hour));
    DemoWeather const weather = demoWeather(place_, begin);
    double amount = 0;
    for (int i = 0; i < kHoursAnEntry; ++i) amount += demoWeather(place_, begin + hours(i)).precipitation;
    json_.member("time", std::to_string(hour * 100));
    json_.member("precipMM", fixedDecimal(amount, 1));
    writeTexts(json_, kOfEntry, weather);
    writeShared(weather);
  }

  void writeAstronomy(Instant begin, Instant end) {
    RiseSet const sun = sunRiseSet(begin, end, place_);
    RiseSet const moon = moonRiseSet(begin, end, place_);
    auto const clock = [this](std::optional<Instant> moment, std::string_view what) {
      return moment ? formatClock12(calendar_.local(*moment)) : "No " + std::string(what);
    };
    json_.member("sunrise", clock(sun.rise, "sunrise"));
    json_.member("sunset", clock(sun.set, "sunset"));
    json_.member("moonrise", clock(moon.rise, "moonrise"));
    json_.member("moonset", clock(moon.set, "moonset"));
    json_.member("moon_phase", enumName(moonPhase(begin, end)));
    json_.member("moon_illumination", roundedText(moonState(begin + (end - begin) / 2).illumination * 100));
  }

  void writeDay(Date date) {
    Instant const begin = calendar_.startOfDay(date);
    Instant const end = calendar_.startOfDay(addDays(date, 1));
    double highest = -100, lowest = 100, snow = 0, uv = 0;
    for (Instant hour = begin; hour < end; hour += hours(1)) {
      DemoWeather const weather = demoWeather(place_, hour);
      highest = std::max(highest, weather.temperature);
      lowest = std::min(lowest, weather.temperature);
      uv = std::max(uv, weather.uvIndex);
      snow += weather.snowfall;
    }
    json_.member("date", formatDate(date));
    writeExtremes(highest, lowest);
    json_.member("totalSnow_cm", fixedDecimal(snow, 1));
    json_.member("uvIndex", roundedText(uv));
    list("astronomy", 1, [&](int) { writeAstronomy(begin, end); });
    list("hourly", 24 / kHoursAnEntry, [&](int i) { writeEntry(date, i * kHoursAnEntry); });
  }

  void writeExtremes(double highest, double lowest) {
    double const mean = (highest + lowest) / 2;
    for (auto const& [key, value] :
         {std::pair{"maxtemp", highest}, std::pair{"mintemp", lowest}, std::pair{"avgtemp", mean}}) {
      json_.member(std::string(key) + "C", celsius(value));
      json_.member(std::string(key) + "F", fahrenheit(value));
    }
  }

  Coordinate place_;
  Instant now_;
  Calendar calendar_;
  JsonWriter json_;
};

}  // namespace

DemoAnswer wttrForecast(DemoRequest const& request, Instant now) {
  auto const parts = split(std::string_view(request.path).substr(1), ',');
  auto const asked = parts.size() == 2 ? demoCoordinate(parts[0], parts[1]) : std::nullopt;
  if (!asked) return {200, "Unknown location; please try ~" + request.path.substr(1) + "\n", {}};
  if (request.query("format") != "j1") return {200, "Weather report: " + request.path.substr(1) + "\n", {}};
  return {200, AnswerWriter(request.answeredPlace(*asked), now).write(), {}};
}

}  // namespace nimbara
