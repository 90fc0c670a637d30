#include "base/text.h"
#include "demo/demo_places.h"
#include "demo/demo_process.h"
#include "desktop/core/desktop_core.h"
#include "desktop/window/desktop_model.h"
#include "desktop/window/desktop_window.h"

#include <QGuiApplication>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>

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
    std::string name = (std::filesystem::temp_directory_path() / "nimbara-demo-XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) folder_ = name;
    environment.cacheDirectory = folder_ / "cache";
    environment.dataDirectory = folder_ / "data";
  }
  ~Demo() {
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
  }
  Demo(Demo const&) = delete;
  Demo& operator=(Demo const&) = delete;

  Result<DemoProcess, std::string> const& server() const { return server_; }

  static std::vector<SavedPlace> places() {
    std::vector<SavedPlace> places;
    for (DemoPlace const& place : demoPlaces()) {
      if (places.size() == 5) break;
      if (std::ranges::count(places, place.countryCode, &SavedPlace::country) > 0) continue;
      places.push_back({Uuid::random(), std::string(place.name), std::string(place.countryCode),
                        std::string(place.country), std::string(place.region), place.coordinate,
                        std::string(place.timeZone)});
    }
    return places;
  }

 private:
  Result<DemoProcess, std::string> server_;
  std::filesystem::path folder_;
};

/// Takes one picture as soon as the page has its weather, or after a while without.
class Photographer : public QObject {
 public:
  Photographer(DesktopModel& model, DesktopWindow& window, std::string file)
      : model_(model), window_(window), file_(std::move(file)) {
    settle_.setSingleShot(true);
    settle_.setInterval(500);
    connect(&settle_, &QTimer::timeout, this, [this] { take(); });
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

DesktopCommands commandsOf(DesktopCore& core, DesktopModel*& model) {
  DesktopCommands commands;
  commands.refresh = [&core] { core.refresh(); };
  commands.selectPlace = [&core](Uuid id) { core.selectPlace(id); };
  commands.addPlace = [&core](SavedPlace place) { core.addPlace(std::move(place)); };
  commands.removePlace = [&core](Uuid id) { core.removePlace(id); };
  commands.movePlace = [&core](Uuid id, int position) { core.movePlace(id, position); };
  commands.search = [&core, &model](std::string const& text) {
    core.search(text, [&model, text](std::vector<FoundPlace> found) {
      QMetaObject::invokeMethod(
          qApp, [&model, text, found = std::move(found)] { model->showFound(text, found); },
          Qt::QueuedConnection);
    });
  };
  return commands;
}

/// The core begins before the window's toolkit, so that the cached forecast is there when the window is.
int run(Environment environment, DesktopOptions const& options, int& count, char** arguments) {
  std::optional<Demo> demo;
  if (options.demo) {
    demo.emplace(environment, options.now);
    if (!demo->server()) return fail(1, demo->server().error());
  }
  QGuiApplication::setApplicationName(QStringLiteral("Nimbara"));
  QGuiApplication::setDesktopFileName(QStringLiteral("nimbara"));
  QGuiApplication application(count, arguments);
  DesktopModel* model = nullptr;
  std::string const services = demo ? demo->server()->baseUrl() : options.services;
  DesktopCore core(environment, {services, options.now, demo ? Demo::places() : std::vector<SavedPlace>()},
                   [&model](std::shared_ptr<DesktopSnapshot const> snapshot) {
                     QMetaObject::invokeMethod(
                         qApp, [&model, snapshot = std::move(snapshot)] { model->show(snapshot); },
                         Qt::QueuedConnection);
                   });
  DesktopModel shown({core.wording(), core.standIn(), [&core] { return core.clock().now(); }},
                     commandsOf(core, model));
  model = &shown;
  DesktopWindow window(shown, options);
  if (window.window() == nullptr) return fail(1, "the window's pages cannot be loaded");
  std::optional<Photographer> photographer;
  if (!options.screenshot.empty()) photographer.emplace(shown, window, options.screenshot);
  QObject::connect(
      &application, &QGuiApplication::applicationStateChanged,
      [&core](Qt::ApplicationState state) { core.setForeground(state == Qt::ApplicationActive); });
  QTimer minute;
  QObject::connect(&minute, &QTimer::timeout, [&] {
    if (window.window()->isExposed()) shown.tick();
  });
  minute.start(std::chrono::minutes(1));
  return QGuiApplication::exec();
}

}  // namespace

int main(int count, char** arguments) {
  mallopt(M_ARENA_MAX, 2);
  auto const environment = nimbara::Environment::ofProcess();
  auto const options = nimbara::parseDesktopOptions({arguments + 1, arguments + count}, environment);
  if (!options) {
    if (options.error().exitCode != 0) return fail(options.error().exitCode, options.error().text);
    std::fputs(options.error().text.c_str(), stdout);
    return 0;
  }
  return run(environment, *options, count, arguments);
}
