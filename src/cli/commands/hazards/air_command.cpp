#include "app/services/feed_services.h"
#include "app/words/hazards/air_text.h"
#include "cli/commands/feed_commands.h"
#include "cli/commands/hazards/hazard_frame.h"
#include "feeds/air/air_quality_service.h"

namespace nimbara {

namespace {

template <class E, class Values>
void writeValues(JsonWriter& json, Values const& values) {
  json.beginObject();
  for (std::size_t i = 0; i < values.size(); ++i) json.memberOrNull(enumNames<E>[i], values[i]);
  json.endObject();
}

void writeIndex(JsonWriter& json, std::optional<AirIndex> const& index) {
  if (!index) return json.memberOrNull("index", std::optional<int>());
  json.key("index");
  json.beginObject();
  json.member("scale", index->scale);
  json.member("value", static_cast<int>(index->value));
  json.member("band", index->band);
  json.memberOrNull("leading", index->leading);
  json.endObject();
}

void writeHour(JsonWriter& json, AirQualityHour const& hour, AirScale scale) {
  auto const index = airIndexOf(hour.levels, scale);
  json.separate();
  json.beginObject();
  json.member("time", hour.time);
  json.memberOrNull("index",
                    index.transform([](AirIndex const& own) { return static_cast<int>(own.value); }));
  json.memberOrNull("band", index.transform([](AirIndex const& own) { return own.band; }));
  json.memberOrNull("leading", index ? index->leading : std::nullopt);
  for (std::size_t i = 0; i < hour.levels.pollutants.size(); ++i)
    json.memberOrNull(enumNames<Pollutant>[i], hour.levels.pollutants[i]);
  json.memberOrNull("uvIndex", hour.levels.uvIndex);
  json.endObject();
}

void writeUv(JsonWriter& json, UvOutlook const& uv) {
  json.key("uv");
  json.beginObject();
  json.memberOrNull("now", uv.now);
  json.memberOrNull("highest", uv.highest);
  json.key("protection");
  json.beginList();
  for (UvHours const& span : uv.protection) {
    json.separate();
    json.beginObject();
    json.member("from", span.begin);
    json.member("to", span.end);
    json.member("highest", span.highest);
    json.endObject();
  }
  json.endList();
  json.endObject();
}

/// Where nothing is known, all of it is null or empty.
void writeAir(JsonWriter& json, FeedReading<AirQualityForecast> const& reading, Coordinate place,
              HazardCheck const& check, Instant now) {
  AirScale const scale = airScaleAt(place);
  AirQualityForecast const& air = reading.data;
  PollenOutlook const pollen = pollenOutlook(air, place, now);
  bool const hasPollen = pollen.state == PollenState::values || pollen.state == PollenState::outOfSeason;
  writeIndex(json, airIndexOf(air.now, scale));
  json.key("pollutants");
  writeValues<Pollutant>(json, air.now.pollutants);
  json.key("pollen");
  hasPollen ? writeValues<PollenKind>(json, pollen.highest) : json.null();
  json.member("pollenState", pollen.state);
  writeUv(json, uvOutlook(air, now));
  json.key("hours");
  json.beginList();
  for (AirQualityHour const& hour : airHoursAhead(air, now)) writeHour(json, hour, scale);
  json.endList();
  json.memberOrNull("checkedAt", check.checkedAt);
  json.member("state", check.state);
  json.memberOrNull("reason", reasonOf(check));
}

void addPage(HazardAnswer& answer, AirText text) {
  answer.heading = std::move(text.index);
  if (!text.leading.empty()) answer.lines.push_back({std::move(text.leading), ""});
  for (HazardLine& line : text.pollutants) answer.lines.push_back(std::move(line));
  if (!text.peak.empty()) answer.lines.push_back({std::move(text.peak), ""});
  answer.lines.push_back({std::move(text.uv), ""});
  for (std::string& hours : text.protection) answer.lines.push_back({std::move(hours), ""});
  if (!text.pollenState.empty()) answer.lines.push_back({std::move(text.pollenState), ""});
  for (HazardLine& line : text.pollen) answer.lines.push_back(std::move(line));
  answer.notes = {std::move(text.source)};
}

}  // namespace

int runAir(CommandLine const& line, Session const& session) {
  return runHazard(line, session, [&](RunContext& context, Place const& place, HazardWords const& words) {
    auto const reading = context.app().feeds().airQuality().fetchForecast(place.coordinate, session.stop);
    HazardAnswer answer;
    bool const isAny = airIndexOf(reading.data.now, airScaleAt(place.coordinate)).has_value();
    answer.check = hazardCheck(reading, isAny);
    answer.subject = "the air quality";
    if (reading.checkedAt) addPage(answer, airText(reading.data, place.coordinate, reading.checkedAt, words));
    answer.writeDocument = [reading, at = place.coordinate, check = answer.check,
                            now = words.now](JsonWriter& json) { writeAir(json, reading, at, check, now); };
    return answer;
  });
}

}  // namespace nimbara
