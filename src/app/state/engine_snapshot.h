// All that an engine shows at one moment: an immutable value that fits together.
#pragma once

#include "app/services/wording.h"
#include "app/state/hazards_state.h"
#include "app/state/notifications_state.h"
#include "app/state/outlook_state.h"
#include "app/state/places_state.h"
#include "app/state/settings_state.h"
#include "app/state/weather_state.h"

#include <memory>
#include <optional>
#include <string>

namespace nimbara {

struct EngineSnapshot {
  std::shared_ptr<WeatherState const> weather = std::make_shared<WeatherState>();
  std::optional<Place> place;
  PlaceList places;
  KeptForecasts kept;
  std::shared_ptr<HazardsState const> hazards = std::make_shared<HazardsState>();
  std::shared_ptr<NotificationsState const> notifications = std::make_shared<NotificationsState>();
  std::shared_ptr<OutlookState const> outlook = std::make_shared<OutlookState>();
  bool closesToTray = true;  ///< where there is a tray
  LocationState location;
  std::optional<StoreError> problem;  ///< why places could not be read or changed
  std::string unknownPlace;           ///< what none of them is called, though somebody asked for it
  bool isOffline = false;  ///< there is no network; looked for only while there is no place to ask for
  std::shared_ptr<SettingsState const> settings;
  std::shared_ptr<Wording const> wording;  ///< the words and units that hold now
};

}  // namespace nimbara
