// How long the window's thread is busy at one go, at worst: the longest single event while data of every kind
// arrive on every page, and while each page is turned to. Offscreen with software rendering, whose frames are
// drawn on that same thread, so that drawing is counted. Processor time of the thread, which a busy machine
// leaves alone. The limit is 50 ms: what takes longer is felt.
//
//   desktop_stalls [STATE...]     all states and the globe, or those that are named
#include "desktop/globe/globe_states.h"
#include "desktop/states/page_states.h"
#include "desktop/window/desktop_window.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace nimbara;
using namespace nimbara::test;

constexpr double kLimitMs = 50;

/// Processor time of this thread so far.
double workedMs() {
  timespec time;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Measures what the toolkit hands out, from outside.
class MeasuredApplication : public QGuiApplication {
 public:
  using QGuiApplication::QGuiApplication;
  bool notify(QObject* receiver, QEvent* event) override {
    if (std::exchange(isWithin_, true)) return QGuiApplication::notify(receiver, event);
    double const begun = workedMs();
    bool const isDone = QGuiApplication::notify(receiver, event);
    longest_ = std::max(longest_, workedMs() - begun);
    isWithin_ = false;
    return isDone;
  }
  /// Milliseconds of the longest event from now on, over the span within which the page comes to rest.
  template <class Change>
  double longestAfter(Change const& change) {
    constexpr int kRestMs = 350;
    longest_ = 0;
    QMetaObject::invokeMethod(this, change, Qt::QueuedConnection);
    QEventLoop loop;
    QTimer::singleShot(kRestMs, &loop, &QEventLoop::quit);
    loop.exec();
    return longest_;
  }

 private:
  bool isWithin_ = false;
  double longest_ = 0;
};

struct Worst {
  double ms = 0;
  std::string_view page;
  void take(double other, std::string_view where) {
    if (other > ms) *this = {other, where};
  }
};

void print(char const* state, char const* what, Worst const& worst) {
  std::printf("%-18s %-14s %6.1f ms  on %.*s%s\n", state, what, worst.ms, static_cast<int>(worst.page.size()),
              worst.page.data(), worst.ms > kLimitMs ? "  over the limit" : "");
}

void measure(MeasuredApplication& application, StateRow const& row) {
  Worst opened;
  Worst arrived;
  Worst turned;
  for (DesktopPage const page : everyPage()) {
    DesktopModel model({Wording(), {}, [] { return kNow; }, {}}, {});
    model.show(snapshotOf(stateOf(mildWeek())));
    DesktopOptions options;
    options.size = WindowSize{1280, 800};
    DesktopWindow const window(model, options);
    application.longestAfter([] {});
    auto const turnTo = [&](DesktopPage other) {
      return application.longestAfter(
          [&] { window.window()->setProperty("page", viewName(enumName(other))); });
    };
    auto const full = row.snapshot();
    opened.take(turnTo(page), enumName(page));
    arrived.take(application.longestAfter([&] { model.show(full); }), enumName(page));
    turnTo(DesktopPage::now);
    turned.take(turnTo(page), enumName(page));
  }
  print(row.name, "page opened", opened);
  print(row.name, "data arrive", arrived);
  print(row.name, "page turned to", turned);
}

/// The painted globe with as many points as there are satellites in use.
void measureGlobe(MeasuredApplication& application, WindowSize size) {
  struct Globe : GlobeActions {
    std::shared_ptr<GlobeState const> tick() override { return state; }
    std::shared_ptr<GlobeState const> state = crowdedGlobe();
  } globe;
  DesktopModel model({Wording(), {}, [] { return kNow; }, {}}, {.globe = &globe});
  model.show(snapshotOf(stateOf(mildWeek())));
  DesktopOptions options;
  options.size = size;
  DesktopWindow const window(model, options);
  application.longestAfter([] {});
  std::string const name = "globe " + std::to_string(size.width) + "x" + std::to_string(size.height);
  auto const show = [&](char const* what, auto const& change) {
    Worst worst;
    worst.take(application.longestAfter(change), "globe");
    print(name.c_str(), what, worst);
  };
  show("page opened", [&] { window.window()->setProperty("page", QStringLiteral("globe")); });
  while (model.globe()->earth().isNull()) application.longestAfter([] {});
  show("data arrive", [&] { model.globe()->refresh(); });
  show("turned", [&] { model.globe()->turn(5, 5); });
  show("brought close", [&] { model.globe()->zoom(4); });
}

}  // namespace

int main(int count, char** arguments) try {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  MeasuredApplication application(count, arguments);
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  std::vector<std::string_view> const wanted(arguments + 1, arguments + count);
  auto const isWanted = [&](std::string_view what) {
    return wanted.empty() || std::ranges::find(wanted, what) != wanted.end();
  };
  if (isWanted("globe")) {
    for (WindowSize const size : {WindowSize{360, 640}, {1280, 800}, {2560, 1440}})
      measureGlobe(application, size);
  }
  for (StateRow const& row : kStates) {
    if (isWanted(row.name)) measure(application, row);
  }
} catch (std::exception const& error) {
  std::fputs(error.what(), stderr);
  return 1;
}
