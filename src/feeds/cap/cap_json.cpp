#include "feeds/cap/cap_json.h"

#include "base/text/clean_text.h"
#include "feeds/cap/cap_reader.h"
#include "feeds/cap/cap_text.h"
#include "feeds/cap/shape_geometry.h"
#include "feeds/fetching/lenient_json.h"

namespace nimbara {

namespace {

using Text = Lenient<std::string>;
template <class T>
using List = Lenient<std::vector<Lenient<T>>>;

struct WireValue {
  Text valueName;
  Text value;
};

struct WireArea {
  Text areaDesc;
  List<std::string> polygon;
  List<std::string> circle;
  List<WireValue> geocode;
};

struct WireInfo {
  Text language, event, headline, description, instruction, urgency, severity, certainty;
  Text effective, onset, expires, senderName, web;
  List<std::string> responseType;
  List<WireValue> parameter;
  List<WireValue> eventCode;
  List<WireArea> area;
};

struct WireAlert {
  Text identifier, sender, sent, status, msgType, references;
  List<WireInfo> info;
};

/// The message itself or what has it in it.
struct WireDocument {
  Lenient<WireAlert> alert;
};

struct WireListed {
  Text uuid;
  Lenient<WireAlert> alert;
};

/// Made into messages one by one: together, as they are written, they take many times as much.
struct WireMessages {
  std::vector<ListedCapAlert> list;
};

struct WireList {
  WireMessages warnings;
};

std::string prose(Text const& text) {
  return withoutControls(text.value.value_or(""));
}

std::string word(Text const& text) {
  return withoutControls(trimmed(text.value.value_or("")));
}

std::optional<Instant> date(Text const& text) {
  return capDate(text.value.value_or(""));
}

/// Calls `take` with each entry that could be read.
template <class T, class Take>
void each(List<T> const& list, Take const& take) {
  if (!list.value) return;
  for (Lenient<T> const& entry : *list.value) {
    if (entry.value) take(*entry.value);
  }
}

std::vector<CapValue> valuesOf(List<WireValue> const& list) {
  std::vector<CapValue> values;
  each(list, [&](WireValue const& one) { values.push_back({word(one.valueName), word(one.value)}); });
  return values;
}

CapArea areaOf(WireArea const& wire) {
  CapArea area;
  area.areaDesc = word(wire.areaDesc);
  each(wire.polygon, [&](std::string const& text) {
    if (auto polygon = parseWarningPolygon(text)) area.polygons.push_back(std::move(*polygon));
  });
  each(wire.circle, [&](std::string const& text) {
    if (auto const circle = parseWarningCircle(text)) area.circles.push_back(*circle);
  });
  area.geocodes = valuesOf(wire.geocode);
  return area;
}

CapInfo infoOf(WireInfo const& wire) {
  CapInfo info;
  info.language = word(wire.language);
  info.event = word(wire.event);
  info.headline = prose(wire.headline);
  info.description = prose(wire.description);
  info.instruction = prose(wire.instruction);
  info.urgency = word(wire.urgency);
  info.severity = word(wire.severity);
  info.certainty = word(wire.certainty);
  each(wire.responseType,
       [&](std::string const& text) { info.responseTypes.push_back(withoutControls(text)); });
  info.effective = date(wire.effective);
  info.onset = date(wire.onset);
  info.expires = date(wire.expires);
  info.senderName = word(wire.senderName);
  info.web = word(wire.web);
  info.parameters = valuesOf(wire.parameter);
  info.eventCodes = valuesOf(wire.eventCode);
  each(wire.area, [&](WireArea const& area) { info.areas.push_back(areaOf(area)); });
  return info;
}

CapAlert alertOf(WireAlert const& wire) {
  CapAlert alert;
  alert.identifier = word(wire.identifier);
  alert.sender = word(wire.sender);
  alert.sent = date(wire.sent);
  alert.status = word(wire.status);
  alert.msgType = word(wire.msgType);
  alert.references = capReferences(wire.references.value.value_or(""));
  each(wire.info, [&](WireInfo const& info) { alert.infos.push_back(infoOf(info)); });
  noteBoxes(alert);
  return alert;
}

/// A cancellation need not say what it cancels; everything else must be readable.
bool isMessage(Lenient<WireAlert> const& wire) {
  if (!wire.value || !wire.value->identifier.value || wire.value->identifier.value->empty()) return false;
  return wire.value->info.value || wire.value->msgType.value == "Cancel";
}

std::size_t pointsOf(CapAlert const& alert) {
  std::size_t points = 0;
  for (CapInfo const& info : alert.infos) {
    for (CapArea const& area : info.areas) {
      for (WarningPolygon const& polygon : area.polygons) points += polygon.size();
    }
  }
  return points;
}

}  // namespace

template <>
inline constexpr auto jsonFields<WireValue> =
    FieldList{fieldOr("valueName", &WireValue::valueName), fieldOr("value", &WireValue::value)};

template <>
inline constexpr auto jsonFields<WireArea> =
    FieldList{fieldOr("areaDesc", &WireArea::areaDesc), fieldOr("polygon", &WireArea::polygon),
              fieldOr("circle", &WireArea::circle), fieldOr("geocode", &WireArea::geocode)};

template <>
inline constexpr auto jsonFields<WireInfo> = FieldList{
    fieldOr("language", &WireInfo::language),
    fieldOr("event", &WireInfo::event),
    fieldOr("headline", &WireInfo::headline),
    fieldOr("description", &WireInfo::description),
    fieldOr("instruction", &WireInfo::instruction),
    fieldOr("urgency", &WireInfo::urgency),
    fieldOr("severity", &WireInfo::severity),
    fieldOr("certainty", &WireInfo::certainty),
    fieldOr("effective", &WireInfo::effective),
    fieldOr("onset", &WireInfo::onset),
    fieldOr("expires", &WireInfo::expires),
    fieldOr("senderName", &WireInfo::senderName),
    fieldOr("web", &WireInfo::web),
    fieldOr("responseType", &WireInfo::responseType),
    fieldOr("parameter", &WireInfo::parameter),
    fieldOr("eventCode", &WireInfo::eventCode),
    fieldOr("area", &WireInfo::area),
};

template <>
inline constexpr auto jsonFields<WireAlert> = FieldList{
    fieldOr("identifier", &WireAlert::identifier),
    fieldOr("sender", &WireAlert::sender),
    fieldOr("sent", &WireAlert::sent),
    fieldOr("status", &WireAlert::status),
    fieldOr("msgType", &WireAlert::msgType),
    fieldOr("references", &WireAlert::references),
    fieldOr("info", &WireAlert::info),
};

template <>
inline constexpr auto jsonFields<WireDocument> = FieldList{fieldOr("alert", &WireDocument::alert)};

template <>
inline constexpr auto jsonFields<WireListed> =
    FieldList{fieldOr("uuid", &WireListed::uuid), fieldOr("alert", &WireListed::alert)};

template <>
inline constexpr auto jsonFields<WireList> = FieldList{field("warnings", &WireList::warnings)};

namespace json_detail {

static bool read(dom::element element, WireMessages& out, Failure& failure) {
  dom::array list;
  if (element.get(list) != simdjson::SUCCESS) return failure.because("a list is expected");
  for (dom::element const member : list) {
    WireListed wire;
    bool const isRead =
        read(member, wire, failure) && (isMessage(wire.alert) || failure.because("it is not an alert"));
    if (!isRead) return failure.within(out.list.size());
    out.list.push_back({word(wire.uuid), alertOf(*wire.alert.value)});
    if (pointsOf(out.list.back().alert) > kMostCapPoints) {
      failure.because("its polygons have too many points");
      return failure.within(out.list.size() - 1);
    }
  }
  return true;
}

}  // namespace json_detail

static bool hasTooManyParts(std::string_view body) {
  return static_cast<std::size_t>(std::ranges::count(body, '{')) > kMostCapParts;
}

static std::optional<WireAlert> bareAlert(std::string_view body) {
  auto alert = decodeJson<WireAlert>(body);
  return alert ? std::optional(std::move(*alert)) : std::nullopt;
}

Result<CapAlert, std::string> parseCapJson(std::string_view body) {
  if (hasTooManyParts(body)) return std::unexpected("it has too many parts");
  auto document = decodeJson<WireDocument>(body);
  if (!document) return std::unexpected("it could not be read: " + document.error().text());
  auto wire = document->alert.value ? std::move(document->alert.value) : bareAlert(body);
  if (!wire || !wire->identifier.value || !wire->info.value) return std::unexpected("it is not an alert");
  CapAlert alert = alertOf(*wire);
  if (pointsOf(alert) > kMostCapPoints) return std::unexpected("its polygons have too many points");
  return alert;
}

Result<std::vector<ListedCapAlert>, std::string> parseCapJsonList(std::string_view body) {
  if (hasTooManyParts(body)) return std::unexpected("it has too many parts");
  auto list = decodeJson<WireList>(body);
  if (!list) return std::unexpected("it cannot be read: " + list.error().text());
  return std::move(list->warnings.list);
}

}  // namespace nimbara
