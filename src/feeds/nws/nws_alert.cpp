#include "feeds/nws/nws_alert.h"

#include "feeds/fetching/geo_json.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr std::array<std::string_view, enumNames<NWSAlertSeverity>.size()> kSeverityWords{
    "Unknown", "Minor", "Moderate", "Severe", "Extreme"};

/// A text, at best a date in the internet's form.
struct WireDate {
  std::optional<Instant> date;
};

struct WireReference {
  std::string identifier;
  Lenient<Instant> sent;
  Lenient<std::string> sender;
};

using WireTexts = Lenient<std::vector<Lenient<std::string>>>;

struct WireGeocode {
  WireTexts zones;
};

struct WireParameters {
  WireTexts vtec;
};

struct WireProperties {
  std::string id;
  std::string event;
  std::string severity;
  std::string urgency;
  std::string certainty;
  std::optional<std::string> headline;
  std::optional<std::string> description;
  std::optional<std::string> instruction;
  std::optional<WireDate> onset;
  std::optional<WireDate> expires;
  std::optional<std::string> senderName;
  std::optional<std::string> areaDesc;
  Lenient<Instant> ends;
  Lenient<Instant> sent;
  Lenient<std::string> status;
  Lenient<std::string> messageType;
  Lenient<std::string> sender;
  Lenient<std::vector<Lenient<WireReference>>> references;
  Lenient<WireGeocode> geocode;
  Lenient<WireParameters> parameters;
};

struct WireFeature {
  WireProperties properties;
  Lenient<GeoAreas> geometry;
};

struct WireResponse {
  std::vector<Lenient<WireFeature>> features;
};

/// Date, time, "T" between them, seconds without a fraction, and a zone.
std::optional<Instant> internetDateTime(std::string_view text) {
  constexpr std::size_t kSeconds = std::string_view("2026-11-21T06:00:00").size();
  if (text.size() <= kSeconds || text[10] != 'T' || text[16] != ':') return std::nullopt;
  if (text[kSeconds] == '.' || text[kSeconds] == ',') return std::nullopt;
  return parseIso8601(text);
}

std::vector<NWSReference> referencesOf(WireProperties& wire) {
  std::vector<NWSReference> references;
  if (!wire.references.value) return references;
  for (Lenient<WireReference>& reference : *wire.references.value) {
    if (reference.value)
      references.push_back({std::move(reference.value->identifier), reference.value->sent.value,
                            std::move(reference.value->sender.value).value_or("")});
  }
  return references;
}

std::vector<std::string> textsOf(WireTexts const& wire) {
  std::vector<std::string> texts;
  if (!wire.value) return texts;
  for (Lenient<std::string> const& text : *wire.value) {
    if (text.value) texts.push_back(*text.value);
  }
  return texts;
}

/// "KLOT.WS.A.0001" of "/O.NEW.KLOT.WS.A.0001.260112T1200Z-260113T0000Z/"; empty for any other text.
std::string eventNumber(std::string_view vtec) {
  constexpr std::size_t kBefore = std::string_view("/O.NEW.").size();
  constexpr std::size_t kLength = std::string_view("KLOT.WS.A.0001").size();
  if (vtec.size() <= kBefore + kLength || vtec[kBefore - 1] != '.' || vtec[kBefore + kLength] != '.')
    return {};
  return std::string(vtec.substr(kBefore, kLength));
}

std::string eventNumberOf(WireProperties const& wire) {
  if (!wire.parameters.value) return {};
  auto const texts = textsOf(wire.parameters.value->vtec);
  return texts.empty() ? std::string() : eventNumber(texts.front());
}

