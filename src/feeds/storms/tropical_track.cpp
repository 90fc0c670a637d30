// The forecast positions of a storm, as a layer of the map service tells them.
#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"
#include "feeds/storms/tropical_storm.h"

#include <algorithm>

namespace nimbara {

namespace {

struct PointProperties {
  Lenient<std::string> validTime;
  LenientNumber hoursAhead, knots;
};

struct PointGeometry {
  std::vector<LenientNumber> coordinates;
};

struct PointFeature {
  Lenient<PointProperties> properties;
  Lenient<PointGeometry> geometry;
};

struct PointCollection {
  std::vector<Lenient<PointFeature>> features;
};

}  // namespace

template <>
inline constexpr auto jsonFields<PointProperties> =
    FieldList{fieldOr("validtime", &PointProperties::validTime), fieldOr("tau", &PointProperties::hoursAhead),
              fieldOr("maxwind", &PointProperties::knots)};
template <>
inline constexpr auto jsonFields<PointGeometry> =
    FieldList{field("coordinates", &PointGeometry::coordinates)};
template <>
inline constexpr auto jsonFields<PointFeature> =
    FieldList{field("properties", &PointFeature::properties), field("geometry", &PointFeature::geometry)};
template <>
inline constexpr auto jsonFields<PointCollection> = FieldList{field("features", &PointCollection::features)};

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;

constexpr double kFastestWind = 300;  // knots
constexpr double kFarthestHours = 240;
constexpr hours kForecastStep{6};
/// Where a point does not tell how far ahead it is: the middle of the days that forecasts cover.
constexpr hours kMiddle{60};

/// "29/1200" is 12:00 on the 29th, of the month that brings it closest to `about`.
std::optional<Instant> timeOfMonth(std::string_view text, Instant about) {
  auto const parts = split(trimmed(text), '/');
  if (parts.size() != 2 || parts[1].size() != 4) return std::nullopt;
  auto const day = parseInteger(parts[0]);
  auto const hour = parseInteger(parts[1].substr(0, 2));
  auto const minute = parseInteger(parts[1].substr(2));
  if (!day || !hour || !minute || *day < 1 || *hour < 0 || *hour > 23 || *minute < 0 || *minute > 59) {
    return std::nullopt;
  }
  Date const date(std::chrono::floor<days>(about));
  std::optional<Instant> closest;
  for (int months = -1; months <= 1; ++months) {
    auto const month = date.year() / date.month() + std::chrono::months(months);
    Date const candidate = month / *day;
    if (!candidate.ok()) continue;
    Instant const time = std::chrono::sys_days(candidate) + hours(*hour) + minutes(*minute);
    if (!closest || std::chrono::abs(time - about) < std::chrono::abs(*closest - about)) closest = time;
  }
  return closest;
}

std::optional<Instant> timeOf(PointProperties const& properties, Instant lastUpdate) {
  auto const ahead = properties.hoursAhead.value;
  bool const isAhead = ahead && *ahead >= 0 && *ahead <= kFarthestHours;
  // Forecasts count from the last of the four runs a day.
  Instant const run(lastUpdate.time_since_epoch() / kForecastStep * kForecastStep);
  Instant const about = run + (isAhead ? hours(static_cast<int>(*ahead)) : kMiddle);
  if (auto const time = timeOfMonth(properties.validTime.value.value_or(""), about)) return time;
  return isAhead ? std::optional(about) : std::nullopt;
}

std::optional<TropicalTrackPoint> pointOf(PointFeature const& feature, Instant lastUpdate) {
  if (!feature.properties.value || !feature.geometry.value) return std::nullopt;
  auto const& position = feature.geometry.value->coordinates;
  if (position.size() < 2 || !position[0].value || !position[1].value) return std::nullopt;
  Coordinate const coordinate{*position[1].value, *position[0].value};
  auto const time = timeOf(*feature.properties.value, lastUpdate);
  if (!time || !isValid(coordinate)) return std::nullopt;
  TropicalTrackPoint point{*time, coordinate, {}, {}};
  auto const knots = feature.properties.value->knots.value;
  if (knots && *knots >= 0 && *knots <= kFastestWind) point.windMs = *knots * kMsInAKnot;
  return point;
}

}  // namespace

Result<std::vector<TropicalTrackPoint>, DecodeError> parseTropicalTrack(std::string_view body,
                                                                        Instant lastUpdate) {
  auto const collection = decodeJson<PointCollection>(body);
  if (!collection) return std::unexpected(collection.error());
  std::vector<TropicalTrackPoint> track;
  track.reserve(collection->features.size());
  for (auto const& feature : collection->features) {
    if (!feature.value) continue;
    if (auto const point = pointOf(*feature.value, lastUpdate)) track.push_back(*point);
  }
  std::ranges::stable_sort(track, {}, &TropicalTrackPoint::time);
  return track;
}

}  // namespace nimbara
