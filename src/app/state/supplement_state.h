// What the supplemental feeds have of the selected place, each with the moment of its check: the air, storms,
// fires, lightning and travel advisories. One immutable value, replaced as a whole.
#pragma once

#include "app/places/place.h"
#include "feeds/air/air_quality.h"
#include "feeds/climate/climate_service.h"
#include "feeds/fires/fire_detection.h"
#include "feeds/storms/lightning_strike.h"
#include "feeds/storms/world_storms.h"
#include "feeds/travel/travel_advisory.h"

#include <string>
#include <vector>

namespace nimbara {

struct SupplementState {
  static constexpr double kFireRadiusKm = 100;
  static constexpr double kLightningRadiusKm = 50;
  static constexpr std::chrono::hours kStrikesOf{1};

  Place place;
  FeedReading<AirQualityForecast> airQuality;
  FeedReading<WorldStorms> activeStorms;
  FeedReading<std::vector<FireDetection>> activeFires;  ///< within that radius
  FeedReading<std::vector<LightningStrike>> lightning;  ///< likewise, of the last hour
  FeedReading<std::vector<TravelAdvisory>> advisories;  ///< of the place's country
  FeedReading<ClimateOutlook> climate;                  ///< of today at the place
  AdvisorySource advisorySource = AdvisorySource::us;   ///< whose they are
  std::string country;                                  ///< of two letters; empty at sea

  bool operator==(SupplementState const&) const = default;
};

}  // namespace nimbara
