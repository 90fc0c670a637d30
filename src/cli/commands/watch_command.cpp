#include "app/engine/app_state.h"
#include "app/engine/location_follower.h"
#include "app/engine/scheduler.h"
#include "app/notices/notification_call.h"
#include "app/notices/notification_desk.h"
#include "app/places/place_resolver.h"
#include "app/places/places.h"
#include "app/recording/http_recording.h"
#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/pages/watch_log.h"
#include "cli/run_context.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/timerfd_wake_timer.h"

#include <mutex>
#include <thread>

namespace nimbara {

namespace {

/// The saved places as they are now, shared by the threads that ask for them.
class KnownPlaces {
 public:
  explicit KnownPlaces(SettingsStore& store) : places_(store) { reload(); }

  void reload() {
    auto list = places_.list();
    if (!list) return;  // what was known stays
    std::lock_guard const lock(mutex_);
    list_ = std::move(*list);
  }

  std::vector<Place> all() const {
    std::lock_guard const lock(mutex_);
    std::vector<Place> places;
    places.reserve(list_.places.size());
    for (SavedPlace const& saved : list_.places) places.push_back(placeOf(saved));
    return places;
  }

  std::optional<LocationFix> lastFix() const {
    std::lock_guard const lock(mutex_);
    return list_.lastFix;
  }
  /// The current location is the selected place.
  bool isHere() const {
    std::lock_guard const lock(mutex_);
    return list_.selected == kCurrentLocation && list_.lastFix;
  }
  void moveHere(LocationFix const& fix) {
    auto list = places_.change([&fix](PlaceList& each) { return moveCurrentLocation(each, fix); });
    if (!list) return;  // it is no place any more
    std::lock_guard const lock(mutex_);
    list_ = std::move(*list);
  }

  std::vector<WatchedPlace> watched() const {
    auto const place = selected();
    if (!place) return {};
    std::lock_guard const lock(mutex_);
    return watchedPlaces(*place, list_);
  }

  std::optional<Place> selected() const {
    std::lock_guard const lock(mutex_);
    auto const wanted = resolvePlace("", list_);
    Place const* const place = wanted ? std::get_if<Place>(&*wanted) : nullptr;
    return place == nullptr ? std::nullopt : std::optional(*place);
  }

 private:
  Places places_;
  mutable std::mutex mutex_;
  PlaceList list_;
};

/// The background service: everything that it is made of, in the order of its making.
class Watch {
 public:
  Watch(CommandLine const& line, Session const& session)
      : session_(session),
        clock_(runningClock(line.common.now)),
        context_(line.common, session, *clock_, departureOf(line)),
        places_(*session.store),
        log_(session.console, *clock_, context_.texts(), line.watch.json),
        state_(context_.app().forecasts(), context_.app().providers(), context_.app().cache(), *clock_, pool_,
               surroundings()),
        desk_(deskSurroundings()),
        device_(deviceSurroundings()) {}

  int run() {
    log_.happened("started");
    desk_.manager().requestAuthorization();
    if (!desk_.role().isOurs()) log_.happened("notifiedElsewhere");
    desk_.followRole();
    auto const system = desktopPowerAndNetwork({session_.environment.program, {}, {}},
                                               [this](SystemEvent event) { systemEvent(event); });
    for (std::string const& missing : system->missing()) note(missing);
    std::jthread const settings([this](std::stop_token const& stop) { followSettings(stop); });
    select(RefreshTrigger::start);
    runScheduler(state_, desk_.notifier(), timer_, *clock_, session_.stop);
    device_.want(false);
    pool_.stop();
    log_.happened("stopped");
    return exitCode::kInterrupted;
  }

 private:
  RunContext::Departure departureOf(CommandLine const& line) {
    RunContext::Departure departure = ownServices(line.common, line.forecast.provider);
    if (line.watch.record.empty()) return departure;
    departure.aroundNetwork = [this, &line](HttpClient& network) {
      return std::make_unique<RecordingHttpClient>(network, *clock_, line.watch.record);
    };
    return departure;
  }

  AppState::Surroundings surroundings() {
    AppState::Surroundings all;
    all.savedPlaces = [this] { return places_.all(); };
    all.onRefresh = [this](AppState::RefreshReport const& report) {
      log_.refreshed(report);
      desk_.notifier().requestPass();
    };
    all.onArrival = [this](LocationFix const& fix) { arrive(fix); };
    all.onDueChange = [this] { timer_.wake(); };
    all.jitter = requestJitter;
    return all;
  }

