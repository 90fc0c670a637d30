#include "demo/feeds/warnings/met_alerts_stand_in.h"

#include "base/json/json.h"
#include "demo/conditional_answer.h"
#include "demo/feeds/warnings/geo_outline.h"
#include "demo/world/demo_words.h"
#include "demo/world/warnings/demo_cap.h"
#include "demo/world/warnings/demo_warning_messages.h"
#include "gazetteer/gazetteer.h"

#include <fmt/format.h>

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kSvalbard = "SJ";
constexpr std::string_view kCountries[] = {"NO", kSvalbard};

/// Beyond these the service has no area.
bool isInArea(Coordinate place) {
  bool const isNear =
      place.latitude > 55 && place.latitude < 85 && place.longitude > -15 && place.longitude < 45;
  auto const country = describePlace(place).countryCode;
  return isNear && (country.empty() || std::ranges::count(kCountries, country) > 0);
}

/// What its event types are called.
constexpr std::string_view kTypes[] = {"wind", "lightning", "rain",     "snow", "drivingConditions",
                                       "heat", "icing",     "rainFlood"};

void writeProperties(JsonWriter& json, DemoWorldMessage const& message, bool isAtSea,
                     std::string_view language) {
  DemoEvent const& event = message.event;
  DemoStep const step = message.about();
  DemoWords const& words = demoWords(language);
  std::string const area = event.tile.name();
  auto const level = static_cast<std::size_t>(step.level);
  json.beginObject();
  json.member("altitude_above_sea_level", 0);
  json.member("area", area);
  json.member("awareness_level", demoAwarenessLevel(step.level));
  json.member("awareness_type", demoAwarenessType(kDemoKinds[event.kind]));
  json.member("ceiling_above_sea_level", 2743);
  json.member("certainty", "Likely");
  json.member("consequences", words.sentenceFor(area));
  json.member("county", std::vector<std::string>());
  json.member("description", words.sentenceFor(area));
  json.member("event", kTypes[event.kind]);
  json.member("eventAwarenessName", words.events[event.kind]);
  json.member("geographicDomain", isAtSea ? "marine" : "land");
  json.member("id", "2.49.0.1.578.0." + message.code());
  json.member("instruction", words.instruction);
  json.member("riskMatrixColor", kDemoWarningColours[level]);
  json.member("severity", kDemoWarningSeverities[level]);
  json.member("status", "Actual");
  json.member("title",
              fmt::format("{}, {}, {} UTC", words.events[event.kind], area, formatIso8601(event.begin)));
  json.member("type", step.isUpdate ? "Update" : "Alert");
  json.endObject();
}

void writeFeature(JsonWriter& json, DemoWorldMessage const& message, bool isAtSea,
                  std::string_view language) {
  json.separate();
  json.beginObject();
  json.key("geometry");
  writeGeometry(json, message.event.tile.outlines());
  json.key("properties");
  writeProperties(json, message, isAtSea, language);
  json.member("type", "Feature");
  json.key("when");
  json.beginObject();
  json.member("interval", std::vector<std::string>{demoWarningTime(message.event.begin),
                                                   demoWarningTime(message.about().end)});
  json.endObject();
  json.endObject();
}

}  // namespace

DemoAnswer metAlertsCurrent(DemoRequest const& request, Instant now) {
  if (request.header("User-Agent").empty()) return {403, "403 Forbidden", {}};
  DemoIssuer const& issuer = *demoIssuerOf(kSvalbard);
  bool const isOfAll = request.query("lat").empty() && request.query("lon").empty();
  auto const place =
      isOfAll ? std::optional(issuer.place) : demoCoordinate(request.query("lat"), request.query("lon"));
  if (!place || !isInArea(*place)) return {422, "422 Unprocessable Entity", {}};
  std::string_view const language = request.query("lang") == "en" ? "en" : "no";
  bool const isAtSea = describePlace(*place).countryCode.empty();
  JsonWriter json;
  json.beginObject();
  json.key("features");
  json.beginList();
  for (auto const& message : demoWorldMessages(issuer, demoTileAt(*place), now)) {
    if (message.about().end > now) writeFeature(json, message, isAtSea, language);
  }
  json.endList();
  json.member("lang", language);
  json.member("lastChange", demoWarningTime(std::chrono::floor<std::chrono::hours>(now)));
  json.member("type", "FeatureCollection");
  json.endObject();
  return conditionalAnswer(request, json.take(), 60);
}

}  // namespace nimbara
