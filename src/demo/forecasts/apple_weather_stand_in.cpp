#include "demo/forecasts/apple_weather_stand_in.h"

#include "base/json/json.h"
#include "base/sun_moon.h"
#include "base/text/text.h"
#include "base/time/calendar.h"
#include "base/time/http_date.h"
#include "demo/world/demo_condition.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr hours kUsualHours{24};
constexpr hours kMostHours{10 * 24};
constexpr int kUsualDays = 10;

struct Variable {
  std::string_view key;
  double (*value)(DemoWeather const&);
};

/// What the present and the hours have alike.
constexpr Variable kShared[] = {
    {"cloudCover", [](DemoWeather const& w) { return w.cloudCover / 100; }},
    {"humidity", [](DemoWeather const& w) { return w.humidity / 100; }},
    {"precipitationIntensity", [](DemoWeather const& w) { return w.precipitation; }},
    {"pressure", [](DemoWeather const& w) { return w.pressure; }},
    {"temperature", [](DemoWeather const& w) { return w.temperature; }},
    {"temperatureApparent", [](DemoWeather const& w) { return w.apparentTemperature; }},
    {"temperatureDewPoint", [](DemoWeather const& w) { return w.dewPoint; }},
    {"uvIndex", [](DemoWeather const& w) { return std::round(w.uvIndex); }},
    {"visibility", [](DemoWeather const& w) { return w.visibility; }},
    {"windDirection", [](DemoWeather const& w) { return std::round(w.windDirection); }},
    {"windGust", [](DemoWeather const& w) { return w.windGusts; }},
    {"windSpeed", [](DemoWeather const& w) { return w.windSpeed; }},
};

double twoDecimals(double value) {
  return std::round(value * 100) / 100;
}

std::string_view precipitationType(DemoWeather const& weather) {
  return weather.precipitation == 0 ? "clear" : weather.snowfall > 0 ? "snow" : "rain";
}

/// What was asked for, with the service's own limits.
struct Query {
  Coordinate place;
  Calendar calendar = Calendar::utc();
  Instant hourlyBegin, hourlyEnd;
  Instant dailyBegin, dailyEnd;
};

class AnswerWriter {
 public:
  AnswerWriter(Query const& query, Instant now) : query_(query), now_(now) {}

  std::string write(std::string const& dataSets) {
    json_.beginObject();
    for (std::string_view const set : split(dataSets, ',')) {
      if (set == "currentWeather") writeCurrent();
      if (set == "forecastHourly") writeHours();
      if (set == "forecastDaily") writeDays();
    }
    json_.endObject();
    return json_.take();
  }

 private:
  void beginSet(std::string_view name, std::string_view title) {
    json_.key(name);
    json_.beginObject();
    json_.member("name", title);
    json_.key("metadata");
    json_.beginObject();
    json_.member("readTime", now_);
    json_.member("expireTime", now_ + std::chrono::minutes(5));
    json_.member("latitude", query_.place.latitude);
    json_.member("longitude", query_.place.longitude);
    json_.member("units", "m");
    json_.member("version", 1);
    json_.endObject();
  }

  void writeShared(DemoWeather const& weather) {
    for (Variable const& variable : kShared) json_.member(variable.key, twoDecimals(variable.value(weather)));
    json_.member("conditionCode", demoCondition(weather.weatherCode).appleCode);
    json_.member("daylight", weather.isDay);
    json_.member("pressureTrend", "steady");
  }

  void writeCurrent() {
    beginSet("currentWeather", "CurrentWeather");
    json_.member("asOf", std::chrono::floor<std::chrono::seconds>(now_));
    writeShared(demoWeather(query_.place, now_));
    json_.endObject();
  }

  void writeHours() {
    beginSet("forecastHourly", "HourlyForecast");
    json_.key("hours");
    json_.beginList();
    for (Instant hour = query_.hourlyBegin; hour < query_.hourlyEnd; hour += hours(1)) {
      DemoWeather const weather = demoWeather(query_.place, hour);
      json_.separate();
      json_.beginObject();
      json_.member("forecastStart", hour);
      json_.member("precipitationAmount", twoDecimals(weather.precipitation));
      json_.member("precipitationChance", twoDecimals(weather.precipitationProbability / 100));
      json_.member("precipitationType", precipitationType(weather));
      json_.member("snowfallIntensity", twoDecimals(weather.snowfall * 10));
      json_.member("snowfallAmount", twoDecimals(weather.snowfall * 10));
      writeShared(weather);
      json_.endObject();
    }
    json_.endList();
    json_.endObject();
  }

