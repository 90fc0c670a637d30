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

TrayView trayView(NowView const& now, std::string const& warnings, ViewContext const& context) {
  TrayView view{now.hasReading ? now.temperature : "",
                now.sky.empty() ? "unknown" : now.sky,
                now.isDay,
                now.skyTop,
                now.skyBottom,
                {},
                summaryOf(now, context),
                {}};
  view.menu = {{"summary", view.summary, false}};
  if (!warnings.empty()) {
    view.menu.push_back({"warnings", warnings, false});
    view.summary += (view.summary.ends_with('.') ? " " : ". ") + warnings;
  }
  std::vector<TrayMenuItem> const commands = {{},
                                              {kTrayShow, context.text("desktop.tray.show"), true},
                                              {kTrayRefresh, context.text("desktop.refresh"), now.hasPlace},
                                              {},
                                              {kTrayQuit, context.text("desktop.tray.quit"), true}};
  view.menu.insert(view.menu.end(), commands.begin(), commands.end());
  return view;
}

std::string trayMark(std::vector<WeatherAlert> const& official, Instant now) {
  WeatherAlert const* severest = nullptr;
  for (WeatherAlert const& alert : official) {
    bool const isInForce = alert.onset.value_or(now) <= now && (!alert.expires || *alert.expires > now);
    if (isInForce && (severest == nullptr || alert.severity > severest->severity)) severest = &alert;
  }
  return severest == nullptr ? "" : std::string(enumName(severest->severity));
}

}  // namespace nimbara
