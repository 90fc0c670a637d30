#include "feeds/stations/station_document.h"

#include "base/units.h"
#include "feeds/stations/station_wire.h"

#include <algorithm>
#include <map>
#include <span>

namespace nimbara {

namespace {

using enum StationQuantity;

/// A member of a flat object: a number, or a text that may be one.
struct Scalar {
  std::optional<double> number;
  std::string text;
};

using Flat = std::map<std::string, Scalar, std::less<>>;

/// An entry of a gateway's lists: "0x0B", "4.3 km/h"; temperatures have their unit beside them.
struct WireEntry {
  Lenient<std::string> id, value, unit;
};

struct WirePressure {
  Lenient<std::string> absolute, relative;
};

struct WireGateway {
  std::vector<Lenient<WireEntry>> common;
  Lenient<std::vector<Lenient<WireEntry>>> rain, piezoRain;
  Lenient<std::vector<Lenient<WirePressure>>> wh25;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireEntry> = FieldList{
    fieldOr("id", &WireEntry::id), fieldOr("val", &WireEntry::value), fieldOr("unit", &WireEntry::unit)};
template <>
inline constexpr auto jsonFields<WirePressure> =
    FieldList{fieldOr("abs", &WirePressure::absolute), fieldOr("rel", &WirePressure::relative)};
template <>
inline constexpr auto jsonFields<WireGateway> =
    FieldList{field("common_list", &WireGateway::common), fieldOr("rain", &WireGateway::rain),
              fieldOr("piezoRain", &WireGateway::piezoRain), fieldOr("wh25", &WireGateway::wh25)};

namespace json_detail {

static bool read(dom::element element, Scalar& out, Failure& failure) {
  LenientNumber number;
  Lenient<std::string> text;
  read(element, number, failure);
  read(element, text, failure);
  out = {number.value, stationText(text)};
  return true;
}

}  // namespace json_detail

namespace {

constexpr double kMmOfInch = 25.4, kHPaOfInHg = 33.863886, kHPaOfMmHg = 1.333224, kKmhOfMph = 1.609344,
                 kKmhOfKnot = 1.852, kKmhOfMs = 3.6, kMmOfCm = 10;

struct UnitRow {
  std::string_view name;
  double factor;
  bool isFahrenheit = false;
};

/// To °C, km/h, hPa and mm. The name counts without letter case.
constexpr UnitRow kUnits[] = {
    {"", 1},
    {"%", 1},
    {"c", 1},
    {"°c", 1},
    {"℃", 1},
    {"f", 1, true},
    {"°f", 1, true},
    {"℉", 1, true},
    {"km/h", 1},
    {"kph", 1},
    {"km_per_hour", 1},
    {"m/s", kKmhOfMs},
    {"mps", kKmhOfMs},
    {"mph", kKmhOfMph},
    {"knots", kKmhOfKnot},
    {"knot", kKmhOfKnot},
    {"kt", kKmhOfKnot},
    {"hpa", 1},
    {"mbar", 1},
    {"inhg", kHPaOfInHg},
    {"mmhg", kHPaOfMmHg},
    {"mm", 1},
    {"cm", kMmOfCm},
    {"in", kMmOfInch},
};

/// Nothing in a unit that is not known.
std::optional<double> inOurUnit(std::optional<double> value, std::string_view unit) {
  std::string const name = asciiLowered(trimmed(unit));
  auto const row = std::ranges::find(kUnits, std::string_view(name), &UnitRow::name);
  if (!value || row == std::end(kUnits)) return std::nullopt;
  return row->isFahrenheit ? celsiusFromFahrenheit(*value) : *value * row->factor;
}

/// "4.3 km/h", "71%", or a number whose unit stands elsewhere. Sensors that are silent send "--.-".
std::optional<double> measured(std::string_view text, std::string_view unit = {}) {
  text = trimmed(text);
  auto const end = std::min(text.find_first_not_of("+-.0123456789"), text.size());
  auto const number = parseDouble(text.substr(0, end));
  std::string_view const own = trimmed(text.substr(end));
  return inOurUnit(number, own.empty() ? unit : own);
}

// ---- Ecowitt: GET /get_livedata_info

struct IdRow {
  std::string_view id;
  StationQuantity quantity;
};

constexpr IdRow kCommonIds[] = {{"0x02", temperature},
                                {"0x07", humidity},
                                {"0x0a", windDirection},
                                {"0x0b", windSpeed},
                                {"0x0c", gustSpeed}};
/// The last 24 hours, else since midnight. What fell in the last hour is not told.
constexpr IdRow kRainIds[] = {{"0x7c", rainLastDay}, {"0x10", rainLastDay}};

using Entries = std::vector<Lenient<WireEntry>>;

void addEntries(StationModule& module, Entries const& entries, std::span<IdRow const> ids) {
  for (IdRow const& row : ids) {
    for (Lenient<WireEntry> const& entry : entries) {
      if (!entry.value || asciiLowered(stationText(entry.value->id)) != row.id || module.value(row.quantity))
        continue;
      module.add(row.quantity, measured(stationText(entry.value->value), stationText(entry.value->unit)));
    }
  }
}

StationModule moduleOfGateway(WireGateway const& gateway) {
  StationModule module;
  addEntries(module, gateway.common, kCommonIds);
  for (auto const* rain : {&gateway.rain, &gateway.piezoRain}) {
    if (rain->value) addEntries(module, *rain->value, kRainIds);
  }
  if (!gateway.wh25.value || gateway.wh25.value->empty()) return module;
  if (auto const& inside = gateway.wh25.value->front().value) {
    module.add(pressure, measured(stationText(inside->relative)));
    module.add(absolutePressure, measured(stationText(inside->absolute)));
  }
  return module;
}

// ---- Flat objects

struct NameRow {
  std::string_view name;
  StationQuantity quantity;
  std::string_view unit = {};
};

/// Ambient Weather's names. Its hourly rain is a rate, not what fell.
constexpr NameRow kAmbientNames[] = {
    {"tempf", temperature, "f"},        {"humidity", humidity},
    {"baromrelin", pressure, "inhg"},   {"baromabsin", absolutePressure, "inhg"},
    {"windspeedmph", windSpeed, "mph"}, {"winddir", windDirection},
    {"windgustmph", gustSpeed, "mph"},  {"dailyrainin", rainLastDay, "in"},
};

enum class WeewxGroup { none, temperature, pressure, speed, rain };

struct WeewxRow {
  std::string_view name;
  StationQuantity quantity;
  WeewxGroup group = WeewxGroup::none;
};

constexpr WeewxRow kWeewxNames[] = {
    {"outTemp", temperature, WeewxGroup::temperature}, {"outHumidity", humidity},
    {"barometer", pressure, WeewxGroup::pressure},     {"pressure", absolutePressure, WeewxGroup::pressure},
    {"windSpeed", windSpeed, WeewxGroup::speed},       {"windDir", windDirection},
    {"windGust", gustSpeed, WeewxGroup::speed},        {"windGustDir", gustDirection},
    {"hourRain", rainLastHour, WeewxGroup::rain},      {"rain24", rainLastDay, WeewxGroup::rain},
    {"dayRain", rainLastDay, WeewxGroup::rain},
};

/// The three unit systems of a packet: its member `usUnits`.
struct WeewxUnits {
  double system;
  std::string_view temperature, pressure, speed, rain;
};

constexpr WeewxUnits kWeewxUnits[] = {
    {1, "f", "inhg", "mph", "in"}, {16, "c", "mbar", "km/h", "cm"}, {17, "c", "mbar", "m/s", "mm"}};

std::string_view unitOf(WeewxUnits const& units, WeewxGroup group) {
  switch (group) {
    case WeewxGroup::none:
      return "";
    case WeewxGroup::temperature:
      return units.temperature;
    case WeewxGroup::pressure:
      return units.pressure;
    case WeewxGroup::speed:
      return units.speed;
    case WeewxGroup::rain:
      break;
  }
  return units.rain;
}

std::optional<double> number(Flat const& flat, std::string_view name) {
  auto const found = flat.find(name);
  return found == flat.end() ? std::nullopt : found->second.number;
}

/// ISO 8601, "2026-11-21 10:32:35" in UTC, or seconds or milliseconds since 1970.
std::optional<Instant> timeIn(Flat const& flat, std::string_view name) {
  constexpr double kNoSeconds = 1e11, kMilliseconds = 1000;
  auto const found = flat.find(name);
  if (found == flat.end()) return std::nullopt;
  auto const count = found->second.number;
  if (count) return stationInstant(*count > kNoSeconds ? *count / kMilliseconds : *count);
  if (auto const moment = parseIso8601(found->second.text)) return moment;
  return parseIso8601(found->second.text + "Z");
}

template <class Rows>
StationModule moduleOfNames(Flat const& flat, Rows const& rows) {
  StationModule module;
  for (NameRow const& row : rows) module.add(row.quantity, inOurUnit(number(flat, row.name), row.unit));
  return module;
}

/// "outTemp_C": relays write the unit behind the name.
void addSuffixed(StationModule& module, Flat const& flat, WeewxRow const& row) {
  std::string const prefix = std::string(row.name) + "_";
  for (auto entry = flat.lower_bound(prefix); entry != flat.end() && entry->first.starts_with(prefix);
       ++entry) {
    if (!module.value(row.quantity))
      module.add(row.quantity, inOurUnit(entry->second.number, entry->first.substr(prefix.size())));
  }
}

StationModule moduleOfWeewx(Flat const& flat) {
  StationModule module;
  auto const system = number(flat, "usUnits");
  auto const units = std::ranges::find(kWeewxUnits, system.value_or(0), &WeewxUnits::system);
  for (WeewxRow const& row : kWeewxNames) {
    bool const isKnown = units != std::end(kWeewxUnits) || row.group == WeewxGroup::none;
    std::string_view const unit = units == std::end(kWeewxUnits) ? "" : unitOf(*units, row.group);
    if (isKnown && !module.value(row.quantity))
      module.add(row.quantity, inOurUnit(number(flat, row.name), unit));
    addSuffixed(module, flat, row);
  }
  return module;
}

StationModule moduleOfPlain(Flat const& flat) {
  StationModule module;
  for (std::size_t i = 0; i < enumNames<StationQuantity>.size(); ++i) {
    module.add(static_cast<StationQuantity>(i), number(flat, enumNames<StationQuantity>[i]));
  }
  return module;
}

bool hasAny(Flat const& flat, std::string_view prefix) {
  auto const found = flat.lower_bound(prefix);
  return found != flat.end() && found->first.starts_with(prefix);
}

StationDocument documentOf(Flat const& flat) {
  StationDocument document;
  StationModule module;
  std::string_view time = "time";
  if (hasAny(flat, "outTemp") || flat.contains("usUnits")) {
    document.form = StationForm::weewx;
    module = moduleOfWeewx(flat);
    time = "dateTime";
  } else if (flat.contains("tempf") || flat.contains("windspeedmph")) {
    document.form = StationForm::ambient;
    module = moduleOfNames(flat, kAmbientNames);
    time = "dateutc";
  } else {
    module = moduleOfPlain(flat);
    if (auto const name = flat.find("name"); name != flat.end()) document.station.name = name->second.text;
    document.station.latitude = number(flat, "latitude");
    document.station.longitude = number(flat, "longitude");
    document.station.altitude = number(flat, "altitude");
  }
  module.observedAt = timeIn(flat, time);
  // A time that cannot be read must not pass for the present.
  bool const isUndated = !module.observedAt && flat.contains(time);
  if (isUndated) module.values.clear();
  document.station.modules.push_back(std::move(module));
  return document;
}

}  // namespace

Result<StationDocument, DecodeError> parseStationDocument(std::string_view body, Instant now) {
  StationDocument document;
  if (auto const gateway = decodeJson<WireGateway>(body)) {
    document.form = StationForm::ecowitt;
    document.station.modules.push_back(moduleOfGateway(*gateway));
  } else {
    auto const flat = decodeJson<Flat>(body);
    if (!flat) return std::unexpected(flat.error());
    document = documentOf(*flat);
  }
  StationModule& module = document.station.modules.front();
  if (module.values.empty()) return std::unexpected(DecodeError{"", "no measurement is known in it"});
  if (!module.observedAt) module.observedAt = now;
  if (!document.station.place()) document.station.latitude = document.station.longitude = std::nullopt;
  return document;
}

}  // namespace nimbara