  void writeDays() {
    beginSet("forecastDaily", "DailyForecast");
    json_.key("days");
    json_.beginList();
    Date const end = query_.calendar.day(query_.dailyEnd - std::chrono::milliseconds(1));
    for (Date date = query_.calendar.day(query_.dailyBegin); date <= end; date = addDays(date, 1)) {
      json_.separate();
      writeDay(query_.calendar.startOfDay(date), query_.calendar.startOfDay(addDays(date, 1)));
    }
    json_.endList();
    json_.endObject();
  }

  void writeDay(Instant begin, Instant end) {
    std::vector<DemoWeather> day;
    for (Instant hour = begin; hour < end; hour += hours(1)) day.push_back(demoWeather(query_.place, hour));
    auto const highest = [&](double DemoWeather::* value) {
      return (*std::ranges::max_element(day, {}, value)).*value;
    };
    double amount = 0, snow = 0;
    for (DemoWeather const& hour : day) {
      amount += hour.precipitation;
      snow += hour.snowfall;
    }
    json_.beginObject();
    json_.member("forecastStart", begin);
    json_.member("forecastEnd", end);
    json_.member("conditionCode", demoCondition(day[day.size() / 2].weatherCode).appleCode);
    json_.member("maxUvIndex", std::round(highest(&DemoWeather::uvIndex)));
    json_.member("precipitationAmount", twoDecimals(amount));
    json_.member("precipitationChance", twoDecimals(highest(&DemoWeather::precipitationProbability) / 100));
    json_.member("snowfallAmount", twoDecimals(snow * 10));
    json_.member("temperatureMax", twoDecimals(highest(&DemoWeather::temperature)));
    json_.member("temperatureMin",
                 twoDecimals(std::ranges::min_element(day, {}, &DemoWeather::temperature)->temperature));
    // Absent where the sun does not rise or set.
    RiseSet const sun = sunRiseSet(begin, end, query_.place);
    json_.member("sunrise", sun.rise);
    json_.member("sunset", sun.set);
    json_.endObject();
  }

  Query const& query_;
  Instant now_;
  JsonWriter json_;
};

bool hasToken(std::string_view authorization) {
  constexpr std::string_view kScheme = "Bearer ";
  return authorization.starts_with(kScheme) && split(authorization.substr(kScheme.size()), '.').size() == 3;
}

Instant instantOr(std::string const& text, Instant fallback) {
  return parseIso8601(text).value_or(fallback);
}

Query queryOf(DemoRequest const& request, Coordinate place, Instant now) {
  Query query;
  query.place = place;
  query.calendar = Calendar::forZone(request.query("timezone")).value_or(Calendar::utc());
  query.hourlyBegin = std::chrono::floor<hours>(instantOr(request.query("hourlyStart"), now));
  query.hourlyEnd = std::min(instantOr(request.query("hourlyEnd"), query.hourlyBegin + kUsualHours),
                             query.hourlyBegin + kMostHours);
  query.dailyBegin =
      query.calendar.startOfDay(query.calendar.day(instantOr(request.query("dailyStart"), now)));
  Instant const latest = query.calendar.startOfDay(addDays(query.calendar.day(query.dailyBegin), kUsualDays));
  query.dailyEnd = std::min(instantOr(request.query("dailyEnd"), latest), latest);
  return query;
}

}  // namespace

DemoAnswer appleWeatherForecast(DemoRequest const& request, Instant now) {
  if (!hasToken(request.header("Authorization"))) {
    return {401, R"({"reason":"NOT_ENABLED"})", {{"Date", formatHttpDate(now)}}};
  }
  auto const parts = split(request.path, '/');
  auto const asked = parts.size() < 2 ? std::nullopt : demoCoordinate(parts[parts.size() - 2], parts.back());
  if (!asked) return {400, R"({"reason":"the coordinate cannot be read"})", {}};
  Query const query = queryOf(request, request.answeredPlace(*asked), now);
  return {200, AnswerWriter(query, now).write(request.query("dataSets")), {}};
}

}  // namespace nimbara
