#include "demo/world/demo_scene.h"

#include "base/json/json.h"
#include "demo/world/warnings/demo_warning_messages.h"

#include <fmt/format.h>

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr std::string_view kFeedPath = "/feeds/meteoalarm-legacy-atom-";
constexpr std::string_view kListPath = "/api/v1/warnings/feeds-";
constexpr std::string_view kAlertsPath = "/alerts/active";

std::string_view severityOf(std::string_view colour) {
  if (colour == "Red") return "Extreme";
  if (colour == "Orange") return "Severe";
  return colour == "Yellow" ? "Moderate" : "Minor";
}

std::string timeOf(Instant instant) {
  std::string text = formatIso8601(instant);
  text.pop_back();
  return text + "+00:00";
}

std::string areaElements(SceneEntry const& entry) {
  std::string out;
  if (!entry.code.empty()) {
    out +=
        fmt::format("<cap:geocode><valueName>EMMA_ID</valueName><value>{}</value></cap:geocode>", entry.code);
  }
  if (!entry.polygon.empty()) out += fmt::format("<cap:polygon>{}</cap:polygon>", entry.polygon);
  return out;
}

std::string identifierOf(SceneEntry const& entry, std::string_view country) {
  return fmt::format("2.49.0.0.0.0.scene.{}.{}.{}.{}.{}", country,
                     entry.code.empty() ? entry.area : entry.code, entry.kind, entry.listedFrom.count(),
                     entry.begin.count());
}

Instant sentAt(SceneEntry const& entry, Instant day) {
  return day + std::max(entry.listedFrom, entry.begin - hours(12));
}

std::string eventOf(SceneEntry const& entry) {
  return fmt::format("{} {} warning", entry.colour, entry.kind);
}

std::string entryText(SceneEntry const& entry, std::string_view country, Instant day) {
  std::string const id = identifierOf(entry, country);
  return fmt::format(
      "<entry>{}<cap:areaDesc>{}</cap:areaDesc><cap:event>{}</cap:event><cap:sent>{}</cap:sent>"
      "<cap:onset>{}</cap:onset><cap:expires>{}</cap:expires><cap:severity>{}</cap:severity>"
      "<cap:message_type>{}</cap:message_type><cap:status>Actual</cap:status>"
      "<cap:identifier>{}</cap:identifier><id>{}</id>"
      "<title>{} {} Warning issued for {} - {}</title></entry>\n",
      areaElements(entry), entry.area, eventOf(entry), timeOf(sentAt(entry, day)), timeOf(day + entry.begin),
      timeOf(day + entry.end), severityOf(entry.colour), entry.type, id, id, entry.colour, entry.kind,
      country, entry.area);
}

std::vector<SceneEntry> listedEntries(SceneFeed const& feed, Instant now) {
  Instant const day = std::chrono::floor<std::chrono::days>(now);
  std::vector<SceneEntry> listed;
  std::ranges::copy_if(feed.entries, std::back_inserter(listed), [&](SceneEntry const& entry) {
    return day + entry.listedFrom <= now && now < day + entry.listedUntil;
  });
  return listed;
}

std::string feedText(SceneFeed const& feed, Instant now) {
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<feed xmlns=\"http://www.w3.org/2005/Atom\" "
      "xmlns:cap=\"urn:oasis:names:tc:emergency:cap:1.2\">\n"
      "<rights>Played by the demo; no real warnings</rights>\n";
  for (SceneEntry const& entry : listedEntries(feed, now)) {
    out += entryText(entry, feed.country, std::chrono::floor<std::chrono::days>(now));
  }
  return out + "</feed>\n";
}

std::string pairText(std::string_view name, std::string_view value) {
  return fmt::format(R"({{"valueName":"{}","value":"{}"}})", name, value);
}