NWSAlert alertOf(WireProperties& wire) {
  NWSAlert alert;
  alert.headline = wire.headline ? std::move(*wire.headline) : wire.event;
  alert.id = std::move(wire.id);
  alert.event = std::move(wire.event);
  alert.description = std::move(wire.description).value_or("");
  alert.instruction = std::move(wire.instruction).value_or("");
  alert.severity = nwsSeverity(wire.severity);
  alert.senderName = std::move(wire.senderName).value_or("NWS");
  alert.areaDesc = std::move(wire.areaDesc).value_or("");
  alert.onset = wire.onset.value_or(WireDate{}).date;
  alert.expires = wire.expires.value_or(WireDate{}).date;
  alert.ends = wire.ends.value;
  alert.sent = wire.sent.value;
  alert.status = std::move(wire.status.value).value_or("");
  alert.messageType = std::move(wire.messageType.value).value_or("");
  alert.sender = std::move(wire.sender.value).value_or("");
  alert.references = referencesOf(wire);
  alert.vtec = eventNumberOf(wire);
  if (wire.geocode.value) alert.zones = textsOf(wire.geocode.value->zones);
  return alert;
}

}  // namespace

namespace json_detail {

static bool read(dom::element element, WireDate& out, Failure& failure) {
  std::string_view text;
  if (element.get(text) != simdjson::SUCCESS) return failure.because("a text is expected");
  out.date = internetDateTime(text);
  return true;
}

}  // namespace json_detail

template <>
inline constexpr auto jsonFields<WireReference> =
    FieldList{field("identifier", &WireReference::identifier), fieldOr("sender", &WireReference::sender),
              fieldOr("sent", &WireReference::sent)};

template <>
inline constexpr auto jsonFields<WireGeocode> = FieldList{fieldOr("UGC", &WireGeocode::zones)};

template <>
inline constexpr auto jsonFields<WireParameters> = FieldList{fieldOr("VTEC", &WireParameters::vtec)};

/// In the order of the service's own documents.
template <>
inline constexpr auto jsonFields<WireProperties> = FieldList{
    field("id", &WireProperties::id),
    field("areaDesc", &WireProperties::areaDesc),
    fieldOr("geocode", &WireProperties::geocode),
    fieldOr("references", &WireProperties::references),
    fieldOr("sent", &WireProperties::sent),
    field("onset", &WireProperties::onset),
    field("expires", &WireProperties::expires),
    fieldOr("ends", &WireProperties::ends),
    fieldOr("status", &WireProperties::status),
    fieldOr("messageType", &WireProperties::messageType),
    field("severity", &WireProperties::severity),
    field("certainty", &WireProperties::certainty),
    field("urgency", &WireProperties::urgency),
    field("event", &WireProperties::event),
    fieldOr("sender", &WireProperties::sender),
    field("senderName", &WireProperties::senderName),
    field("headline", &WireProperties::headline),
    field("description", &WireProperties::description),
    field("instruction", &WireProperties::instruction),
    fieldOr("parameters", &WireProperties::parameters),
};

template <>
inline constexpr auto jsonFields<WireFeature> =
    FieldList{field("properties", &WireFeature::properties), fieldOr("geometry", &WireFeature::geometry)};

template <>
inline constexpr auto jsonFields<WireResponse> = FieldList{field("features", &WireResponse::features)};

NWSAlertSeverity nwsSeverity(std::string_view text) {
  auto const found = std::ranges::find(kSeverityWords, text);
  if (found == kSeverityWords.end()) return NWSAlertSeverity::unknown;
  return static_cast<NWSAlertSeverity>(found - kSeverityWords.begin());
}

Result<NWSAlertList, DecodeError> parseNwsAlerts(std::string_view body) {
  auto response = decodeJson<WireResponse>(body);
  if (!response) return std::unexpected(std::move(response.error()));
  NWSAlertList list;
  list.alerts.reserve(response->features.size());
  for (Lenient<WireFeature>& feature : response->features) {
    if (feature.value) {
      list.alerts.push_back(alertOf(feature.value->properties));
      if (auto& drawn = feature.value->geometry.value)
        list.alerts.back().polygons = std::move(drawn->outlines);
    } else {
      ++list.unreadable;
    }
  }
  return list;
}

}  // namespace nimbara
