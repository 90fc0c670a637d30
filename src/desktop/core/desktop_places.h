// The part of the core that knows the user's places: the saved ones, the selected one among them, the current
// location, and the cached forecast of each. Any thread may call it; it shows and asks for nothing by itself.
#pragma once

#include "app/notices/notification_inputs.h"
#include "app/places/places.h"
#include "app/services/forecast_service.h"
#include "desktop/core/desktop_settings.h"
#include "desktop/core/removed_rules.h"
#include "desktop/views/places_view.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct PlacesState {
  PlaceList list;
  KeptForecasts kept;
  LocationState location;
  std::optional<StoreError> problem;  ///< why places could not be read or changed
  std::string unknown;                ///< what none of them is called, though somebody asked for it
};

class DesktopPlaces {
 public:
  DesktopPlaces(SettingsStore& store, ForecastService& forecasts, DesktopSettings const& settings);

  PlacesState state() const;
  std::optional<Place> selected() const;
  std::vector<Place> saved() const;
  std::vector<WatchedPlace> watched() const;

  /// Again from the store, after another process has changed it.
  void read();
  void change(std::function<PlaceResult(PlaceList&)> const& apply);
  /// The saved place by its name, identifier or coordinate.
  void choose(std::string const& text);
  /// Saves them when there are none.
  void begin(std::vector<SavedPlace> const& places);

  /// The rules that watched a place go and come back with it. Of one thread at a time.
  void disableRulesOf(Uuid const& removed);
  void enableRulesOf(Uuid const& restored);

  void noteForecast(Coordinate coordinate, WeatherData const& data);
  /// What is kept of a place's forecast, unless one came since.
  void readKept(Uuid id, Place const& place);
  void readAllKept();

  void noteLocation(LocationState::Phase phase, std::string message = {});

 private:
  bool isSaved(Uuid const& id) const;
  void keep(Result<PlaceList, StoreError> list);

  Places stored_;
  RemovedRules removedRules_;
  ForecastService& forecasts_;
  DesktopSettings const& settings_;

  mutable std::mutex mutex_;  // guards the state
  PlacesState state_;
};

}  // namespace nimbara
