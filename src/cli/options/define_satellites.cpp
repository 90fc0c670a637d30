#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

using Action = SatellitesOptions::Action;

constexpr int kLongestForecastDays = 30;

/// The definition of one subcommand after another.
class Definitions {
 public:
  Definitions(Command command, CommandLine& line, RawOptions& raw)
      : command_(command), line_(line), raw_(raw), options_(line.satellites) {}

  void list() {
    groups(sub("list", "List the satellites", Action::list));
    groups(sub("positions", "Where each satellite is now", Action::positions));
    groups(sub("map", "A world map with the satellites above it", Action::map));
  }

  void single() {
    satellite(sub("info", "One satellite: altitude, speed, position, orbital period, light", Action::info));
    satellite(sub("orbit", "The path of a satellite over one orbit from now", Action::orbit));
  }

  void passes() {
    Command const command =
        sub("passes", "When satellites rise, culminate and set at a place", Action::passes);
    command.option("PLACE", options_.place, "LAT,LON in decimal degrees, a saved place or a name");
    command.option("--name", options_.satellite, "A name, part of one, or a catalog number (default: ISS)")
        .called("N");
    command.option("--days", options_.days, "Days to look ahead").called("D").range(1, kLongestForecastDays);
    command.flag("--visible", options_.visible, "Only visible passes: sunlit, high enough, in a dark sky");
    command.option("--above", options_.above, "Minimum elevation in degrees (default: 10)")
        .called("DEGREES")
        .range(0, 90);
  }

  void files() {
    Command const propagate =
        sub("propagate", "Propagate the element sets in a file with SGP4", Action::propagate);
    propagate.option("--tle", options_.file, "A file of two-line element sets").called("FILE").required();
    propagate
        .option("--minutes", options_.minutes, "Minutes since each set's epoch: 0,360,720 or FROM:TO:STEP")
        .called("LIST")
        .required();
    Command const bench = sub("bench", "Nanoseconds per propagation on this machine", Action::bench);
    bench.option("FILE", options_.file, "A file of two-line element sets").required();
    bench.option("TIME", options_.time, "The time of the tick, for example 2026-11-21T12:00:00Z").required();
  }

 private:
  Command sub(char const* name, char const* explanation, Action action) {
    Command const command = command_.command(name, explanation);
    command.flag("--json", options_.json, "One JSON document instead of text");
    defineCommon(command, line_, raw_);
    command.whenGiven([&line = line_, action] {
      line.run = runSatellites;
      line.satellites.action = action;
    });
    return command;
  }

  void groups(Command command) {
    command.option("--group", options_.groups, "A group of satellites; may be repeated")
        .called("ID")
        .oneValueEach();
  }

  void satellite(Command command) {
    command.option("SATELLITE", options_.satellite, "A name, part of one, or a catalog number").required();
  }

  Command command_;
  CommandLine& line_;
  RawOptions& raw_;
  SatellitesOptions& options_;
};

}  // namespace

void defineSatellites(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command("satellites", "Satellites: where they are and when they pass");
  command.requireCommands(1, 1);
  Definitions definitions(command, line, raw);
  definitions.list();
  definitions.single();
  definitions.passes();
  definitions.files();
}

}  // namespace nimbara
