#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

using Action = SatellitesOptions::Action;

constexpr int kLongestForecastDays = 30;

/// The definition of one subcommand after another.
class Definitions {
 public:
  Definitions(CLI::App& command, CommandLine& line, RawOptions& raw)
      : command_(command), line_(line), raw_(raw), options_(line.satellites) {}

  void list() {
    groups(*sub("list", "List the satellites", Action::list));
    groups(*sub("positions", "Where each satellite is now", Action::positions));
    groups(*sub("map", "A world map with the satellites above it", Action::map));
  }

  void single() {
    satellite(*sub("info", "One satellite: altitude, speed, position, orbital period, light", Action::info));
    satellite(*sub("orbit", "The path of a satellite over one orbit from now", Action::orbit));
  }

  void passes() {
    CLI::App* const command =
        sub("passes", "When satellites rise, culminate and set at a place", Action::passes);
    command->add_option("PLACE", options_.place, "LAT,LON in decimal degrees, a saved place or a name");
    command
        ->add_option("--name", options_.satellite, "A name, part of one, or a catalog number (default: ISS)")
        ->type_name("N");
    command->add_option("--days", options_.days, "Days to look ahead")
        ->type_name("D")
        ->check(CLI::Range(1, kLongestForecastDays));
    command->add_flag("--visible", options_.visible,
                      "Only visible passes: sunlit, high enough, in a dark sky");
    command->add_option("--above", options_.above, "Minimum elevation in degrees (default: 10)")
        ->type_name("DEGREES")
        ->check(CLI::Range(0, 90));
  }

  void files() {
    CLI::App* const propagate =
        sub("propagate", "Propagate the element sets in a file with SGP4", Action::propagate);
    propagate->add_option("--tle", options_.file, "A file of two-line element sets")
        ->type_name("FILE")
        ->required();
    propagate
        ->add_option("--minutes", options_.minutes,
                     "Minutes since each set's epoch: 0,360,720 or FROM:TO:STEP")
        ->type_name("LIST")
        ->required();
    CLI::App* const bench = sub("bench", "Nanoseconds per propagation on this machine", Action::bench);
    bench->add_option("FILE", options_.file, "A file of two-line element sets")->required();
    bench->add_option("TIME", options_.time, "The time of the tick, for example 2026-11-21T12:00:00Z")
        ->required();
  }

 private:
  CLI::App* sub(char const* name, char const* explanation, Action action) {
    CLI::App* const command = command_.add_subcommand(name, explanation);
    command->add_flag("--json", options_.json, "One JSON document instead of text");
    defineCommon(*command, line_, raw_);
    command->callback([&line = line_, action] {
      line.run = runSatellites;
      line.satellites.action = action;
    });
    return command;
  }

  void groups(CLI::App& command) {
    command.add_option("--group", options_.groups, "A group of satellites; may be repeated")
        ->type_name("ID")
        ->allow_extra_args(false);
  }

  void satellite(CLI::App& command) {
    command.add_option("SATELLITE", options_.satellite, "A name, part of one, or a catalog number")
        ->required();
  }

  CLI::App& command_;
  CommandLine& line_;
  RawOptions& raw_;
  SatellitesOptions& options_;
};

}  // namespace

void defineSatellites(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand("satellites", "Satellites: where they are and when they pass");
  command->require_subcommand(1);
  Definitions definitions(*command, line, raw);
  definitions.list();
  definitions.single();
  definitions.passes();
  definitions.files();
}

}  // namespace nimbara
