#include "demo/feeds/usgs_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/conditional_answer.h"
#include "demo/world/demo_draw.h"

#include <cmath>
#include <vector>

namespace nimbara {

namespace {

using std::chrono::milliseconds;

/// A stretch of a plate's boundary.
struct Fault {
  std::string_view name;
  Coordinate begin;
  Coordinate end;
  double depthKm;  ///< of its deepest earthquakes
  bool isWatched;  ///< densely enough for small ones to be listed
};

constexpr Fault kFaults[] = {
    {"Parkfield, CA", {40.3, -124.4}, {33.4, -115.9}, 15, true},
    {"The Geysers, CA", {38.85, -122.9}, {38.75, -122.7}, 4, true},
    {"Anchorage, Alaska", {51.5, -178.0}, {61.5, -149.5}, 120, true},
    {"Pāhala, Hawaii", {19.5, -155.6}, {19.1, -155.3}, 35, true},
    {"Guánica, Puerto Rico", {17.9, -67.1}, {18.0, -66.5}, 20, true},
    {"Tonga", {-15.0, -173.2}, {-24.5, -175.5}, 550, false},
    {"Fiji", {-17.0, -178.5}, {-23.5, 179.5}, 600, false},
    {"Valparaíso, Chile", {-20.0, -70.5}, {-38.0, -73.5}, 120, false},
    {"Sendai, Japan", {34.0, 141.0}, {44.5, 148.0}, 90, false},
    {"Kuril Islands", {44.5, 148.0}, {52.5, 159.0}, 150, false},
    {"Bengkulu, Indonesia", {3.0, 96.0}, {-8.5, 110.0}, 180, false},
    {"Davao, Philippines", {4.0, 126.5}, {13.0, 125.5}, 140, false},
    {"Port Vila, Vanuatu", {-13.0, 166.5}, {-20.5, 169.5}, 250, false},
    {"Lae, Papua New Guinea", {-5.5, 146.0}, {-6.5, 154.5}, 120, false},
    {"Oaxaca, Mexico", {18.5, -104.0}, {14.5, -93.0}, 80, false},
    {"Kermanshah, Iran", {38.0, 44.5}, {27.5, 56.5}, 20, false},
    {"Hindu Kush, Afghanistan", {36.3, 70.0}, {37.2, 71.8}, 220, false},
    {"Crete, Greece", {37.5, 20.5}, {34.8, 26.5}, 60, false},
    {"central Mid-Atlantic Ridge", {0.5, -29.0}, {-1.0, -14.0}, 10, false},
    {"Reykjanes Ridge", {58.0, -32.0}, {63.5, -23.5}, 10, false},
};

constexpr double kSmallestWatched = 0.3;
constexpr double kSmallestElsewhere = 4.2;
constexpr std::int64_t kAnHour = 9;
constexpr milliseconds kHour{3'600'000};
constexpr milliseconds kLatency{180'000};

enum Stream : std::uint64_t { kTime = 81, kFault, kAlong, kAside, kSize, kDepth, kKind };

struct Quake {
  std::int64_t number = 0;
  Instant time;
  Fault const* fault = nullptr;
  Coordinate place;
  double magnitude = 0;
  double depthKm = 0;
};

/// Most of the smallest are in the watched stretches, which come first in the table.
Fault const& faultOf(std::int64_t number) {
  constexpr std::size_t kWatched = 5;
  double const draw = demoDraw(kFault, number);
  double const share = draw * 4 < 3 ? draw / 3 * 4 : (draw - 0.75) * 4;
  std::size_t const begin = draw * 4 < 3 ? 0 : kWatched;
  std::size_t const count = draw * 4 < 3 ? kWatched : std::size(kFaults) - kWatched;
  return kFaults[begin + static_cast<std::size_t>(share * static_cast<double>(count))];
}

Quake quake(std::int64_t number) {
  Fault const& fault = faultOf(number);
  double const along = demoDraw(kAlong, number);
  double const aside = demoDraw(kAside, number) - 0.5;
  Quake out;
  out.number = number;
  out.fault = &fault;
  out.time = Instant(number / kAnHour * kHour) +
             milliseconds(std::llround(demoDraw(kTime, number) * static_cast<double>(kHour.count() - 1)));
  double const span = fault.end.longitude - fault.begin.longitude;
  double const eastward = span > 180 ? span - 360 : span < -180 ? span + 360 : span;
  out.place = {fault.begin.latitude + along * (fault.end.latitude - fault.begin.latitude) + aside * 0.8,
               std::remainder(fault.begin.longitude + along * eastward + aside, 360)};
  // Gutenberg and Richter's law with b = 1.
  double const smallest = fault.isWatched ? kSmallestWatched : kSmallestElsewhere;
  out.magnitude = std::min(8.6, smallest - std::log10(1 - demoDraw(kSize, number)));
  if (fault.isWatched && number % 23 == 0) out.magnitude = -0.4;
  out.depthKm = fault.depthKm * std::pow(demoDraw(kDepth, number), 1.5) - 0.5;
  return out;
}

double rounded(double value, double steps) {
  return std::round(value * steps) / steps;
}

std::optional<std::string> pagerColour(Quake const& event) {
  if (event.magnitude < 5) return std::nullopt;
  return event.magnitude < 6.6   ? "green"
         : event.magnitude < 7.2 ? "yellow"
         : event.magnitude < 7.8 ? "orange"
                                 : "red";
}

std::string placeText(Quake const& event) {
  int const km = 2 + static_cast<int>(demoDraw(kAside, event.number) * 90);
  constexpr std::string_view kWinds[] = {"N", "ENE", "SE", "SSW", "W", "NNW"};
  return std::to_string(km) + " km " + std::string(kWinds[event.number % 6]) + " of " +
         std::string(event.fault->name);
}

void writeProperties(JsonWriter& json, Quake const& event, std::string const& id) {
  bool const isBlast = event.fault->isWatched && demoDraw(kKind, event.number) < 0.03;
  bool const isUnknown = event.number % 101 == 0;
  std::string const page = "https://earthquake.usgs.gov/earthquakes/eventpage/" + id;
  json.beginObject();
  json.memberOrNull("mag", isUnknown ? std::nullopt : std::optional(rounded(event.magnitude, 100)));
  json.member("place", placeText(event));
  json.member("time", event.time.time_since_epoch().count());
  json.member("updated", (event.time + 2 * kLatency).time_since_epoch().count());
  json.memberOrNull("tz", std::optional<int>());
  json.member("url", page);
  json.member("detail", "https://earthquake.usgs.gov/earthquakes/feed/v1.0/detail/" + id + ".geojson");
  json.memberOrNull("alert", pagerColour(event));
  json.member("status", "automatic");
  json.member("tsunami", event.magnitude >= 7 ? 1 : 0);
  json.member("sig", static_cast<int>(std::lround(event.magnitude * event.magnitude * 1000 / 65)));
  json.member("type", isBlast ? "quarry blast" : "earthquake");
  json.member("title", "M " + fixedDecimal(event.magnitude, 1) + " - " + placeText(event));
  json.endObject();
}

void writeFeature(JsonWriter& json, Quake const& event) {
  std::string const id = "demo" + std::to_string(event.number);
  json.beginObject();
  json.member("type", "Feature");
  json.key("properties");
  writeProperties(json, event, id);
  json.key("geometry");
  json.beginObject();
  json.member("type", "Point");
  json.member("coordinates",
              std::vector<double>{rounded(event.place.longitude, 1e4), rounded(event.place.latitude, 1e4),
                                  rounded(event.depthKm, 100)});
  json.endObject();
  json.member("id", id);
  json.endObject();
}

/// Newest first.
std::vector<Quake> quakesBetween(Instant begin, Instant end) {
  std::vector<Quake> list;
  std::int64_t const first = begin.time_since_epoch() / kHour * kAnHour;
  std::int64_t const last = (end.time_since_epoch() / kHour + 1) * kAnHour;
  for (std::int64_t number = first; number < last; ++number) {
    Quake const event = quake(number);
    if (event.time >= begin && event.time <= end) list.push_back(event);
  }
  std::ranges::sort(list, std::ranges::greater{}, &Quake::time);
  return list;
}

}  // namespace

std::string demoQuakes(Instant now) {
  Instant const minute = std::chrono::floor<std::chrono::minutes>(now);
  auto const quakes = quakesBetween(minute - std::chrono::hours(24), minute - kLatency);
  JsonWriter json;
  json.beginObject();
  json.member("type", "FeatureCollection");
  json.key("metadata");
  json.beginObject();
  json.member("generated", minute.time_since_epoch().count());
  json.member("title", "USGS All Earthquakes, Past Day");
  json.member("status", 200);
  json.member("count", quakes.size());
  json.endObject();
  json.key("features");
  json.beginList();
  for (Quake const& event : quakes) {
    json.separate();
    writeFeature(json, event);
  }
  json.endList();
  json.endObject();
  return json.take();
}

DemoAnswer emscQuery(DemoRequest const& request, Instant now) {
  auto const least = parseDouble(request.query("minmag")).value_or(0);
  JsonWriter json;
  json.beginObject();
  json.member("type", "FeatureCollection");
  json.key("features");
  json.beginList();
  for (Quake const& event : quakesBetween(now - std::chrono::hours(24), now - kLatency)) {
    // Each service measures a little differently, and neither lists all of the other's.
    double const magnitude = rounded(event.magnitude + 0.4 * (demoDraw(kDepth, event.number) - 0.5), 10);
    if (magnitude < least || event.number % 5 == 0) continue;
    std::string const id = "demo" + std::to_string(event.number) + "-emsc";
    json.separate();
    json.beginObject();
    json.member("type", "Feature");
    json.member("id", id);
    json.key("properties");
    json.beginObject();
    json.member("time", event.time + std::chrono::milliseconds(1300));
    json.member("lastupdate", event.time + 2 * kLatency);
    json.member("flynn_region", asciiUppered(event.fault->name));
    json.member("lat", rounded(event.place.latitude + 0.03, 1e4));
    json.member("lon", rounded(event.place.longitude, 1e4));
    json.member("depth", rounded(std::max(event.depthKm, 0.0), 10));
    json.member("evtype", "ke");
    json.member("mag", magnitude);
    json.member("unid", id);
    json.endObject();
    json.endObject();
  }
  json.endList();
  json.endObject();
  return {200, json.take(), {}};
}

DemoAnswer usgsDayFeed(DemoRequest const& request, Instant now) {
  return conditionalAnswer(request, demoQuakes(now), 60);
}

}  // namespace nimbara
