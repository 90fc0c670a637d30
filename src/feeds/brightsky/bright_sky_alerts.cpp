#include "feeds/brightsky/bright_sky_alerts.h"

#include "base/text/text.h"
#include "feeds/cap/cap_text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::string_view kIssuer = "Deutscher Wetterdienst";
constexpr std::string_view kCountry = "DE";

constexpr std::string_view kCapWords[] = {
    "Actual",  "Exercise", "System",   "Test",    "Draft",    "Immediate", "Expected", "Future",   "Past",
    "Extreme", "Severe",   "Moderate", "Minor",   "Observed", "Likely",    "Possible", "Unlikely", "Unknown",
    "Shelter", "Evacuate", "Prepare",  "Execute", "Avoid",    "Monitor",   "Assess",   "AllClear", "None"};

using Text = Lenient<std::string>;

struct WireAlert {
  std::string id;
  Text status, effective, onset, expires, responseType, urgency, severity, certainty;
  LenientNumber eventCode;
  Text eventEn, eventDe, headlineEn, headlineDe, descriptionEn, descriptionDe, instructionEn, instructionDe;
};

struct WireLocation {
  LenientNumber warnCell;
  Text name, district, state;
};

struct WireList {
  std::vector<Lenient<WireAlert>> alerts;
  WireLocation location;
};

/// What an error says; its members have changed with the service's versions.
struct WireRefusal {
  Text detail, description, title;
};

/// The members of an alert that one language has.
struct WireTexts {
  std::string_view language;
  Text WireAlert::* event;
  Text WireAlert::* headline;
  Text WireAlert::* description;
  Text WireAlert::* instruction;
};

constexpr WireTexts kLanguages[] = {
    {"en", &WireAlert::eventEn, &WireAlert::headlineEn, &WireAlert::descriptionEn, &WireAlert::instructionEn},
    {"de", &WireAlert::eventDe, &WireAlert::headlineDe, &WireAlert::descriptionDe,
     &WireAlert::instructionDe}};

std::string word(Text const& text) {
  return std::string(trimmed(text.value.value_or("")));
}

/// As the protocol writes it; a word that is not of the protocol stays as it is.
std::string capWord(Text const& text) {
  std::string const stated = word(text);
  std::string const lowered = asciiLowered(stated);
  auto const found = std::ranges::find(kCapWords, lowered, asciiLowered);
  return found == std::end(kCapWords) ? stated : std::string(*found);
}

std::optional<Instant> date(Text const& text) {
  return capDate(text.value.value_or(""));
}

/// "711000101"; empty for what is no whole number.
std::string codeOf(LenientNumber const& wire) {
  constexpr double kLargest = 1e15;
  if (!wire.value || !(std::abs(*wire.value) < kLargest) || *wire.value != std::trunc(*wire.value)) return {};
  return std::to_string(static_cast<long long>(*wire.value));
}

/// "Stadt Göttingen, Göttingen, Niedersachsen"; a city is its own district and may be its own state.
CapArea areaOf(WireLocation const& wire) {
  CapArea area;
  std::string last;
  for (Text const* const text : {&wire.name, &wire.district, &wire.state}) {
    std::string name = word(*text);
    if (name.empty() || name == last) continue;
    area.areaDesc += (area.areaDesc.empty() ? "" : ", ") + name;
    last = std::move(name);
  }
  if (auto code = codeOf(wire.warnCell); !code.empty()) area.geocodes = {{"WARNCELLID", std::move(code)}};
  return area;
}

/// "Frost": its English names of events are those of a list, without a capital.
std::string asTitle(std::string name) {
  if (!name.empty()) name.replace(0, 1, asciiUppered(name.substr(0, 1)));
  return name;
}

