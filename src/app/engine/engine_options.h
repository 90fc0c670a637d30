// What an engine is made with: what the run decides for itself, what stands in for the desktop, and who is
// told of what happens. Everything may be left out.
#pragma once

#include "app/engine/app_state.h"
#include "app/places/places.h"
#include "app/services/composition.h"
#include "app/settings/overrides.h"
#include "base/enum_names.h"
#include "notifications/engine/notification_manager.h"
#include "platform/session/application_instance.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nimbara {

class KeyedSettingsStore;

/// What a log tells of, beside refreshes and passes.
enum class EngineEvent {
  settingsChanged,
  locationChanged,
  tookOver,  ///< this program notifies from now on
  networkReturned,
  resumed,
  noPlace  ///< there is none to show
};
template <>
inline constexpr auto enumNames<EngineEvent> = std::to_array<std::string_view>(
    {"settingsChanged", "locationChanged", "tookOver", "networkReturned", "resumed", "noPlace"});
static_assert(enumNamesComplete(EngineEvent::noPlace));

struct EngineOptions {
  /// Asks where the user is, on a thread of the engine's own; empty for the desktop's location service.
  using Locate = std::function<Result<LocationFix, LocationError>(std::stop_token const&)>;
  /// Follows the device; the like.
  using Follow = std::function<LocationError(LocationSource::Moved const&, std::stop_token)>;

  std::string services;  ///< stands in for the services; empty for the services themselves
  std::optional<Instant> now;
  Overrides overrides;
  bool keepsNothing = false;  ///< no forecast or feed outlives the run
  DecorateHttp aroundNetwork;
  // What exists already and outlives the engine; null: the user's store, and a clock as `now` says.
  SettingsStore* store = nullptr;
  KeyedSettingsStore* keyed = nullptr;  ///< the same, where it has keys of services
  Settings const* settings = nullptr;   ///< as they have been read of it
  Clock const* clock = nullptr;

  // Of programs that run for long.
  std::string program = "window";  ///< what the others read of whoever notifies
  std::vector<SavedPlace> places;  ///< saved when there are none
  std::string place;               ///< shown at the start, as by `choosePlace`; may be empty
  bool leavesNoTrace = false;      ///< the place that is shown is not remembered: for a picture
  bool waitsForWindow = false;     ///< nothing is asked of the services before `windowIsShown`
  bool followsAppearance = false;  ///< of the desktop: dark or light, with or without movements
  Locate locate;
  Follow follow;
  /// Shows what is to be told; empty for the desktop's own, and for none while test servers answer.
  std::function<std::unique_ptr<NotificationCenter>()> center;

  // Called on the engine's threads.
  std::function<void(ApplicationCall const&)> onOpen;  ///< a person clicked on a notification
  std::function<void()> onGlobeChange;
  std::function<void()> onPlaces;  ///< they are known, and again whenever they may be others
  std::function<void(std::string const& place)> onUnknownPlace;  ///< the one to show at the start
  std::function<void(AppState::RefreshReport const&)> onRefresh;
  std::function<void(PassReport const&)> onPass;
  std::function<void(EngineEvent)> onEvent;
  std::function<void(std::string const&)> onProblem;  ///< a sentence without a full stop
};

}  // namespace nimbara
