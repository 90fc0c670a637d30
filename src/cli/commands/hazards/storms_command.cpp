#include "app/services/feed_services.h"
#include "app/services/world_hazards.h"
#include "app/words/hazards/storm_text.h"
#include "base/bearing.h"
#include "cli/commands/feed_commands.h"
#include "cli/commands/hazards/hazard_frame.h"
#include "feeds/storms/storm_merge.h"
#include "providers/common/compass.h"

namespace nimbara {

namespace {

void writeTrack(JsonWriter& json, std::string_view key, std::vector<TropicalTrackPoint> const& track) {
  json.key(key);
  json.beginList();
  for (TropicalTrackPoint const& point : track) {
    json.separate();
    json.beginObject();
    json.member("time", point.time);
    json.member("latitude", point.coordinate.latitude);
    json.member("longitude", point.coordinate.longitude);
    json.memberOrNull("windMs", point.windMs);
    json.memberOrNull("galeRadiusKm", point.galeRadiusKm);
    json.endObject();
  }
  json.endList();
}

void writeApproach(JsonWriter& json, std::optional<StormApproach> const& approach) {
  if (!approach) return json.memberOrNull("closest", std::optional<int>());
  json.key("closest");
  json.beginObject();
  json.member("time", approach->time);
  json.member("distanceKm", approach->km);
  json.memberOrNull("windMs", approach->windMs);
  json.memberOrNull("galeRadiusKm", approach->galeRadiusKm);
  json.endObject();
}

void writeStorm(JsonWriter& json, TropicalStorm const& storm, Coordinate place, Instant now) {
  json.separate();
  json.beginObject();
  json.member("id", storm.id);
  json.member("name", storm.name);
  json.member("basin", storm.basin);
  json.member("centre", storm.centre);
  json.member("alsoBy", storm.alsoBy);
  json.member("classification", storm.classification);
  json.member("category", storm.category);
  json.member("windMs", storm.windMs);
  json.member("windIsPeak", storm.isPeakWind);
  json.member("averagingMinutes", storm.averagingMinutes);
  json.memberOrNull("pressureHPa", storm.pressure);
  json.memberOrNull("galeRadiusKm", storm.galeRadiusKm);
  json.member("latitude", storm.coordinate.latitude);
  json.member("longitude", storm.coordinate.longitude);
  json.memberOrNull("observedAt", storm.lastUpdate);
  json.memberOrNull("movementDirection", storm.movementDirection);
  json.memberOrNull("movementMs", storm.movementMs);
  json.member("distanceKm", haversineKm(place, storm.coordinate));
  json.member("direction", compassPoint(bearingDegrees(place, storm.coordinate)));
  writeApproach(json, closestApproach(storm, place, now));
  writeTrack(json, "track", storm.track);
  writeTrack(json, "past", storm.past);
  json.endObject();
}

/// The centres whose list is missing or old: without them fewer storms do not mean fewer storms.
void writeMisses(JsonWriter& json, std::vector<StormMiss> const& misses) {
  json.key("notChecked");
  json.beginList();
  for (StormMiss const& miss : misses) {
    json.separate();
    json.beginObject();
    json.member("centre", miss.centre);
    json.member("reason", sentenceOf(miss.failure));
    json.endObject();
  }
  json.endList();
}

}  // namespace

int runStorms(CommandLine const& line, Session const& session) {
  return runHazard(line, session, [&](RunContext& context, Place const& place, HazardWords const& words) {
    auto reading = fetchWorldStorms(context.app().feeds(), session.stop);
    auto& storms = reading.data.storms;
    sortByDistance(storms, place.coordinate);
    HazardAnswer answer;
    answer.check = hazardCheck(reading, !storms.empty());
    answer.subject = "the tropical storms";
    answer.heading = stormStateText(answer.check, storms.size(), words);
    for (TropicalStorm const& storm : storms)
      answer.lines.push_back(stormLine(storm, place.coordinate, words));
    for (StormMiss const& miss : reading.data.misses) {
      answer.sideFailures.push_back("the storms of " + std::string(properNameOf(miss.centre)) +
                                    " could not be checked: " + context.plain(miss.failure));
    }
    answer.writeItems = [storms, at = place.coordinate, now = words.now](JsonWriter& json) {
      for (TropicalStorm const& storm : storms) writeStorm(json, storm, at, now);
    };
    answer.writeMore = [misses = reading.data.misses](JsonWriter& json) { writeMisses(json, misses); };
    return answer;
  });
}

}  // namespace nimbara
