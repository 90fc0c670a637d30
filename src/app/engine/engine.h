// One running Nimbara: owns the store, the settings and whoever follows them, the services, the weather's
// state, the hazards, the notifications and the threads that all of these work on. The window, the watch and
// every command are faces of it and hold no service of their own. It publishes immutable snapshots to one
// listener and takes commands; neither ever blocks the caller, and listeners are called on threads of the
// engine's own. What a face does not ask for is not made: an engine that was not begun has its settings and,
// once somebody asks for them, its services.
#pragma once

#include "app/engine/engine_actions.h"
#include "base/result.h"
#include "base/uuid.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace nimbara {

class AppState;
class Clock;
class Composition;
class DesktopAppearance;
class EngineGlobe;
class EngineHazards;
class EngineNotifications;
class EngineOutlook;
class EnginePlaces;
class EngineSettings;
class EngineStations;
class HeldRunner;
class KeyedSettingsStore;
class LocationFollower;
class PowerAndNetwork;
class SatelliteFeed;
class Settings;
class SettingsStore;
class ThreadPool;
class TimerfdWakeTimer;
enum class EngineEvent;
enum class LocationPhase;
enum class RefreshTrigger;
struct EngineOptions;
struct EngineSnapshot;
struct Environment;
struct LocationError;
struct LocationFix;
struct Place;
struct PlaceList;
struct PlacesState;
struct SettingsChanges;
struct Wording;

class Engine final : public EngineActions {
 public:
  using Options = EngineOptions;
  using Listener = std::function<void(std::shared_ptr<EngineSnapshot const>)>;

  Engine(Environment const& environment, Options options);
  /// The same, begun at once.
  Engine(Environment const& environment, Options options, Listener listener);
  ~Engine() override;
  Engine(Engine const&) = delete;
  Engine& operator=(Engine const&) = delete;

  Clock const& clock() const { return *clock_; }
  SettingsStore& store() { return *store_; }
  Settings settings() const;
  std::shared_ptr<Wording const> wording() const;
  std::string const& standIn() const;
  /// As the settings have them now; they are made with the first call. Whoever works with them holds them.
  std::shared_ptr<Composition> services();

  /// Begins to keep everything fresh, until the end. The listener may be empty: nobody looks, and what is
  /// there only to be looked at is not made.
  void begin(Listener listener);

  /// What is known of the user's places now; of an engine that has begun.
  PlacesState placesState() const;
  /// The place that is shown: the selected one, as a rule. The like.
  std::optional<Place> shownPlace() const;

  // Commands, of an engine that has begun.
  void refresh() override;
  void setForeground(bool isForeground);
  void selectPlace(Uuid id) override;
  /// The saved place by its name, identifier or coordinate.
  void choosePlace(std::string text);
  void addPlace(SavedPlace place) override;
  void removePlace(Uuid id) override;
  void renamePlace(Uuid id, std::string name) override;
  void restorePlace(SavedPlace place, int position, bool select) override;
  void movePlace(Uuid id, int position) override;
  void chooseNotifications(Uuid id, PlaceChoice choice) override;
  void chooseWarningSource(Uuid place, std::string name) override;
  void search(std::string text, SearchListener found) override;
  void searchOnline(std::string text, OnlineListener found) override;
  void locate() override;
  void removeCurrentLocation() override;
  void changeSetting(std::string key, std::string text) override;
  void setStartAtLogin(bool wanted) override;

  /// The first frame has been drawn: what it does not show may take its time.
  void windowIsShown();
  /// From now on the return from sleep and of the network refreshes at once. What cannot be noticed is told
  /// to `missing`, a sentence each, on a thread of the engine's own.
  void followSystem(std::function<void(std::string const&)> missing);

  void lookAtHazards() override;
  void lookAtSources() override;
  void lookAhead() override;
  void setQuakeRadius(double km) override;
  void setQuakeMagnitude(double least) override;

  EngineGlobe& globe() { return *globe_; }
  EngineNotifications& notifications() { return *notifications_; }
  EngineStations& stations() { return *stations_; }

 private:
  using PlaceChange = std::function<Result<void, std::string>(PlaceList&)>;

  void makeState();
  void makeNotifications();
  void makeGlobe();
  void makeFollower();
  void first();
  void run(std::function<void()> command);
  void change(PlaceChange const& apply);
  void adoptPlaces(std::function<void()> const& adopt);
  void followAppearance();
  void beginTheRest();
  void replaceServices();
  std::function<Result<std::string, std::string>(std::string const&)> keyFinder() const;
  void apply(SettingsChanges const& changes);
  void noteLocation(LocationPhase phase, std::string message = {});
  void followDevice();
  void arrive(LocationFix const& fix);
  void finishLocating(Result<LocationFix, LocationError> const& fix);
  void showSelected(RefreshTrigger trigger);
  void keepSetting(std::string key, std::string value);
  void publish();
  void tell(EngineEvent event);
  void followStore(std::stop_token const& stop);
  void readAgain();

  std::unique_ptr<Environment const> environment_;
  std::unique_ptr<Options> options_;
  std::unique_ptr<Clock> ownClock_;
  Clock const* clock_;
  std::unique_ptr<KeyedSettingsStore> ownStore_;
  SettingsStore* store_;
  KeyedSettingsStore* keyed_;
  std::unique_ptr<EngineSettings> settings_;
  std::mutex servicesTurn_;  // guards the next
  std::shared_ptr<Composition> services_;

  Listener listener_;
  std::mutex turn_;                     // of publishing
  std::atomic<bool> hasBegun_ = false;  // the selected place is known: there is something to publish
  bool hasBegunTheRest_ = false;        // of the thread of the commands

  // From the beginning on, in the order of their making.
  std::unique_ptr<EnginePlaces> places_;
  std::unique_ptr<TimerfdWakeTimer> timer_;
  std::unique_ptr<ThreadPool> work_;      // refreshes
  std::unique_ptr<HeldRunner> held_;      // the same, not before the window is shown
  std::unique_ptr<ThreadPool> commands_;  // what is asked for, one after the other
  std::unique_ptr<EngineHazards> hazards_;
  std::unique_ptr<EngineOutlook> outlook_;
  std::unique_ptr<AppState> state_;
  std::unique_ptr<PowerAndNetwork> system_;        // made by a command
  std::unique_ptr<DesktopAppearance> appearance_;  // of the thread of the commands until the end
  std::unique_ptr<EngineStations> stations_;       // where somebody looks
  std::unique_ptr<SatelliteFeed> satellites_;
  std::unique_ptr<EngineGlobe> globe_;
  std::unique_ptr<EngineNotifications> notifications_;
  std::unique_ptr<LocationFollower> device_;
  std::jthread scheduler_;
  std::jthread follower_;
};

}  // namespace nimbara
