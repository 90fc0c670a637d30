#include "demo/feeds/nhc_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/conditional_answer.h"
#include "demo/world/demo_storms.h"

#include <cmath>
#include <optional>
#include <vector>

namespace nimbara {

namespace {

using std::chrono::hours;

std::string_view classOf(double knots) {
  return knots < 34 ? "TD" : knots < 64 ? "TS" : "HU";
}

/// Those of the seas that the center watches.
std::vector<DemoStorm> stormsAt(Instant now) {
  auto storms = demoStormsAt(now);
  std::erase_if(storms, [](DemoStorm const& storm) { return storm.lane->bin.empty(); });
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

void writeStorm(JsonWriter& json, DemoStorm const& storm, Instant now) {
  Instant const run = demoStormRun(now);
  DemoStormMoment const moment = demoStormMoment(storm, run);
  json.beginObject();
  json.member("id", demoStormId(storm));
  json.member("binNumber", storm.lane->bin);
  json.member("name", demoStormName(storm));
  json.member("classification", classOf(moment.knots));
  json.member("intensity", std::to_string(static_cast<int>(moment.knots)));
  json.member("pressure", std::to_string(static_cast<int>(1012 - moment.knots * 0.7)));
  json.member("latitude", degreesText(moment.place.latitude, 'N', 'S'));
  json.member("longitude", degreesText(moment.place.longitude, 'E', 'W'));
  json.member("latitudeNumeric", tenth(moment.place.latitude));
  json.member("longitudeNumeric", tenth(moment.place.longitude));
  json.member("movementDir", static_cast<int>(moment.direction));
  json.member("movementSpeed", static_cast<int>(moment.speedMph));
  json.member("lastUpdate", run + kDemoReportDelay);
  writeProduct(json, "publicAdvisory", run + kDemoReportDelay, "https://www.nhc.noaa.gov/");
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
  return 4 + static_cast<int>(std::chrono::floor<std::chrono::days>(now).time_since_epoch().count() % 7);
}

void writePoint(JsonWriter& json, DemoStorm const& storm, Instant run, hours ahead) {
  DemoStormMoment const moment = demoStormMoment(storm, run + ahead);
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
  json.member("stormname", demoStormName(storm));
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
  for (DemoStorm const& storm : stormsAt(now)) {
    if (storm.lane->bin != bin) continue;
    for (int const ahead : {0, 12, 24, 36, 48, 60, 72, 96, 120}) {
      if (demoStormRun(now) + hours(ahead) >= storm.end()) break;
      json.separate();
      writePoint(json, storm, demoStormRun(now), hours(ahead));
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
  for (DemoStorm const& storm : stormsAt(now)) {
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
