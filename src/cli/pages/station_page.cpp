#include "cli/pages/station_page.h"

#include "base/words/list_text.h"
#include "base/words/time_words.h"

#include <algorithm>

namespace nimbara {

namespace {

long long secondsSince(Instant then, Instant now) {
  return std::chrono::duration_cast<std::chrono::seconds>(now - then).count();
}

void writeMoment(JsonWriter& json, std::optional<Instant> observedAt, Instant now) {
  json.memberOrNull("observedAt", observedAt);
  json.memberOrNull("ageSeconds", observedAt ? std::optional(secondsSince(*observedAt, now)) : std::nullopt);
}

void writeModule(JsonWriter& json, StationModule const& module, Instant now) {
  json.beginObject();
  json.member("id", module.id);
  json.member("name", module.name);
  json.member("kind", module.kind);
  json.member("reachable", module.isReachable);
  json.memberOrNull("battery", module.battery);
  writeMoment(json, module.observedAt, now);
  json.endObject();
}

void writeModules(JsonWriter& json, StationReading const& station, Instant now) {
  json.key("modules");
  json.beginList();
  for (StationModule const& module : station.modules) {
    json.separate();
    writeModule(json, module, now);
  }
  json.endList();
}

void writeReadings(JsonWriter& json, StationShown const& shown, StationReading const& station, Instant now) {
  json.key("readings");
  json.beginList();
  for (StationModule const& module : station.modules) {
    for (StationValue const& value : module.values) {
      json.separate();
      json.beginObject();
      json.member("quantity", value.quantity);
      json.member("value", value.value);
      json.member("unit", unitOf(value.quantity));
      json.member("module", module.name);
      json.member("kind", module.kind);
      writeMoment(json, module.observedAt, now);
      json.member("isPresent", std::ranges::any_of(shown.values, [&](OverlaidValue const& each) {
                    return each.quantity == value.quantity && each.module == module.name;
                  }));
      json.endObject();
    }
  }
  json.endList();
}

void writeDoubts(JsonWriter& json, StationShown const& shown) {
  json.key("doubts");
  json.beginList();
  for (DoubtedValue const& doubted : shown.doubts) {
    json.separate();
    json.beginObject();
    json.member("reason", doubted.doubt);
    json.member("quantity", doubted.quantity);
    json.memberOrNull("value", doubted.value);
    json.memberOrNull("expected", doubted.expected);
    json.member("module", doubted.module);
    json.endObject();
  }
  json.endList();
}

void writeState(JsonWriter& json, StationsReading const& reading) {
  json.member("state", reading.state);
  json.member("kind", reading.kind);
  json.memberOrNull("checkedAt", reading.checkedAt);
  json.memberOrNull("nextAsk", reading.nextAsk);
  std::optional<std::string> reason;
  if (reading.problem) {
    bool const isFailed = reading.problem->kind == StationProblem::Kind::failed;
    reason = isFailed ? sentenceOf(reading.problem->failure) : std::string(enumName(reading.problem->kind));
  }
  json.memberOrNull("reason", reason);
  json.memberOrNull(
      "tokens", reading.tokens == StationTokensIn::nowhere ? std::nullopt : std::optional(reading.tokens));
}

void writeName(JsonWriter& json, StationReading const& station) {
  json.member("id", station.id);
  json.member("name", station.name);
  json.memberOrNull("latitude", station.latitude);
  json.memberOrNull("longitude", station.longitude);
  json.memberOrNull("altitude", station.altitude);
}

void writeSource(JsonWriter& json, std::string_view key, StationShown const& shown,
                 OverlaidValue const& value, Instant now) {
  StationReading const* const station = shown.reading.station();
  json.key(key);
  json.beginObject();
  json.member("source", "station");
  json.member("station", station != nullptr ? station->name : std::string());
  json.member("module", value.module);
  writeMoment(json, value.observedAt, now);
  json.endObject();
}

/// Beside their like these would need a label each; the document for scripts has them.
constexpr StationQuantity kUnlabelled[] = {StationQuantity::absolutePressure, StationQuantity::windDirection,
                                           StationQuantity::gustSpeed, StationQuantity::gustDirection,
                                           StationQuantity::rainLastDay};

std::string moduleLine(StationModule const& module, Texts const& texts, StationPageOptions const& options) {
  std::string values;
  for (StationValue const& value : module.values) {
    if (std::ranges::find(kUnlabelled, value.quantity) != std::end(kUnlabelled)) continue;
    appendItem(values, valueText(value.quantity, value.value, options.units), texts);
  }
  std::string about = module.observedAt ? ageText(*module.observedAt, options.now, texts)
                                        : std::string(texts.text("station.silent"));
  if (module.battery) appendClause(about, texts.format("station.battery", *module.battery), texts);
  constexpr int kNameWidth = 18;
  std::string const name = moduleText(module.name, module.kind, texts);
  Style const& style = options.style;
  return "  " + style.cell(style.text(name), kNameWidth) + " " + style.text(values) +
         (values.empty() ? "" : "  ") + style.painted(style.text(about), Colour::dim) + "\n";
}

std::string nameOf(StationReading const& station, Texts const& texts) {
  return station.name.empty() ? std::string(texts.text("station.unnamed")) : station.name;
}

}  // namespace

void writeSources(JsonWriter& json, StationShown const& shown, Instant now) {
  json.beginObject();
  for (OverlaidValue const& value : shown.values) {
    for (std::string_view const key : presentKeys(value.quantity)) writeSource(json, key, shown, value, now);
  }
  json.endObject();
}

std::string stationJson(StationShown const& shown, Instant now) {
  JsonWriter json;
  json.beginObject();
  writeState(json, shown.reading);
  if (StationReading const* const station = shown.reading.station()) {
    writeName(json, *station);
    json.member("stations", shown.reading.together);
    writeReadings(json, shown, *station, now);
    writeModules(json, *station, now);
    writeDoubts(json, shown);
  }
  json.endObject();
  return json.take() + "\n";
}

std::string stationsJson(StationsReading const& reading, Instant now) {
  JsonWriter json;
  json.beginList();
  for (StationReading const& station : reading.stations) {
    json.separate();
    json.beginObject();
    writeName(json, station);
    json.member("chosen", reading.station() == &station);
    writeModules(json, station, now);
    json.endObject();
  }
  json.endList();
  return json.take() + "\n";
}

std::string stationPage(StationShown const& shown, Texts const& texts, StationPageOptions const& options) {
  StationReading const* const station = shown.reading.station();
  if (station == nullptr) return {};
  Style const& style = options.style;
  std::string page = style.painted(style.text(nameOf(*station, texts)), Colour::bold) + "\n";
  for (StationModule const& module : station->modules) page += moduleLine(module, texts, options);
  std::string const live = liveText(shown, options.units, texts, options.now);
  if (!live.empty()) page += style.painted(style.text(live), Colour::dim) + "\n";
  for (DoubtedValue const& doubted : shown.doubts)
    page += style.text(doubtText(doubted, options.units, texts, options.now)) + "\n";
  std::string const tokens = tokensText(shown.reading.tokens, texts);
  if (!tokens.empty()) page += style.painted(style.text(tokens), Colour::dim) + "\n";
  return page;
}

std::string stationList(StationsReading const& reading, Texts const& texts,
                        StationPageOptions const& options) {
  std::string page;
  for (StationReading const& station : reading.stations) {
    bool const isChosen = reading.station() == &station;
    page += (isChosen ? "* " : "  ") +
            options.style.painted(options.style.text(nameOf(station, texts)), Colour::bold) + "  " +
            options.style.painted(options.style.text(station.id), Colour::dim) + "\n";
  }
  return page;
}

}  // namespace nimbara
