#include "app/engine/engine.h"
#include "app/engine/engine_globe.h"
#include "app/engine/engine_notifications.h"
#include "app/engine/engine_options.h"
#include "app/engine/engine_stations.h"
#include "app/services/composition.h"
#include "app/services/feed_services.h"
#include "app/settings/home_directory.h"
#include "base/text/text.h"
#include "demo/demo_folder.h"
#include "demo/demo_process.h"
#include "demo/world/demo_places.h"
#include "desktop/core/process_end.h"
#include "desktop/core/snapshot_box.h"
#include "desktop/imagery/radar/radar_drawer.h"
#include "desktop/window/desktop_shell.h"
#include "desktop/window/desktop_window.h"
#include "desktop/window/models/desktop_model.h"
#include "desktop/window/painting/tray_pictures.h"
#include "desktop/window/software_start.h"
#include "platform/application_id.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/interrupt_signals.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QTimer>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <stop_token>
#include <thread>

namespace {

using namespace nimbara;

int fail(int code, std::string_view sentence) {
  std::fputs(("nimbara-desktop: " + oneLine(sentence, 1000) + "\n").c_str(), stderr);
  return code;
}

/// The demo with settings, places and forecasts of its own, which end with it.
class Demo {
 public:
  Demo(Environment& environment, std::optional<Instant> now)
      : server_(DemoProcess::start(environment.program, now, {})) {
    environment.cacheDirectory = folder_.path() / "cache";
    environment.dataDirectory = folder_.path() / "data";
    environment.configHome.clear();
  }

  Result<DemoProcess, std::string> const& server() const { return server_; }
  bool hasFolder() const { return !folder_.path().empty(); }

  /// Some of official warnings and some without, from the polar night to the tropics.
  static std::vector<SavedPlace> places() {
    constexpr std::string_view kNames[] = {"Warsaw", "Denver", "Lisbon", "Tromsø", "Singapore"};
    std::vector<SavedPlace> places;
    for (std::string_view const name : kNames) {
      DemoPlace const& place = *findDemoPlaces(name, 1).front();
      places.push_back({Uuid::random(), std::string(place.name), std::string(place.countryCode),
                        std::string(place.country), std::string(place.region), place.coordinate,
                        std::string(place.timeZone)});
    }
    return places;
  }

 private:
  Result<DemoProcess, std::string> server_;
  DemoFolder folder_;
};

/// Takes one picture as soon as the page has its weather, or after a while without.
class Photographer : public QObject {
 public:
  Photographer(DesktopModel& model, DesktopWindow& window, std::string file)
      : model_(model), window_(window), file_(std::move(file)) {
    settle_.setSingleShot(true);
    settle_.setInterval(500);
    connect(&settle_, &QTimer::timeout, this, [this] {
      if (model_.hasSettled()) take();
    });
    connect(&model, &DesktopModel::shown, this, [this] { wait(); });
    QTimer::singleShot(15'000, this, [this] { take(); });
    wait();
  }

 private:
  void wait() {
    if (model_.hasSettled() && !settle_.isActive()) settle_.start();
  }
  void take() {
    auto const saved = window_.savePicture(file_);
    QCoreApplication::exit(saved ? 0 : fail(1, saved.error()));
  }

  DesktopModel& model_;
  DesktopWindow& window_;
  std::string file_;
  QTimer settle_;
};

/// The demo does not ask where its user is.
Result<LocationFix, LocationError> unaskedLocation(std::stop_token const& /*stop*/) {
  return std::unexpected(LocationError{LocationError::Kind::unavailable,
                                       "the demo does not use the desktop's location service"});
}

/// What the first frame waits for the first snapshot, and the program's end for whoever does not end.
constexpr std::chrono::milliseconds kFirstPatience{50};
constexpr std::chrono::milliseconds kEndPatience{800};

std::function<std::unique_ptr<Tray>(Tray::Listener)> trayMaker(DesktopBuses const& buses) {
  return [buses](Tray::Listener listener) { return desktopTray(buses, std::move(listener)); };
}

/// The token by which a launcher lets this start take the focus.
std::string activationToken() {
  for (char const* const name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
    if (char const* const token = std::getenv(name); token != nullptr && *token != 0) return token;
  }
  return {};
}

/// The shell's way to say that a signal ended a program.
int codeOf(InterruptSignals const& signals) {
  return 128 + signals.signal();
}

/// This start's place beside others of the same user.
class Start {
 public:
  /// How long the window waits for the bus before it opens without.
  static constexpr std::chrono::milliseconds kBusPatience{300};
  static constexpr std::chrono::milliseconds kCallPatience{2000};

