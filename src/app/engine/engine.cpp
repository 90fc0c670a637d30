#include "app/engine/engine.h"

#include "app/engine/clocks/held_runner.h"
#include "app/engine/clocks/location_follower.h"
#include "app/engine/clocks/scheduler.h"
#include "app/engine/engine_globe.h"
#include "app/engine/engine_hazards.h"
#include "app/engine/engine_notifications.h"
#include "app/engine/engine_options.h"
#include "app/engine/engine_outlook.h"
#include "app/engine/engine_places.h"
#include "app/engine/engine_settings.h"
#include "app/engine/engine_stations.h"
#include "app/notices/late_notification_center.h"
#include "app/notices/notification_call.h"
#include "app/notices/silent_center.h"
#include "app/places/places.h"
#include "app/services/feed_services.h"
#include "app/settings/user_settings.h"
#include "app/state/engine_snapshot.h"
#include "app/state/supplement_state.h"
#include "feeds/nowcast/nowcast_service.h"
#include "feeds/stations/station_shown.h"
#include "globe/satellite_feed.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/network/default_route.h"
#include "platform/linux/speech_output.h"
#include "platform/linux/timerfd_wake_timer.h"

#include <algorithm>

namespace nimbara {

namespace {

/// What a test server made up is kept apart.
std::filesystem::path satelliteFolder(Environment const& environment, std::string const& standIn) {
  auto const& cache = environment.cacheDirectory;
  if (cache.empty()) return {};
  return cache / (standIn.empty() ? "satellites" : "satellites.stand-in");
}

EngineOptions::Locate locationOfDesktop(Environment const& environment) {
  return [program = environment.program](std::stop_token const& stop) {
    constexpr std::chrono::seconds kPatience{30};
    return desktopLocationSource(busesOfSession(program))->locate(kPatience, stop);
  };
}

EngineOptions::Follow followOfDesktop(Environment const& environment) {
  return [program = environment.program](LocationSource::Moved const& moved, std::stop_token stop) {
    return desktopLocationSource(busesOfSession(program))->follow(kSignificantMetres, moved, std::move(stop));
  };
}

std::function<std::unique_ptr<NotificationCenter>()> centerOf(Environment const& environment,
                                                              EngineOptions const& options) {
  if (options.center) return options.center;
  if (!options.services.empty()) return [] { return std::make_unique<SilentCenter>(); };
  return [program = environment.program] { return desktopNotificationCenter(busesOfSession(program)); };
}

/// What has to be asked for again.
std::optional<RefreshTrigger> triggerOf(SettingsChanges const& changes) {
  if (changes.services || (changes.language && changes.provider)) return RefreshTrigger::servicesChanged;
  if (changes.provider) return RefreshTrigger::providerChosen;
  if (changes.language) return RefreshTrigger::languageChosen;
  return std::nullopt;
}

}  // namespace

Engine::Engine(Environment const& environment, Options options)
    : environment_(std::make_unique<Environment>(environment)),
      options_(std::make_unique<Options>(std::move(options))),
      ownClock_(options_->clock == nullptr ? runningClock(options_->now) : nullptr),
      clock_(ownClock_ ? ownClock_.get() : options_->clock),
      ownStore_(options_->store == nullptr ? userSettings(environment, options_->services) : nullptr),
      store_(ownStore_ ? ownStore_.get() : options_->store),
      keyed_(ownStore_ ? ownStore_.get() : options_->keyed),
      settings_(
          std::make_unique<EngineSettings>(*store_, environment, options_->overrides, options_->settings)) {}

Engine::Engine(Environment const& environment, Options options, Listener listener)
    : Engine(environment, std::move(options)) {
  begin(std::move(listener));
}

Engine::~Engine() {
  if (!commands_) return;
  follower_ = {};
  scheduler_ = {};
  commands_->stop();
  if (stations_) stations_->stop();
  device_->want(false);
  system_.reset();
  work_->stop();
  appearance_.reset();
}

Settings Engine::settings() const {
  return settings_->settings();
}

std::shared_ptr<Wording const> Engine::wording() const {
  return settings_->wording();
}

std::string const& Engine::standIn() const {
  return options_->services;
}

std::shared_ptr<Composition> Engine::services() {
  std::lock_guard const lock(servicesTurn_);
  if (!services_) {
    services_ = std::make_shared<Composition>(
        settings(), *clock_,
        Composition::Options{options_->services, *wording(), settings_->preferredProvider(),
                             environment_->program, environment_->dataDirectory,
                             options_->keepsNothing ? std::filesystem::path() : environment_->cacheDirectory,
                             options_->aroundNetwork,
                             [store = store_](Coordinate at) { return chosenWarningSource(*store, at); },
                             keyFinder()});
  }
  return services_;
}

/// No key of the user's goes to what stands in for its service.
FindKey Engine::keyFinder() const {
  if (keyed_ == nullptr || !standIn().empty()) return {};
  return [keyed = keyed_](std::string const& reference) { return keyed->keys().find(reference); };
}

PlacesState Engine::placesState() const {
  return places_->state();
}

std::optional<Place> Engine::shownPlace() const {
  return places_->shown();
}

/// Whoever works with the old ones goes on doing so.
void Engine::replaceServices() {
  std::shared_ptr<Composition> old;  // ends, where nobody works with it, after the lock
  std::lock_guard const lock(servicesTurn_);
  old.swap(services_);
}

void Engine::begin(Listener listener) {
  listener_ = std::move(listener);
  InUse<Composition> const services = [this] { return this->services(); };
  places_ = std::make_unique<EnginePlaces>(*store_, forecastsOf(services), *settings_);
  timer_ = std::make_unique<TimerfdWakeTimer>();
  work_ = std::make_unique<ThreadPool>();
  held_ = std::make_unique<HeldRunner>(*work_);
  commands_ = std::make_unique<ThreadPool>(1);
  makeState();
  if (listener_) makeGlobe();
  makeNotifications();
  makeFollower();
  if (!options_->waitsForWindow) held_->release();
  run([this] { first(); });
  scheduler_ = std::jthread([this](std::stop_token const& stop) {
    runScheduler(*state_, notifications_->notifier(), *timer_, *clock_, stop);
  });
  follower_ = std::jthread([this](std::stop_token const& stop) { followStore(stop); });
}

void Engine::makeState() {
  InUse<Composition> const services = [this] { return this->services(); };
  AppState::Surroundings all;
  if (listener_) {
    hazards_ = std::make_unique<EngineHazards>(
        feedsOf(services), *store_, *held_,
        EngineHazards::Surroundings{[this](Place const& place, std::vector<WeatherAlert> alerts) {
                                      state_->showGovAlerts(place, std::move(alerts));
                                    },
                                    [this] { publish(); }, [this] { return places_->saved(); },
                                    [this](Place const& place, std::shared_ptr<SupplementState const> known) {
                                      std::vector<WeatherAlert> advisories;
                                      advisories.reserve(known->advisories.data.size());
                                      for (TravelAdvisory const& entry : known->advisories.data)
                                        advisories.push_back(advisoryAlert(entry));
                                      state_->showTravelAdvisories(place, std::move(advisories));
                                      state_->showSupplement(place, std::move(known));
                                    },
                                    [this] { return clock_->now(); }});
    outlook_ = std::make_unique<EngineOutlook>(feedsOf(services), *held_, [this] { publish(); });
    all.refreshSupplemental = [this](Place const& place, std::stop_token const& stop) {
      return hazards_->refresh(place, stop);
    };
    all.refreshNowcast = [this](Place const& place, std::stop_token const& stop) {
      auto const services = this->services();
      NowcastService& service = services->feeds().nowcast();
      auto reading = std::make_shared<NowcastReading const>(service.fetch(place.coordinate, stop));
      return AppState::NowcastAnswer{std::move(reading), service.nextAsk(place.coordinate)};
    };
    all.overlayStation = [this](WeatherData& data) -> std::shared_ptr<StationShown const> {
      auto const services = this->services();
      StationService& service = services->feeds().stations();
      auto reading = service.read(StationNeed::kept);
      if (reading.kind == StationLinkKind::none) return nullptr;
      auto shown = std::make_shared<StationShown>(overlaid(data, std::move(reading), clock_->now()));
      if (!shown->isElsewhere) shown->history = service.history();
      return shown;
    };
    all.refreshStation = [this](bool isForeground, std::stop_token const& stop) {
      auto const services = this->services();
      StationNeed const need = isForeground ? StationNeed::shown : StationNeed::hidden;
      Instant const next = services->feeds().stations().read(need, stop).nextAsk.value_or(Instant());
      return isForeground ? next : std::max(next, clock_->now() + StationService::kHiddenRest);
    };
    all.onChange = [this] { publish(); };
  }
  all.savedPlaces = [this] { return places_->saved(); };
  all.onRefresh = [this](AppState::RefreshReport const& report) {
    if (options_->onRefresh) options_->onRefresh(report);
    notifications_->requestPass();
    if (!listener_) return;
    settings_->noteProviders(*this->services());
    if (report.outcome) places_->noteForecast(report.place.coordinate, report.outcome->data);
    publish();
  };
  all.onArrival = [this](LocationFix const& fix) { run([this, fix] { arrive(fix); }); };
  all.onDueChange = [this] { timer_->wake(); };
  all.jitter = requestJitter;
  all.isRemembered = !options_->leavesNoTrace;
  state_ = std::make_unique<AppState>(forecastsOf(services), *clock_, *held_, std::move(all));
  if (!listener_) return;
  stations_ = std::make_unique<EngineStations>(EngineStations::Surroundings{
      feedsOf(services), [this] { return wording(); }, [this] { return state_->selectedPlace(); },
      [this] { state_->stationChanged(); }, !standIn().empty()});
}

void Engine::makeNotifications() {
  auto center = std::make_unique<LateNotificationCenter>(centerOf(*environment_, *options_));
  notifications_ = std::make_unique<EngineNotifications>(EngineNotifications::Surroundings{
      .store = *store_,
      .services = [this] { return services(); },
      .isStandIn = !standIn().empty(),
      .clock = *clock_,
      .work = *work_,
      .commands = *commands_,
      .wording = *wording(),
      .dataDirectory = environment_->dataDirectory,
      .program = options_->program,
      .center = std::move(center),
      .places = [this] { return places_->watched(); },
      .publish = listener_ ? std::function<void()>([this] { publish(); }) : nullptr,
      .onPass =
          [this](PassReport const& report) {
            if (options_->onPass) options_->onPass(report);
            if (hazards_) hazards_->showKept();
          },
      .onRoleChange =
          [this] {
            if (notifications_->desk().role().isOurs()) tell(EngineEvent::tookOver);
          },
      .onProblem = options_->onProblem,
      .onDueChange = [this] { timer_->wake(); },
      .onResponse =
          [this](NotificationResponse const& response) {
            auto const call = notificationCall(response);
            if (!call || !options_->onOpen) return;
            work_->run([this, call = *call](std::stop_token const&) { options_->onOpen(call); });
          },
      .jitter = requestJitter,
      .speech = std::make_unique<SpeechOutput>(environment_->program)});
}

void Engine::makeGlobe() {
  ElementSource const elements = [this](std::string_view group, std::stop_token const& stop) {
    auto const services = this->services();
    return services->feeds().elements()(group, stop);
  };
  satellites_ = std::make_unique<SatelliteFeed>(elements, *clock_, satelliteFolder(*environment_, standIn()));
  InUse<EarthquakeService> const earthquakes = [this] {
    auto const services = this->services();
    return std::shared_ptr<EarthquakeService>(services, &services->feeds().earthquakes());
  };
  globe_ = std::make_unique<EngineGlobe>(
      EngineGlobe::Parts{*satellites_, earthquakes, *clock_, *work_,
                         options_->onGlobeChange ? options_->onGlobeChange : [] {},
                         [this](std::string hidden) { keepSetting("globeHidden", std::move(hidden)); }},
      settings().text("globeHidden"));
}

void Engine::makeFollower() {
  device_ = std::make_unique<LocationFollower>(
      LocationFollower::Surroundings{options_->follow ? options_->follow : followOfDesktop(*environment_),
                                     [this] { return places_->state().list.lastFix; },
                                     [this](LocationFix const& fix) { state_->deviceMoved(fix); }});
  if (!options_->locate) options_->locate = locationOfDesktop(*environment_);
}

/// The selected place before all else: it is what a window waits for.
void Engine::first() {
  places_->begin(options_->places, [this] { return services()->cache().loadLastLocation(); });
  if (hazards_) hazards_->readFilter();
  bool const isKnown = options_->place.empty() || places_->look(options_->place);
  if (!isKnown && options_->onUnknownPlace) options_->onUnknownPlace(options_->place);
  showSelected(RefreshTrigger::start);
  if (listener_) settings_->noteProviders(*services());
  apply(settings_->reread());
  if (held_->isReleased()) beginTheRest();
  timer_->wake();
  if (options_->followsAppearance) followAppearance();
}

void Engine::followAppearance() {
  appearance_ = desktopAppearance({environment_->program, {}, {}}, [this](AppearanceWish const& wish) {
    settings_->noteWish(wish);
    publish();
  });
}

/// What the first frame does without.
void Engine::beginTheRest() {
  if (std::exchange(hasBegunTheRest_, true)) return;
  if (listener_) places_->readAllKept();
  publish();
  notifications_->begin();
  followDevice();
  if (keyed_ != nullptr) work_->run([this](std::stop_token const&) { keyed_->settle(); });
}

void Engine::apply(SettingsChanges const& changes) {
  if (changes.wording) notifications_->setWording(*wording());
  if (changes.services || changes.language) {
    replaceServices();
  } else if (changes.any) {
    auto const services = this->services();
    services->forecasts().setWording(*wording());
    services->providers().setPreferredProvider(settings_->preferredProvider());
  }
  // What failed may have been the address or the key.
  if (changes.services) services()->providers().forgetFailures();
  if (changes.wording) state_->reshow();
  if (auto const trigger = triggerOf(changes)) state_->requestRefresh(*trigger);
  if (changes.any) {
    tell(EngineEvent::settingsChanged);
    notifications_->requestPass();
    timer_->wake();
  }
  publish();
}

void Engine::showSelected(RefreshTrigger trigger) {
  auto const place = places_->shown();
  if (trigger == RefreshTrigger::start || place != state_->selectedPlace()) {
    if (!place) tell(EngineEvent::noPlace);
    if (hazards_) hazards_->setPlace(place);
    state_->selectPlace(place, trigger);
    if (hazards_) hazards_->showKept();
  }
  hasBegun_ = true;
  publish();
  if (options_->onPlaces) options_->onPlaces();
  if (hasBegunTheRest_) followDevice();
}

void Engine::followDevice() {
  PlaceList const list = places_->state().list;
  device_->want(list.selected == kCurrentLocation && list.lastFix);
}

/// The device is where the current location is not any more.
void Engine::arrive(LocationFix const& fix) {
  adoptPlaces([&] { places_->change([&](PlaceList& list) { return moveCurrentLocation(list, fix); }); });
  tell(EngineEvent::locationChanged);
  showSelected(RefreshTrigger::locationChanged);
  notifications_->requestPass();
  timer_->wake();
}

/// One after the other, so that the listener has the newest last.
void Engine::publish() {
  if (!hasBegun_ || !listener_) return;
  std::lock_guard const turn(turn_);
  auto snapshot = std::make_shared<EngineSnapshot>();
  snapshot->weather = state_->weather();
  snapshot->place = state_->selectedPlace();
  snapshot->hazards = hazards_->state();
  snapshot->outlook = outlook_->state();
  snapshot->notifications = notifications_->state();
  snapshot->settings = settings_->state();
  snapshot->wording = settings_->wording();
  snapshot->closesToTray = snapshot->settings->settings.boolean("desktop_closeToTray");
  PlacesState places = places_->state();
  snapshot->places = std::move(places.list);
  snapshot->kept = std::move(places.kept);
  snapshot->location = std::move(places.location);
  snapshot->problem = std::move(places.problem);
  snapshot->unknownPlace = std::move(places.unknown);
  snapshot->isOffline = !snapshot->place && standIn().empty() && !hasDefaultRoute();
  listener_(std::move(snapshot));
}

void Engine::tell(EngineEvent event) {
  if (options_->onEvent) options_->onEvent(event);
}

/// Another process changed places or settings.
void Engine::followStore(std::stop_token const& stop) {
  auto const watch = store_->watch();
  if (!watch) {
    if (options_->onProblem)
      options_->onProblem(watch.error().message + "; changed settings will not be detected");
    return;
  }
  while ((*watch)->wait(stop) == WaitOutcome::changed) run([this] { readAgain(); });
}

void Engine::readAgain() {
  SettingsChanges const changes = settings_->reread();
  bool arePlacesOther = false;
  adoptPlaces([&] { arePlacesOther = places_->read(); });
  if (hazards_) hazards_->readFilter();
  showSelected(RefreshTrigger::placeChosen);
  if (arePlacesOther && !changes.any) {
    tell(EngineEvent::settingsChanged);
    notifications_->requestPass();
    timer_->wake();
  }
  apply(changes);
  notifications_->reload();
}

/// Of a place that goes, the pass of notifications that is under way delivers nothing any more.
void Engine::adoptPlaces(std::function<void()> const& adopt) {
  auto const before = places_->watched();
  adopt();
  auto const after = places_->watched();
  for (WatchedPlace const& watched : before) {
    std::string const tag = locationTag(watched.place);
    bool const stays =
        std::ranges::any_of(after, [&](WatchedPlace const& each) { return locationTag(each.place) == tag; });
    if (!stays) notifications_->desk().suppress(tag);
  }
}

}  // namespace nimbara
