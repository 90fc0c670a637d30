// What is known of official warnings, earthquakes and geomagnetic activity, at one moment: what the feeds
// said last, when, and why nothing newer. Values; made by the core, shown by views.
#pragma once

#include "app/places/place.h"
#include "feeds/alerts/coverage.h"
#include "feeds/fetching/feed_reading.h"
#include "feeds/quakes/earthquake_event.h"
#include "feeds/space/geomagnetic_service.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// How the official warnings of a place were checked. The warnings themselves are part of the weather state.
struct OfficialCheck {
  std::optional<Place> place;            ///< whose
  std::vector<SourceCoverage> coverage;  ///< empty only before anything is known
  bool isAsking = false;                 ///< the place is new, and nobody has answered since
  /// In effect for its whole country, or for parts of that which nobody can locate.
  std::vector<WeatherAlert> unplaced = {};

  bool isCovered() const { return !coverage.empty() && coverage.front().state != CoverageState::uncovered; }
  bool hasFailed() const {
    return std::ranges::any_of(coverage,
                               [](SourceCoverage const& source) { return source.since.has_value(); });
  }
  /// Nothing more is to be said of the place for now.
  bool isSettled() const { return !place || !isCovered() || !isAsking; }
  bool operator==(OfficialCheck const&) const = default;
};

struct QuakeFilter {
  double radiusKm = 0;  ///< around the selected place; 0 for the whole world
  double minMagnitude = 2.5;

  bool operator==(QuakeFilter const&) const = default;
};

/// What is known of the official warnings of saved places.
struct PlaceCoverage {
  Coordinate coordinate;
  std::vector<SourceCoverage> coverage;
  std::vector<WeatherAlert> alerts;  ///< the most severe first

  bool operator==(PlaceCoverage const&) const = default;
};

struct HazardsState {
  OfficialCheck official;
  std::vector<PlaceCoverage> places;
  bool isCheckingPlaces = false;                     ///< those of unknown state are being asked for
  FeedReading<std::vector<EarthquakeEvent>> quakes;  ///< newest first
  FeedReading<KIndex> kp;
  FeedReading<std::vector<KpReading>> kpForecast;
  QuakeFilter filter;

  /// Every feed has answered or failed once.
  bool isSettled() const {
    return official.isSettled() && quakes.isSettled() && kp.isSettled() && !isCheckingPlaces;
  }
};

}  // namespace nimbara
