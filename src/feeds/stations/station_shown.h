// What of the user's station is part of the forecast that is shown, and what is known of the rest.
#pragma once

#include "feeds/stations/station_overlay.h"
#include "feeds/stations/station_service.h"

namespace nimbara {

struct StationShown {
  StationsReading reading;
  std::vector<OverlaidValue> values;
  std::vector<DoubtedValue> doubts;
  bool isElsewhere = false;

  bool isLive() const { return !values.empty(); }
  bool operator==(StationShown const&) const = default;
};

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
