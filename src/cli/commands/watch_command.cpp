#include "app/engine/clocks/scheduler.h"
#include "app/engine/engine.h"
#include "app/engine/engine_notifications.h"
#include "app/engine/engine_options.h"
#include "app/recording/http_recording.h"
#include "app/services/wording.h"
#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/pages/watch_log.h"
#include "cli/service/weather_service.h"
#include "platform/linux/desktop_services.h"

#include <condition_variable>
#include <mutex>

namespace nimbara {

namespace {

/// The background service: an engine that nobody looks at, and its log, which outlives it.
class Watch {
 public:
  Watch(CommandLine const& line, Session const& session)
      : line_(line),
        session_(session),
        clock_(runningClock(line.common.now)),
        log_(
            session.console, *clock_, session.environment.machineCalendar,
            [this] { return engine_->wording()->texts; }, line.watch.json),
        service_({*clock_, [this](ServiceFace& face) { return desktopSessionService(buses(), face); },
                  [this](std::string const& place, std::string const& token) { show(place, token); }}) {}

  int run() {
    {
      Engine engine(session_.environment, options());
      engine_ = &engine;
      runUntilStopped(engine);
      service_.stop();
    }
    log_.happened("stopped");
    return exitCode::kInterrupted;
  }

 private:
  void runUntilStopped(Engine& engine) {
    log_.happened("started");
    service_.follow(engine);
    engine.begin({});
    NotificationDesk& desk = engine.notifications().desk();
    desk.manager().requestAuthorization();
    if (!desk.role().isOurs()) log_.happened("notifiedElsewhere");
    engine.followSystem([this](std::string const& sentence) { note(sentence); });
    std::mutex waiting;
    std::unique_lock lock(waiting);
    std::condition_variable_any().wait(lock, session_.stop, [] { return false; });
  }

  EngineOptions options() {
    EngineOptions options;
    options.services = line_.common.services;
    options.clock = clock_.get();
    if (line_.common.unitsGiven) options.overrides.units = line_.common.units;
    options.overrides.language = line_.common.language;
    if (line_.forecast.providerGiven) options.overrides.provider = line_.forecast.provider;
    options.store = session_.store;
    options.keyed = session_.keyed;
    options.settings = session_.settings;
    options.program = "watch";
    options.center = [this] { return desktopNotificationCenter(buses()); };
    options.onOpen = [this](ApplicationCall const& call) { open(call); };
    options.onRefresh = [this](AppState::RefreshReport const& report) {
      log_.refreshed(report);
      service_.noteForecast();
    };
    options.onPass = [this](PassReport const& report) {
      log_.passed(report);
      service_.lookAgain();
    };
    options.onPlaces = [this] { service_.lookAgain(); };
    options.onEvent = [this](EngineEvent event) {
      if (event == EngineEvent::settingsChanged) service_.lookAgain();
      if (event != EngineEvent::noPlace) return log_.happened(enumName(event));
      note("no place is selected; add one with: nimbara places add NAME");
    };
    options.onProblem = [this](std::string const& sentence) { note(sentence); };
    if (line_.watch.record.empty()) return options;
    options.aroundNetwork = [this](HttpClient& network) {
      return std::make_unique<RecordingHttpClient>(network, *clock_, line_.watch.record);
    };
    return options;
  }

  DesktopBuses buses() const { return busesOfSession(session_.environment.program); }

  /// The window comes forward; where none is open, the bus starts the installed one.
  void open(ApplicationCall const& call) {
    constexpr std::chrono::seconds kPatience{5};
    auto const opened = callApplication(buses(), call, kPatience);
    if (!opened) note("could not open the window: " + opened.error());
  }

  /// Somebody has chosen a place in a search.
  void show(std::string const& place, std::string const& token) {
    std::vector<std::string> arguments{"--page", place.empty() ? "places" : "now"};
    if (!place.empty()) arguments.insert(arguments.end(), {"--place", place});
    open({"start", std::move(arguments), token});
  }

  void note(std::string const& sentence) { session_.console.err("nimbara: " + oneLine(sentence) + "\n"); }

  CommandLine const& line_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
  WatchLog log_;
  WeatherService service_;
  Engine* engine_ = nullptr;  ///< while it runs
};

}  // namespace

int runWatch(CommandLine const& line, Session const& session) {
  return Watch(line, session).run();
}

}  // namespace nimbara
