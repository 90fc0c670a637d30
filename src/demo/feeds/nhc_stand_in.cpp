#include "demo/feeds/nhc_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/conditional_answer.h"
#include "demo/world/demo_draw.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::milliseconds;

constexpr hours kLife{192};
constexpr hours kReportEvery{6};
/// Reports come three hours after the run that they tell of.
constexpr hours kReportDelay{3};
constexpr double kKmInADegree = 111.2;
constexpr int kNumbers = 49;

enum Stream : std::uint64_t { kStrength = 111, kName, kSidestep };

/// A stretch of sea where one storm after another takes the same way.
struct Lane {
  std::string_view basin;
  std::string_view bin;
  Coordinate begin;
  Coordinate end;
  hours shift;  ///< so that not all storms end at once
  bool isInSeasonOnly;
};

constexpr Lane kLanes[] = {
    {"al", "AT1", {13.0, -42.0}, {33.0, -73.0}, hours(0), false},
    {"al", "AT2", {16.5, -80.0}, {29.5, -89.5}, hours(70), true},
    {"ep", "EP1", {12.5, -97.0}, {21.5, -121.0}, hours(110), false},
    {"cp", "CP1", {13.5, -146.0}, {20.5, -166.0}, hours(30), true},
};

constexpr std::string_view kNames[] = {"Alder",  "Birch",  "Cedar", "Dahlia",  "Elm",  "Fern",
                                       "Ginkgo", "Hazel",  "Iris",  "Juniper", "Kelp", "Laurel",
                                       "Maple",  "Nettle", "Olive", "Pine"};

struct Storm {
  Lane const* lane = nullptr;
  std::int64_t number = 0;  ///< of the lane, in order
  Instant begin;
  Instant end() const { return begin + kLife; }
};

struct StormMoment {
  Coordinate place;
  double knots = 0;
  double direction = 0;
  double speedMph = 0;
};

bool isInSeason(Instant instant) {
  auto const month = static_cast<unsigned>(Date(std::chrono::floor<days>(instant)).month());
  return month >= 6 && month <= 11;
}

std::optional<Storm> stormOf(Lane const& lane, Instant instant) {
  std::int64_t const number = (instant.time_since_epoch() - lane.shift) / milliseconds(kLife);
  Storm const storm{&lane, number, Instant(number * milliseconds(kLife) + lane.shift)};
  if (lane.isInSeasonOnly && !isInSeason(storm.begin)) return std::nullopt;
  return storm;
}

std::int64_t drawIndex(Storm const& storm) {
  return storm.number * 10 + (storm.lane - std::begin(kLanes));
}

Coordinate placeOf(Storm const& storm, double age) {
  Coordinate const& from = storm.lane->begin;
  Coordinate const& to = storm.lane->end;
  double const aside = 4 * (demoDraw(kSidestep, drawIndex(storm)) - 0.5) * age;
  // First to the west, then more and more to the pole.
  return {from.latitude + (to.latitude - from.latitude) * std::pow(age, 1.5) + aside,
          from.longitude + (to.longitude - from.longitude) * std::pow(age, 0.9)};
}

StormMoment momentOf(Storm const& storm, Instant instant) {
  double const age = std::chrono::duration<double>(instant - storm.begin) / kLife;
  double const later = age + std::chrono::duration<double>(hours(1)) / kLife;
  StormMoment moment;
  moment.place = placeOf(storm, age);
  double const peak = 45 + 100 * demoDraw(kStrength, drawIndex(storm));
  moment.knots = 5 * std::round((25 + (peak - 25) * std::sin(std::numbers::pi * age)) / 5);
  Coordinate const next = placeOf(storm, later);
  double const north = (next.latitude - moment.place.latitude) * kKmInADegree;
  double const east = (next.longitude - moment.place.longitude) * kKmInADegree *
                      std::cos(moment.place.latitude * std::numbers::pi / 180);
  moment.direction = std::round(std::fmod(std::atan2(east, north) * 180 / std::numbers::pi + 360, 360));
  moment.speedMph = std::round(std::hypot(north, east) / 1.609344);
  return moment;
}

std::string idOf(Storm const& storm) {
  std::int64_t const number = (2 * storm.number + (storm.lane - std::begin(kLanes)) % 2) % kNumbers + 1;
  std::string const year = formatDate(Date(std::chrono::floor<days>(storm.begin))).substr(0, 4);
  return std::string(storm.lane->basin) + (number < 10 ? "0" : "") + std::to_string(number) + year;
}

std::string_view nameOf(Storm const& storm) {
  return kNames[static_cast<std::size_t>(demoDraw(kName, drawIndex(storm)) * std::size(kNames))];
}

std::string_view classOf(double knots) {
  return knots < 34 ? "TD" : knots < 64 ? "TS" : "HU";
}

/// When the present reports came out, and the run that they are of.
Instant runOf(Instant now) {
  return Instant((now.time_since_epoch() - kReportDelay) / kReportEvery * kReportEvery);
}

std::vector<Storm> stormsAt(Instant now) {
  std::vector<Storm> storms;
  for (Lane const& lane : kLanes) {
    if (auto const storm = stormOf(lane, runOf(now))) storms.push_back(*storm);
  }
  return storms;
}

std::string degreesText(double value, char positive, char negative) {
  return fixedDecimal(std::abs(value), 1) + (value < 0 ? negative : positive);
}

double tenth(double value) {
  return std::round(value * 10) / 10;
}

