#include "desktop/views/tray_view.h"

namespace nimbara {

namespace {

std::string summaryOf(NowView const& now, ViewContext const& context) {
  if (!now.hasPlace) return context.text("desktop.places.none");
  if (!now.hasReading) {
    return now.place + ": " + context.text(now.isLoading ? "desktop.loading" : "desktop.noWeather");
  }
  std::string line = now.place + ": " + now.temperature + ", " + now.condition;
  if (!now.sentence.empty()) line += ". " + now.sentence;
  return line;
}

}  // namespace

TrayView trayView(NowView const& now, ViewContext const& context) {
  TrayView view{now.hasReading ? now.temperature : "",
                now.sky.empty() ? "unknown" : now.sky,
                now.isDay,
                now.skyTop,
                now.skyBottom,
                summaryOf(now, context),
                {}};
  view.menu = {{"summary", view.summary, false},
               {},
               {kTrayShow, context.text("desktop.tray.show"), true},
               {kTrayRefresh, context.text("desktop.refresh"), now.hasPlace},
               {},
               {kTrayQuit, context.text("desktop.tray.quit"), true}};
  return view;
}

}  // namespace nimbara
