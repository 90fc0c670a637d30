#include "feeds/stations/netatmo_reader.h"

#include "base/text/clean_text.h"
#include "feeds/fetching/lenient_json.h"
#include "feeds/stations/station_wire.h"

#include <algorithm>
#include <map>

namespace nimbara {

namespace {

using Kind = NetatmoRefusal::Kind;
using enum StationQuantity;

struct WireError {
  LenientNumber code;
  Lenient<std::string> message;
};

struct WireTextError {
  Lenient<std::string> error;
};

struct WireObjectError {
  Lenient<WireError> error;
};

struct WireTokens {
  std::string access, refresh;
  LenientNumber expiresIn, expireIn;
};

struct WirePlace {
  Lenient<std::vector<LenientNumber>> location;
  LenientNumber altitude;
};

struct WireDashboard {
  LenientNumber time, temperature, humidity, pressure, absolutePressure, co2, noise;
  LenientNumber wind, windAngle, gust, gustAngle, rainHour, rainDay;
};

struct WireModule {
  Lenient<std::string> id, type, moduleName;
  Lenient<bool> reachable;
  LenientNumber battery;
  Lenient<WireDashboard> dashboard;
};

struct WireDevice {
  Lenient<std::string> id, type, moduleName, stationName, homeName;
  Lenient<bool> reachable;
  Lenient<WireDashboard> dashboard;
  Lenient<WirePlace> place;
  Lenient<std::vector<Lenient<WireModule>>> modules;
};

struct WireStationsBody {
  std::vector<Lenient<WireDevice>> devices;
};

struct WireStations {
  WireStationsBody body;
};

/// One of three shapes: times with lists in the order of `type`, rain, or wind.
struct WireMeasure {
  Lenient<std::map<std::string, std::vector<LenientNumber>>> res;
  Lenient<std::vector<std::string>> type;
  LenientNumber rainHour, rainDay, rainTime;
  LenientNumber wind, windAngle, gust, gustAngle, windTime;
};

struct WirePublicStation {
  Lenient<std::string> id;
  Lenient<WirePlace> place;
  Lenient<std::map<std::string, Lenient<WireMeasure>>> measures;
};

struct WirePublic {
  std::vector<Lenient<WirePublicStation>> body;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireError> =
    FieldList{fieldOr("code", &WireError::code), fieldOr("message", &WireError::message)};
template <>
inline constexpr auto jsonFields<WireTextError> = FieldList{field("error", &WireTextError::error)};
template <>
inline constexpr auto jsonFields<WireObjectError> = FieldList{field("error", &WireObjectError::error)};
template <>
inline constexpr auto jsonFields<WireTokens> =
    FieldList{field("access_token", &WireTokens::access), field("refresh_token", &WireTokens::refresh),
              fieldOr("expires_in", &WireTokens::expiresIn), fieldOr("expire_in", &WireTokens::expireIn)};
template <>
inline constexpr auto jsonFields<WirePlace> =
    FieldList{fieldOr("location", &WirePlace::location), fieldOr("altitude", &WirePlace::altitude)};
template <>
inline constexpr auto jsonFields<WireDashboard> = FieldList{
    fieldOr("time_utc", &WireDashboard::time),
    fieldOr("Temperature", &WireDashboard::temperature),
    fieldOr("Humidity", &WireDashboard::humidity),
    fieldOr("Pressure", &WireDashboard::pressure),
    fieldOr("AbsolutePressure", &WireDashboard::absolutePressure),
    fieldOr("CO2", &WireDashboard::co2),
    fieldOr("Noise", &WireDashboard::noise),
    fieldOr("WindStrength", &WireDashboard::wind),
    fieldOr("WindAngle", &WireDashboard::windAngle),
    fieldOr("GustStrength", &WireDashboard::gust),
    fieldOr("GustAngle", &WireDashboard::gustAngle),
    fieldOr("sum_rain_1", &WireDashboard::rainHour),
    fieldOr("sum_rain_24", &WireDashboard::rainDay),
};
template <>
inline constexpr auto jsonFields<WireModule> = FieldList{
    fieldOr("_id", &WireModule::id),
    fieldOr("type", &WireModule::type),
    fieldOr("module_name", &WireModule::moduleName),
    fieldOr("reachable", &WireModule::reachable),
    fieldOr("battery_percent", &WireModule::battery),
    fieldOr("dashboard_data", &WireModule::dashboard),
};
template <>
inline constexpr auto jsonFields<WireDevice> = FieldList{
    fieldOr("_id", &WireDevice::id),
    fieldOr("type", &WireDevice::type),
    fieldOr("module_name", &WireDevice::moduleName),
    fieldOr("station_name", &WireDevice::stationName),
    fieldOr("home_name", &WireDevice::homeName),
    fieldOr("reachable", &WireDevice::reachable),
    fieldOr("dashboard_data", &WireDevice::dashboard),
    fieldOr("place", &WireDevice::place),
    fieldOr("modules", &WireDevice::modules),
};
template <>
inline constexpr auto jsonFields<WireStationsBody> = FieldList{field("devices", &WireStationsBody::devices)};
template <>
inline constexpr auto jsonFields<WireStations> = FieldList{field("body", &WireStations::body)};
template <>
inline constexpr auto jsonFields<WireMeasure> = FieldList{
    fieldOr("res", &WireMeasure::res),
    fieldOr("type", &WireMeasure::type),
    fieldOr("rain_60min", &WireMeasure::rainHour),
    fieldOr("rain_24h", &WireMeasure::rainDay),
    fieldOr("rain_timeutc", &WireMeasure::rainTime),
    fieldOr("wind_strength", &WireMeasure::wind),
    fieldOr("wind_angle", &WireMeasure::windAngle),
    fieldOr("gust_strength", &WireMeasure::gust),
    fieldOr("gust_angle", &WireMeasure::gustAngle),
    fieldOr("wind_timeutc", &WireMeasure::windTime),
};
template <>
inline constexpr auto jsonFields<WirePublicStation> =
    FieldList{fieldOr("_id", &WirePublicStation::id), fieldOr("place", &WirePublicStation::place),
              fieldOr("measures", &WirePublicStation::measures)};
template <>
inline constexpr auto jsonFields<WirePublic> = FieldList{field("body", &WirePublic::body)};

namespace {

struct CodeRow {
  int code;
  Kind kind;
};

/// Numbers of the second shape.
constexpr CodeRow kCodes[] = {{0, Kind::backend},      {1, Kind::tokenExpired}, {2, Kind::tokenExpired},
                              {3, Kind::tokenExpired}, {13, Kind::scope},       {26, Kind::tooMany}};

struct WordRow {
  std::string_view word;
  Kind kind;
};

/// Words of the first shape, most of them those of OAuth 2.
constexpr WordRow kWords[] = {{"invalid_grant", Kind::grantInvalid},
                              {"invalid_client", Kind::clientInvalid},
                              {"unauthorized_client", Kind::clientInvalid},
                              {"redirect_uri_mismatch", Kind::redirect},
                              {"invalid_token", Kind::tokenExpired},
                              {"expired_token", Kind::tokenExpired},
                              {"invalid_scope", Kind::scope},
                              {"too_many_connections", Kind::tooMany}};

Kind kindOfStatus(int status) {
  constexpr int kTooMany = 429, kServerError = 500;
  if (status == kTooMany) return Kind::tooMany;
  return status >= kServerError ? Kind::backend : Kind::other;
}

StationModuleKind kindOf(std::string_view type) {
  if (type == "NAMain") return StationModuleKind::base;
  if (type == "NAModule1") return StationModuleKind::outdoor;
  if (type == "NAModule2") return StationModuleKind::wind;
  if (type == "NAModule3") return StationModuleKind::rain;
  return StationModuleKind::indoor;
}

/// A vane that has not turned yet tells -1.
std::optional<double> angle(LenientNumber const& degrees) {
  return degrees.value && *degrees.value < 0 ? std::nullopt : degrees.value;
}

void addDashboard(StationModule& module, WireDashboard const& data) {
  module.observedAt = stationInstant(data.time.value);
  if (!module.observedAt) return;
  module.add(temperature, data.temperature.value);
  module.add(humidity, data.humidity.value);
  module.add(pressure, data.pressure.value);
  module.add(absolutePressure, data.absolutePressure.value);
  module.add(windSpeed, data.wind.value);
  module.add(windDirection, angle(data.windAngle));
  module.add(gustSpeed, data.gust.value);
  module.add(gustDirection, angle(data.gustAngle));
  module.add(rainLastHour, data.rainHour.value);
  module.add(rainLastDay, data.rainDay.value);
  module.add(carbonDioxide, data.co2.value);
  module.add(noise, data.noise.value);
}

/// `wire` is a module or the base station, which has no battery.
template <class Wire>
StationModule moduleOfWire(Wire const& wire) {
  StationModule module;
  module.id = stationText(wire.id);
  module.name = stationText(wire.moduleName);
  module.kind = kindOf(stationText(wire.type));
  module.isReachable = wire.reachable.value.value_or(true);
  if (wire.dashboard.value) addDashboard(module, *wire.dashboard.value);
  return module;
}

void addPlace(StationReading& station, Lenient<WirePlace> const& place) {
  if (!place.value) return;
  station.altitude = place.value->altitude.value;
  auto const& location = place.value->location.value;
  if (!location || location->size() < 2) return;
  // Longitude first, as in GeoJSON.
  station.longitude = location->at(0).value;
  station.latitude = location->at(1).value;
  if (!station.place()) station.longitude = station.latitude = std::nullopt;
}

std::optional<int> batteryOf(LenientNumber const& percent) {
  constexpr double kFull = 100;
  if (!percent.value || *percent.value < 0 || *percent.value > kFull) return std::nullopt;
  return static_cast<int>(*percent.value);
}

StationReading stationOf(WireDevice const& device) {
  StationReading station;
  station.id = stationText(device.id);
  station.name = stationText(device.stationName);
  if (station.name.empty()) station.name = stationText(device.homeName);
  addPlace(station, device.place);
  station.modules.push_back(moduleOfWire(device));
  if (station.name.empty()) station.name = station.modules.front().name;
  if (!device.modules.value) return station;
  for (Lenient<WireModule> const& module : *device.modules.value) {
    if (!module.value || station.modules.size() >= kMostModules) continue;
    station.modules.push_back(moduleOfWire(*module.value));
    station.modules.back().battery = batteryOf(module.value->battery);
  }
  return station;
}

struct NamedQuantity {
  std::string_view name;
  StationQuantity quantity;
};

constexpr NamedQuantity kPublicNames[] = {
    {"temperature", temperature}, {"humidity", humidity}, {"pressure", pressure}};

/// The last of the times.
void addListed(StationModule& module, WireMeasure const& measure) {
  if (!measure.res.value || !measure.type.value) return;
  for (auto const& [time, values] : *measure.res.value) {
    auto const at = stationInstant(parseDouble(time));
    if (!at || (module.observedAt && *module.observedAt >= *at)) continue;
    module.observedAt = at;
    module.values.clear();
    for (NamedQuantity const& named : kPublicNames) {
      auto const column = std::ranges::find(*measure.type.value, named.name) - measure.type.value->begin();
      if (column < std::ssize(values)) module.add(named.quantity, values[std::size_t(column)].value);
    }
  }
}

StationModule publicModule(std::string const& id, WireMeasure const& measure) {
  StationModule module;
  module.id = cleanText(id, kNameLimit, TextLines::one);
  if (auto const rained = stationInstant(measure.rainTime.value)) {
    module.kind = StationModuleKind::rain;
    module.observedAt = rained;
    module.add(rainLastHour, measure.rainHour.value);
    module.add(rainLastDay, measure.rainDay.value);
  } else if (auto const blew = stationInstant(measure.windTime.value)) {
    module.kind = StationModuleKind::wind;
    module.observedAt = blew;
    module.add(windSpeed, measure.wind.value);
    module.add(windDirection, angle(measure.windAngle));
    module.add(gustSpeed, measure.gust.value);
    module.add(gustDirection, angle(measure.gustAngle));
  } else {
    addListed(module, measure);
    if (module.value(pressure) && !module.value(temperature)) module.kind = StationModuleKind::base;
  }
  return module;
}

StationReading publicStation(WirePublicStation const& wire) {
  StationReading station;
  station.id = stationText(wire.id);
  addPlace(station, wire.place);
  if (!wire.measures.value) return station;
  for (auto const& [id, measure] : *wire.measures.value) {
    if (!measure.value || station.modules.size() >= kMostModules) continue;
    StationModule module = publicModule(id, *measure.value);
    if (module.observedAt) station.modules.push_back(std::move(module));
  }
  return station;
}

}  // namespace

std::optional<NetatmoRefusal> netatmoRefusal(int status, std::string_view body) {
  constexpr int kFirstRefusal = 300;
  if (auto const worded = decodeJson<WireTextError>(body); worded && worded->error.value) {
    std::string const word = oneLine(*worded->error.value);
    auto const row = std::ranges::find(kWords, std::string_view(word), &WordRow::word);
    return NetatmoRefusal{row == std::end(kWords) ? kindOfStatus(status) : row->kind, word};
  }
  auto const numbered = decodeJson<WireObjectError>(body);
  if (numbered && numbered->error.value && numbered->error.value->code.value) {
    double const code = *numbered->error.value->code.value;
    auto const row = std::ranges::find(kCodes, code, [](CodeRow const& each) { return double(each.code); });
    return NetatmoRefusal{row == std::end(kCodes) ? kindOfStatus(status) : row->kind,
                          oneLine(numbered->error.value->message.value.value_or(std::string()))};
  }
  if (status < kFirstRefusal) return std::nullopt;
  return NetatmoRefusal{kindOfStatus(status), {}};
}

Result<NetatmoTokens, DecodeError> parseNetatmoTokens(std::string_view body) {
  auto const wire = decodeJson<WireTokens>(body);
  if (!wire) return std::unexpected(wire.error());
  // It becomes part of a header.
  auto const isToken = [](std::string const& text) {
    constexpr std::size_t kLongest = 4096;
    return !text.empty() && text.size() <= kLongest &&
           std::ranges::all_of(text, [](char each) { return each > ' ' && each <= '~'; });
  };
  if (!isToken(wire->access)) return std::unexpected(DecodeError{"/access_token", "a token is expected"});
  if (!isToken(wire->refresh)) return std::unexpected(DecodeError{"/refresh_token", "a token is expected"});
  // Both names of the life are sent; without one, what the service documents.
  constexpr double kUsual = 10'800, kLongestLife = 86'400 * 30;
  double const life = wire->expiresIn.value.value_or(wire->expireIn.value.value_or(kUsual));
  return NetatmoTokens{wire->access, wire->refresh,
                       std::chrono::seconds(static_cast<long>(std::clamp(life, 0.0, kLongestLife)))};
}

Result<std::vector<StationReading>, DecodeError> parseNetatmoStations(std::string_view body) {
  auto const wire = decodeJson<WireStations>(body);
  if (!wire) return std::unexpected(wire.error());
  std::vector<StationReading> stations;
  for (Lenient<WireDevice> const& device : wire->body.devices) {
    if (stations.size() == kMostStations) break;
    if (!device.value || stationText(device.value->id).empty()) continue;
    stations.push_back(stationOf(*device.value));
  }
  return stations;
}

Result<std::vector<StationReading>, DecodeError> parseNetatmoPublic(std::string_view body) {
  auto const wire = decodeJson<WirePublic>(body);
  if (!wire) return std::unexpected(wire.error());
  std::vector<StationReading> stations;
  for (Lenient<WirePublicStation> const& station : wire->body) {
    if (stations.size() == kMostStations) break;
    if (!station.value || stationText(station.value->id).empty()) continue;
    stations.push_back(publicStation(*station.value));
  }
  return stations;
}

}  // namespace nimbara
