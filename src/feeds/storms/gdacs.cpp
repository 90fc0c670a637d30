#include "feeds/storms/gdacs.h"

#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

struct Severity {
  LenientNumber severity;
  Lenient<std::string> severityunit;
};

struct Properties {
  Lenient<std::string> eventtype, eventname, iscurrent, todate, source;
  LenientNumber eventid;
  Lenient<Severity> severitydata;
};

struct Geometry {
  Lenient<std::string> type;
  Lenient<std::vector<LenientNumber>> coordinates;
};

struct Feature {
  Lenient<Properties> properties;
  Lenient<Geometry> geometry;
};

struct Events {
  std::vector<Feature> features;
};

}  // namespace

template <>
inline constexpr auto jsonFields<Severity> =
    FieldList{fieldOr("severity", &Severity::severity), fieldOr("severityunit", &Severity::severityunit)};
template <>
inline constexpr auto jsonFields<Properties> = FieldList{fieldOr("eventtype", &Properties::eventtype),
                                                         fieldOr("eventname", &Properties::eventname),
                                                         fieldOr("iscurrent", &Properties::iscurrent),
                                                         fieldOr("todate", &Properties::todate),
                                                         fieldOr("source", &Properties::source),
                                                         fieldOr("eventid", &Properties::eventid),
                                                         fieldOr("severitydata", &Properties::severitydata)};
template <>
inline constexpr auto jsonFields<Geometry> =
    FieldList{fieldOr("type", &Geometry::type), fieldOr("coordinates", &Geometry::coordinates)};
template <>
inline constexpr auto jsonFields<Feature> =
    FieldList{fieldOr("properties", &Feature::properties), fieldOr("geometry", &Feature::geometry)};
template <>
inline constexpr auto jsonFields<Events> = FieldList{field("features", &Events::features)};

namespace {

constexpr double kFastestKmh = 600;

/// "Twentythree" for "TWENTYTHREE-26".
std::string nameOf(std::string_view eventName) {
  std::string name = asciiLowered(trimmed(eventName.substr(0, eventName.rfind('-'))));
  if (!name.empty() && name[0] >= 'a' && name[0] <= 'z') name[0] = static_cast<char>(name[0] - 'a' + 'A');
  return oneLine(name, 60);
}

std::optional<Coordinate> pointOf(Feature const& feature) {
  if (!feature.geometry.value || feature.geometry.value->type.value != "Point") return std::nullopt;
  auto const& numbers = feature.geometry.value->coordinates.value;
  if (!numbers || numbers->size() < 2 || !(*numbers)[0].value || !(*numbers)[1].value) return std::nullopt;
  Coordinate const point{*(*numbers)[1].value, *(*numbers)[0].value};
  return isValid(point) ? std::optional(point) : std::nullopt;
}

/// The event's highest wind; the unit is told beside it.
std::optional<double> peakOf(Properties const& properties) {
  if (!properties.severitydata.value) return std::nullopt;
  auto const kmh = properties.severitydata.value->severity.value;
  bool const isSpeed = asciiLowered(properties.severitydata.value->severityunit.value.value_or("")) == "km/h";
  return kmh && isSpeed && *kmh >= 0 && *kmh <= kFastestKmh ? kmh : std::nullopt;
}

/// Times are told without a zone and are Greenwich's.
std::optional<Instant> momentOf(std::optional<std::string> const& text) {
  auto const local = text ? parseLocalTime(*text) : std::nullopt;
  return local ? std::optional(Instant(local->time_since_epoch())) : std::nullopt;
}

std::optional<TropicalStorm> stormOf(Feature const& feature) {
  auto const position = pointOf(feature);
  if (!position || !feature.properties.value) return std::nullopt;
  Properties const& properties = *feature.properties.value;
  auto const peak = peakOf(properties);
  bool const isCurrent = asciiLowered(properties.iscurrent.value.value_or("")) == "true";
  bool const isStorm = properties.eventtype.value == "TC" && properties.eventid.value;
  if (!isCurrent || !isStorm || !peak) return std::nullopt;
  TropicalStorm storm;
  storm.id = "gdacs" + roundedText(*properties.eventid.value);
  storm.basin = basinAt(*position);
  storm.name = nameOf(properties.eventname.value.value_or(""));
  storm.coordinate = *position;
  storm.windMs = *peak / kKmhInMs;
  storm.isPeakWind = true;
  storm.category = stormCategory(std::round(storm.windMs / kMsInAKnot));
  storm.lastUpdate = momentOf(properties.todate.value);
  storm.centre = StormCentre::gdacs;
  return storm;
}

}  // namespace

TropicalBasin basinAt(Coordinate position) {
  auto const [latitude, longitude] = position;
  if (latitude < 0) return TropicalBasin::southern;
  if (longitude >= 30 && longitude < 100) return TropicalBasin::northIndian;
  if (longitude >= 100) return TropicalBasin::westernPacific;
  if (longitude < -140) return TropicalBasin::centralPacific;
  // The shores of Mexico and Central America, as two straight lines.
  double const shore = longitude < -84 ? 20 - (longitude + 105) * 9 / 21 : 11 - (longitude + 84) * 3 / 7;
  bool const isPacific = longitude < -105 || (longitude < -77 && latitude < shore);
  return isPacific ? TropicalBasin::easternPacific : TropicalBasin::atlantic;
}

Result<std::vector<TropicalStorm>, DecodeError> parseGdacsStorms(std::string_view body) {
  auto const events = decodeJson<Events>(body);
  if (!events) return std::unexpected(events.error());
  std::vector<TropicalStorm> storms;
  for (Feature const& feature : events->features) {
    auto storm = stormOf(feature);
    bool const isNew = storm && std::ranges::find(storms, storm->id, &TropicalStorm::id) == storms.end();
    if (isNew) storms.push_back(std::move(*storm));
  }
  return storms;
}

}  // namespace nimbara
