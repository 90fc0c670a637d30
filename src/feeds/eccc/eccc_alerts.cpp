#include "feeds/eccc/eccc_alerts.h"

#include "base/text/text.h"
#include "feeds/cap/cap_text.h"
#include "feeds/fetching/geo_json.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>

namespace nimbara {

namespace {

using Text = Lenient<std::string>;

/// What the service says in both languages.
struct WireProperties {
  Text id, alertCode, alertType, province, status, featureId;
  Text publication, expiration, validity, eventEnd;
  Text nameEn, shortNameEn, textEn, areaEn, colour, confidenceEn, impactEn;
  Text nameFr, shortNameFr, textFr, areaFr, confidenceFr, impactFr;
};

struct WireFeature {
  Text id;
  WireProperties properties;
  std::optional<GeoAreas> geometry;
};

struct WireList {
  std::string type;
  std::vector<Lenient<WireFeature>> features;
  Lenient<std::int64_t> numberMatched;
  Lenient<std::int64_t> numberReturned;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireProperties> =
    FieldList{fieldOr("id", &WireProperties::id),
              fieldOr("alert_code", &WireProperties::alertCode),
              fieldOr("alert_type", &WireProperties::alertType),
              fieldOr("alert_name_en", &WireProperties::nameEn),
              fieldOr("alert_name_fr", &WireProperties::nameFr),
              fieldOr("alert_short_name_en", &WireProperties::shortNameEn),
              fieldOr("alert_short_name_fr", &WireProperties::shortNameFr),
              fieldOr("publication_datetime", &WireProperties::publication),
              fieldOr("expiration_datetime", &WireProperties::expiration),
              fieldOr("validity_datetime", &WireProperties::validity),
              fieldOr("event_end_datetime", &WireProperties::eventEnd),
              fieldOr("alert_text_en", &WireProperties::textEn),
              fieldOr("alert_text_fr", &WireProperties::textFr),
              fieldOr("risk_colour_en", &WireProperties::colour),
              fieldOr("confidence_en", &WireProperties::confidenceEn),
              fieldOr("confidence_fr", &WireProperties::confidenceFr),
              fieldOr("impact_en", &WireProperties::impactEn),
              fieldOr("impact_fr", &WireProperties::impactFr),
              fieldOr("feature_name_en", &WireProperties::areaEn),
              fieldOr("feature_name_fr", &WireProperties::areaFr),
              fieldOr("province", &WireProperties::province),
              fieldOr("status_en", &WireProperties::status),
              fieldOr("feature_id", &WireProperties::featureId)};
template <>
inline constexpr auto jsonFields<WireFeature> =
    FieldList{fieldOr("id", &WireFeature::id), field("properties", &WireFeature::properties),
              field("geometry", &WireFeature::geometry)};
template <>
inline constexpr auto jsonFields<WireList> = FieldList{
    field("type", &WireList::type), field("features", &WireList::features),
    fieldOr("numberMatched", &WireList::numberMatched), fieldOr("numberReturned", &WireList::numberReturned)};

namespace {

/// Who issues all of them. The list names nobody, and the collection is the service's own.
constexpr std::string_view kSender = "weather.gc.ca";

/// The service rates each alert by the impact that it expects and by its confidence, and words the grades as
/// the protocol words its severities: yellow for moderate and short-lived impacts, orange for major ones, red
/// for what is life-threatening. Statements and marine alerts have no grade, and then no severity is stated:
/// the alert's type tells how near the weather is, not how bad it may become.
struct Grade {
  std::string_view colour;
  std::string_view severity;
  std::string_view awarenessLevel;
};

constexpr Grade kGrades[] = {{"yellow", "Moderate", "2; yellow; Moderate"},
                             {"orange", "Severe", "3; orange; Severe"},
                             {"red", "Extreme", "4; red; Extreme"}};
constexpr Grade kUngraded{"", "Unknown", ""};

Grade const& gradeOf(std::string_view colour) {
  auto const found = std::ranges::find(kGrades, asciiLowered(trimmed(colour)), &Grade::colour);
  return found == std::ranges::end(kGrades) ? kUngraded : *found;
}

struct Language {
  std::string_view code;
  std::string_view issuer;
  Text WireProperties::* name;
  Text WireProperties::* shortName;
  Text WireProperties::* text;
  Text WireProperties::* area;
  Text WireProperties::* confidence;
  Text WireProperties::* impact;
};

constexpr Language kLanguages[] = {
    {"en-CA", "Environment and Climate Change Canada", &WireProperties::nameEn, &WireProperties::shortNameEn,
     &WireProperties::textEn, &WireProperties::areaEn, &WireProperties::confidenceEn,
     &WireProperties::impactEn},
    {"fr-CA", "Environnement et Changement climatique Canada", &WireProperties::nameFr,
     &WireProperties::shortNameFr, &WireProperties::textFr, &WireProperties::areaFr,
     &WireProperties::confidenceFr, &WireProperties::impactFr}};

std::string word(Text const& text) {
  return std::string(trimmed(text.value.value_or("")));
}

std::string firstOf(std::string first, std::string second) {
  return first.empty() ? std::move(second) : std::move(first);
}

std::optional<Instant> dateOf(Text const& text) {
  return capDate(text.value.value_or(""));
}

void add(std::vector<CapValue>& values, std::string_view name, std::string value) {
  if (!value.empty()) values.push_back({std::string(name), std::move(value)});
}

CapArea areaOf(WireProperties const& wire, Language const& language, GeoAreas const& shape) {
  CapArea area;
  area.areaDesc = firstOf(word(wire.*language.area), firstOf(word(wire.areaEn), word(wire.areaFr)));
  area.polygons = shape.outlines;
  add(area.geocodes, "feature_id", word(wire.featureId));
  return area;
}

/// Nothing where the alert says nothing in the language.
std::optional<CapInfo> infoOf(WireProperties const& wire, Language const& language, GeoAreas const& shape) {
  CapInfo info;
  info.event = firstOf(word(wire.*language.name), word(wire.*language.shortName));
  info.description = (wire.*language.text).value.value_or("");
  if (info.event.empty()) return std::nullopt;
  Grade const& grade = gradeOf(word(wire.colour));
  info.language = language.code;
  info.severity = grade.severity;
  info.senderName = language.issuer;
  info.onset = dateOf(wire.validity);
  auto const eventEnd = dateOf(wire.eventEnd);
  info.expires = eventEnd ? eventEnd : dateOf(wire.expiration);
  add(info.parameters, "awareness_level", std::string(grade.awarenessLevel));
  add(info.parameters, "alert_type", word(wire.alertType));
  add(info.parameters, "confidence", word(wire.*language.confidence));
  add(info.parameters, "impact", word(wire.*language.impact));
  add(info.parameters, "province", word(wire.province));
  add(info.eventCodes, "alert_code", word(wire.alertCode));
  info.areas.push_back(areaOf(wire, language, shape));
  return info;
}

/// Without one of its own an alert is known by what it is about.
std::string identifierOf(WireFeature const& feature) {
  WireProperties const& wire = feature.properties;
  std::string own = firstOf(word(wire.id), word(feature.id));
  if (!own.empty()) return own;
  return word(wire.alertCode) + "_" + word(wire.featureId) + "_" + word(wire.publication);
}

/// The identifier is a number of the alert and its first day, with the zone behind it. Nobody documents for
/// how long the number lasts and no message names its predecessors: alerts of another number are known by
/// their issuer, name, area and onset.
std::optional<CapAlert> alertOf(WireFeature const& feature) {
  WireProperties const& wire = feature.properties;
  CapAlert alert;
  alert.identifier = identifierOf(feature);
  alert.sender = kSender;
  alert.sent = dateOf(wire.publication);
  alert.status = "Actual";
  alert.msgType = asciiLowered(word(wire.status)) == "continued" ? "Update" : "Alert";
  GeoAreas const shape = feature.geometry.value_or(GeoAreas());
  for (Language const& language : kLanguages) {
    if (auto info = infoOf(wire, language, shape)) alert.infos.push_back(std::move(*info));
  }
  if (alert.infos.empty()) return std::nullopt;
  return alert;
}

/// More match than were given. What is missing from the list itself nobody counts.
std::size_t withheldBy(WireList const& list) {
  auto const listed = static_cast<std::int64_t>(list.features.size());
  std::int64_t const returned = list.numberReturned.value.value_or(listed);
  std::int64_t const matched = list.numberMatched.value.value_or(returned);
  return matched > returned ? static_cast<std::size_t>(matched - returned) : 0;
}

}  // namespace

Result<EcccAlerts, DecodeError> parseEcccAlerts(std::string_view body) {
  auto const list = decodeJson<WireList>(body);
  if (!list) return std::unexpected(list.error());
  if (list->type != "FeatureCollection") return std::unexpected(DecodeError{"/type", "it is no list"});
  EcccAlerts result;
  result.withheld = withheldBy(*list);
  for (Lenient<WireFeature> const& feature : list->features) {
    bool const hasEnded = feature.value && asciiLowered(word(feature.value->properties.status)) == "ended";
    if (hasEnded) continue;
    auto alert = feature.value ? alertOf(*feature.value) : std::nullopt;
    alert ? result.alerts.push_back(std::move(*alert)) : void(++result.unreadable);
  }
  return result;
}

}  // namespace nimbara
