#include "feeds/quakes/emsc.h"

#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kSameKm = 100;
constexpr std::chrono::seconds kSameTime{90};
constexpr double kSameMagnitude = 0.5;
constexpr double kDeepestKm = 1000;

struct EmscProperties {
  Lenient<std::string> time, lastupdate, region, evtype, unid;
  Lenient<double> lat, lon, depth, mag;
};

struct EmscFeature {
  Lenient<EmscProperties> properties;
};

struct EmscList {
  std::vector<EmscFeature> features;
};

}  // namespace

template <>
inline constexpr auto jsonFields<EmscProperties> =
    FieldList{fieldOr("time", &EmscProperties::time),
              fieldOr("lastupdate", &EmscProperties::lastupdate),
              fieldOr("flynn_region", &EmscProperties::region),
              fieldOr("evtype", &EmscProperties::evtype),
              fieldOr("unid", &EmscProperties::unid),
              fieldOr("lat", &EmscProperties::lat),
              fieldOr("lon", &EmscProperties::lon),
              fieldOr("depth", &EmscProperties::depth),
              fieldOr("mag", &EmscProperties::mag)};
template <>
inline constexpr auto jsonFields<EmscFeature> = FieldList{fieldOr("properties", &EmscFeature::properties)};
template <>
inline constexpr auto jsonFields<EmscList> = FieldList{field("features", &EmscList::features)};

namespace {

/// "Southern Iran" for "SOUTHERN IRAN".
std::string regionName(std::string_view capitals) {
  std::string name = asciiLowered(oneLine(capitals));
  bool isFirst = true;
  for (char& letter : name) {
    if (isFirst && letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    isFirst = letter == ' ' || letter == '-' || letter == '.';
  }
  return name;
}

std::optional<EarthquakeEvent> eventOf(EmscProperties const& properties) {
  auto const time = properties.time.value ? parseIso8601(*properties.time.value) : std::nullopt;
  std::string const id = oneLine(properties.unid.value.value_or(""), 60);
  auto const [latitude, longitude] = std::pair(properties.lat.value, properties.lon.value);
  if (!time || !properties.mag.value || !latitude || !longitude || id.empty()) return std::nullopt;
  EarthquakeEvent event;
  event.id = id;
  event.magnitude = *properties.mag.value;
  event.place = regionName(properties.region.value.value_or("Unknown location"));
  event.time = *time;
  if (properties.lastupdate.value) event.updated = parseIso8601(*properties.lastupdate.value);
  event.latitude = *latitude;
  event.longitude = *longitude;
  event.depthKm = std::clamp(properties.depth.value.value_or(0), -10.0, kDeepestKm);
  event.emscMagnitude = event.magnitude;
  event.isOnlyByEmsc = true;
  return isValid(event.coordinate()) && std::abs(event.magnitude) <= 12 ? std::optional(event) : std::nullopt;
}

}  // namespace

Result<std::vector<EarthquakeEvent>, DecodeError> parseEmscEarthquakes(std::string_view body) {
  if (trimmed(body).empty()) return std::vector<EarthquakeEvent>();
  auto const list = decodeJson<EmscList>(body);
  if (!list) return std::unexpected(list.error());
  std::vector<EarthquakeEvent> events;
  for (EmscFeature const& feature : list->features) {
    auto event = feature.properties.value ? eventOf(*feature.properties.value) : std::nullopt;
    if (event) events.push_back(std::move(*event));
  }
  std::ranges::stable_sort(events, std::ranges::greater{}, &EarthquakeEvent::time);
  return events;
}

bool isSameQuake(EarthquakeEvent const& one, EarthquakeEvent const& other) {
  return std::chrono::abs(one.time - other.time) <= kSameTime &&
         std::abs(one.magnitude - other.magnitude) <= kSameMagnitude &&
         haversineKm(one.coordinate(), other.coordinate()) <= kSameKm;
}

std::vector<EarthquakeEvent> mergedEarthquakes(std::vector<EarthquakeEvent> events,
                                               std::vector<EarthquakeEvent> const& emsc) {
  for (EarthquakeEvent const& other : emsc) {
    auto const same = std::ranges::find_if(events, [&](EarthquakeEvent const& event) {
      return !event.emscMagnitude && isSameQuake(event, other);
    });
    if (same == events.end()) {
      events.push_back(other);
    } else {
      same->emscMagnitude = other.magnitude;
    }
  }
  std::ranges::stable_sort(events, std::ranges::greater{}, &EarthquakeEvent::time);
  return events;
}

}  // namespace nimbara
