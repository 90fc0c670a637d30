// The definitions of the commands: what each takes and what runs it. Known only to the sources that define
// commands and to the command line that puts them together.
#pragma once

#include "app/options/command.h"
#include "cli/cli.h"
#include "cli/command_line.h"

#include <string>
#include <vector>

namespace nimbara {

/// The texts of the command line before they are understood.
struct RawOptions {
  std::string services;
  std::string now;
  std::string units;
  std::string language;
  std::string provider;
  std::string sources;
  std::string size;
  std::vector<std::string> faults;
};

/// "automatic, openMeteo, …".
template <class E>
std::string namesOf() {
  std::string list;
  for (std::string_view const name : enumNames<E>) list += (list.empty() ? "" : ", ") + std::string(name);
  return list;
}

/// Why a text is no country code; empty for two letters.
std::string countryCodeProblem(std::string const& text);

/// What every command takes.
void defineCommon(Command command, CommandLine& line, RawOptions& raw);

/// --country, --region and --region-name.
void defineStatedRegions(Command command, StatedRegions& stated);

void defineWeather(Command app, CommandLine& line, RawOptions& raw);
void defineFeeds(Command app, CommandLine& line, RawOptions& raw);
void defineNotifications(Command app, CommandLine& line, RawOptions& raw);
void defineService(Command app, CommandLine& line, RawOptions& raw);
void defineSatellites(Command app, CommandLine& line, RawOptions& raw);
void definePlaces(Command app, CommandLine& line, RawOptions& raw);
void defineRules(Command app, CommandLine& line, RawOptions& raw);
void defineStations(Command app, CommandLine& line, RawOptions& raw);
void defineRegions(Command app, CommandLine& line, RawOptions& raw);
void defineSettings(Command app, CommandLine& line, RawOptions& raw);
void defineUserData(Command app, CommandLine& line, RawOptions& raw);
void defineShell(Command app, CommandLine& line);

}  // namespace nimbara