void writeProduct(JsonWriter& json, std::string_view key, Instant issued, std::string_view url) {
  json.key(key);
  json.beginObject();
  json.member("advNum", "012");
  json.member("issuance", issued);
  json.member("fileUpdateTime", issued);
  json.member("url", url);
  json.endObject();
}

void writeStorm(JsonWriter& json, Storm const& storm, Instant now) {
  Instant const run = runOf(now);
  StormMoment const moment = momentOf(storm, run);
  json.beginObject();
  json.member("id", idOf(storm));
  json.member("binNumber", storm.lane->bin);
  json.member("name", nameOf(storm));
  json.member("classification", classOf(moment.knots));
  json.member("intensity", std::to_string(static_cast<int>(moment.knots)));
  json.member("pressure", std::to_string(static_cast<int>(1012 - moment.knots * 0.7)));
  json.member("latitude", degreesText(moment.place.latitude, 'N', 'S'));
  json.member("longitude", degreesText(moment.place.longitude, 'E', 'W'));
  json.member("latitudeNumeric", tenth(moment.place.latitude));
  json.member("longitudeNumeric", tenth(moment.place.longitude));
  json.member("movementDir", static_cast<int>(moment.direction));
  json.member("movementSpeed", static_cast<int>(moment.speedMph));
  json.member("lastUpdate", run + kReportDelay);
  writeProduct(json, "publicAdvisory", run + kReportDelay, "https://www.nhc.noaa.gov/");
  json.memberOrNull("windWatchesWarnings", std::optional<int>());
  json.endObject();
}

constexpr std::string_view kGroups[] = {"AT1", "AT2", "AT3", "AT4", "AT5", "EP1", "EP2", "EP3",
                                        "EP4", "EP5", "CP1", "CP2", "CP3", "CP4", "CP5"};
constexpr std::string_view kLayers[] = {
    "", " Forecast Information", " Forecast Points", " Forecast Track", " Forecast Cone", " Watch-Warning"};
constexpr int kPointsLayer = 2;

/// The number of the first storm's group.
int firstLayer(Instant now) {
  return 4 + static_cast<int>(std::chrono::floor<days>(now).time_since_epoch().count() % 7);
}

void writePoint(JsonWriter& json, Storm const& storm, Instant run, hours ahead) {
  StormMoment const moment = momentOf(storm, run + ahead);
  std::string const text = formatIso8601(run + ahead);  // "2026-11-21T06:00:00Z"
  json.beginObject();
  json.member("type", "Feature");
  json.key("geometry");
  json.beginObject();
  json.member("type", "Point");
  json.member("coordinates",
              std::vector<double>{tenth(moment.place.longitude), tenth(moment.place.latitude)});
  json.endObject();
  json.key("properties");
  json.beginObject();
  json.member("stormname", nameOf(storm));
  json.member("stormtype", classOf(moment.knots));
  json.member("tau", static_cast<int>(ahead.count()));
  json.member("validtime", text.substr(8, 2) + "/" + text.substr(11, 2) + text.substr(14, 2));
  json.member("maxwind", moment.knots);
  json.endObject();
  json.endObject();
}

std::string trackBody(std::string_view bin, Instant now) {
  JsonWriter json;
  json.beginObject();
  json.member("type", "FeatureCollection");
  json.key("features");
  json.beginList();
  for (Storm const& storm : stormsAt(now)) {
    if (storm.lane->bin != bin) continue;
    for (int const ahead : {0, 12, 24, 36, 48, 60, 72, 96, 120}) {
      if (runOf(now) + hours(ahead) >= storm.end()) break;
      json.separate();
      writePoint(json, storm, runOf(now), hours(ahead));
    }
  }
  json.endList();
  json.endObject();
  return json.take();
}

}  // namespace

DemoAnswer currentStorms(DemoRequest const& request, Instant now) {
  JsonWriter json;
  json.beginObject();
  json.key("activeStorms");
  json.beginList();
  for (Storm const& storm : stormsAt(now)) {
    json.separate();
    writeStorm(json, storm, now);
  }
  json.endList();
  json.endObject();
  return conditionalAnswer(request, json.take(), 60);
}

DemoAnswer stormMapLayers(DemoRequest const&, Instant now) {
  JsonWriter json;
  json.beginObject();
  json.key("layers");
  json.beginList();
  int id = firstLayer(now);
  for (std::string_view const group : kGroups) {
    for (std::string_view const layer : kLayers) {
      json.separate();
      json.beginObject();
      json.member("id", id++);
      json.member("name", std::string(group) + std::string(layer));
      json.endObject();
    }
  }
  json.endList();
  json.endObject();
  return {200, json.take(), {}};
}

DemoAnswer stormMapQuery(DemoRequest const& request, Instant now) {
  auto const parts = split(request.path, '/');
  int const place = parseInteger(parts[parts.size() - 2]).value_or(0) - firstLayer(now);
  constexpr int kLayersOfAGroup = std::size(kLayers);
  if (place < 0 || place >= static_cast<int>(std::size(kGroups)) * kLayersOfAGroup) {
    return {
        200, R"({"error":{"code":400,"message":"Invalid or missing input parameters.","details":[]}})", {}};
  }
  bool const isPoints = place % kLayersOfAGroup == kPointsLayer;
  return {200, trackBody(isPoints ? kGroups[place / kLayersOfAGroup] : "", now), {}};
}

}  // namespace nimbara
