// What a frame of the painted globe costs while it is turned, with as many points as there are satellites in
// use: processor time of the window's thread, offscreen with software rendering at 1280×800. Twenty-five
// frames a second within 60 % of one core leave 24 ms for a frame. Then whether anything is drawn while
// nothing moves.
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
#include <vector>

namespace {

using namespace nimbara;
using namespace nimbara::test;

constexpr double kFrameMs = 24;

/// Of this thread, or of the whole process.
double workedMs(clockid_t clock = CLOCK_THREAD_CPUTIME_ID) {
  timespec time;
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

void rest(int ms) {
  QEventLoop loop;
  QTimer::singleShot(ms, &loop, &QEventLoop::quit);
  loop.exec();
}

void print(char const* what, std::vector<double> times) {
  std::ranges::sort(times);
  double const middle = times[times.size() / 2], late = times[times.size() * 95 / 100];
  std::printf("%-34s median %5.1f  95th %5.1f  longest %5.1f ms%s\n", what, middle, late, times.back(),
              late > kFrameMs ? "  over the limit" : "");
}

struct CrowdedGlobe : GlobeActions {
  std::shared_ptr<GlobeState const> tick() override { return state; }
  std::shared_ptr<GlobeState const> state = crowdedGlobe();
};

/// Milliseconds of each of `frames` frames, between which `change` moves the camera.
template <class Change>
std::vector<double> framesOf(int frames, DesktopWindow const& window, Change const& change) {
  std::vector<double> times;
  for (int i = 0; i < frames; ++i) {
    double const begun = workedMs();
    change(i);
    std::ignore = window.window()->grabWindow();
    times.push_back(workedMs() - begun);
  }
  return times;
}

void measure() {
  constexpr int kFrames = 200;
  CrowdedGlobe globe;
  DesktopModel model({Wording(), {}, [] { return kNow; }, {}}, {.globe = &globe});
  model.show(snapshotOf(stateOf(mildWeek())));
  DesktopOptions options;
  options.size = WindowSize{1280, 800};
  options.page = DesktopPage::globe;
  DesktopWindow const window(model, options);
  while (model.globe()->earth().isNull()) rest(50);
  print("a frame while turned", framesOf(kFrames, window, [&](int i) {
          model.globe()->drag(i % 100 < 50 ? 9 : -9, i % 40 < 20 ? 3 : -3);
        }));
  model.globe()->zoom(3);
  print("the same, brought close", framesOf(kFrames, window, [&](int) { model.globe()->drag(6, 0); }));
  model.globe()->setShown(false);
  constexpr int kSettleMs = 1000, kStillMs = 10'000;
  rest(kSettleMs);
  double const begun = workedMs(CLOCK_PROCESS_CPUTIME_ID);
  rest(kStillMs);
  std::printf("%-34s %5.2f %% of a core\n", "ten seconds, nothing shown",
              100 * (workedMs(CLOCK_PROCESS_CPUTIME_ID) - begun) / kStillMs);
}

}  // namespace

int main(int count, char** arguments) try {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  QGuiApplication const application(count, arguments);
  measure();
} catch (std::exception const& error) {
  std::fputs(error.what(), stderr);
  return 1;
}
