#include "feeds/metalerts/met_alerts_list.h"

#include "feeds/cap/cap_text.h"
#include "feeds/fetching/geo_json.h"
#include "feeds/fetching/lenient_json.h"

namespace nimbara {

namespace {

constexpr std::string_view kIssuer = "MET Norway";
constexpr std::string_view kCountry = "NO";

using Text = Lenient<std::string>;

struct WireResource {
  Text mimeType;
  Text uri;
};

struct WireWhen {
  Lenient<std::vector<Text>> interval;
};

struct WireProperties {
  std::string id;
  Text area, awarenessLevel, awarenessType, certainty, consequences, description, event, eventName, eventEnd;
  Text domain, incident, instruction, severity, status, title, type, web;
  Lenient<std::vector<Lenient<WireResource>>> resources;
};

struct WireFeature {
  WireProperties properties;
  Lenient<WireWhen> when;
  GeoAreas geometry;
};

struct WireList {
  Text language;
  std::vector<Lenient<WireFeature>> features;
};

std::string word(Text const& text) {
  return std::string(trimmed(text.value.value_or("")));
}

std::optional<Instant> moment(WireFeature const& wire, std::size_t index) {
  if (!wire.when.value || !wire.when.value->interval.value) return std::nullopt;
  auto const& interval = *wire.when.value->interval.value;
  return index < interval.size() ? capDate(interval[index].value.value_or("")) : std::nullopt;
}

std::vector<CapValue> parametersOf(WireProperties const& wire) {
  std::vector<CapValue> values;
  auto const take = [&](char const* name, Text const& text) {
    if (auto value = word(text); !value.empty()) values.push_back({name, std::move(value)});
  };
  take("awareness_level", wire.awarenessLevel);
  take("awareness_type", wire.awarenessType);
  take("geographicDomain", wire.domain);
  take("incidentName", wire.incident);
  take("consequences", wire.consequences);
  return values;
}

CapInfo infoOf(WireFeature& wire, std::string const& language) {
  WireProperties& properties = wire.properties;
  CapInfo info;
  info.language = language;
  info.event = word(properties.eventName);
  if (info.event.empty()) info.event = word(properties.event);
  info.headline = properties.title.value.value_or("");
  info.description = properties.description.value.value_or("");
  info.instruction = properties.instruction.value.value_or("");
  info.severity = word(properties.severity);
  info.certainty = word(properties.certainty);
  info.onset = moment(wire, 0);
  info.expires = capDate(properties.eventEnd.value.value_or(""));
  if (!info.expires) info.expires = moment(wire, 1);
  info.senderName = kIssuer;
  info.web = word(properties.web);
  info.parameters = parametersOf(properties);
  if (auto code = word(properties.event); !code.empty()) info.eventCodes = {{"eventType", std::move(code)}};
  info.areas = {{word(properties.area), std::move(wire.geometry.outlines), {}, {}}};
  return info;
}

/// Where the message itself lies.
std::string linkOf(WireProperties const& wire) {
  if (!wire.resources.value) return {};
  for (Lenient<WireResource> const& resource : *wire.resources.value) {
    if (resource.value && resource.value->mimeType.value == "application/xml")
      return word(resource.value->uri);
  }
  return {};
}

bool isWarning(Lenient<WireFeature> const& feature) {
  if (!feature.value) return false;
  WireProperties const& properties = feature.value->properties;
  bool const isNamed = !word(properties.event).empty() || !word(properties.eventName).empty();
  return !properties.id.empty() && isNamed;
}

CapMessage messageOf(WireFeature& wire, std::string const& language) {
  CapAlert alert;
  alert.identifier = wire.properties.id;
  alert.status = word(wire.properties.status);
  alert.msgType = word(wire.properties.type);
  alert.infos = {infoOf(wire, language)};
  CapMessage message;
  message.alert = std::make_shared<CapAlert const>(std::move(alert));
  message.link = linkOf(wire.properties);
  message.country = kCountry;
  message.lacksReferences = true;
  return message;
}

}  // namespace

template <>
inline constexpr auto jsonFields<WireResource> =
    FieldList{fieldOr("mimeType", &WireResource::mimeType), fieldOr("uri", &WireResource::uri)};

template <>
inline constexpr auto jsonFields<WireWhen> = FieldList{fieldOr("interval", &WireWhen::interval)};

template <>
inline constexpr auto jsonFields<WireProperties> = FieldList{
    fieldOr("area", &WireProperties::area),
    fieldOr("awareness_level", &WireProperties::awarenessLevel),
    fieldOr("awareness_type", &WireProperties::awarenessType),
    fieldOr("certainty", &WireProperties::certainty),
    fieldOr("consequences", &WireProperties::consequences),
    fieldOr("description", &WireProperties::description),
    fieldOr("event", &WireProperties::event),
    fieldOr("eventAwarenessName", &WireProperties::eventName),
    fieldOr("eventEndingTime", &WireProperties::eventEnd),
    fieldOr("geographicDomain", &WireProperties::domain),
    field("id", &WireProperties::id),
    fieldOr("incidentName", &WireProperties::incident),
    fieldOr("instruction", &WireProperties::instruction),
    fieldOr("resources", &WireProperties::resources),
    fieldOr("severity", &WireProperties::severity),
    fieldOr("status", &WireProperties::status),
    fieldOr("title", &WireProperties::title),
    fieldOr("type", &WireProperties::type),
    fieldOr("web", &WireProperties::web),
};

template <>
inline constexpr auto jsonFields<WireFeature> =
    FieldList{fieldOr("geometry", &WireFeature::geometry), field("properties", &WireFeature::properties),
              fieldOr("when", &WireFeature::when)};

template <>
inline constexpr auto jsonFields<WireList> =
    FieldList{field("features", &WireList::features), fieldOr("lang", &WireList::language)};

Result<MetAlertsList, DecodeError> parseMetAlerts(std::string_view body) {
  auto wire = decodeJson<WireList>(body);
  if (!wire) return std::unexpected(std::move(wire.error()));
  MetAlertsList list;
  list.messages.reserve(wire->features.size());
  for (Lenient<WireFeature>& feature : wire->features) {
    if (isWarning(feature)) {
      list.messages.push_back(messageOf(*feature.value, word(wire->language)));
    } else {
      ++list.unreadable;
    }
  }
  return list;
}

}  // namespace nimbara
