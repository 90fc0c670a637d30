// What of the user's station is part of the forecast that is shown, and what is known of the rest.
#pragma once

#include "feeds/stations/station_history.h"
#include "feeds/stations/station_overlay.h"
#include "feeds/stations/station_service.h"

#include <algorithm>

namespace nimbara {

struct StationShown {
  StationsReading reading;
  std::vector<OverlaidValue> values;
  std::vector<DoubtedValue> doubts;
  bool isElsewhere = false;
  std::vector<StationSample> history = {};  ///< of the last two days; not filled by everybody

  bool isLive() const { return !values.empty(); }
  /// When the oldest of its values is too old to be part of the present.
  std::optional<Instant> liveUntil() const;
  bool operator==(StationShown const&) const = default;
};

inline std::optional<Instant> StationShown::liveUntil() const {
  std::optional<Instant> oldest;
  for (OverlaidValue const& value : values)
    oldest = oldest ? std::min(*oldest, value.observedAt) : value.observedAt;
  return oldest ? std::optional(*oldest + kStationLife) : std::nullopt;
}

/// Puts the station's values into the present of `data`, where they belong there.
inline StationShown overlaid(WeatherData& data, StationsReading reading, Instant now) {
  StationShown shown;
  StationReading const* const station = reading.station();
  if (station != nullptr) {
    StationOverlay overlay = stationOverlay(data, *station, now);
    if (overlay.isLive()) data = std::move(overlay.data);
    shown.values = std::move(overlay.values);
    shown.doubts = std::move(overlay.doubts);
    shown.isElsewhere = overlay.isElsewhere;
  }
  shown.reading = std::move(reading);
  return shown;
}

}  // namespace nimbara
