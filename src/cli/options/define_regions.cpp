#include "cli/options/command_definitions.h"

namespace nimbara {

void defineRegions(Command app, CommandLine& line, RawOptions& raw) {
  using Action = RegionsOptions::Action;
  Command const command =
      app.command("regions", "Regions used in official warnings, and those a place belongs to");
  command.requireCommands(1, 1);
  RegionsOptions& options = line.regions;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    Command const sub = command.command(name, explanation);
    sub.flag("--json", options.json, "One JSON document instead of text");
    sub.whenGiven([&line, action] {
      line.run = runRegions;
      line.regions.action = action;
    });
    return sub;
  };
  Command const show = define("show", "The country, names and codes of a place's regions", Action::show);
  show.option("PLACE", options.place, "LAT,LON in decimal degrees, or a name to search for");
  Command const check = define(
      "check", "Check a table of places against the regions found: place, expected, found", Action::check);
  check
      .option("FILE", options.table,
              "Tab-separated lines: place, latitude, longitude, country, land region codes, sea region "
              "codes, name")
      .required();
  Command const update =
      define("update",
             "Download newer outlines of Europe's regions (20 to 40 MB); a set is included with the program",
             Action::update);
  update.option("--from", options.files, "Use the outlines in this GeoJSON file instead; may be repeated")
      .called("FILE")
      .oneValueEach();
  for (Command const& sub : {show, check, update}) defineCommon(sub, line, raw);
}

}  // namespace nimbara
