#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

Command definePlacesAction(Command command, char const* name, char const* explanation,
                           PlacesOptions::Action action, CommandLine& line, RawOptions& raw) {
  Command const sub = command.command(name, explanation);
  sub.flag("--json", line.places.json, "One JSON document: the places after the change");
  defineCommon(sub, line, raw);
  sub.whenGiven([&line, action] {
    line.run = runPlaces;
    line.needsStore = true;
    line.places.action = action;
  });
  return sub;
}

/// PLACE, or --here in its stead.
void definePlaceOrHere(Command sub, PlacesOptions& options, char const* place, char const* here) {
  Command const group = sub.group("place");
  group.option("PLACE", options.place, place);
  group.flag("--here", options.here, here);
  group.requireOptions(1, 1);
}

}  // namespace

void definePlaces(Command app, CommandLine& line, RawOptions& raw) {
  using Action = PlacesOptions::Action;
  Command const command = app.command("places", "Your saved places and the selected one");
  command.requireCommands(1, 1);
  PlacesOptions& options = line.places;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    return definePlacesAction(command, name, explanation, action, line, raw);
  };
  constexpr char kSaved[] = "A saved place's name, its beginning or its identifier";
  constexpr char kOnline[] = "Use the online place search";
  define("list", "The saved places; * marks the selected one", Action::list);
  Command const add = define("add", "Save a place", Action::add);
  definePlaceOrHere(add, options, "LAT,LON in decimal degrees, or a name to search for",
                    "Your current location, from the desktop's location service");
  add.option("--name", options.name, "Its name").called("N");
  add.flag("--online", options.online, kOnline);
  Command const remove = define("remove", "Remove a place", Action::remove);
  definePlaceOrHere(remove, options, kSaved, "The current location");
  Command const rename = define("rename", "Rename a place", Action::rename);
  rename.option("PLACE", options.place, kSaved).required();
  rename.option("NAME", options.name, "Its new name").required();
  Command const move = define("move", "Move a place in the list", Action::move);
  move.option("PLACE", options.place, kSaved).required();
  move.option("POSITION", options.position, "Position, starting at 1").required();
  Command const select = define("select", "Make a place the default", Action::select);
  definePlaceOrHere(select, options, kSaved, "Your current location, from the desktop's location service");
  Command const notify = define("notify", "Show or choose the notifications for a place", Action::notify);
  notify.option("PLACE", options.place, kSaved).required();
  notify
      .option("CHOICE", options.name,
              "everything, severe (severe weather and hazards), official (official warnings only), "
              "nothing, or default (everything for the selected place, severe for the others); without it "
              "the present choice is shown")
      .among(std::to_array<std::string_view>({"everything", "severe", "official", "nothing", "default"}));
  Command const source =
      define("source", "Show or choose the source of official warnings for a place", Action::source);
  source.option("PLACE", options.place, kSaved).required();
  source.option("NAME", options.name,
                "One of the place's sources, or usual; without it those that are possible are shown");
  Command const search = define("search", "Search for a place", Action::search);
  search.option("TEXT", options.place, "The name").required().allWords();
  search.flag("--online", options.online, kOnline);
}

void defineSettings(Command app, CommandLine& line, RawOptions& raw) {
  using Action = SettingsOptions::Action;
  Command const command = app.command("settings", "Your settings: units, language, services");
  command.requireCommands(1, 1);
  SettingsOptions& options = line.settings;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    Command const sub = command.command(name, explanation);
    if (action != Action::list) sub.option("KEY", options.key, "Name of the setting").required();
    if (action == Action::set) sub.option("VALUE", options.value, "Its new value").required();
    sub.flag("--json", options.json, "One JSON document instead of text");
    defineCommon(sub, line, raw);
    sub.whenGiven([&line, action] {
      line.run = runSettings;
      line.needsStore = true;
      line.settings.action = action;
    });
  };
  define("list", "All settings with their values; * marks those you changed", Action::list);
  define("get", "Show a setting", Action::get);
  define("set", "Change a setting", Action::set);
  define("reset", "Restore the default", Action::reset);
}

void defineUserData(Command app, CommandLine& line, RawOptions& raw) {
  Command const written = app.command("export", "Write your settings, rules and places to a file");
  written.option("FILE", line.userData.file, "Where to write; - writes to standard output").required();
  written.flag("--secrets", line.userData.secrets, "Include keys and tokens");
  defineCommon(written, line, raw);
  written.whenGiven([&line] { line.run = runExport; });
  Command const taken = app.command("import", "Take settings, rules and places from an exported file");
  taken.option("FILE", line.userData.file, "What nimbara export has written").required();
  defineCommon(taken, line, raw);
  taken.whenGiven([&line] {
    line.run = runImport;
    line.needsStore = true;
  });
}

}  // namespace nimbara
