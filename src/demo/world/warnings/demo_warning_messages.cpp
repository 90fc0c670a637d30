#include "demo/world/warnings/demo_warning_messages.h"

#include "base/json/json.h"
#include "base/sha256.h"
#include "base/text/text.h"

#include <fmt/format.h>

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;

/// Announced so long before they begin; from then on the warnings are updates.
constexpr hours kNotice{12};

struct Kind {
  std::string_view name;
  int number;  ///< as the messages count
  std::string_view description;
  std::string_view instruction;
};

constexpr Kind kKinds[] = {
    {"Wind", 1, "Strong gusts. Branches may break and loose objects may be carried away.",
     "Secure loose objects and keep away from trees."},
    {"Snow-ice", 2, "Snow and slippery roads. Expect much longer journey times.",
     "Allow extra time for your journey and drive with care."},
    {"Thunderstorm", 3, "Thunderstorms with lightning and short, heavy rain.", "Seek shelter in a building."},
    {"Fog", 4, "Dense fog. Visibility may drop below 100 m.", "Drive slowly with your lights on."},
    {"High-temperature", 5, "Intense heat through the afternoon.",
     "Drink plenty of water and stay in the shade."},
    {"Low-temperature", 6, "Severe frost, especially at night.", "Keep warm and protect water pipes."},
    {"Coastalevent", 7, "High waves and strong currents on the coast.", "Keep away from the shore."},
    {"Rain", 10, "Prolonged heavy rain. Small streams may rise quickly.", "Keep away from streams."},
    {"Flooding", 12, "Rivers are flooding low-lying areas.", "Do not drive through flood water."},
};

Kind const& kindOf(std::string_view name) {
  return *std::ranges::find(kKinds, name, &Kind::name);
}

/// What the demo says in the countries' own languages.
struct Language {
  std::string_view country;
  std::string_view tag;
  std::string_view description;
  std::string_view instruction;
};

constexpr Language kLanguages[] = {
    {"AT", "de-AT", "Eine erfundene Warnung für {}.", "Es ist nichts zu tun."},
    {"DE", "de-DE", "Eine erfundene Warnung für {}.", "Es ist nichts zu tun."},
    {"ES", "es-ES", "Un aviso inventado para {}.", "No hay que hacer nada."},
    {"FI", "fi-FI", "Keksitty varoitus alueelle {}.", "Mitään ei tarvitse tehdä."},
    {"FR", "fr-FR", "Une vigilance inventée pour {}.", "Il n’y a rien à faire."},
    {"GR", "el-GR", "Μια επινοημένη προειδοποίηση για {}.", "Δεν χρειάζεται να κάνετε τίποτα."},
    {"IS", "is-IS", "Tilbúin viðvörun fyrir {}.", "Ekkert þarf að gera."},
    {"IT", "it-IT", "Un avviso inventato per {}.", "Non c’è nulla da fare."},
    {"NO", "nb-NO", "Et oppdiktet varsel for {}.", "Ingenting må gjøres."},
    {"PL", "pl-PL", "Zmyślone ostrzeżenie: {}.", "Nie trzeba nic robić."},
    {"PT", "pt-PT", "Um aviso inventado para {}.", "Não é preciso fazer nada."},
};

struct Words {
  std::string_view tag;
  std::string description;
  std::string_view instruction;
};

std::vector<Words> wordsOf(DemoWarningMessage const& message) {
  Kind const& kind = kindOf(message.warning.kind);
  std::vector<Words> words;
  auto const* const own = std::ranges::find(kLanguages, message.region.town->countryCode, &Language::country);
  if (own != std::end(kLanguages)) {
    words.push_back(
        {own->tag, fmt::format(fmt::runtime(own->description), message.region.name), own->instruction});
  }
  words.push_back({"en-GB", std::string(kind.description), kind.instruction});
  return words;
}

std::string element(std::string_view name, std::string_view text) {
  return fmt::format("<{0}>{1}</{0}>\n", name, demoXmlText(text));
}

std::string pair(std::string_view name, std::string_view key, std::string_view value) {
  return fmt::format("<{0}><valueName>{1}</valueName><value>{2}</value></{0}>\n", name, key, value);
}

std::string eventOf(DemoWarningMessage const& message) {
  return fmt::format("{} {} warning", kDemoWarningSeverities[static_cast<std::size_t>(message.warning.level)],
                     message.warning.kind);
}

std::string headlineOf(DemoWarningMessage const& message) {
  return fmt::format("{} warning for {}", message.warning.kind, message.region.name);
}

std::string issuerOf(DemoWarningMessage const& message) {
  return fmt::format("Demo Weather Service of {}", message.region.town->country);
}

std::string levelText(std::size_t level) {
  return fmt::format("{}; {}; {}", level + 1, asciiLowered(kDemoWarningColours[level]),
                     kDemoWarningSeverities[level]);
}

std::string blockOf(DemoWarningMessage const& message, Words const& words) {
  auto const level = static_cast<std::size_t>(message.warning.level);
  return "<info>\n" + element("language", words.tag) + element("category", "Met") +
         element("event", eventOf(message)) + element("urgency", message.isUpdate ? "Immediate" : "Future") +
         element("severity", kDemoWarningSeverities[level]) + element("certainty", "Likely") +
         element("onset", demoWarningTime(message.warning.begin)) +
         element("expires", demoWarningTime(message.warning.end)) + element("senderName", issuerOf(message)) +
         element("headline", headlineOf(message)) + element("description", words.description) +
         element("instruction", words.instruction) + pair("parameter", "awareness_level", levelText(level)) +
         pair("parameter", "awareness_type", demoAwarenessType(message.warning.kind)) + "<area>\n" +
         element("areaDesc", message.region.name) +
         (message.region.code.empty() ? "" : pair("geocode", "EMMA_ID", message.region.code)) +
         "</area>\n</info>\n";
}

