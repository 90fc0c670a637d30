// What the service in the user's session knows of all places at one moment: an immutable value, from which
// callers are answered without asking anybody.
#pragma once

#include "app/places/places.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/services/wording.h"
#include "cli/pages/forecast/line_text.h"
#include "feeds/nowcast/nowcast_service.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nimbara {

class Composition;
struct PlacesState;

struct ServicePlace {
  std::string id;  ///< of a saved place, "current" for where the device is, else the coordinate
  Place place;
  bool isSelected = false;
  std::string country;                             ///< ISO 3166, two letters, or empty
  std::shared_ptr<ForecastAnswer const> forecast;  ///< null: nothing is cached
  KeptWarnings official;                           ///< as they were when somebody asked last
  std::optional<NowcastReading> nowcast;           ///< nothing where nobody asked lately
};

struct ServiceSnapshot {
  std::vector<ServicePlace> places;  ///< in the user's order
  PlaceList list;
  Wording wording;

  /// By identifier, name or coordinate; the selected one for an empty text. Null for none.
  ServicePlace const* find(std::string const& text) const;
};

/// As a place is written: "52.52,13.41".
std::string coordinateText(Coordinate coordinate);

/// The places without what is known of their weather.
std::vector<ServicePlace> servicePlaces(PlacesState const& places, std::optional<Place> const& shown);

/// What the caches hold of them; asks nobody.
void readKept(ServicePlace& place, Composition& services, Instant now);

/// What a bar would be told of the place; it has a forecast. Refers to `place` and `wording`.
LineContext lineContext(ServicePlace const& place, Wording const& wording, Instant now);

}  // namespace nimbara
