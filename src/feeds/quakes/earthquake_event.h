// Earthquakes as records, and the parser of the USGS GeoJSON summaries. Pure; any bytes may be given.
#pragma once

#include "base/geodesy.h"
#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Also the form on disk. Blasts and ice quakes, which the source lists too, are among them.
struct EarthquakeEvent {
  std::string id;
  double magnitude = 0;  ///< may be negative
  std::string place;
  Instant time;
  std::optional<Instant> updated;
  double latitude = 0;               ///< degrees
  double longitude = 0;              ///< degrees
  double depthKm = 0;                ///< negative above sea level
  std::optional<std::string> alert;  ///< PAGER's colour: "green", "yellow", "orange", "red"
  std::optional<int> significance;
  std::optional<std::string> url;
  std::optional<std::string> detailURL;
  std::optional<double> emscMagnitude = {};  ///< of the second source, where it lists the event too
  bool isOnlyByEmsc = false;                 ///< the first source does not

  Coordinate coordinate() const { return {latitude, longitude}; }
  bool operator==(EarthquakeEvent const&) const = default;
};

template <>
inline constexpr auto jsonFields<EarthquakeEvent> = FieldList{
    field("id", &EarthquakeEvent::id),
    field("magnitude", &EarthquakeEvent::magnitude),
    field("place", &EarthquakeEvent::place),
    field("time", &EarthquakeEvent::time),
    field("updated", &EarthquakeEvent::updated),
    field("latitude", &EarthquakeEvent::latitude),
    field("longitude", &EarthquakeEvent::longitude),
    field("depthKm", &EarthquakeEvent::depthKm),
    field("alert", &EarthquakeEvent::alert),
    field("significance", &EarthquakeEvent::significance),
    field("url", &EarthquakeEvent::url),
    field("detailURL", &EarthquakeEvent::detailURL),
    field("_nimbaraEmscMagnitude", &EarthquakeEvent::emscMagnitude),
};

/// In the collection's order. Features without magnitude, time or a whole position are left out.
Result<std::vector<EarthquakeEvent>, DecodeError> parseEarthquakes(std::string_view body);

/// Those of the last 24 hours, the bound included, newest first.
std::vector<EarthquakeEvent> recentEarthquakes(std::vector<EarthquakeEvent> events, Instant now);

}  // namespace nimbara
