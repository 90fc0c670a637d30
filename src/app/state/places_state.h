// What the engine knows of the user's places at one moment. A value.
#pragma once

#include "app/places/places.h"
#include "base/uuid.h"
#include "model/weather_data.h"
#include "platform/settings/settings_store.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace nimbara {

/// What became of asking where the user is.
enum class LocationPhase { idle, asking, found, denied, unavailable };

struct LocationState {
  using Phase = LocationPhase;
  Phase phase = Phase::idle;
  std::string message;        ///< the desktop's own words for a failure
  std::optional<Place> here;  ///< where the user was last, with its names

  bool operator==(LocationState const&) const = default;
};

/// What is kept of the places' forecasts.
using KeptForecasts = std::map<Uuid, std::shared_ptr<WeatherData const>>;

struct PlacesState {
  PlaceList list;
  KeptForecasts kept;
  LocationState location;
  std::optional<StoreError> problem;  ///< why places could not be read or changed
  std::string unknown;                ///< what none of them is called, though somebody asked for it
};

}  // namespace nimbara
