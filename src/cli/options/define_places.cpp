#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

CLI::App* definePlacesAction(CLI::App& command, char const* name, char const* explanation,
                             PlacesOptions::Action action, CommandLine& line, RawOptions& raw) {
  CLI::App* const sub = command.add_subcommand(name, explanation);
  sub->add_flag("--json", line.places.json, "One JSON document: the places after the change");
  defineCommon(*sub, line, raw);
  sub->callback([&line, action] {
    line.run = runPlaces;
    line.needsStore = true;
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

}  // namespace

void definePlaces(CLI::App& app, CommandLine& line, RawOptions& raw) {
  using Action = PlacesOptions::Action;
  CLI::App* const command = app.add_subcommand("places", "Your saved places and the selected one");
  command->require_subcommand(1);
  PlacesOptions& options = line.places;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    return definePlacesAction(*command, name, explanation, action, line, raw);
  };
  constexpr char kSaved[] = "A saved place's name, its beginning or its identifier";
  constexpr char kOnline[] = "Use the online place search";
  define("list", "The saved places; * marks the selected one", Action::list);
  CLI::App* const add = define("add", "Save a place", Action::add);
  definePlaceOrHere(*add, options, "LAT,LON in decimal degrees, or a name to search for",
                    "Your current location, from the desktop's location service");
  add->add_option("--name", options.name, "Its name")->type_name("N");
  add->add_flag("--online", options.online, kOnline);
  CLI::App* const remove = define("remove", "Remove a place", Action::remove);
  definePlaceOrHere(*remove, options, kSaved, "The current location");
  CLI::App* const rename = define("rename", "Rename a place", Action::rename);
  rename->add_option("PLACE", options.place, kSaved)->required();
  rename->add_option("NAME", options.name, "Its new name")->required();
  CLI::App* const move = define("move", "Move a place in the list", Action::move);
  move->add_option("PLACE", options.place, kSaved)->required();
  move->add_option("POSITION", options.position, "Position, starting at 1")->required();
  CLI::App* const select = define("select", "Make a place the default", Action::select);
  definePlaceOrHere(*select, options, kSaved, "Your current location, from the desktop's location service");
  CLI::App* const notify = define("notify", "Choose the notifications for a place", Action::notify);
  notify->add_option("PLACE", options.place, kSaved)->required();
  notify
      ->add_option("CHOICE", options.name,
                   "everything, severe (severe weather and hazards), official (official warnings only), "
                   "nothing, or default (everything for the selected place, severe for the others)")
      ->required()
      ->check(CLI::IsMember({"everything", "severe", "official", "nothing", "default"}));
  CLI::App* const search = define("search", "Search for a place", Action::search);
  search->add_option("TEXT", options.place, "The name")->required();
  search->add_flag("--online", options.online, kOnline);
}

void defineSettings(CLI::App& app, CommandLine& line, RawOptions& raw) {
  using Action = SettingsOptions::Action;
  CLI::App* const command = app.add_subcommand("settings", "Your settings: units, language, services");
  command->require_subcommand(1);
  SettingsOptions& options = line.settings;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    CLI::App* const sub = command->add_subcommand(name, explanation);
    if (action != Action::list) sub->add_option("KEY", options.key, "Name of the setting")->required();
    if (action == Action::set) sub->add_option("VALUE", options.value, "Its new value")->required();
    sub->add_flag("--json", options.json, "One JSON document instead of text");
    defineCommon(*sub, line, raw);
    sub->callback([&line, action] {
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

}  // namespace nimbara
