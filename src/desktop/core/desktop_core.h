// The desktop program without its window: store, services, state and the threads that they work on. Publishes
// immutable snapshots to one listener and takes commands; neither ever blocks the caller, and the listener is
// called on threads of the core's own. Owned by the program's entry. Knows nothing of the window's toolkit.
#pragma once

#include "app/engine/app_state.h"
#include "app/engine/location_follower.h"
#include "app/places/place_search.h"
#include "app/places/places.h"
#include "app/services/composition.h"
#include "app/settings/environment.h"
#include "desktop/core/desktop_globe.h"
#include "desktop/core/desktop_hazards.h"
#include "desktop/core/desktop_notifications.h"
#include "desktop/core/desktop_places.h"
#include "desktop/core/desktop_settings.h"
#include "desktop/core/held_runner.h"
#include "desktop/views/places_view.h"
#include "platform/application_instance.h"
#include "platform/desktop_appearance.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/linux/timerfd_wake_timer.h"
#include "platform/power_and_network.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace nimbara {

/// All that the window shows, at one moment.
struct DesktopSnapshot {
  std::shared_ptr<WeatherState const> weather = std::make_shared<WeatherState>();
  std::optional<Place> place;
  PlaceList places;
  KeptForecasts kept;
  std::shared_ptr<HazardsState const> hazards = std::make_shared<HazardsState>();
  std::shared_ptr<NotificationsState const> notifications = std::make_shared<NotificationsState>();
  bool closesToTray = true;  ///< where there is a tray
  LocationState location;
  std::optional<StoreError> problem;  ///< why places could not be read or changed
  std::string unknownPlace;           ///< what none of them is called, though somebody asked for it
  std::shared_ptr<SettingsState const> settings;
  std::shared_ptr<Wording const> wording;  ///< the words and units that hold now
};

class DesktopCore {
 public:
  /// Asks where the user is, on a thread of the core's own.
  using Locate = std::function<Result<LocationFix, LocationError>(std::stop_token const&)>;
  /// Follows the device, on a thread of the core's own; empty for the desktop's location service.
  using Follow = std::function<LocationError(LocationSource::Moved const&, std::stop_token)>;
  struct Options {
    std::string services;  ///< stands in for the services; empty for the services themselves
    std::optional<Instant> now;
    std::vector<SavedPlace> places;       ///< saved when there are none
    std::string place;                    ///< selected at the start, as by `choosePlace`; may be empty
    std::function<void()> onGlobeChange;  ///< called on the core's threads
    /// Shows what is to be told; empty for the desktop's own, and for none while test servers answer.
    std::function<std::unique_ptr<NotificationCenter>()> center;
    /// A person clicked on a notification. Called on the core's threads.
    std::function<void(ApplicationCall const&)> onOpen;
    Locate locate;
    Follow follow;
    bool waitsForWindow = false;  ///< nothing is asked of the services before `windowIsShown`
  };
  using Listener = std::function<void(std::shared_ptr<DesktopSnapshot const>)>;
  using SearchListener = std::function<void(std::vector<FoundPlace>)>;
  using OnlineListener = std::function<void(Result<std::vector<FoundPlace>, APIError>)>;

  DesktopCore(Environment const& environment, Options options, Listener listener);
  ~DesktopCore();
  DesktopCore(DesktopCore const&) = delete;
  DesktopCore& operator=(DesktopCore const&) = delete;

  void refresh();
  void setForeground(bool isForeground);
  void selectPlace(Uuid id);
  /// The saved place by its name, identifier or coordinate.
  void choosePlace(std::string text);
  void addPlace(SavedPlace place);
  void removePlace(Uuid id);
  /// Takes a removal back: the place at its old position with the rules that watched it.
  void restorePlace(SavedPlace place, int position, bool select);
  /// `position` counts from one.
  void movePlace(Uuid id, int position);
  void chooseNotifications(Uuid id, PlaceChoice choice);
  /// Cities of the gazetteer. The listener is called on a thread of the core's own.
  void search(std::string text, SearchListener found);
  /// Sends the text to the geocoding service.
  void searchOnline(std::string text, OnlineListener found);
  /// Asks the desktop where the user is, and selects that.
  void locate();
  void removeCurrentLocation();
  void changeSetting(std::string key, std::string text);
  void setStartAtLogin(bool wanted);

  /// The first frame has been drawn: what it does not show may take its time.
  void windowIsShown();
  /// From now on the return from sleep and of the network refreshes at once. What cannot be noticed is told
  /// to `missing`, a sentence each, on a thread of the core's own.
  void followSystem(std::function<void(std::string const&)> missing);

  void lookAtHazards();
  void setQuakeRadius(double km);
  void setQuakeMagnitude(double least);

  DesktopGlobe& globe() { return globe_; }
  DesktopNotifications& notifications() { return notifications_; }
  Clock const& clock() const { return *clock_; }
  Wording wording() const { return *settings_.wording(); }
  std::string const& standIn() const { return composition_.services().standIn(); }

 private:
  AppState::Surroundings surroundings();
  DesktopHazards::Surroundings hazardSurroundings();
  DesktopNotifications::Surroundings notificationSurroundings(Environment const& environment,
                                                              Options& options);
  void begin(std::vector<SavedPlace> const& places, std::string const& place);
  void change(std::function<PlaceResult(PlaceList&)> const& apply);
  void followAppearance();
  void beginTheRest();
  void apply(SettingsChanges const& changes);
  void noteAnswer(AppState::RefreshReport const& report);
  void noteLocation(LocationState::Phase phase, std::string message = {});
  void followDevice();
  void arrive(LocationFix const& fix);
  void finishLocating(Result<LocationFix, LocationError> const& fix);
  void showSelected(RefreshTrigger trigger);
  void keepSetting(std::string key, SettingValue value);
  void publish();
  void followStore(std::stop_token const& stop);

  std::filesystem::path program_;
  std::unique_ptr<Clock> clock_;
  SqliteSettingsStore store_;
  DesktopSettings settings_;
  Listener listener_;
  Locate locate_;
  Composition composition_;
  DesktopPlaces places_;
  TimerfdWakeTimer timer_;

  std::mutex turn_;                     // of publishing
  std::atomic<bool> hasBegun_ = false;  // the selected place is known: there is something to publish

  bool hasBegunTheRest_ = false;  // of the thread of the commands
  ThreadPool work_;               // refreshes
  HeldRunner held_;               // the same, not before the window is shown
  ThreadPool commands_;           // what the user asks for, one after the other
  DesktopHazards hazards_;
  AppState state_;
  std::unique_ptr<PowerAndNetwork> system_;        // made by a command
  std::unique_ptr<DesktopAppearance> appearance_;  // of the thread of the commands until the end
  SatelliteFeed satellites_;
  DesktopGlobe globe_;
  DesktopNotifications notifications_;
  LocationFollower device_;
  std::jthread scheduler_;
  std::jthread follower_;
};

}  // namespace nimbara
