#include "analysis/tips/tip_rules.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

constexpr char kPlace[] = "LAT,LON in decimal degrees, a saved place's name, or a name to search for";
constexpr char kJson[] = "One JSON document instead of text";

std::string providerList() {
  std::string list;
  auto const& names = enumNames<WeatherProviderOption>;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) list += i + 1 == names.size() ? " or " : ", ";
    list += names[i];
  }
  return list;
}

void defineForecast(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command("forecast", "The seven-day forecast for a place");
  ForecastOptions& options = line.forecast;
  command.option("PLACE", options.place, kPlace);
  command.option("--provider", raw.provider, providerList()).called("NAME");
  command.flag("--no-cache", options.noCache, "Fetch a new forecast even if a recent one is cached");
  command.flag("--json", options.json, kJson);
  command.flag("--outlook", options.outlook, "Add the days beyond the forecast, up to 16 in all");
  command.flag("--confidence", options.confidence,
               "Compare with a second forecast service and show how far to trust each day");
  command.flag("--raw", options.raw, "The provider's response as the interchange record, in JSON");
  command.flag("--ascii", options.ascii, "Plain ASCII only");
  command.option("--width", options.width, "Line width (40 to 140) instead of the terminal's")
      .called("N")
      .range(40, 140);
  command.flag("--demo-if-offline", options.demoIfOffline,
               "When offline, show generated demo weather, clearly marked");
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runForecast; });
}

void defineAlerts(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command("alerts", "Warnings for a place, the most severe first");
  AlertsOptions& options = line.alerts;
  command.option("PLACE", options.place, kPlace);
  command
      .option("--source", raw.sources,
              "Comma-separated: " + namesOf<AlertSource>() + " (default: the usual ones of the place)")
      .called("LIST");
  defineStatedRegions(command, options.stated);
  command.flag("--coverage", options.coverage, "With --json, add the state of each official source");
  Option const json = command.flag("--json", options.json, kJson);
  command.flag("--geometry", options.geometry, "With --json, add the area of each warning as GeoJSON")
      .needs(json);
  command.flag("--map", options.map, "Draw the area of each warning on a small map with the place");
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runAlerts; });
}

void defineCoverage(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command(
      "coverage", "The state of official warnings for a place: in effect, none, not checked, or no source");
  AlertsOptions& options = line.alerts;
  command.option("PLACE", options.place, kPlace);
  defineStatedRegions(command, options.stated);
  command.flag("--json", options.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runCoverage; });
}

void defineNowcast(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("nowcast", "Precipitation within the next two hours, from radar or a 15-minute model");
  command.option("PLACE", line.feeds.place, kPlace);
  command.flag("--json", line.feeds.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runNowcast; });
}

void defineBrief(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("brief", "The weather now, today, tonight and tomorrow, in three to five sentences");
  command.option("PLACE", line.feeds.place, kPlace);
  command.flag("--speak", line.feeds.speak, "Read it out, through Speech Dispatcher");
  command.flag("--json", line.feeds.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runBrief; });
}

void defineAdvice(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("advice", "Good hours of the next three days for walking, laundry, stargazing and more");
  command.option("PLACE", line.feeds.place, kPlace);
  command.option("--activity", line.feeds.activity, "This one alone")
      .called("NAME")
      .among(enumNames<Activity>);
  command.flag("--json", line.feeds.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runAdvice; });
}

constexpr int kLeastSide = 100, kGreatestSide = 4096;

struct PictureSize {
  int width, height;
};

/// "800x600".
std::optional<PictureSize> pictureSize(std::string const& text) {
  auto const parts = split(text, 'x');
  if (parts.size() != 2) return std::nullopt;
  auto const width = parseInteger(parts[0]), height = parseInteger(parts[1]);
  auto const fits = [](std::optional<int> side) {
    return side && *side >= kLeastSide && *side <= kGreatestSide;
  };
  return fits(width) && fits(height) ? std::optional(PictureSize{*width, *height}) : std::nullopt;
}

std::string sizeProblem(std::string const& text) {
  return pictureSize(text) ? "" : "'" + oneLine(text) + "' is not a size like 800x600, each side 100 to 4096";
}

void defineRadar(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("radar", "A picture of the rain around a place, as the radar saw it last");
  RadarOptions& options = line.radar;
  command.option("PLACE", options.place, kPlace);
  command.option("--png", options.png, "The file to write").called("FILE").required();
  command.option("--size", raw.size, "Of the picture, 800x600 by default").called("WxH").check(sizeProblem);
  command.option("--zoom", options.zoom, "From 2, a continent, to 12, a town; 7 by default")
      .called("N")
      .range(2, 12);
  command.flag("--json", options.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line, &raw] {
    line.run = runRadar;
    if (auto const size = pictureSize(raw.size))
      std::tie(line.radar.width, line.radar.height) = std::pair(size->width, size->height);
  });
}

void defineLine(Command app, CommandLine& line, RawOptions& raw) {
  LineOptions& options = line.line;
  auto const define = [&](char const* name, char const* explanation, auto run) {
    Command const command = app.command(name, explanation);
    command.option("PLACE", options.place, kPlace);
    command.option("--format", options.format, "Text with {fields}; see nimbara line --help-format")
        .called("TEMPLATE");
    command.flag("--fresh", options.fresh, "Fetch a new forecast if the cached one is old");
    defineCommon(command, line, raw);
    command.whenGiven([&line, run] { line.run = run; });
    return command;
  };
  Command const text = define("line", "One line of text for a status bar, from the cache", runLine);
  text.flag("--help-format", options.helpFormat, "List the fields for --format");
  define("waybar", "Text, tooltip and class for Waybar, from the cache", runWaybar);
}

void defineDoctor(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("doctor", "Services with their last responses and errors, folders, desktop services");
  Option const sources = command.flag("--sources", line.doctor.sources,
                                      "Only where the official warnings of your places come from");
  command.flag("--check", line.doctor.check, "With --sources, check the warnings of all places first")
      .needs(sources);
  command.flag("--json", line.doctor.json, kJson);
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runDoctor; });
}

}  // namespace

void defineStatedRegions(Command command, StatedRegions& stated) {
  command.option("--country", stated.country, "The place's country, overriding the gazetteer")
      .called("CC")
      .check(countryCodeProblem);
  command.option("--region", stated.codes, "A code of the place's region; may be repeated")
      .called("CODE")
      .oneValueEach();
  command.option("--region-name", stated.names, "A name of the place's region; may be repeated")
      .called("NAME")
      .oneValueEach();
}

void defineWeather(Command app, CommandLine& line, RawOptions& raw) {
  defineForecast(app, line, raw);
  defineAlerts(app, line, raw);
  defineCoverage(app, line, raw);
  defineNowcast(app, line, raw);
  defineRadar(app, line, raw);
  defineBrief(app, line, raw);
  defineAdvice(app, line, raw);
  defineLine(app, line, raw);
  defineDoctor(app, line, raw);
}

}  // namespace nimbara
