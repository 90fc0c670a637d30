#include "feeds/quakes/earthquake_event.h"

#include "base/json/json_codec.h"
#include "base/text/text.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::chrono::seconds kSpan{86400};
constexpr std::size_t kPosition = 3;

struct Properties {
  std::optional<double> mag;
  std::optional<std::string> place;
  std::optional<double> time;
  std::optional<double> updated;
  std::optional<std::string> alert;
  std::optional<int> sig;
  std::optional<std::string> url;
  std::optional<std::string> detail;
};

struct Geometry {
  std::vector<std::optional<double>> coordinates;
};

struct Feature {
  std::string id;
  Properties properties;
  std::optional<Geometry> geometry;
};

struct Collection {
  std::vector<Feature> features;
};

/// Milliseconds since 1970; nothing for what no calendar reaches.
std::optional<Instant> instantOf(std::optional<double> milliseconds) {
  constexpr double kFarthest = 8.64e15;
  if (!milliseconds || !(std::abs(*milliseconds) <= kFarthest)) return std::nullopt;
  return Instant(std::chrono::milliseconds(std::llround(*milliseconds)));
}

std::optional<std::string> unlessEmpty(std::optional<std::string> text) {
  return text && !text->empty() ? std::move(text) : std::nullopt;
}

bool hasPosition(std::optional<Geometry> const& geometry) {
  if (!geometry || geometry->coordinates.size() < kPosition) return false;
  auto const begin = geometry->coordinates.begin();
  return std::all_of(begin, begin + kPosition, [](auto const& number) { return number.has_value(); });
}

std::optional<EarthquakeEvent> eventOf(Feature& feature) {
  Properties& properties = feature.properties;
  auto const time = instantOf(properties.time);
  if (!properties.mag || !time || !hasPosition(feature.geometry)) return std::nullopt;
  auto const& position = feature.geometry->coordinates;
  EarthquakeEvent event;
  event.id = std::move(feature.id);
  event.magnitude = *properties.mag;
  event.place = oneLine(properties.place.value_or("Unknown location"));
  event.time = *time;
  event.updated = instantOf(properties.updated);
  event.longitude = *position[0];
  event.latitude = *position[1];
  event.depthKm = *position[2];
  event.alert = std::move(properties.alert);
  event.significance = properties.sig;
  event.url = unlessEmpty(std::move(properties.url));
  event.detailURL = unlessEmpty(std::move(properties.detail));
  return event;
}

}  // namespace

template <>
inline constexpr auto jsonFields<Properties> = FieldList{
    field("mag", &Properties::mag),     field("place", &Properties::place),
    field("time", &Properties::time),   field("updated", &Properties::updated),
    field("url", &Properties::url),     field("detail", &Properties::detail),
    field("alert", &Properties::alert), field("sig", &Properties::sig),
};

template <>
inline constexpr auto jsonFields<Geometry> = FieldList{fieldOr("coordinates", &Geometry::coordinates)};

template <>
inline constexpr auto jsonFields<Feature> =
    FieldList{field("properties", &Feature::properties), field("geometry", &Feature::geometry),
              field("id", &Feature::id)};

template <>
inline constexpr auto jsonFields<Collection> = FieldList{field("features", &Collection::features)};

template Result<std::vector<EarthquakeEvent>, DecodeError> decodeJson(std::string_view);

Result<std::vector<EarthquakeEvent>, DecodeError> parseEarthquakes(std::string_view body) {
  auto collection = decodeJson<Collection>(body);
  if (!collection) return std::unexpected(std::move(collection.error()));
  std::vector<EarthquakeEvent> events;
  events.reserve(collection->features.size());
  for (Feature& feature : collection->features) {
    if (auto event = eventOf(feature)) events.push_back(std::move(*event));
  }
  return events;
}

std::vector<EarthquakeEvent> recentEarthquakes(std::vector<EarthquakeEvent> events, Instant now) {
  std::erase_if(events, [now](EarthquakeEvent const& event) { return now - event.time > kSpan; });
  std::ranges::stable_sort(events, std::ranges::greater{}, &EarthquakeEvent::time);
  return events;
}

}  // namespace nimbara
