#include "cli/command_line.h"

#include "app/service_directory.h"
#include "app/version.h"
#include "base/text.h"
#include "base/texts.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace nimbara {

namespace {

constexpr int kUsage = 2;

EarlyEnd mistake(std::string const& sentence) {
  return {kUsage, sentence};
}

template <class E>
std::string namesOf() {
  std::string list;
  for (std::string_view const name : enumNames<E>) list += (list.empty() ? "" : ", ") + std::string(name);
  return list;
}

/// The texts of the command line before they are understood.
struct RawOptions {
  std::string services;
  std::string now;
  std::string units;
  std::string language;
  std::string provider;
  std::vector<std::string> faults;
};

void defineCommon(CLI::App& app, CommandLine& line, RawOptions& raw) {
  app.add_option("--services", raw.services,
                 "Reach every outside service below this base address (NIMBARA_SERVICES)")
      ->type_name("URL");
  app.add_option("--now", raw.now, "Take this moment for now, for example 2026-11-21T06:00:00Z (NIMBARA_NOW)")
      ->type_name("TIME");
  app.add_option("--units", raw.units, "metric or imperial")->type_name("SYSTEM");
  app.add_option("--lang", raw.language, "Language of the texts: en, pt or zh")->type_name("CODE");
  app.add_flag("-v,--verbose", line.common.verbose, "Tell on standard error what is done");
}

void defineForecast(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand("forecast", "The forecast of a place for seven days");
  ForecastOptions& options = line.forecast;
  command->add_option("PLACE", options.place, "LAT,LON in decimal degrees, or a name to search for");
  command->add_option("--provider", raw.provider, "automatic, appleWeather, openMeteo, yrNo or wttrIn")
      ->type_name("NAME");
  command->add_flag("--no-cache", options.noCache, "Ask the provider even when a recent answer is kept");
  command->add_flag("--json", options.json, "One JSON document instead of text");
  command->add_flag("--raw", options.raw, "The provider's answer as the interchange record, in JSON");
  command->add_flag("--ascii", options.ascii, "Plain ASCII, for terminals and files that show nothing else");
  command->add_option("--width", options.width, "Cells a line (40 to 140) instead of the terminal's")
      ->type_name("N")
      ->check(CLI::Range(40, 140));
  command->add_flag("--demo-if-offline", options.demoIfOffline,
                    "Without network show generated demo weather, and say so");
  defineCommon(*command, line, raw);
  command->callback([&line] { line.command = CommandLine::Command::forecast; });
}

void defineDemo(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command =
      app.add_subcommand("demo", "Loopback stand-ins of the outside services, with generated weather");
  DemoOptions& options = line.demo;
  command->add_option("--port", options.port, "Port on 127.0.0.1; a free one by default")
      ->type_name("N")
      ->check(CLI::Range(0, 65535));
  command
      ->add_option("--fail", raw.faults,
                   "SERVICE=500|timeout|garbage|drop: let a service misbehave; may be given several times. "
                   "Services: " +
                       namesOf<DemoService>())
      ->type_name("FAULT")
      ->allow_extra_args(false);
  command->add_option("COMMAND", options.command,
                      "After --: a command to run against the demo, which then stops");
  defineCommon(*command, line, raw);
  command->callback([&line] { line.command = CommandLine::Command::demo; });
}

CLI::App* definePlacesAction(CLI::App& command, char const* name, char const* explanation,
                             PlacesOptions::Action action, CommandLine& line, RawOptions& raw) {
  CLI::App* const sub = command.add_subcommand(name, explanation);
  sub->add_flag("--json", line.places.json, "One JSON document: the places after the change");
  defineCommon(*sub, line, raw);
  sub->callback([&line, action] {
    line.command = CommandLine::Command::places;
    line.places.action = action;
  });
  return sub;
}

/// PLACE, or --here in its stead.
void definePlaceOrHere(CLI::App& sub, PlacesOptions& options, char const* place, char const* here) {
  CLI::Option_group* const group = sub.add_option_group("place");
  group->add_option("PLACE", options.place, place);
  group->add_flag("--here", options.here, here);
  group->require_option(1);
}

void definePlaces(CLI::App& app, CommandLine& line, RawOptions& raw) {
  using Action = PlacesOptions::Action;
  CLI::App* const command = app.add_subcommand("places", "Your saved places and the selected one");
  command->require_subcommand(1);
  PlacesOptions& options = line.places;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    return definePlacesAction(*command, name, explanation, action, line, raw);
  };
  constexpr char kSaved[] = "A saved place's name, its beginning or its identifier";
  constexpr char kOnline[] = "Ask the geocoding service";
  define("list", "The saved places; * marks the selected one", Action::list);
  CLI::App* const add = define("add", "Save a place", Action::add);
  definePlaceOrHere(*add, options, "LAT,LON in decimal degrees, or a name to search for",
                    "The place where you are now, from the desktop's location service");
  add->add_option("--name", options.name, "How it shall be called")->type_name("N");
  add->add_flag("--online", options.online, kOnline);
  CLI::App* const remove = define("remove", "Forget a place", Action::remove);
  definePlaceOrHere(*remove, options, kSaved, "The current location");
  CLI::App* const rename = define("rename", "Call a place something else", Action::rename);
  rename->add_option("PLACE", options.place, kSaved)->required();
  rename->add_option("NAME", options.name, "Its new name")->required();
  CLI::App* const move = define("move", "Put a place elsewhere in the list", Action::move);
  move->add_option("PLACE", options.place, kSaved)->required();
  move->add_option("POSITION", options.position, "Counted from 1")->required();
  CLI::App* const select =
      define("select", "Make a place the one that is meant without naming any", Action::select);
  definePlaceOrHere(*select, options, kSaved, "Wherever you are, from the desktop's location service");
  CLI::App* const search = define("search", "Look a name up", Action::search);
  search->add_option("TEXT", options.place, "The name")->required();
  search->add_flag("--online", options.online, kOnline);
}

