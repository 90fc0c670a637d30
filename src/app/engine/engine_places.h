// The part of the engine that knows the user's places: the saved ones, the selected one among them, the
// current location, and the cached forecast of each. Any thread may call it; it shows and asks for nothing by
// itself.
#pragma once

#include "app/engine/engine_settings.h"
#include "app/notices/notification_inputs.h"
#include "app/notices/removed_rules.h"
#include "app/services/in_use.h"
#include "app/state/places_state.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace nimbara {

class ForecastService;

class EnginePlaces {
 public:
  EnginePlaces(SettingsStore& store, InUse<ForecastService> forecasts, EngineSettings const& settings);

  PlacesState state() const;
  /// The one that is looked at; else the selected place, or while nothing is selected the one that was shown
  /// last.
  std::optional<Place> shown() const;
  std::vector<Place> saved() const;
  /// Looking at a place makes it none of these.
  std::vector<WatchedPlace> watched() const;

  /// Again from the store, after another process has changed it. True when the places are others.
  bool read();
  void change(std::function<PlaceResult(PlaceList&)> const& apply);
  /// Shows a place until another one is chosen or the program ends: a saved one by its name, identifier or
  /// coordinate, any other by its coordinate or as the gazetteer knows its name. False where there is none.
  bool look(std::string const& text);
  /// The selected place is shown again.
  void lookAway();
  /// Reads the places, and saves these when there are none. `lastShown` gives the key of the place that was
  /// shown last; it is asked only where nothing is selected.
  void begin(std::vector<SavedPlace> const& places,
             std::function<std::optional<std::string>()> const& lastShown);

  /// The rules that watched a place go and come back with it. Of one thread at a time.
  void disableRulesOf(Uuid const& removed);
  void enableRulesOf(Uuid const& restored);

  void noteForecast(Coordinate coordinate, WeatherData const& data);
  /// What is kept of a place's forecast, unless one came since.
  void readKept(Uuid id, Place const& place);
  void readAllKept();

  void noteLocation(LocationState::Phase phase, std::string message = {});

 private:
  std::optional<Place> selected() const;
  std::optional<Place> placeMeant(PlaceList const& list, std::string const& text) const;
  bool isSaved(Uuid const& id) const;
  bool keep(Result<PlaceList, StoreError> list);

  Places stored_;
  RemovedRules removedRules_;
  InUse<ForecastService> forecasts_;
  EngineSettings const& settings_;

  mutable std::mutex mutex_;  // guards those below
  PlacesState state_;
  std::optional<Place> lastShown_;
  std::optional<Place> lookedAt_;
};

}  // namespace nimbara
