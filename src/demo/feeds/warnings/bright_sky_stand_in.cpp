#include "demo/feeds/warnings/bright_sky_stand_in.h"

#include "base/json/json.h"
#include "base/text/text.h"
#include "demo/conditional_answer.h"
#include "demo/world/demo_words.h"
#include "demo/world/warnings/demo_warning_messages.h"
#include "gazetteer/gazetteer.h"

#include <fmt/format.h>

namespace nimbara {

namespace {

constexpr std::string_view kGermany = "DE";
constexpr std::int64_t kFirstCell = 700'000'000;

/// As the German service numbers its warnings.
constexpr int kEventCodes[] = {51, 31, 61, 70, 59, 247, 22, 65};

void writeTexts(JsonWriter& json, DemoEvent const& event, std::string_view language) {
  DemoWords const& words = demoWords(language);
  auto const member = [&](std::string_view name, std::string_view text) {
    json.member(std::string(name) + std::string(language), text);
  };
  std::string const name(words.events[event.kind]);
  member("event_", asciiLowered(name));
  member("headline_", name + " – " + event.tile.name());
  member("description_", words.sentenceFor(event.tile.name()));
  member("instruction_", words.instruction);
}

void writeAlert(JsonWriter& json, DemoWorldMessage const& message, std::int64_t number, Instant now) {
  DemoEvent const& event = message.event;
  DemoStep const step = message.about();
  json.separate();
  json.beginObject();
  json.member("id", number);
  json.member("alert_id", "2.49.0.0.276.0.DWD.PVW." + message.code());
  json.member("effective", demoWarningTime(step.sent));
  json.member("onset", demoWarningTime(event.begin));
  json.member("expires", demoWarningTime(step.end));
  json.member("category", "met");
  json.member("response_type", "prepare");
  json.member("urgency", event.begin <= now ? "immediate" : "future");
  json.member("severity", asciiLowered(kDemoWarningSeverities[static_cast<std::size_t>(step.level)]));
  json.member("certainty", "likely");
  json.member("event_code", kEventCodes[event.kind]);
  writeTexts(json, event, "en");
  writeTexts(json, event, "de");
  json.member("status", "actual");
  json.endObject();
}

void writeLocation(JsonWriter& json, DemoTile tile) {
  json.key("location");
  json.beginObject();
  json.member("warn_cell_id", kFirstCell + std::int64_t{1000} * tile.row + tile.column);
  json.member("name", tile.name());
  json.member("name_short", tile.name());
  json.member("district", "Demo");
  json.member("state", "Demo");
  json.member("state_short", "DM");
  json.endObject();
}

}  // namespace

DemoAnswer brightSkyAlerts(DemoRequest const& request, Instant now) {
  auto const place = demoCoordinate(request.query("lat"), request.query("lon"));
  if (!place) return {422, R"({"detail":"lat and lon are wanted"})", {}};
  if (describePlace(*place).countryCode != kGermany)
    return {404, R"({"detail":"Requested position is not covered by the DWD"})", {}};
  DemoTile const tile = demoTileAt(*place);
  JsonWriter json;
  json.beginObject();
  json.key("alerts");
  json.beginList();
  std::int64_t number = 0;
  for (auto const& message : demoWorldMessages(*demoIssuerOf(kGermany), tile, now)) {
    if (message.about().end > now) writeAlert(json, message, ++number, now);
  }
  json.endList();
  writeLocation(json, tile);
  json.endObject();
  return conditionalAnswer(request, json.take(), 60);
}

}  // namespace nimbara