/// The entry's message whole. The texts of scenes need no escapes.
std::string messageText(SceneEntry const& entry, std::string_view country, Instant day) {
  std::string const area =
      entry.polygon.empty()
          ? entry.code.empty() ? "" : fmt::format(R"(,"geocode":[{}])", pairText("EMMA_ID", entry.code))
          : fmt::format(R"(,"polygon":["{}"])", entry.polygon);
  constexpr std::string_view kLevels[] = {"", "Green", "Yellow", "Orange", "Red"};
  auto const level = std::ranges::find(kLevels, entry.colour) - std::begin(kLevels);
  return fmt::format(
      R"({{"alert":{{"identifier":"{}","sender":"nimbara-demo","sent":"{}","status":"Actual","msgType":"{}",)"
      R"("info":[{{"language":"en-GB","event":"{}","severity":"{}","onset":"{}","expires":"{}",)"
      R"("senderName":"Demo Weather Service","description":"{} for {}.",)"
      R"("instruction":"There is nothing to do.","parameter":[{},{}],"area":[{{"areaDesc":"{}"{}}}]}}]}}}})",
      identifierOf(entry, country), timeOf(sentAt(entry, day)), entry.type, eventOf(entry),
      severityOf(entry.colour), timeOf(day + entry.begin), timeOf(day + entry.end), eventOf(entry),
      entry.area, pairText("awareness_level", fmt::format("{}; {}", level, entry.colour)),
      pairText("awareness_type", demoAwarenessType(entry.kind)), entry.area, area);
}

std::string listText(SceneFeed const& feed, Instant now) {
  std::string messages;
  for (SceneEntry const& entry : listedEntries(feed, now)) {
    messages += (messages.empty() ? "" : ",") +
                messageText(entry, feed.country, std::chrono::floor<std::chrono::days>(now));
  }
  return R"({"warnings":[)" + messages + "]}";
}

SceneAnswer answerIn(SceneFeed::Manner manner, std::string body) {
  switch (manner) {
    case SceneFeed::Manner::answers:
      return {{200, std::move(body), {}}};
    case SceneFeed::Manner::html:
      return {{200, "<!doctype html><title>Maintenance</title><p>We are back soon.", {}}};
    case SceneFeed::Manner::missing:
      return {{404, "Not Found", {}}};
    case SceneFeed::Manner::hangs:
      return {{}, true};
  }
  return {};
}

void writeMessage(JsonWriter& json, SceneMessage const& message, Instant day) {
  json.separate();
  json.beginObject();
  json.member("type", "Feature");
  json.member("id", message.id);
  json.key("geometry");
  json.null();
  json.key("properties");
  json.beginObject();
  json.member("id", message.id);
  json.member("areaDesc", "Demo County");
  json.member("status", "Actual");
  json.member("messageType", "Alert");
  json.member("event", message.event);
  json.member("severity", message.severity);
  json.member("certainty", "Likely");
  json.member("urgency", "Expected");
  json.member("sender", "demo@nimbara.example");
  json.member("senderName", "NWS Demo Office");
  json.member("headline", message.headline);
  json.member("description", message.headline);
  json.member("instruction", "");
  json.member("sent", timeOf(day + message.sent));
  json.member("onset", timeOf(day + message.begin));
  json.member("expires", timeOf(day + message.end));
  json.member("ends", timeOf(day + message.end));
  json.endObject();
  json.endObject();
}

DemoAnswer messagesAnswer(std::span<SceneMessage const> messages, Instant now) {
  Instant const day = std::chrono::floor<std::chrono::days>(now);
  JsonWriter json;
  json.beginObject();
  json.member("type", "FeatureCollection");
  json.key("features");
  json.beginList();
  for (SceneMessage const& message : messages) {
    if (day + message.sent <= now) writeMessage(json, message, day);
  }
  json.endList();
  json.endObject();
  return {200, json.take(), {}};
}

}  // namespace

std::optional<SceneAnswer> sceneAnswer(DemoScene const& scene, DemoRequest const& request, Instant now) {
  if (request.path == kAlertsPath && !scene.messages.empty()) {
    return SceneAnswer{messagesAnswer(scene.messages, now)};
  }
  bool const isList = request.path.starts_with(kListPath);
  if (!isList && !request.path.starts_with(kFeedPath)) return std::nullopt;
  std::string_view const country =
      std::string_view(request.path).substr(isList ? kListPath.size() : kFeedPath.size());
  auto const feed = std::ranges::find(scene.feeds, country, &SceneFeed::country);
  if (feed == scene.feeds.end()) return std::nullopt;
  return isList ? answerIn(feed->list, listText(*feed, now)) : answerIn(feed->manner, feedText(*feed, now));
}

}  // namespace nimbara
