// The tray's picture, line and menu as display values. Pure, of the page of the present.
#pragma once

#include "desktop/views/now/now_view.h"
#include "model/warnings/weather_alert.h"
#include "platform/session/tray.h"

#include <string>
#include <vector>

namespace nimbara {

/// The menu's keys.
inline constexpr char kTrayShow[] = "show";
inline constexpr char kTrayRefresh[] = "refresh";
inline constexpr char kTrayQuit[] = "quit";

struct TrayView {
  std::string temperature;  ///< "14°"; empty when it is unknown
  std::string sky;          ///< the picture in its place
  bool isDay = true;
  std::string skyTop;  ///< colours behind it
  std::string skyBottom;
  std::string mark;     ///< how severe the official warning in force is; empty where none is to be marked
  std::string summary;  ///< the present and the warnings, in one line
  std::vector<TrayMenuItem> menu;

  bool operator==(TrayView const&) const = default;
};

/// `warnings` says what is known of the official ones; may be empty.
TrayView trayView(NowView const& now, std::string const& warnings, ViewContext const& context);

/// The name of the greatest severity among the official warnings that are in force, empty without one.
std::string trayMark(std::vector<WeatherAlert> const& official, Instant now);

}  // namespace nimbara