std::optional<CapInfo> infoOf(WireAlert const& wire, WireTexts const& texts, CapArea const& area) {
  CapInfo info;
  info.event = asTitle(word(wire.*texts.event));
  info.headline = (wire.*texts.headline).value.value_or("");
  info.description = (wire.*texts.description).value.value_or("");
  info.instruction = (wire.*texts.instruction).value.value_or("");
  if (info.event.empty() && info.headline.empty() && info.description.empty()) return std::nullopt;
  info.language = texts.language;
  info.urgency = capWord(wire.urgency);
  info.severity = capWord(wire.severity);
  info.certainty = capWord(wire.certainty);
  if (auto type = capWord(wire.responseType); !type.empty()) info.responseTypes = {std::move(type)};
  info.effective = date(wire.effective);
  info.onset = date(wire.onset);
  info.expires = date(wire.expires);
  info.senderName = kIssuer;
  if (auto code = codeOf(wire.eventCode); !code.empty()) info.eventCodes = {{"II", std::move(code)}};
  info.areas = {area};
  return info;
}

CapAlert alertOf(WireAlert const& wire, CapArea const& area) {
  CapAlert alert;
  alert.identifier = wire.id;
  // The service's documentation calls it the time of issue.
  alert.sent = date(wire.effective);
  alert.status = capWord(wire.status);
  for (WireTexts const& texts : kLanguages) {
    if (auto info = infoOf(wire, texts, area)) alert.infos.push_back(std::move(*info));
  }
  return alert;
}

}  // namespace

template <>
inline constexpr auto jsonFields<WireAlert> = FieldList{
    field("alert_id", &WireAlert::id),
    fieldOr("effective", &WireAlert::effective),
    fieldOr("onset", &WireAlert::onset),
    fieldOr("expires", &WireAlert::expires),
    fieldOr("response_type", &WireAlert::responseType),
    fieldOr("urgency", &WireAlert::urgency),
    fieldOr("severity", &WireAlert::severity),
    fieldOr("certainty", &WireAlert::certainty),
    fieldOr("event_code", &WireAlert::eventCode),
    fieldOr("event_en", &WireAlert::eventEn),
    fieldOr("event_de", &WireAlert::eventDe),
    fieldOr("headline_en", &WireAlert::headlineEn),
    fieldOr("headline_de", &WireAlert::headlineDe),
    fieldOr("description_en", &WireAlert::descriptionEn),
    fieldOr("description_de", &WireAlert::descriptionDe),
    fieldOr("instruction_en", &WireAlert::instructionEn),
    fieldOr("instruction_de", &WireAlert::instructionDe),
    fieldOr("status", &WireAlert::status),
};

template <>
inline constexpr auto jsonFields<WireLocation> =
    FieldList{fieldOr("warn_cell_id", &WireLocation::warnCell), fieldOr("name", &WireLocation::name),
              fieldOr("district", &WireLocation::district), fieldOr("state", &WireLocation::state)};

template <>
inline constexpr auto jsonFields<WireList> =
    FieldList{field("alerts", &WireList::alerts), field("location", &WireList::location)};

template <>
inline constexpr auto jsonFields<WireRefusal> =
    FieldList{fieldOr("detail", &WireRefusal::detail), fieldOr("description", &WireRefusal::description),
              fieldOr("title", &WireRefusal::title)};

Result<BrightSkyAlerts, DecodeError> parseBrightSkyAlerts(std::string_view body) {
  auto const wire = decodeJson<WireList>(body);
  if (!wire) return std::unexpected(wire.error());
  CapArea const area = areaOf(wire->location);
  BrightSkyAlerts list;
  for (Lenient<WireAlert> const& entry : wire->alerts) {
    CapAlert alert = entry.value ? alertOf(*entry.value, area) : CapAlert();
    if (alert.identifier.empty() || alert.infos.empty()) {
      ++list.unreadable;
      continue;
    }
    CapMessage& message = list.messages.emplace_back();
    message.alert = std::make_shared<CapAlert const>(std::move(alert));
    message.country = kCountry;
    message.isHit = true;
  }
  return list;
}

bool isBrightSkyUncovered(std::string_view body) {
  auto const refusal = decodeJson<WireRefusal>(body);
  if (!refusal) return false;
  Text const* const texts[] = {&refusal->detail, &refusal->description, &refusal->title};
  return std::ranges::any_of(
      texts, [](Text const* text) { return asciiLowered(text->value.value_or("")).contains("not covered"); });
}

}  // namespace nimbara