void writePair(JsonWriter& json, std::string_view key, std::string_view value) {
  json.separate();
  json.beginObject();
  json.member("valueName", key);
  json.member("value", value);
  json.endObject();
}

void writeArea(JsonWriter& json, DemoRegion const& region) {
  json.key("area");
  json.beginList();
  json.separate();
  json.beginObject();
  json.member("areaDesc", region.name);
  json.key(region.isDrawn() ? "polygon" : "geocode");
  json.beginList();
  if (region.isDrawn()) {
    json.separate();
    json.value(region.outlineText());
  } else if (!region.code.empty()) {
    writePair(json, "EMMA_ID", region.code);
  }
  json.endList();
  json.endObject();
  json.endList();
}

void writeBlock(JsonWriter& json, DemoWarningMessage const& message, Words const& words) {
  auto const level = static_cast<std::size_t>(message.warning.level);
  json.separate();
  json.beginObject();
  json.member("language", words.tag);
  json.member("event", eventOf(message));
  json.member("urgency", message.isUpdate ? "Immediate" : "Future");
  json.member("severity", kDemoWarningSeverities[level]);
  json.member("certainty", "Likely");
  json.member("onset", demoWarningTime(message.warning.begin));
  json.member("expires", demoWarningTime(message.warning.end));
  json.member("senderName", issuerOf(message));
  json.member("headline", headlineOf(message));
  json.member("description", words.description);
  json.member("instruction", words.instruction);
  json.key("parameter");
  json.beginList();
  writePair(json, "awareness_level", levelText(level));
  writePair(json, "awareness_type", demoAwarenessType(message.warning.kind));
  json.endList();
  writeArea(json, message.region);
  json.endObject();
}

void writeMessage(JsonWriter& json, DemoWarningMessage const& message) {
  json.separate();
  json.beginObject();
  json.member("uuid", message.documentName());
  json.key("alert");
  json.beginObject();
  json.member("identifier", message.identifier());
  json.member("sender", "nimbara-demo");
  json.member("sent", demoWarningTime(message.sent));
  json.member("status", "Actual");
  json.member("msgType", message.isUpdate ? "Update" : "Alert");
  json.key("info");
  json.beginList();
  for (Words const& words : wordsOf(message)) writeBlock(json, message, words);
  json.endList();
  json.endObject();
  json.endObject();
}

DemoWarningMessage messageOf(DemoRegion const& region, DemoWarning const& warning, Instant now) {
  bool const hasBegun = warning.begin <= now;
  // By the hour, so that the links of a feed lead to documents as long as the feed is kept.
  Instant const hour = std::chrono::floor<hours>(now);
  Instant const sent = std::min(hour, hasBegun ? warning.end - hours(1) : warning.begin - kNotice);
  return {region, warning, sent, hasBegun};
}

}  // namespace

std::string DemoWarningMessage::identifier() const {
  std::string const area = region.code.empty()
                               ? std::string(region.town->countryCode) + (region.isBeside ? "2" : "1")
                               : region.code;
  return fmt::format("2.49.0.0.0.0.{}.{}.{}.{}", area, warning.kind, demoWarningTime(sent),
                     demoWarningTime(warning.begin));
}

std::string DemoWarningMessage::documentName() const {
  constexpr std::size_t kDigits = 32;
  return sha256Hex(identifier()).substr(0, kDigits);
}

std::vector<DemoWarningMessage> demoWarningMessages(std::vector<DemoRegion> const& regions, Instant now) {
  Instant const today = std::chrono::floor<std::chrono::days>(now);
  std::vector<DemoWarningMessage> messages;
  auto const add = [&](DemoRegion const& region, DemoWarning const& warning) {
    messages.push_back(messageOf(region, warning, now));
  };
  for (DemoRegion const& region : regions) {
    for (DemoWarning const& warning : demoWarnings(region.center(), now)) add(region, warning);
    if (region.isBeside) {
      add(region, {"Flooding", 1, today - hours(6), today + hours(48)});
    } else {
      add(region, {"Wind", 1, today - hours(30), today - hours(12)});  // has ended
      add(region, {"Rain", 0, today, today + hours(24)});              // warns of nothing
    }
  }
  return messages;
}

std::string demoWarningDocument(DemoWarningMessage const& message) {
  std::string document =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<alert xmlns=\"urn:oasis:names:tc:emergency:cap:1.2\">\n" +
      element("identifier", message.identifier()) + element("sender", "nimbara-demo") +
      element("sent", demoWarningTime(message.sent)) + element("status", "Actual") +
      element("msgType", message.isUpdate ? "Update" : "Alert") + element("scope", "Public");
  for (Words const& words : wordsOf(message)) document += blockOf(message, words);
  return document + "</alert>\n";
}

std::string demoWarningList(std::vector<DemoWarningMessage> const& messages) {
  JsonWriter json;
  json.beginObject();
  json.key("warnings");
  json.beginList();
  for (DemoWarningMessage const& message : messages) writeMessage(json, message);
  json.endList();
  json.endObject();
  return json.take();
}

std::string demoAwarenessType(std::string_view kind) {
  auto const* const found = std::ranges::find(kKinds, kind, &Kind::name);
  return found == std::end(kKinds) ? std::string(kind) : fmt::format("{}; {}", found->number, kind);
}

std::string demoWarningTime(Instant instant) {
  std::string text = formatIso8601(std::chrono::floor<std::chrono::seconds>(instant));
  text.pop_back();
  return text + "+00:00";
}

std::string demoXmlText(std::string_view text) {
  std::string out;
  for (char const c : text) out += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
  return out;
}

}  // namespace nimbara
