#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

constexpr char kPlace[] = "LAT,LON in decimal degrees, a saved place's name, or a name to search for";
constexpr char kJson[] = "One JSON document instead of text";

void defineForecast(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand("forecast", "The seven-day forecast for a place");
  ForecastOptions& options = line.forecast;
  command->add_option("PLACE", options.place, kPlace);
  command->add_option("--provider", raw.provider, "automatic, appleWeather, openMeteo, yrNo or wttrIn")
      ->type_name("NAME");
  command->add_flag("--no-cache", options.noCache, "Fetch a new forecast even if a recent one is cached");
  command->add_flag("--json", options.json, kJson);
  command->add_flag("--raw", options.raw, "The provider's response as the interchange record, in JSON");
  command->add_flag("--ascii", options.ascii, "Plain ASCII only");
  command->add_option("--width", options.width, "Line width (40 to 140) instead of the terminal's")
      ->type_name("N")
      ->check(CLI::Range(40, 140));
  command->add_flag("--demo-if-offline", options.demoIfOffline,
                    "When offline, show generated demo weather, clearly marked");
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runForecast; });
}

void defineAlerts(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand("alerts", "Warnings for a place, the most severe first");
  AlertsOptions& options = line.alerts;
  command->add_option("PLACE", options.place, kPlace);
  command->add_option("--source", raw.sources, "Comma-separated: generated, nws, meteoalarm (default: all)")
      ->type_name("LIST");
  defineStatedRegions(*command, options.stated);
  command->add_flag("--coverage", options.coverage, "With --json, add the state of each official source");
  command->add_flag("--json", options.json, kJson);
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runAlerts; });
}

void defineCoverage(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand(
      "coverage", "The state of official warnings for a place: in effect, none, not checked, or no source");
  AlertsOptions& options = line.alerts;
  command->add_option("PLACE", options.place, kPlace);
  defineStatedRegions(*command, options.stated);
  command->add_flag("--json", options.json, kJson);
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runCoverage; });
}

void defineLine(CLI::App& app, CommandLine& line, RawOptions& raw) {
  LineOptions& options = line.line;
  auto const define = [&](char const* name, char const* explanation, auto run) {
    CLI::App* const command = app.add_subcommand(name, explanation);
    command->add_option("PLACE", options.place, kPlace);
    command->add_option("--format", options.format, "Text with {fields}; see nimbara line --help-format")
        ->type_name("TEMPLATE");
    command->add_flag("--fresh", options.fresh, "Fetch a new forecast if the cached one is old");
    defineCommon(*command, line, raw);
    command->callback([&line, run] { line.run = run; });
    return command;
  };
  CLI::App* const text = define("line", "One line of text for a status bar, from the cache", runLine);
  text->add_flag("--help-format", options.helpFormat, "List the fields for --format");
  define("waybar", "Text, tooltip and class for Waybar, from the cache", runWaybar);
}

void defineDoctor(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand(
      "doctor", "Services with their last responses and errors, folders, desktop services");
  command->add_flag("--json", line.doctor.json, kJson);
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runDoctor; });
}

}  // namespace

void defineStatedRegions(CLI::App& command, StatedRegions& stated) {
  command.add_option("--country", stated.country, "The place's country, overriding the gazetteer")
      ->type_name("CC")
      ->check(countryCodeProblem);
  command.add_option("--region", stated.codes, "A code of the place's region; may be repeated")
      ->type_name("CODE")
      ->allow_extra_args(false);
  command.add_option("--region-name", stated.names, "A name of the place's region; may be repeated")
      ->type_name("NAME")
      ->allow_extra_args(false);
}

void defineWeather(CLI::App& app, CommandLine& line, RawOptions& raw) {
  defineForecast(app, line, raw);
  defineAlerts(app, line, raw);
  defineCoverage(app, line, raw);
  defineLine(app, line, raw);
  defineDoctor(app, line, raw);
}

}  // namespace nimbara