  Start(Environment const& environment, DesktopOptions const& options)
      : buses_(busesOfSession(environment.program)), token_(activationToken()) {
    if (!options.isApart()) instance_ = desktopApplicationInstance(buses_);
  }

  /// True when the window that is open already has taken the arguments.
  bool isHandedOver(std::vector<std::string> arguments) const {
    if (!instance_ || instance_->standing(kBusPatience) != InstanceStanding::second) return false;
    return callApplication(buses_, {"start", std::move(arguments), token_}, kCallPatience).has_value();
  }

  void listen(DesktopShell& shell) const {
    if (instance_) instance_->setListener([&shell](ApplicationCall const& call) { shell.receive(call); });
  }
  void end() { instance_.reset(); }
  DesktopBuses const& buses() const { return buses_; }

 private:
  DesktopBuses buses_;
  std::string token_;
  std::unique_ptr<ApplicationInstance> instance_;
};

/// What the first frame can do without.
void beginTheRest(Engine& engine, DesktopShell& shell) {
  engine.followSystem([](std::string const& sentence) { std::ignore = fail(0, sentence); });
  shell.begin();
}

/// Whoever works with one of them holds the services that it belongs to.
RadarSources radarOf(Engine& engine) {
  auto const feeds = feedsOf([&engine] { return engine.services(); });
  return {[feeds] {
            auto const all = feeds();
            return std::shared_ptr<RadarService>(all, &all->radar());
          },
          [feeds] {
            auto const all = feeds();
            return std::shared_ptr<TileService>(all, &all->tiles());
          }};
}

template <class Part>
InUse<Part> partOf(Engine& engine, Part& (FeedServices::*part)()) {
  return [feeds = feedsOf([&engine] { return engine.services(); }), part] {
    auto const all = feeds();
    return std::shared_ptr<Part>(all, &((*all).*part)());
  };
}

int showWindow(QGuiApplication& application, Environment const& environment, DesktopOptions const& options,
               Demo* demo, Start& start, InterruptSignals const& signals,
               std::unique_ptr<DesktopWindow> begun) {
  DesktopModel* model = nullptr;
  SnapshotBox box([&] {
    QMetaObject::invokeMethod(
        qApp,
        [&] {
          if (auto snapshot = box.take(); snapshot && model != nullptr) model->show(std::move(snapshot));
        },
        Qt::QueuedConnection);
  });
  std::string const services = demo != nullptr ? demo->server()->baseUrl() : options.services;
  auto const places = demo != nullptr ? Demo::places() : std::vector<SavedPlace>();
  auto const onGlobeChange = [&model] {
    QMetaObject::invokeMethod(
        qApp,
        [&model] {
          if (model != nullptr) model->globe()->refresh();
        },
        Qt::QueuedConnection);
  };
  DesktopShell* front = nullptr;
  auto const onOpen = [&front](ApplicationCall const& call) {
    QMetaObject::invokeMethod(
        qApp,
        [&front, call] {
          if (front != nullptr) front->receive(call);
        },
        Qt::QueuedConnection);
  };
  EngineOptions wanted;
  wanted.services = services;
  wanted.now = options.now;
  wanted.places = places;
  wanted.place = options.place;
  wanted.leavesNoTrace = !options.screenshot.empty();
  wanted.onUnknownPlace = [](std::string const& place) {
    QMetaObject::invokeMethod(
        qApp,
        [place] {
          QCoreApplication::exit(
              fail(1, "no place called '" + oneLine(place) +
                          "' was found; try another spelling or a coordinate like 52.52,13.41"));
        },
        Qt::QueuedConnection);
  };
  wanted.waitsForWindow = true;
  wanted.followsAppearance = true;
  wanted.onGlobeChange = onGlobeChange;
  wanted.onOpen = onOpen;
  if (demo != nullptr) wanted.locate = unaskedLocation;
  Engine engine(environment, std::move(wanted),
                [&box](SnapshotBox::Snapshot snapshot) { box.put(std::move(snapshot)); });
  DesktopModel shown(
      {*engine.wording(), engine.standIn(), [&engine] { return engine.clock().now(); }, environment.program},
      {engine, &engine.globe(), engine.notifications(), engine.stations(), radarOf(engine),
       partOf(engine, &FeedServices::clouds), partOf(engine, &FeedServices::modelFields)});
  // The cached forecast is there within milliseconds; the pages are made with it and not once more.
  if (auto first = box.take(kFirstPatience)) shown.show(std::move(first));
  model = &shown;
  auto const owned = std::move(begun);  // ends before what it shows
  DesktopWindow& window = *owned;
  window.open(shown, options);
  if (window.window() == nullptr) return fail(1, "could not load the window's pages");
  endWhereNothingCanBeDrawn(*window.window(), [](std::string const& why) {
    std::ignore = fail(0, "drawn without the graphics card: " + why);
  });
  std::optional<Photographer> photographer;
  if (!options.screenshot.empty()) photographer.emplace(shown, window, options.screenshot);
  DesktopShell shell(shown, *window.window(), {trayMaker(start.buses()), [&engine](std::string const& place) {
                                                 engine.choosePlace(place);
                                               }});
  front = &shell;
  start.listen(shell);
  QObject::connect(
      window.window(), &QQuickWindow::frameSwapped, &shell,
      [&] {
        engine.windowIsShown();
        QGuiApplication::setWindowIcon(programIcon());
        if (!options.isApart()) beginTheRest(engine, shell);
      },
      static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
  QObject::connect(
      &application, &QGuiApplication::applicationStateChanged,
      [&engine](Qt::ApplicationState state) { engine.setForeground(state == Qt::ApplicationActive); });
  QTimer minute;
  QObject::connect(&minute, &QTimer::timeout, [&] {
    if (window.window()->isExposed()) shown.tick();
  });
  minute.start(std::chrono::minutes(1));
  // A window that begins minimised draws nothing.
  QTimer::singleShot(std::chrono::seconds(2), &shell, [&engine] { engine.windowIsShown(); });
  if (options.refresh) engine.refresh();
  std::stop_callback const leave(signals.token(), [&signals] {
    QMetaObject::invokeMethod(
        qApp, [code = codeOf(signals)] { QCoreApplication::exit(code); }, Qt::QueuedConnection);
  });
  int const code = QGuiApplication::exec();
  if (code != kCannotDraw) endWithin(kEndPatience, code);
  start.end();
  return code;
}

int run(Environment environment, DesktopOptions const& options, InterruptSignals const& signals, int& count,
        char** arguments) {
  // Whatever hangs, a screen that does not answer or the window itself, holds nobody up.
  std::stop_callback const end(signals.token(), [&signals] { endWithin(kEndPatience, codeOf(signals)); });
  Start start(environment, options);
  std::optional<Demo> demo;
  if (options.demo) {
    demo.emplace(environment, options.now);
    if (!demo->server()) return fail(1, demo->server().error());
    if (!demo->hasFolder()) return fail(1, "no space for temporary files; check TMPDIR");
  }
  QGuiApplication::setApplicationName(QString::fromLatin1(kApplicationName));
  QGuiApplication::setDesktopFileName(QString::fromLatin1(kApplicationId));
  std::vector<std::string> const given(arguments + 1, arguments + count);
  QGuiApplication application(count, arguments);
  // Finding the fonts takes the toolkit as long as reading a page; both at once.
  std::jthread const fonts([] { std::ignore = QFontInfo(QGuiApplication::font()).family(); });
  auto window = std::make_unique<DesktopWindow>();
  if (start.isHandedOver(given)) return 0;
  return showWindow(application, environment, options, demo ? &*demo : nullptr, start, signals,
                    std::move(window));
}

}  // namespace

int main(int count, char** arguments) {
  mallopt(M_ARENA_MAX, 2);
  std::signal(SIGXFSZ, SIG_IGN);  // an error of writing like others
  if (count > 1 && std::string_view(arguments[1]) == nimbara::kDrawRadar)
    return nimbara::runRadarDrawer(count, arguments);
  auto const environment = nimbara::Environment::ofProcess();
  auto const options = nimbara::parseDesktopOptions({arguments + 1, arguments + count}, environment);
  if (!options) {
    if (options.error().exitCode != 0) return fail(options.error().exitCode, options.error().text);
    std::fputs(options.error().text.c_str(), stdout);
    return 0;
  }
  if (environment.dataDirectory.empty() && !options->demo) return fail(1, nimbara::kNoHome);
  // The toolkit takes its own away.
  std::vector<char*> const given(arguments, arguments + count + 1);
  int const code = [&] {
    nimbara::InterruptSignals const signals;
    return run(environment, *options, signals, count, arguments);
  }();
  if (code != nimbara::kCannotDraw) return code;
  nimbara::startInSoftware(environment.program, given.data());
  return fail(1, "could not draw the window");
}
