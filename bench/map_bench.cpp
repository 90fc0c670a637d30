// What a frame of the map costs while it is panned, with the radar on top, and what it costs to go from one
// picture of the radar to the next: processor time of the window's thread, offscreen with software rendering
// at 1280×800. The limits are 33 ms for a frame and 50 ms for a change of the picture.
#include "desktop/map/radar_hosts.h"
#include "desktop/states/page_states.h"
#include "desktop/window/desktop_window.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>
#include <fstream>
#include <functional>
#include <vector>

namespace {

using namespace nimbara;
using namespace nimbara::test;

/// Processor time of this thread so far.
double workedMs() {
  timespec time;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double wallMs() {
  timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Showers of all amounts, as much rain as there ever is; no two tiles are alike.
std::string rainyTile(std::string const& address) {
  int const shift = static_cast<int>(std::hash<std::string>()(address) % 512);
  QImage picture(512, 512, QImage::Format_ARGB32);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  for (int i = 0; i < 40; ++i) {
    int const value = 70 + 3 * i;
    painter.setBrush(QColor(value, value, value));
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QPoint((37 * i + shift) % 512, 91 * i % 512), 60 - i, 40 - i / 2);
  }
  painter.end();
  return bytesOf(picture);
}

bool waitUntil(std::function<bool()> const& is) {
  double const begun = wallMs();
  while (!is() && wallMs() - begun < 20'000) {
    QEventLoop loop;
    QTimer::singleShot(10, &loop, &QEventLoop::quit);
    loop.exec();
  }
  return is();
}

void print(std::string const& what, std::vector<double> times, double limit) {
  std::ranges::sort(times);
  double const middle = times[times.size() / 2], late = times[times.size() * 95 / 100];
  std::printf("%-34s median %5.1f  95th %5.1f  longest %5.1f ms%s\n", what.c_str(), middle, late,
              times.back(), late > limit ? "  over the limit" : "");
}

class MapBench {
 public:
  MapBench() {
    hosts_.host.answer("libre.example/v2/radar", 200, rainyTile);
    WindowActions actions;
    actions.radar = hosts_.sources();
    model_.emplace(DesktopModel::Setting{Wording(), {}, [this] { return hosts_.clock.now(); }, {}}, actions);
    DesktopOptions options;
    options.size = WindowSize{1280, 800};
    options.page = DesktopPage::now;
    window_.emplace(*model_, options);
    auto snapshot = snapshotOf(stateOf(mildWeek()), "Paris");
    snapshot->place = Place{{48.86, 2.35}, "Paris", "FR", ""};
    model_->show(std::move(snapshot));
    std::ignore = window_->window()->grabWindow();
  }

  /// The page opened from another one: the map itself, and with the radar, whose squares are at hand.
  void open() {
    residentMB_ = residentMB();
    double const begun = wallMs(), worked = workedMs();
    window_->window()->setProperty("page", QStringLiteral("map"));
    waitUntil([&] { return map().isShown(); });
    std::ignore = window_->window()->grabWindow();
    constexpr double kFirst = 150;
    double const first = wallMs() - begun;
    std::printf("%-34s %5.1f ms by the clock, %5.1f of processor time%s\n", "the first map", first,
                workedMs() - worked, first > kFirst ? "  over the limit" : "");
    waitUntil([&] { return map().hasSettled() && !map().pictures().empty(); });
    std::ignore = window_->window()->grabWindow();
    std::printf("%-34s %5.1f ms by the clock\n", "the same with its radar", wallMs() - begun);
  }

  /// What the page has added to the process since it was opened.
  void weigh() const {
    constexpr double kPage = 64;
    double const more = residentMB() - residentMB_;
    std::printf("%-34s %5.1f MB%s\n", "memory of the page", more, more > kPage ? "  over the limit" : "");
  }

  void pan(double zoom) {
    anotherMinute();
    map().setHomeZoom(zoom);
    if (!waitUntil([&] { return map().hasSettled(); })) std::puts("the radar did not come");
    std::vector<double> times;
    for (int i = 0; i < 200; ++i) {
      double const begun = workedMs();
      map().drag(i % 100 < 50 ? 9 : -9, i % 40 < 20 ? 3 : -3);
      std::ignore = window_->window()->grabWindow();
      times.push_back(workedMs() - begun);
    }
    constexpr double kFrame = 33;
    print("a frame while panned, zoom " + std::to_string(static_cast<int>(zoom)), times, kFrame);
  }

  void play() {
    anotherMinute();
    map().setHomeZoom(7);
    waitUntil([&] { return map().hasSettled(); });
    radar().step(-1);
    waitUntil([&] { return radar().view()->value(QStringLiteral("loaded")).toInt() == 4; });
    std::vector<double> times;
    for (int i = 0; i < 60; ++i) {
      double const begun = workedMs();
      radar().choose(i % 4);
      std::ignore = window_->window()->grabWindow();
      times.push_back(workedMs() - begun);
    }
    constexpr double kChange = 50;
    print("a change of the radar's picture", times, kChange);
  }

 private:
  /// Of a host's sixty requests.
  void anotherMinute() { hosts_.clock.advance(std::chrono::minutes(1)); }
  MapModel& map() { return *model_->map(); }
  RadarModel& radar() { return *map().radar(); }

  static double residentMB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    }
    return 0;
  }

  double residentMB_ = 0;
  RadarHosts hosts_;
  std::optional<DesktopModel> model_;
  std::optional<DesktopWindow> window_;
};

}  // namespace

int main(int count, char** arguments) try {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  QGuiApplication const application(count, arguments);
  MapBench bench;
  bench.open();
  bench.weigh();
  for (double const zoom : {3.0, 6.0, 9.0, 12.0}) bench.pan(zoom);
  bench.play();
  bench.weigh();
} catch (std::exception const& error) {
  std::fputs(error.what(), stderr);
  return 1;
}
