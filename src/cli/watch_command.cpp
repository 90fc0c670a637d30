#include "app/app_state.h"
#include "app/place_resolver.h"
#include "app/places.h"
#include "app/scheduler.h"
#include "app/settings_registry.h"
#include "base/json.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/run_context.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/resident_code.h"
#include "platform/linux/timerfd_wake_timer.h"

#include <malloc.h>
#include <mutex>
#include <random>
#include <thread>

namespace nimbara {

namespace {

constexpr std::chrono::milliseconds kMostJitter{20'000};

/// Services ask clients not to come all on the full minute.
std::chrono::milliseconds jitter() {
  static thread_local std::mt19937 random{std::random_device{}()};
  return std::chrono::milliseconds(std::uniform_int_distribution<int>(0, kMostJitter.count())(random));
}

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

/// What happens, a line each: for people, or in JSON.
class EventLog {
 public:
  EventLog(Console& console, Clock const& clock, Texts const& texts, bool json)
      : console_(console), clock_(clock), texts_(texts), json_(json) {}

  void refreshed(AppState::RefreshReport const& report) {
    APIError const* const failure = failureOf(report.outcome);
    bool const wasGivenUp = failure != nullptr && failure->transport == HttpError::Kind::cancelled;
    if (wasGivenUp) return;
    json_ ? write(jsonOf(report, failure)) : write(lineOf(report, failure));
    // What the exchange needed is given back: the process now sleeps for a quarter of an hour.
    malloc_trim(0);
    giveBackCode();
  }

  void happened(std::string_view event) {
    if (!json_) return write(formatIso8601(clock_.now()) + " " + std::string(event));
    JsonWriter writer;
    writer.beginObject();
    writer.member("event", event);
    writer.member("time", clock_.now());
    writer.endObject();
    write(writer.take());
  }

 private:
  static APIError const* failureOf(Result<ForecastAnswer, APIError> const& outcome) {
    if (!outcome) return &outcome.error();
    return outcome->failure ? &*outcome->failure : nullptr;
  }

  static std::string nameOf(Place const& place) {
    return place.name.empty() ? cacheKey(place.coordinate) : place.name;
  }

  std::string lineOf(AppState::RefreshReport const& report, APIError const* failure) const {
    std::string line = formatIso8601(clock_.now()) + " " + nameOf(report.place) + ": ";
    if (failure != nullptr) return line + AppError::of(*failure).text(texts_);
    ForecastAnswer const& answer = *report.outcome;
    std::string const provider(answer.provider ? enumName(*answer.provider) : "unknown");
    return line + (answer.fromCache ? "kept forecast from " : "forecast from ") + provider + ", " +
           std::to_string(answer.alerts.size()) + " alerts";
  }

  std::string jsonOf(AppState::RefreshReport const& report, APIError const* failure) const {
    JsonWriter writer;
    writer.beginObject();
    writer.member("event", "forecast");
    writer.member("time", clock_.now());
    writer.member("place", nameOf(report.place));
    writer.member("latitude", report.place.coordinate.latitude);
    writer.member("longitude", report.place.coordinate.longitude);
    writer.member("selected", report.isSelected);
    if (report.outcome) {
      writer.memberOrNull("provider", report.outcome->provider);
      writer.member("fromCache", report.outcome->fromCache);
      writer.member("stale", report.outcome->stale);
      writer.member("answeredAt", report.outcome->answeredAt);
      writer.member("alerts", report.outcome->alerts.size());
    }
    if (failure != nullptr) writer.member("error", failure->text());
    writer.endObject();
    return writer.take();
  }

  void write(std::string const& line) {
    std::lock_guard const lock(mutex_);
    console_.out(line + "\n");
  }

  Console& console_;
  Clock const& clock_;
  Texts const& texts_;
  bool json_;
  std::mutex mutex_;
};

/// The background service: everything that it is made of, in the order of its making.
class Watch {
 public:
  Watch(CommandLine const& line, Session const& session)
      : session_(session),
        clock_(makeRunningClock(line.common)),
        context_(line.common, session, *clock_, ownServices(line.common, line.forecast.provider)),
        places_(*session.store),
        log_(session.console, *clock_, context_.texts(), line.watch.json),
        state_(context_.app().forecasts(), context_.app().providers(), context_.app().cache(), *clock_, pool_,
               surroundings()) {}

  int run() {
    log_.happened("started");
    auto const system = desktopPowerAndNetwork({session_.environment.program, {}, {}},
                                               [this](SystemEvent event) { systemEvent(event); });
    for (std::string const& missing : system->missing()) note(missing);
    std::jthread const settings([this](std::stop_token const& stop) { followSettings(stop); });
    select(RefreshTrigger::start);
    runScheduler(state_, timer_, *clock_, session_.stop);
    pool_.stop();
    log_.happened("stopped");
    return exitCode::kInterrupted;
  }

 private:
  static std::unique_ptr<Clock> makeRunningClock(CommonOptions const& common) {
    if (common.now) return std::make_unique<ShiftedClock>(*common.now);
    return std::make_unique<SystemClock>();
  }

  AppState::Surroundings surroundings() {
    AppState::Surroundings all;
    all.savedPlaces = [this] { return places_.all(); };
    all.onRefresh = [this](AppState::RefreshReport const& report) { log_.refreshed(report); };
    all.onDueChange = [this] { timer_.wake(); };
    all.jitter = jitter;
    return all;
  }

  void note(std::string const& sentence) { session_.console.err("nimbara: " + oneLine(sentence) + "\n"); }

  void select(RefreshTrigger trigger) {
    auto const place = places_.selected();
    if (!place) note("no place is selected; add one with: nimbara places add NAME");
    state_.selectPlace(place, trigger);
  }

  void systemEvent(SystemEvent event) {
    log_.happened(enumName(event));
    state_.wokeUp(event == SystemEvent::resumed ? RefreshTrigger::resumed : RefreshTrigger::networkReturned);
  }

  /// Another process changed settings or places.
  void followSettings(std::stop_token const& stop) {
    auto const watch = session_.store->watch();
    if (!watch) return note(watch.error().message + "; changes of settings are not noticed");
    while ((*watch)->wait(stop) == WaitOutcome::changed) {
      places_.reload();
      auto const settings = session_.store->settings();
      context_.app().providers().setPreferredProvider(
          settings.settings.choice<WeatherProviderOption>("preferredProvider")
              .value_or(WeatherProviderOption::automatic));
      log_.happened("settingsChanged");
      if (places_.selected() != state_.selectedPlace()) select(RefreshTrigger::placeChosen);
      timer_.wake();
    }
  }

  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
  KnownPlaces places_;
  TimerfdWakeTimer timer_;
  EventLog log_;
  ThreadPool pool_;
  AppState state_;
};

}  // namespace

int runWatch(CommandLine const& line, Session const& session) {
  return Watch(line, session).run();
}

}  // namespace nimbara
