// The command line as values: what was asked for, or what was wrong with it.
#pragma once

#include "app/options/outline.h"
#include "app/settings/environment.h"
#include "base/result.h"
#include "base/time/hour_clock.h"
#include "base/time/instant.h"
#include "base/units.h"
#include "cli/commands/feed_commands.h"
#include "cli/commands/warnings/regions_command.h"
#include "cli/options/replay_options.h"
#include "cli/options/rules_options.h"
#include "cli/options/satellites_options.h"
#include "cli/options/station_options.h"
#include "demo/demo_process.h"
#include "model/provider_option.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct CommonOptions {
  std::string services;        ///< empty for the services' own hosts
  std::optional<Instant> now;  ///< the moment to take for now
  Units units;
  bool unitsGiven = false;              ///< otherwise the settings' or the region's
  HourClock clock = HourClock::twelve;  ///< the settings' or the locale's
  std::string language;                 ///< empty when not given: the settings' or the environment's
  bool verbose = false;
};

/// Where warnings come from.
enum class AlertSource { generated, nws, meteoalarm, eccc, metalerts, wmo, fpas, brightsky };
template <>
inline constexpr auto enumNames<AlertSource> = std::to_array<std::string_view>(
    {"generated", "nws", "meteoalarm", "eccc", "metalerts", "wmo", "fpas", "brightsky"});
static_assert(enumNamesComplete(AlertSource::brightsky));

struct ForecastOptions {
  std::string place;
  WeatherProviderOption provider = WeatherProviderOption::automatic;
  bool providerGiven = false;  ///< otherwise the settings'
  bool noCache = false;
  bool raw = false;
  bool json = false;
  bool ascii = false;
  bool outlook = false;
  bool confidence = false;
  bool demoIfOffline = false;
  int width = 0;  ///< 0: the terminal's
};

struct PlacesOptions {
  enum class Action { list, add, remove, rename, move, select, search, notify, source };

  Action action = Action::list;
  std::string place;
  std::string name;  ///< or the choice of notifications or of a source of warnings
  int position = 0;
  bool here = false;
  bool online = false;
  bool json = false;
};

struct SettingsOptions {
  enum class Action { list, get, set, reset };

  Action action = Action::list;
  std::string key;
  std::string value;
  bool json = false;
};

/// What a person says of a place instead of what the gazetteer and the outlines say.
struct StatedRegions {
  std::string country;
  std::vector<std::string> codes;
  std::vector<std::string> names;
};

struct AlertsOptions {
  std::string place;
  EnumSet<AlertSource> sources = EnumSet<AlertSource>::all();
  StatedRegions stated;
  bool coverage = false;  ///< how the official ones were checked is part of the JSON document
  bool geometry = false;  ///< where each one holds is part of the JSON document
  bool map = false;       ///< the areas of warnings are drawn
  bool json = false;
};

struct NotifyOptions {
  enum class Deliver { desktop, print };

  std::string place;
  StatedRegions stated;
  Deliver deliver = Deliver::desktop;
  std::string record;  ///< a folder for what the services answer; empty: none
  bool dryRun = false;
  bool explain = false;
  bool log = false;
  bool json = false;
};

struct LineOptions {
  std::string place;
  std::string format;  ///< empty: the usual one
  bool fresh = false;
  bool helpFormat = false;
};

struct RadarOptions {
  std::string place;
  std::string png;  ///< the file to write
  int width = 800;  ///< pixels
  int height = 600;
  int zoom = 7;
  bool json = false;
};

struct DoctorOptions {
  bool sources = false;  ///< only those of official warnings, place by place
  bool check = false;    ///< and ask them first
  bool json = false;
};

struct WatchOptions {
  std::string record;  ///< a folder for what the services answer
  bool json = false;
  bool install = false;
  bool uninstall = false;
};

/// Export and import.
struct UserDataOptions {
  std::string file;
  bool secrets = false;
};

/// For packages and shells.
struct ShellOptions {
  std::vector<std::string> words;  ///< of a command line, up to the cursor
  std::string directory;           ///< of the manual pages
};

struct Session;

struct CommandLine {
  /// What runs the command; gives the exit code.
  int (*run)(CommandLine const&, Session const&) = nullptr;
  bool needsStore = false;  ///< the command fails with the store, and says so itself
  bool needsHome = true;    ///< the command reads what is the user's
  CommonOptions common;
  ForecastOptions forecast;
  AlertsOptions alerts;
  LineOptions line;
  RadarOptions radar;
  DoctorOptions doctor;
  WatchOptions watch;
  NotifyOptions notify;
  ReplayOptions replay;
  DemoOptions demo;
  PlacesOptions places;
  SettingsOptions settings;
  FeedOptions feeds;
  RegionsOptions regions;
  StationOptions station;
  SatellitesOptions satellites;
  RulesOptions rules;
  ShellOptions shell;
  UserDataOptions userData;
};

/// A command line that ends before any command runs: help and version (exit code 0, to standard output) or a
/// mistake (exit code 2, one sentence that names the offending word).
struct EarlyEnd {
  int exitCode = 0;
  std::string text;
};

Result<CommandLine, EarlyEnd> parseCommandLine(std::vector<std::string> arguments,
                                               Environment const& environment);

/// All commands and options that people give.
CommandOutline commandOutline();

}  // namespace nimbara