  LocationFollower::Surroundings deviceSurroundings() {
    return {[this](LocationSource::Moved const& moved, std::stop_token stop) {
              return desktopLocationSource({session_.environment.program, {}, {}})
                  ->follow(kSignificantMetres, moved, std::move(stop));
            },
            [this] { return places_.lastFix(); },
            [this](LocationFix const& fix) { state_.deviceMoved(fix); }};
  }

  /// The device is where the current location is not any more.
  void arrive(LocationFix const& fix) {
    places_.moveHere(fix);
    log_.happened("locationChanged");
    select(RefreshTrigger::locationChanged);
    desk_.notifier().requestPass();
  }

  NotificationDesk::Surroundings deskSurroundings() {
    return {.store = *session_.store,
            .app = context_.app(),
            .clock = *clock_,
            .runner = pool_,
            .wording = context_.wording(),
            .dataDirectory = session_.environment.dataDirectory,
            .program = "watch",
            .center = desktopNotificationCenter({session_.environment.program, {}, {}}),
            .places = [this] { return places_.watched(); },
            .onPass = [this](PassReport const& report) { log_.passed(report); },
            .onDueChange = [this] { timer_.wake(); },
            .onRoleChange =
                [this] {
                  if (desk_.role().isOurs()) log_.happened("tookOver");
                },
            .onResponse = [this](NotificationResponse const& response) { answered(response); },
            .onProblem = [this](std::string const& sentence) { note(sentence); },
            .jitter = requestJitter};
  }

  /// A person clicked on a notification.
  void answered(NotificationResponse const& response) {
    if (auto const call = notificationCall(response)) {
      pool_.run([this, call = *call](std::stop_token const&) { open(call); });
    }
  }

  /// The window comes forward; where none is open, the bus starts the installed one.
  void open(ApplicationCall const& call) {
    constexpr std::chrono::seconds kPatience{5};
    auto const opened = callApplication({session_.environment.program, {}, {}}, call, kPatience);
    if (!opened) note("could not open the window: " + opened.error());
  }

  void note(std::string const& sentence) { session_.console.err("nimbara: " + oneLine(sentence) + "\n"); }

  void select(RefreshTrigger trigger) {
    auto const place = places_.selected();
    if (!place) note("no place is selected; add one with: nimbara places add NAME");
    state_.selectPlace(place, trigger);
    device_.want(places_.isHere());
  }

  void systemEvent(SystemEvent event) {
    log_.happened(enumName(event));
    state_.wokeUp(event == SystemEvent::resumed ? RefreshTrigger::resumed : RefreshTrigger::networkReturned);
    desk_.notifier().wokeUp();
    device_.want(places_.isHere());
  }

  /// Another process changed settings or places. What the program remembers for itself lies in the same store
  /// and is nobody's news.
  void followSettings(std::stop_token const& stop) {
    auto const watch = session_.store->watch();
    if (!watch) return note(watch.error().message + "; changed settings will not be detected");
    auto known = chosen();
    while ((*watch)->wait(stop) == WaitOutcome::changed) {
      auto now = chosen();
      if (now == known) continue;
      known = std::move(now);
      settingsChanged();
    }
  }

  /// Everything that the user has set.
  std::pair<SettingValues, SettingValues> chosen() {
    return {session_.store->read(StoreArea::settings).value_or(SettingValues{}),
            session_.store->read(StoreArea::places).value_or(SettingValues{})};
  }

  void settingsChanged() {
    places_.reload();
    auto const settings = session_.store->settings();
    context_.app().providers().setPreferredProvider(
        settings.settings.choice<WeatherProviderOption>("preferredProvider")
            .value_or(WeatherProviderOption::automatic));
    log_.happened("settingsChanged");
    if (places_.selected() != state_.selectedPlace()) select(RefreshTrigger::placeChosen);
    device_.want(places_.isHere());
    desk_.notifier().requestPass();
    timer_.wake();
  }

  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
  KnownPlaces places_;
  TimerfdWakeTimer timer_;
  WatchLog log_;
  ThreadPool pool_;
  AppState state_;
  NotificationDesk desk_;
  LocationFollower device_;
};

}  // namespace

int runWatch(CommandLine const& line, Session const& session) {
  return Watch(line, session).run();
}

}  // namespace nimbara
