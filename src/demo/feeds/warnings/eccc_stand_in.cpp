#include "demo/feeds/warnings/eccc_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/feeds/warnings/geo_outline.h"
#include "demo/world/demo_words.h"
#include "demo/world/warnings/demo_warning_messages.h"

#include <fmt/format.h>

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr std::string_view kCanada = "CA";
constexpr std::int64_t kUsualLimit = 10;
/// So often an alert is published again, and so long each publication is good for.
constexpr hours kRenewedEvery{6};
constexpr hours kPublicationLasts{16};

struct Alert {
  DemoWorldMessage message;
  DemoStep step;
  Instant published;

  bool goesOn() const { return published > step.sent || step.isUpdate; }
};

/// "issued" or "continued"; what is over is listed no more.
std::vector<Alert> alertsAt(Coordinate place, Instant now) {
  std::vector<Alert> alerts;
  for (auto const& message : demoWorldMessages(*demoIssuerOf(kCanada), demoTileAt(place), now)) {
    DemoStep const step = message.about();
    auto const renewals = (now - step.sent) / kRenewedEvery;
    if (step.end > now) alerts.push_back({message, step, step.sent + renewals * kRenewedEvery});
  }
  return alerts;
}

std::optional<Coordinate> middleOf(std::string_view box) {
  auto const sides = split(box, ',');
  if (sides.size() != 4) return std::nullopt;
  std::vector<double> numbers;
  for (std::string_view const side : sides) {
    auto const number = parseDouble(side);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  Coordinate const middle{(numbers[1] + numbers[3]) / 2, (numbers[0] + numbers[2]) / 2};
  return isValid(middle) ? std::optional(middle) : std::nullopt;
}

/// With milliseconds, as the service writes times.
std::string timeText(Instant instant) {
  std::string text = formatIso8601(std::chrono::floor<std::chrono::seconds>(instant));
  text.pop_back();
  return text + ".000Z";
}

void writeTexts(JsonWriter& json, Alert const& alert, std::string_view language, std::string_view ending) {
  DemoWords const& words = demoWords(language);
  DemoEvent const& event = alert.message.event;
  std::string const name = asciiLowered(words.events[event.kind]);
  auto const with = [ending](std::string_view key) { return std::string(key) + std::string(ending); };
  json.member(with("alert_name_"), language == "fr" ? "avertissement : " + name : name + " warning");
  json.member(with("alert_short_name_"), words.events[event.kind]);
  json.member(with("alert_text_"), words.sentenceFor(event.tile.name()));
  json.member(with("feature_name_"), event.tile.name());
}

void writeAlert(JsonWriter& json, Alert const& alert) {
  DemoEvent const& event = alert.message.event;
  auto const colour = asciiLowered(kDemoWarningColours[static_cast<std::size_t>(alert.step.level)]);
  std::string const id = alert.message.code();
  json.separate();
  json.beginObject();
  json.member("type", "Feature");
  json.key("properties");
  json.beginObject();
  json.member("id", id);
  json.member("alert_code", fmt::format("D{:02}", event.kind));
  json.member("alert_type", "warning");
  writeTexts(json, alert, "en", "en");
  writeTexts(json, alert, "fr", "fr");
  json.member("publication_datetime", timeText(alert.published));
  json.member("expiration_datetime", timeText(alert.published + kPublicationLasts));
  json.member("validity_datetime", timeText(event.begin));
  json.member("event_end_datetime", timeText(alert.step.end));
  json.member("risk_colour_en", colour);
  json.member("confidence_en", "High");
  json.member("impact_en", "Moderate");
  json.member("province", "ON");
  json.member("status_en", alert.goesOn() ? "continued" : "issued");
  json.member("status_fr", alert.goesOn() ? "maintenu" : "émis");
  json.member("feature_id", fmt::format("fea{}-{}", event.tile.row, event.tile.column));
  json.endObject();
  json.key("geometry");
  writeGeometry(json, event.tile.outlines());
  json.member("id", id);
  json.endObject();
}

}  // namespace

DemoAnswer ecccAlerts(DemoRequest const& request, Instant now) {
  auto const place = middleOf(request.query("bbox"));
  if (!place) return {400, R"({"code":"InvalidParameterValue","description":"bbox"})", {}};
  std::string const status = request.query("status_en");
  auto alerts = alertsAt(*place, now);
  std::erase_if(alerts, [&](Alert const& alert) {
    return !status.empty() && status != (alert.goesOn() ? "continued" : "issued");
  });
  auto const limit = parseInteger(request.query("limit")).value_or(kUsualLimit);
  auto const listed = std::min(alerts.size(), static_cast<std::size_t>(std::max<std::int64_t>(limit, 0)));
  JsonWriter json;
  json.beginObject();
  json.member("type", "FeatureCollection");
  json.key("features");
  json.beginList();
  for (std::size_t i = 0; i < listed; ++i) writeAlert(json, alerts[i]);
  json.endList();
  json.member("numberMatched", alerts.size());
  json.member("numberReturned", listed);
  json.member("timeStamp", formatIso8601(now));
  json.endObject();
  return {200, json.take(), {{"Content-Type", "application/geo+json"}}};
}

}  // namespace nimbara