void defineSettings(CLI::App& app, CommandLine& line, RawOptions& raw) {
  using Action = SettingsOptions::Action;
  CLI::App* const command = app.add_subcommand("settings", "What you have chosen: units, language, services");
  command->require_subcommand(1);
  SettingsOptions& options = line.settings;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    CLI::App* const sub = command->add_subcommand(name, explanation);
    if (action != Action::list) sub->add_option("KEY", options.key, "The setting's name")->required();
    if (action == Action::set) sub->add_option("VALUE", options.value, "Its new value")->required();
    sub->add_flag("--json", options.json, "One JSON document instead of text");
    defineCommon(*sub, line, raw);
    sub->callback([&line, action] {
      line.command = CommandLine::Command::settings;
      line.settings.action = action;
    });
  };
  define("list", "Every setting with its value; * marks what you have chosen", Action::list);
  define("get", "One setting's value", Action::get);
  define("set", "Choose a value", Action::set);
  define("reset", "Go back to the default", Action::reset);
}

std::optional<EarlyEnd> understandCommon(CommonOptions& common, RawOptions const& raw,
                                         Environment const& environment) {
  std::string const& services = raw.services.empty() ? environment.services : raw.services;
  if (!services.empty()) {
    auto const base = normalizedBase(services);
    if (!base)
      return mistake("'" + oneLine(services) + "' is no base address; write one like http://127.0.0.1:8080");
    common.services = *base;
  }
  std::string const& now = raw.now.empty() ? environment.now : raw.now;
  if (!now.empty()) {
    common.now = parseIso8601(now);
    if (!common.now) {
      return mistake("'" + oneLine(now) + "' is no moment with a zone; write one like 2026-11-21T06:00:00Z");
    }
  }
  common.unitsGiven = !raw.units.empty();
  if (raw.units == "imperial") {
    common.units = Units::imperial();
  } else if (!raw.units.empty() && raw.units != "metric") {
    return mistake("'" + oneLine(raw.units) + "' is no system of units; choose metric or imperial");
  }
  if (!raw.language.empty() && !Texts::has(raw.language)) {
    return mistake("there are no texts in the language '" + oneLine(raw.language) + "'; choose en, pt or zh");
  }
  common.language = raw.language;
  return std::nullopt;
}

std::optional<EarlyEnd> understandCommand(CommandLine& line, RawOptions const& raw) {
  line.forecast.providerGiven = !raw.provider.empty();
  auto const provider = enumFromName<WeatherProviderOption>(
      line.forecast.providerGiven ? std::string_view(raw.provider) : "automatic");
  if (!provider) {
    return mistake("'" + oneLine(raw.provider) + "' is no provider; choose one of " +
                   namesOf<WeatherProviderOption>());
  }
  line.forecast.provider = *provider;
  for (std::string const& text : raw.faults) {
    auto const fault = parseDemoFault(text);
    if (!fault) return mistake(fault.error());
    line.demo.faults.push_back(*fault);
  }
  return std::nullopt;
}

/// The parser's own sentences, on one line.
EarlyEnd endOf(CLI::App const& app, CLI::ParseError const& error) {
  if (dynamic_cast<CLI::CallForVersion const*>(&error) != nullptr) {
    return {0, "nimbara " + std::string(kVersion) + "\n"};
  }
  if (error.get_exit_code() == 0) {
    return {0, app.help()};
  }
  std::string sentence = oneLine(error.what());
  if (sentence.ends_with('.')) sentence.pop_back();
  return mistake(sentence + "; see nimbara --help");
}

}  // namespace

Result<CommandLine, EarlyEnd> parseCommandLine(std::vector<std::string> arguments,
                                               Environment const& environment) {
  CommandLine line;
  RawOptions raw;
  CLI::App app("Nimbara: the weather of your places, from public services, honest about what is known",
               "nimbara");
  app.set_version_flag("--version", std::string(kVersion), "Print the version");
  app.require_subcommand(0, 1);
  app.footer(
      "Results go to standard output, everything else to standard error.\n"
      "Exit codes: 0 complete, 1 not to be had, 2 wrong command line, 130 interrupted.");
  defineCommon(app, line, raw);
  defineForecast(app, line, raw);
  defineDemo(app, line, raw);
  definePlaces(app, line, raw);
  defineSettings(app, line, raw);
  std::ranges::reverse(arguments);
  try {
    app.parse(arguments);
  } catch (CLI::ParseError const& error) {
    return std::unexpected(endOf(app, error));
  }
  if (app.get_subcommands().empty())
    return std::unexpected(mistake("a command is missing; see nimbara --help"));
  if (auto const end = understandCommon(line.common, raw, environment)) return std::unexpected(*end);
  if (auto const end = understandCommand(line, raw)) return std::unexpected(*end);
  return line;
}

}  // namespace nimbara
