#include "demo/feeds/netatmo_stand_in.h"

#include "base/json/json.h"
#include "base/text/clean_text.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/world/demo_draw.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <set>

namespace nimbara {

namespace {

using std::chrono::minutes;
using std::chrono::seconds;

constexpr minutes kUpload{10};
constexpr seconds kLife{10'800};
constexpr double kLapsePerM = 0.0065;
constexpr std::size_t kMostRemembered = 10'000;

enum Stream : std::uint64_t { kNorth = 301, kEast, kHeight, kError };

/// Refresh tokens that were used, of this run of the demo.
bool isUsedNow(std::string const& token) {
  static std::mutex mutex;
  static std::set<std::string> used;
  std::lock_guard const lock(mutex);
  if (used.size() > kMostRemembered) used.clear();
  return !used.insert(token).second;
}

long long secondsOf(Instant instant) {
  return std::chrono::duration_cast<seconds>(instant.time_since_epoch()).count();
}

double tenth(double value) {
  return std::round(value * 10) / 10;
}

/// When stations last sent: 40 s behind each tenth minute.
Instant uploadBefore(Instant now) {
  constexpr seconds kLate{40};
  auto const since = (now - kLate).time_since_epoch();
  return Instant(since - since % kUpload) + kLate;
}

std::string wordError(std::string_view word) {
  return R"({"error":")" + std::string(word) + R"("})";
}

DemoAnswer numberedError(int code, std::string_view message) {
  constexpr int kForbidden = 403;
  return {kForbidden,
          R"({"error":{"code":)" + std::to_string(code) + R"(,"message":")" + std::string(message) + R"("}})",
          {}};
}

/// "a-1795262400" until three hours after that moment; nothing where the request may be answered.
std::optional<DemoAnswer> refusalOf(DemoRequest const& request, Instant now) {
  constexpr std::string_view kScheme = "Bearer a-";
  std::string const given = request.header("Authorization");
  if (!given.starts_with(kScheme)) return numberedError(2, "Invalid access token");
  auto const since = parseDouble(given.substr(kScheme.size()));
  if (!since) return numberedError(2, "Invalid access token");
  bool const isOver =
      std::abs(static_cast<double>(secondsOf(now)) - *since) > static_cast<double>(kLife.count());
  return isOver ? std::optional(numberedError(3, "Access token expired")) : std::nullopt;
}

std::string documentOf(std::string_view body, Instant now) {
  return R"({"body":)" + std::string(body) + R"(,"status":"ok","time_server":)" +
         std::to_string(secondsOf(now)) + "}";
}

struct DemoStation {
  std::string_view id, name;
  Coordinate place;
  int altitude;
  double excess;  ///< °C of the outdoor sensor
  bool isSilent;
};

constexpr DemoStation kStations[] = {
    {"70:ee:50:00:00:01", "Balcony in Berlin", {52.52, 13.41}, 35, 0.8, false},
    {"70:ee:50:00:00:02", "Sunny wall in Munich", {48.14, 11.58}, 520, 9, false},
    {"70:ee:50:00:00:03", "Garden in Hamburg", {53.55, 9.99}, 6, 0, true},
};

void writeBegin(JsonWriter& json, std::string const& id, std::string_view type, std::string_view name,
                bool isReachable) {
  json.member("_id", id);
  json.member("type", type);
  json.member("module_name", name);
  json.member("reachable", isReachable);
}

void writePlace(JsonWriter& json, Coordinate place, int altitude) {
  json.key("place");
  json.beginObject();
  json.member("location", std::vector<double>{place.longitude, place.latitude});
  json.member("altitude", altitude);
  json.member("timezone", "Europe/Berlin");
  json.member("country", "DE");
  json.endObject();
}

void writeModules(JsonWriter& json, DemoStation const& station, DemoWeather const& weather, Instant upload) {
  auto const begin = [&](char digit, std::string_view type, std::string_view name, int battery) {
    json.separate();
    json.beginObject();
    std::string id(station.id);
    id[0] = digit;
    writeBegin(json, id, type, name, !station.isSilent);
    json.member("battery_percent", battery);
    if (station.isSilent) return false;
    json.key("dashboard_data");
    json.beginObject();
    json.member("time_utc", secondsOf(upload));
    return true;
  };
  auto const end = [&] {
    if (!station.isSilent) json.endObject();
    json.endObject();
  };
  if (begin('2', "NAModule1", "Outdoors", 87)) {
    json.member("Temperature", tenth(weather.temperature + station.excess));
    json.member("Humidity", std::lround(weather.humidity));
  }
  end();
  if (begin('6', "NAModule2", "Roof", 62)) {
    json.member("WindStrength", std::lround(weather.windSpeed * 0.8));
    json.member("WindAngle", std::lround(weather.windDirection));
    json.member("GustStrength", std::lround(weather.windGusts));
    json.member("GustAngle", std::lround(weather.windDirection));
  }
  end();
  if (begin('5', "NAModule3", "Lawn", 14)) {
    json.member("sum_rain_1", tenth(weather.precipitation));
    json.member("sum_rain_24", tenth(weather.precipitation * 3));
  }
  end();
}

void writeStation(JsonWriter& json, DemoStation const& station, Instant upload) {
  DemoWeather const weather = demoWeather(station.place, upload);
  json.separate();
  json.beginObject();
  writeBegin(json, std::string(station.id), "NAMain", "Living room", true);
  json.member("station_name", station.name);
  writePlace(json, station.place, station.altitude);
  json.key("dashboard_data");
  json.beginObject();
  json.member("time_utc", secondsOf(upload));
  json.member("Temperature", 21.4);
  json.member("Humidity", 44);
  json.member("CO2", 655);
  json.member("Noise", 38);
  json.member("Pressure", tenth(weather.pressure));
  json.member("AbsolutePressure", tenth(weather.pressure - station.altitude / 8.3));
  json.endObject();
  json.key("modules");
  json.beginList();
  writeModules(json, station, weather, upload);
  json.endList();
  json.endObject();
}

/// Times with lists in the order of `type`.
void writeListed(JsonWriter& json, std::string const& id, Instant upload, std::vector<double> const& values,
                 std::vector<std::string> const& types) {
  json.key(id);
  json.beginObject();
  json.key("res");
  json.beginObject();
  json.member(std::to_string(secondsOf(upload)), values);
  json.endObject();
  json.member("type", types);
  json.endObject();
}

void writePublicStation(JsonWriter& json, int number, Coordinate middle, Instant upload) {
  constexpr double kWidth = 0.03;
  Coordinate const place{middle.latitude + (demoDraw(kNorth, number) - 0.5) * kWidth,
                         middle.longitude + (demoDraw(kEast, number) - 0.5) * kWidth};
  int const height = 30 + static_cast<int>(demoDraw(kHeight, number) * 60);
  DemoWeather const weather = demoWeather(middle, upload);
  bool const isIndoors = number == 4;
  double const celsius =
      isIndoors ? 22
                : weather.temperature - (height - 60) * kLapsePerM + (demoDraw(kError, number) - 0.5) * 1.4;
  std::string const id = "70:ee:50:00:01:0" + std::to_string(number);
  std::string const rain = "05:00:00:00:01:0" + std::to_string(number);
  json.separate();
  json.beginObject();
  json.member("_id", id);
  writePlace(json, place, height);
  json.key("measures");
  json.beginObject();
  writeListed(json, "02:00:00:00:01:0" + std::to_string(number), upload,
              {tenth(celsius), std::round(weather.humidity)}, {"temperature", "humidity"});
  writeListed(json, id, upload, {tenth(weather.pressure)}, {"pressure"});
  json.key(rain);
  json.beginObject();
  json.member("rain_60min", tenth(weather.precipitation));
  json.member("rain_24h", tenth(weather.precipitation * 3));
  json.member("rain_live", 0);
  json.member("rain_timeutc", secondsOf(upload));
  json.endObject();
  json.endObject();
  json.endObject();
}

}  // namespace

DemoAnswer netatmoConsent(DemoRequest const& request, Instant /*now*/) {
  constexpr int kBad = 400;
  std::string const target = request.query("redirect_uri");
  // The page sends nobody anywhere but to this computer.
  bool const isLocal = target.starts_with("http://localhost:") || target.starts_with("http://127.0.0.1:");
  if (!isLocal) return {kBad, wordError("redirect_uri_mismatch"), {}};
  std::string const back = target + "?state=" + percentEncoded(request.query("state"));
  return {
      200,
      "<!doctype html><meta charset=utf-8><title>Demo consent</title><h1>May Nimbara read your stations?</h1>"
      "<p><a href=\"" +
          markupEscaped(back + "&code=demo") + "\">Yes, accept</a> <a href=\"" +
          markupEscaped(back + "&error=access_denied") + "\">No</a>",
      {{"Content-Type", "text/html; charset=utf-8"}}};
}

DemoAnswer netatmoToken(DemoRequest const& request, Instant now) {
  constexpr int kBad = 400;
  constexpr std::string_view kStem = "r-";
  std::string const refresh = request.query("refresh_token");
  bool const isFirst = request.query("code") == "demo" || refresh == "demo";
  bool const isNext = refresh.starts_with(kStem) && !isUsedNow(refresh);
  if (!isFirst && !isNext) return {kBad, wordError("invalid_grant"), {}};
  static std::mutex mutex;
  static long long count = 0;
  std::lock_guard const lock(mutex);
  JsonWriter json;
  json.beginObject();
  json.member("access_token", "a-" + std::to_string(secondsOf(now)));
  json.member("refresh_token",
              std::string(kStem) + std::to_string(secondsOf(now)) + "-" + std::to_string(++count));
  json.member("scope", std::vector<std::string>{"read_station"});
  json.member("expires_in", kLife.count());
  json.member("expire_in", kLife.count());
  json.endObject();
  return {200, json.take(), {}};
}

DemoAnswer netatmoStations(DemoRequest const& request, Instant now) {
  if (auto refusal = refusalOf(request, now)) return *refusal;
  JsonWriter json;
  json.beginObject();
  json.key("devices");
  json.beginList();
  for (DemoStation const& station : kStations) writeStation(json, station, uploadBefore(now));
  json.endList();
  json.endObject();
  return {200, documentOf(json.take(), now), {}};
}

DemoAnswer netatmoPublic(DemoRequest const& request, Instant now) {
  if (auto refusal = refusalOf(request, now)) return *refusal;
  auto const north = demoCoordinate(request.query("lat_ne"), request.query("lon_ne"));
  auto const south = demoCoordinate(request.query("lat_sw"), request.query("lon_sw"));
  if (!north || !south) return numberedError(21, "Invalid coordinates");
  Coordinate const middle{(north->latitude + south->latitude) / 2, (north->longitude + south->longitude) / 2};
  constexpr int kCount = 9;
  JsonWriter json;
  json.beginList();
  for (int number = 0; number < kCount; ++number) writePublicStation(json, number, middle, uploadBefore(now));
  json.endList();
  return {200, documentOf(json.take(), now), {}};
}

DemoAnswer ecowittLiveData(DemoRequest const& /*request*/, Instant now) {
  DemoWeather const weather = demoWeather(kStations[0].place, now);
  auto const entry = [](std::string_view id, std::string const& value, std::string_view unit = "") {
    return R"({"id":")" + std::string(id) + R"(","val":")" + value + "\"" +
           (unit.empty() ? "" : R"(,"unit":")" + std::string(unit) + "\"") + "}";
  };
  return {200,
          R"({"common_list":[)" + entry("0x02", fixedDecimal(weather.temperature + 0.4, 1), "C") + "," +
              entry("0x07", roundedText(weather.humidity) + "%") + "," +
              entry("0x0B", fixedDecimal(weather.windSpeed / 3.6, 1) + " m/s") + "," +
              entry("0x0A", roundedText(weather.windDirection)) + R"(],"rain":[)" +
              entry("0x10", fixedDecimal(weather.precipitation * 3, 1) + " mm") +
              R"(],"wh25":[{"intemp":"21.0","unit":"C",)" + R"("inhumi":"44%","abs":")" +
              fixedDecimal(weather.pressure - 4.2, 1) + R"( hPa","rel":")" +
              fixedDecimal(weather.pressure, 1) + R"( hPa"}]})",
          {}};
}

}  // namespace nimbara
