#include "desktop/core/desktop_core.h"

#include "app/engine/scheduler.h"
#include "app/notices/late_notification_center.h"
#include "app/notices/notification_call.h"
#include "app/notices/silent_center.h"
#include "app/places/place_resolver.h"
#include "app/settings/settings_registry.h"
#include "platform/linux/desktop_services.h"

namespace nimbara {

namespace {

/// What a test server made up is kept apart.
std::filesystem::path satelliteFolder(Environment const& environment, std::string const& standIn) {
  auto const& cache = environment.cacheDirectory;
  if (cache.empty()) return {};
  return cache / (standIn.empty() ? "satellites" : "satellites.stand-in");
}

DesktopCore::Locate locationOfDesktop(Environment const& environment) {
  return [program = environment.program](std::stop_token const& stop) {
    constexpr std::chrono::seconds kPatience{30};
    return desktopLocationSource({program, {}, {}})->locate(kPatience, stop);
  };
}

DesktopCore::Follow followOfDesktop(Environment const& environment) {
  return [program = environment.program](LocationSource::Moved const& moved, std::stop_token stop) {
    return desktopLocationSource({program, {}, {}})->follow(kSignificantMetres, moved, std::move(stop));
  };
}

LocationState::Phase phaseOf(LocationError const& error) {
  bool const isDenied = error.kind == LocationError::Kind::denied;
  return isDenied ? LocationState::Phase::denied : LocationState::Phase::unavailable;
}

}  // namespace

DesktopCore::DesktopCore(Environment const& environment, Options options, Listener listener)
    : program_(environment.program),
      clock_(runningClock(options.now)),
      store_(environment.dataDirectory, settingsRegistry()),
      settings_(store_, environment),
      listener_(std::move(listener)),
      locate_(options.locate ? std::move(options.locate) : locationOfDesktop(environment)),
      composition_(settings_.settings(), *clock_,
                   {options.services,
                    *settings_.wording(),
                    settings_.preferredProvider(),
                    environment.program,
                    environment.dataDirectory,
                    environment.cacheDirectory,
                    {}}),
      places_(store_, composition_.forecasts(), settings_),
      held_(work_),
      commands_(1),
      hazards_(composition_.feeds(), store_, held_, hazardSurroundings()),
      state_(composition_.forecasts(), composition_.providers(), composition_.cache(), *clock_, held_,
             surroundings()),
      satellites_(composition_.feeds().elements(), *clock_, satelliteFolder(environment, standIn())),
      globe_(
          {satellites_, composition_.feeds().earthquakes(), *clock_, work_, std::move(options.onGlobeChange),
           [this](std::string hidden) { keepSetting("globeHidden", std::move(hidden)); }},
          settings_.settings().text("globeHidden")),
      notifications_(notificationSurroundings(environment, options)),
      device_({options.follow ? std::move(options.follow) : followOfDesktop(environment),
               [this] { return places_.state().list.lastFix; },
               [this](LocationFix const& fix) { state_.deviceMoved(fix); }}) {
  if (!options.waitsForWindow) held_.release();
  commands_.run(
      [this, places = std::move(options.places), place = std::move(options.place)](std::stop_token const&) {
        begin(places, place);
        followAppearance();
      });
  scheduler_ = std::jthread([this](std::stop_token const& stop) {
    runScheduler(state_, notifications_.notifier(), timer_, *clock_, stop);
  });
  follower_ = std::jthread([this](std::stop_token const& stop) { followStore(stop); });
}

DesktopCore::~DesktopCore() {
  follower_ = {};
  scheduler_ = {};
  commands_.stop();
  device_.want(false);
  system_.reset();
  work_.stop();
  appearance_.reset();
}

AppState::Surroundings DesktopCore::surroundings() {
  AppState::Surroundings all;
  all.savedPlaces = [this] { return places_.saved(); };
  all.onRefresh = [this](AppState::RefreshReport const& report) { noteAnswer(report); };
  all.onChange = [this] { publish(); };
  all.refreshSupplemental = [this](Place const& place, std::stop_token const& stop) {
    return hazards_.refresh(place, stop);
  };
  all.onArrival = [this](LocationFix const& fix) {
    commands_.run([this, fix](std::stop_token const&) { arrive(fix); });
  };
  all.onDueChange = [this] { timer_.wake(); };
  all.jitter = requestJitter;
  return all;
}

DesktopHazards::Surroundings DesktopCore::hazardSurroundings() {
  return {[this](Place const& place, std::vector<WeatherAlert> alerts) {
            state_.showGovAlerts(place, std::move(alerts));
          },
          [this] { publish(); }, [this] { return places_.saved(); }};
}

DesktopNotifications::Surroundings DesktopCore::notificationSurroundings(Environment const& environment,
                                                                         Options& options) {
  auto makeCenter = std::move(options.center);
  if (!makeCenter && !standIn().empty()) makeCenter = [] { return std::make_unique<SilentCenter>(); };
  if (!makeCenter) {
    makeCenter = [program = environment.program] { return desktopNotificationCenter({program, {}, {}}); };
  }
  return {.store = store_,
          .app = composition_,
          .clock = *clock_,
          .work = work_,
          .commands = commands_,
          .wording = *settings_.wording(),
          .dataDirectory = environment.dataDirectory,
          .center = std::make_unique<LateNotificationCenter>(std::move(makeCenter)),
          .places = [this] { return places_.watched(); },
          .publish = [this] { publish(); },
          .onPass = [this] { hazards_.showKept(); },
          .onDueChange = [this] { timer_.wake(); },
          .onResponse =
              [open = std::move(options.onOpen)](NotificationResponse const& response) {
                auto const call = notificationCall(response);
                if (call && open) open(*call);
              },
          .jitter = requestJitter};
}

void DesktopCore::noteAnswer(AppState::RefreshReport const& report) {
  notifications_.requestPass();
  settings_.noteProviders(composition_);
  if (report.outcome) places_.noteForecast(report.place.coordinate, report.outcome->data);
  publish();
}

/// The selected place first: it is what the window waits for.
void DesktopCore::begin(std::vector<SavedPlace> const& places, std::string const& place) {
  places_.begin(places);
  hazards_.readFilter();
  if (!place.empty()) places_.choose(place);
  showSelected(RefreshTrigger::start);
  settings_.noteProviders(composition_);
  apply(settings_.reread());
  if (held_.isReleased()) beginTheRest();
  timer_.wake();
}

void DesktopCore::followAppearance() {
  appearance_ = desktopAppearance({program_, {}, {}}, [this](AppearanceWish const& wish) {
    settings_.noteWish(wish);
    publish();
  });
}

void DesktopCore::apply(SettingsChanges const& changes) {
  if (changes.wording) {
    composition_.forecasts().setWording(wording());
    notifications_.setWording(wording());
    state_.reshow();
  }
  if (changes.provider) {
    composition_.providers().setPreferredProvider(settings_.preferredProvider());
    state_.requestRefresh(RefreshTrigger::providerChosen);
  }
  publish();
}

void DesktopCore::showSelected(RefreshTrigger trigger) {
  auto const place = places_.selected();
  if (trigger == RefreshTrigger::start || place != state_.selectedPlace()) {
    hazards_.setPlace(place);
    state_.selectPlace(place, trigger);
    hazards_.showKept();
  }
  hasBegun_ = true;
  publish();
  if (hasBegunTheRest_) followDevice();
}

void DesktopCore::followDevice() {
  PlaceList const list = places_.state().list;
  device_.want(list.selected == kCurrentLocation && list.lastFix);
}

/// The device is where the current location is not any more.
void DesktopCore::arrive(LocationFix const& fix) {
  places_.change([&fix](PlaceList& list) { return moveCurrentLocation(list, fix); });
  showSelected(RefreshTrigger::locationChanged);
  notifications_.requestPass();
  timer_.wake();
}

/// One after the other, so that the listener has the newest last.
void DesktopCore::publish() {
  if (!hasBegun_) return;
  std::lock_guard const turn(turn_);
  auto snapshot = std::make_shared<DesktopSnapshot>();
  snapshot->weather = state_.weather();
  snapshot->place = state_.selectedPlace();
  snapshot->hazards = hazards_.state();
  snapshot->notifications = notifications_.state();
  snapshot->settings = settings_.state();
  snapshot->wording = settings_.wording();
  snapshot->closesToTray = snapshot->settings->settings.boolean("desktop_closeToTray");
  PlacesState places = places_.state();
  snapshot->places = std::move(places.list);
  snapshot->kept = std::move(places.kept);
  snapshot->location = std::move(places.location);
  snapshot->problem = std::move(places.problem);
  snapshot->unknownPlace = std::move(places.unknown);
  listener_(std::move(snapshot));
}

void DesktopCore::change(std::function<PlaceResult(PlaceList&)> const& apply) {
  places_.change(apply);
  showSelected(RefreshTrigger::placeChosen);
  notifications_.requestPass();
  timer_.wake();
}

/// Another process changed places or settings.
void DesktopCore::followStore(std::stop_token const& stop) {
  auto const watch = store_.watch();
  if (!watch) return;  // changes of others show at the next start
  while ((*watch)->wait(stop) == WaitOutcome::changed) {
    commands_.run([this](std::stop_token const&) {
      places_.read();
      hazards_.readFilter();
      showSelected(RefreshTrigger::placeChosen);
      notifications_.reload();
      apply(settings_.reread());
    });
  }
}

/// A setting that cannot be kept holds until the end of the program.
void DesktopCore::keepSetting(std::string key, SettingValue value) {
  commands_.run([this, key = std::move(key), value = std::move(value)](std::stop_token const&) {
    std::ignore = store_.set(key, value);
  });
}

void DesktopCore::refresh() {
  commands_.run([this](std::stop_token const&) { state_.requestRefresh(RefreshTrigger::asked); });
}

void DesktopCore::lookAtHazards() {
  commands_.run([this](std::stop_token const&) { hazards_.look(); });
}

void DesktopCore::setQuakeRadius(double km) {
  commands_.run([this, km](std::stop_token const&) { hazards_.setRadius(km); });
}

void DesktopCore::setQuakeMagnitude(double least) {
  commands_.run([this, least](std::stop_token const&) { hazards_.setMagnitude(least); });
}

void DesktopCore::setForeground(bool isForeground) {
  commands_.run([this, isForeground](std::stop_token const&) { state_.setForeground(isForeground); });
}

void DesktopCore::selectPlace(Uuid id) {
  commands_.run([this, id](std::stop_token const&) {
    change([&id](PlaceList& list) {
      bool const isHere = id == kCurrentLocation && list.lastFix;
      return isHere ? selectCurrentLocation(list, LocationFix(*list.lastFix))
                    : nimbara::selectPlace(list, id);
    });
  });
}

void DesktopCore::choosePlace(std::string text) {
  commands_.run([this, text = std::move(text)](std::stop_token const&) {
    places_.choose(text);
    showSelected(RefreshTrigger::placeChosen);
    timer_.wake();
  });
}

void DesktopCore::windowIsShown() {
  held_.release();
  commands_.run([this](std::stop_token const&) { beginTheRest(); });
}

/// What the first frame does without.
void DesktopCore::beginTheRest() {
  if (std::exchange(hasBegunTheRest_, true)) return;
  places_.readAllKept();
  publish();
  notifications_.begin();
  followDevice();
}

void DesktopCore::followSystem(std::function<void(std::string const&)> missing) {
  commands_.run([this, missing = std::move(missing)](std::stop_token const&) {
    if (system_) return;
    system_ = desktopPowerAndNetwork({program_, {}, {}}, [this](SystemEvent event) {
      state_.wokeUp(event == SystemEvent::resumed ? RefreshTrigger::resumed
                                                  : RefreshTrigger::networkReturned);
      notifications_.notifier().wokeUp();
      timer_.wake();
      commands_.run([this](std::stop_token const&) { followDevice(); });
    });
    for (std::string const& sentence : system_->missing()) missing(sentence);
  });
}

void DesktopCore::addPlace(SavedPlace place) {
  commands_.run([this, place = std::move(place)](std::stop_token const&) {
    change([&place](PlaceList& list) -> PlaceResult {
      if (auto const done = nimbara::addPlace(list, place); !done) return done;
      return nimbara::selectPlace(list, place.id);
    });
  });
}

void DesktopCore::removePlace(Uuid id) {
  commands_.run([this, id](std::stop_token const&) {
    change([&id](PlaceList& list) { return nimbara::removePlace(list, id); });
    places_.disableRulesOf(id);
  });
}

void DesktopCore::restorePlace(SavedPlace place, int position, bool select) {
  commands_.run([this, place = std::move(place), position, select](std::stop_token const&) {
    change([&](PlaceList& list) -> PlaceResult {
      if (auto const added = nimbara::addPlace(list, place); !added) return added;
      if (auto const moved = nimbara::movePlace(list, place.id, position); !moved) return moved;
      return select ? nimbara::selectPlace(list, place.id) : PlaceResult();
    });
    places_.enableRulesOf(place.id);
    places_.readKept(place.id, placeOf(place));
    publish();
  });
}

void DesktopCore::movePlace(Uuid id, int position) {
  commands_.run([this, id, position](std::stop_token const&) {
    change([&](PlaceList& list) { return nimbara::movePlace(list, id, position); });
  });
}

void DesktopCore::chooseNotifications(Uuid id, PlaceChoice choice) {
  commands_.run([this, id, choice](std::stop_token const&) {
    change([&](PlaceList& list) { return nimbara::chooseNotifications(list, id, choice); });
  });
}

void DesktopCore::search(std::string text, SearchListener found) {
  commands_.run([this, text = std::move(text), found = std::move(found)](std::stop_token const&) {
    std::string const language = settings_.wording()->texts->language();
    auto places = searchOffline(text, language);
    if (places.empty()) places = similarPlaces(text, language);
    found(std::move(places));
  });
}

void DesktopCore::searchOnline(std::string text, OnlineListener found) {
  work_.run([this, text = std::move(text), found = std::move(found)](std::stop_token const& stop) {
    PlaceSearch search(composition_.http(), composition_.services());
    found(search.search(text, settings_.wording()->texts->language(), true, stop));
  });
}

void DesktopCore::noteLocation(LocationState::Phase phase, std::string message) {
  places_.noteLocation(phase, std::move(message));
  publish();
}

void DesktopCore::finishLocating(Result<LocationFix, LocationError> const& fix) {
  if (!fix) return noteLocation(phaseOf(fix.error()), fix.error().message);
  change([&fix](PlaceList& list) { return selectCurrentLocation(list, *fix); });
  noteLocation(LocationState::Phase::found);
}

void DesktopCore::locate() {
  commands_.run([this](std::stop_token const&) {
    noteLocation(LocationState::Phase::asking);
    work_.run([this](std::stop_token const& stop) {
      commands_.run([this, fix = locate_(stop)](std::stop_token const&) { finishLocating(fix); });
    });
  });
}

void DesktopCore::removeCurrentLocation() {
  commands_.run([this](std::stop_token const&) {
    change([](PlaceList& list) { return nimbara::removeCurrentLocation(list); });
    noteLocation(LocationState::Phase::idle);
  });
}

void DesktopCore::changeSetting(std::string key, std::string text) {
  commands_.run([this, key = std::move(key), text = std::move(text)](std::stop_token const&) {
    apply(settings_.set(key, text));
  });
}

void DesktopCore::setStartAtLogin(bool wanted) {
  commands_.run([this, wanted](std::stop_token const&) {
    settings_.noteWatchChanging();
    publish();
    work_.run([this, wanted](std::stop_token const& stop) {
      settings_.setStartAtLogin(wanted, stop);
      publish();
    });
  });
}

}  // namespace nimbara
