#include "cli/command_line.h"

#include "app/settings/service_directory.h"
#include "app/version.h"
#include "base/text/text.h"
#include "base/words/texts.h"
#include "cli/options/command_definitions.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr int kUsage = 2;

EarlyEnd mistake(std::string const& sentence) {
  return {kUsage, sentence};
}

std::optional<EarlyEnd> understandCommon(CommonOptions& common, RawOptions const& raw,
                                         Environment const& environment) {
  std::string const& services = raw.services.empty() ? environment.services : raw.services;
  if (!services.empty()) {
    auto const base = normalizedBase(services);
    if (!base)
      return mistake("'" + oneLine(services) + "' is not a base address; use one like http://127.0.0.1:8080");
    common.services = *base;
  }
  std::string const& now = raw.now.empty() ? environment.now : raw.now;
  if (!now.empty()) {
    common.now = parseIso8601(now);
    if (!common.now) {
      return mistake("'" + oneLine(now) +
                     "' is not a timestamp with a time zone; use one like 2026-11-21T06:00:00Z");
    }
  }
  common.unitsGiven = !raw.units.empty();
  if (raw.units == "imperial") {
    common.units = Units::imperial();
  } else if (!raw.units.empty() && raw.units != "metric") {
    return mistake("'" + oneLine(raw.units) + "' is not a unit system; choose metric or imperial");
  }
  if (!raw.language.empty() && !Texts::has(raw.language)) {
    return mistake("there are no texts in the language '" + oneLine(raw.language) + "'; choose " +
                   Texts::languageList());
  }
  common.language = raw.language;
  return std::nullopt;
}

std::optional<EarlyEnd> understandCommand(CommandLine& line, RawOptions const& raw) {
  line.forecast.providerGiven = !raw.provider.empty();
  auto const provider = enumFromName<WeatherProviderOption>(
      line.forecast.providerGiven ? std::string_view(raw.provider) : "automatic");
  if (!provider) {
    return mistake("'" + oneLine(raw.provider) + "' is not a provider; choose one of " +
                   namesOf<WeatherProviderOption>());
  }
  line.forecast.provider = *provider;
  if (!raw.sources.empty()) line.alerts.sources = {};
  for (std::string_view const name :
       raw.sources.empty() ? std::vector<std::string_view>{} : split(raw.sources, ',')) {
    auto const source = enumFromName<AlertSource>(trimmed(name));
    if (!source) {
      return mistake("'" + oneLine(name) + "' is not a source of alerts; choose from " +
                     namesOf<AlertSource>());
    }
    line.alerts.sources.insert(*source);
  }
  for (std::string const& text : raw.faults) {
    auto const fault = parseDemoFault(text);
    if (!fault) return mistake(fault.error());
    line.demo.faults.push_back(*fault);
  }
  return std::nullopt;
}

/// The parser's own sentences, on one line.
EarlyEnd earlyEnd(ParseEnd const& end) {
  if (end.reason != ParseEnd::Reason::mistake) return {0, end.text};
  std::string sentence = oneLine(end.text);
  if (sentence.ends_with('?')) return mistake(sentence + " See nimbara --help");
  if (sentence.ends_with('.')) sentence.pop_back();
  return mistake(sentence + "; see nimbara --help");
}

}  // namespace

void defineCommon(Command command, CommandLine& line, RawOptions& raw) {
  command.option("--services", raw.services, "Use this base address for every service (NIMBARA_SERVICES)")
      .called("URL");
  command.option("--now", raw.now, "Pretend it is this time, for example 2026-11-21T06:00:00Z (NIMBARA_NOW)")
      .called("TIME");
  command.option("--units", raw.units, "metric or imperial").called("SYSTEM");
  command.option("--lang", raw.language, "Language: " + Texts::languageList()).called("CODE");
  command.flag("-v,--verbose", line.common.verbose, "Log what happens to standard error");
}

namespace {

CommandParser makeParser(CommandLine& line, RawOptions& raw) {
  CommandParser parser("Nimbara: the weather for your places, from public services", "nimbara",
                       "nimbara " + std::string(kVersion) + "\n", "Print the version");
  parser.footer(
      "Results go to standard output, everything else to standard error.\n"
      "Exit codes: 0 complete, 1 unavailable, 2 wrong command line, 130 interrupted.");
  Command const app = parser.root();
  app.requireCommands(0, 1);
  defineCommon(app, line, raw);
  defineWeather(app, line, raw);
  defineFeeds(app, line, raw);
  definePlaces(app, line, raw);
  defineSettings(app, line, raw);
  defineUserData(app, line, raw);
  defineRules(app, line, raw);
  defineSatellites(app, line, raw);
  defineNotifications(app, line, raw);
  defineService(app, line, raw);
  defineStations(app, line, raw);
  defineRegions(app, line, raw);
  defineShell(app, line);
  return parser;
}

}  // namespace

CommandOutline commandOutline() {
  CommandLine line;
  RawOptions raw;
  return makeParser(line, raw).outline();
}

Result<CommandLine, EarlyEnd> parseCommandLine(std::vector<std::string> arguments,
                                               Environment const& environment) {
  CommandLine line;
  RawOptions raw;
  CommandParser parser = makeParser(line, raw);
  if (auto const parsed = parser.parse(std::move(arguments)); !parsed) {
    return std::unexpected(earlyEnd(parsed.error()));
  }
  if (!parser.hasCommand()) return std::unexpected(mistake("no command given; see nimbara --help"));
  if (auto const end = understandCommon(line.common, raw, environment)) return std::unexpected(*end);
  if (auto const end = understandCommand(line, raw)) return std::unexpected(*end);
  return line;
}

}  // namespace nimbara
