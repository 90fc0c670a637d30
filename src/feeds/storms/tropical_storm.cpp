#include "feeds/storms/tropical_storm.h"

#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

struct StormEntry {
  Lenient<std::string> id, binNumber, name, classification, latitude, longitude, lastUpdate;
  LenientNumber intensity, pressure, latitudeNumeric, longitudeNumeric, movementDir, movementSpeed;
};

struct StormList {
  std::vector<Lenient<StormEntry>> activeStorms;
};

struct LayerList {
  std::vector<Lenient<MapLayer>> layers;
};

}  // namespace

template <>
inline constexpr auto jsonFields<StormEntry> = FieldList{
    fieldOr("id", &StormEntry::id),
    fieldOr("binNumber", &StormEntry::binNumber),
    fieldOr("name", &StormEntry::name),
    fieldOr("classification", &StormEntry::classification),
    fieldOr("intensity", &StormEntry::intensity),
    fieldOr("pressure", &StormEntry::pressure),
    fieldOr("latitude", &StormEntry::latitude),
    fieldOr("longitude", &StormEntry::longitude),
    fieldOr("latitudeNumeric", &StormEntry::latitudeNumeric),
    fieldOr("longitudeNumeric", &StormEntry::longitudeNumeric),
    fieldOr("movementDir", &StormEntry::movementDir),
    fieldOr("movementSpeed", &StormEntry::movementSpeed),
    fieldOr("lastUpdate", &StormEntry::lastUpdate),
};
template <>
inline constexpr auto jsonFields<StormList> = FieldList{field("activeStorms", &StormList::activeStorms)};
template <>
inline constexpr auto jsonFields<MapLayer> =
    FieldList{field("id", &MapLayer::id), field("name", &MapLayer::name)};
template <>
inline constexpr auto jsonFields<LayerList> = FieldList{field("layers", &LayerList::layers)};

namespace {

constexpr double kMsInAMileAnHour = 0.44704;
constexpr double kFastestWind = 300;      // knots
constexpr double kFastestMovement = 150;  // miles an hour

struct Prefix {
  std::string_view text;
  TropicalBasin basin;
};

constexpr Prefix kPrefixes[] = {
    {"al", TropicalBasin::atlantic},       {"ep", TropicalBasin::easternPacific},
    {"cp", TropicalBasin::centralPacific}, {"wp", TropicalBasin::westernPacific},
    {"io", TropicalBasin::northIndian},    {"sh", TropicalBasin::southern},
};

/// The least wind of each category above the first, in knots.
constexpr std::array<double, enumNames<StormCategory>.size() - 1> kLeastKnots{34, 64, 83, 96, 113, 137};

std::optional<double> between(std::optional<double> value, double least, double most) {
  return value && *value >= least && *value <= most ? value : std::nullopt;
}

/// "34.2N" and "83.0W".
std::optional<double> signedDegrees(std::string_view text, char positive, char negative) {
  text = trimmed(text);
  if (text.empty()) return std::nullopt;
  char const side = asciiUppered(text.substr(text.size() - 1))[0];
  auto const degrees = parseDouble(trimmed(text.substr(0, text.size() - 1)));
  if (!degrees || (side != positive && side != negative)) return std::nullopt;
  return side == positive ? *degrees : -*degrees;
}

std::optional<Coordinate> positionOf(StormEntry const& entry) {
  auto latitude = entry.latitudeNumeric.value;
  auto longitude = entry.longitudeNumeric.value;
  if (!latitude) latitude = signedDegrees(entry.latitude.value.value_or(""), 'N', 'S');
  if (!longitude) longitude = signedDegrees(entry.longitude.value.value_or(""), 'E', 'W');
  if (!latitude || !longitude || !isValid({*latitude, *longitude})) return std::nullopt;
  return Coordinate{*latitude, *longitude};
}

std::optional<double> movementMsOf(std::optional<double> milesAnHour) {
  auto const plausible = between(milesAnHour, 0, kFastestMovement);
  return plausible ? std::optional(*plausible * kMsInAMileAnHour) : std::nullopt;
}

std::optional<TropicalStorm> stormOf(StormEntry& entry) {
  TropicalStorm storm;
  storm.id = asciiLowered(trimmed(entry.id.value.value_or("")));
  auto const basin = basinOfStorm(storm.id);
  auto const position = positionOf(entry);
  auto const knots = between(entry.intensity.value, 0, kFastestWind);
  if (!basin || !position || !knots) return std::nullopt;
  storm.basin = *basin;
  storm.coordinate = *position;
  storm.windMs = *knots * kMsInAKnot;
  storm.category = stormCategory(*knots);
  storm.bin = oneLine(entry.binNumber.value.value_or(""));
  storm.name = oneLine(entry.name.value.value_or(""));
  storm.classification = oneLine(entry.classification.value.value_or(""));
  storm.pressure = between(entry.pressure.value, 800, 1100);
  storm.movementDirection = between(entry.movementDir.value, 0, 360);
  // Miles an hour, unlike the wind: the list does not name the unit, the public advisories have the same
  // number.
  storm.movementMs = movementMsOf(entry.movementSpeed.value);
  storm.lastUpdate = parseIso8601(entry.lastUpdate.value.value_or(""));
  return storm;
}

}  // namespace

StormCategory stormCategory(double knots) {
  auto const steps = std::ranges::count_if(kLeastKnots, [knots](double least) { return knots >= least; });
  return static_cast<StormCategory>(steps);
}

std::optional<TropicalBasin> basinOfStorm(std::string_view id) {
  constexpr std::size_t kLength = 8;  // two letters, a number of two digits, a year of four
  bool const isId =
      id.size() == kLength && std::ranges::all_of(id.substr(2), [](char c) { return c >= '0' && c <= '9'; });
  auto const* const row = std::ranges::find_if(
      kPrefixes, [id](Prefix const& prefix) { return asciiLowered(id.substr(0, 2)) == prefix.text; });
  return isId && row != std::end(kPrefixes) ? std::optional(row->basin) : std::nullopt;
}

Result<std::vector<TropicalStorm>, DecodeError> parseTropicalStorms(std::string_view body) {
  auto list = decodeJson<StormList>(body);
  if (!list) return std::unexpected(std::move(list.error()));
  std::vector<TropicalStorm> storms;
  storms.reserve(list->activeStorms.size());
  for (auto& entry : list->activeStorms) {
    if (!entry.value) continue;
    if (auto storm = stormOf(*entry.value)) storms.push_back(std::move(*storm));
  }
  if (storms.empty() && !list->activeStorms.empty()) {
    return std::unexpected(DecodeError{"/activeStorms", "none of the storms can be read"});
  }
  return storms;
}

Result<std::vector<MapLayer>, DecodeError> parseMapLayers(std::string_view body) {
  auto list = decodeJson<LayerList>(body);
  if (!list) return std::unexpected(std::move(list.error()));
  std::vector<MapLayer> layers;
  layers.reserve(list->layers.size());
  for (auto& layer : list->layers) {
    if (layer.value && layer.value->id >= 0) layers.push_back(std::move(*layer.value));
  }
  return layers;
}

std::optional<int> trackLayerOf(std::string_view bin, std::vector<MapLayer> const& layers) {
  std::string const name = asciiLowered(trimmed(bin)) + " forecast points";
  auto const layer = std::ranges::find_if(
      layers, [&](MapLayer const& entry) { return asciiLowered(trimmed(entry.name)) == name; });
  return layer == layers.end() || trimmed(bin).empty() ? std::nullopt : std::optional(layer->id);
}

}  // namespace nimbara
