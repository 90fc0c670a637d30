// The desktop program's command line as values.
#pragma once

#include "app/settings/environment.h"
#include "base/enum_names.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

enum class DesktopPage {
  now,
  hours,
  hazards,
  map,
  air,
  globe,
  places,
  notifications,
  settings,
  sources,
  station
};
template <>
inline constexpr auto enumNames<DesktopPage> =
    std::to_array<std::string_view>({"now", "hours", "hazards", "map", "air", "globe", "places",
                                     "notifications", "settings", "sources", "station"});
static_assert(enumNamesComplete(DesktopPage::station));

enum class DesktopTheme { system, light, dark };
template <>
inline constexpr auto enumNames<DesktopTheme> = std::to_array<std::string_view>({"system", "light", "dark"});
static_assert(enumNamesComplete(DesktopTheme::dark));

/// How the globe is drawn: by the toolkit's scene in three dimensions, or painted as where there is no
/// graphics card.
enum class DesktopGlobe { automatic, solid, painted };
template <>
inline constexpr auto enumNames<DesktopGlobe> =
    std::to_array<std::string_view>({"automatic", "3d", "painted"});
static_assert(enumNamesComplete(DesktopGlobe::painted));

/// Of the window, in its own pixels.
struct WindowSize {
  int width = 1100;
  int height = 760;

  bool operator==(WindowSize const&) const = default;
};

struct DesktopOptions {
  bool demo = false;
  std::string services;  ///< empty for the services' own hosts
  std::optional<Instant> now;
  std::optional<DesktopPage> page;
  std::optional<DesktopTheme> theme;  ///< in place of the setting
  std::optional<WindowSize> size;
  std::string place;  ///< to show in this run: the name or identifier of a saved one, a coordinate or a city
  bool refresh = false;
  DesktopGlobe globe = DesktopGlobe::automatic;
  std::optional<double> zoom;  ///< with which the map begins
  std::string layers;          ///< that the map shows, separated by commas; empty: as they were left
  std::string screenshot;      ///< the file of the one picture that is asked for; empty for a window

  /// A run that has nothing to do with a window that is open already.
  bool isApart() const { return demo || now || !services.empty() || !screenshot.empty(); }
};

/// Help and version (exit code 0) or a mistake (2, a sentence that names the offending word).
struct DesktopEarlyEnd {
  int exitCode = 0;
  std::string text;
};

Result<DesktopOptions, DesktopEarlyEnd> parseDesktopOptions(std::vector<std::string> arguments,
                                                            Environment const& environment);

/// "1280x800", each side 200 to 8000.
std::optional<WindowSize> parseWindowSize(std::string_view text);

}  // namespace nimbara
