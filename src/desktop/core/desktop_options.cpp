#include "desktop/core/desktop_options.h"

#include "app/options/command.h"
#include "app/places/place.h"
#include "app/version.h"
#include "base/text/number.h"
#include "desktop/views/map/map_switches.h"

#include <algorithm>

namespace nimbara {

namespace {

struct RawDesktopOptions {
  std::string now;
  std::string page;
  std::string theme;
  std::string size;
  std::string globe;
  std::string zoom;
};

void define(Command app, DesktopOptions& options, RawDesktopOptions& raw) {
  app.flag("--demo", options.demo,
           "Show generated weather for a few places; your own data is neither read nor changed");
  app.option("--services", options.services, "Use this base address for every service").called("URL");
  app.option("--now", raw.now, "Pretend it is this time, for example 2026-11-21T09:20:00Z").called("TIME");
  app.option("--page", raw.page, "The page to open").among(enumNames<DesktopPage>);
  app.option("--place", options.place, "The place to show: LAT,LON, a saved place or a city").called("PLACE");
  app.flag("--refresh", options.refresh, "Refresh now");
  app.option("--theme", raw.theme, "The appearance; from the settings by default")
      .among(enumNames<DesktopTheme>);
  app.option("--size", raw.size, "Size of the window, for example 1280x800").called("WxH");
  app.option("--globe", raw.globe, "How the globe is drawn; by the graphics card if there is one by default")
      .among(enumNames<DesktopGlobe>);
  app.option("--zoom", raw.zoom, "How near the map begins, 2 (the world) to 12 (a town)").called("NUMBER");
  app.option("--layers", options.layers, "What the map shows in this run, for example radar,temperature")
      .called("NAMES");
  app.option("--screenshot", options.screenshot, "Save a picture of the page and quit").called("FILE");
}

Result<void, std::string> understand(DesktopOptions& options, RawDesktopOptions const& raw) {
  if (!raw.now.empty()) {
    options.now = parseIso8601(raw.now);
    if (!options.now) return std::unexpected("not a timestamp with a time zone: '" + raw.now + "'");
  }
  if (!raw.size.empty()) {
    auto const size = parseWindowSize(raw.size);
    if (!size) return std::unexpected("not a size like 1280x800: '" + raw.size + "'");
    options.size = size;
  }
  if (!raw.zoom.empty()) {
    options.zoom = parseDouble(raw.zoom);
    if (!options.zoom || !(*options.zoom >= 2 && *options.zoom <= 12))
      return std::unexpected("not a zoom from 2 to 12: '" + raw.zoom + "'");
  }
  if (std::string_view const unknown = unknownLayer(options.layers);
      !options.layers.empty() && !unknown.empty())
    return std::unexpected("the map has no layer '" + std::string(unknown) + "', only " + mapLayerNames());
  if (auto const place = parsePlace(options.place); !options.place.empty() && !place)
    return std::unexpected(place.error());
  options.page = enumFromName<DesktopPage>(raw.page);
  options.theme = enumFromName<DesktopTheme>(raw.theme);
  options.globe = enumFromName<DesktopGlobe>(raw.globe).value_or(DesktopGlobe::automatic);
  return {};
}

/// A session that is restored starts the program with the name under which it was saved, for the toolkit.
void removeSession(std::vector<std::string>& arguments) {
  auto const session = std::ranges::find(arguments, "-session");
  auto const rest = std::min(std::distance(session, arguments.end()), std::ptrdiff_t{2});
  arguments.erase(session, session + rest);
}

}  // namespace

std::optional<WindowSize> parseWindowSize(std::string_view text) {
  constexpr int kLeast = 200, kMost = 8000;
  auto const cross = text.find('x');
  if (cross == std::string_view::npos) return std::nullopt;
  auto const width = parseInteger(text.substr(0, cross));
  auto const height = parseInteger(text.substr(cross + 1));
  auto const fits = [](std::optional<int> side) { return side && *side >= kLeast && *side <= kMost; };
  if (!fits(width) || !fits(height)) return std::nullopt;
  return WindowSize{*width, *height};
}

Result<DesktopOptions, DesktopEarlyEnd> parseDesktopOptions(std::vector<std::string> arguments,
                                                            Environment const& environment) {
  DesktopOptions options;
  options.services = environment.services;
  RawDesktopOptions raw{environment.now, {}, {}, {}, {}, {}};
  CommandParser parser("The weather for your places, in a window", "nimbara-desktop",
                       "nimbara-desktop " + std::string(kVersion) + "\n", "Display program version");
  define(parser.root(), options, raw);
  removeSession(arguments);
  if (auto const parsed = parser.parse(std::move(arguments)); !parsed) {
    bool const isMistake = parsed.error().reason == ParseEnd::Reason::mistake;
    return std::unexpected(DesktopEarlyEnd{isMistake ? 2 : 0, parsed.error().text});
  }
  if (auto const done = understand(options, raw); !done) {
    return std::unexpected(DesktopEarlyEnd{2, done.error()});
  }
  return options;
}

}  // namespace nimbara
