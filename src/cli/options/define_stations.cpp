#include "cli/options/command_definitions.h"

namespace nimbara {

void defineStations(Command app, CommandLine& line, RawOptions& raw) {
  using Action = StationOptions::Action;
  Command const command = app.command("station", "Your own weather station, shown in place of the present");
  command.requireCommands(1, 1);
  StationOptions& options = line.station;
  auto const define = [&](char const* name, char const* explanation, Action action) {
    Command const sub = command.command(name, explanation);
    sub.flag("--json", options.json, "One JSON document instead of text");
    defineCommon(sub, line, raw);
    sub.whenGiven([&line, action] {
      line.run = runStation;
      line.station.action = action;
    });
    return sub;
  };
  Command const link = define(
      "link", "Link a station: a Netatmo account, or with --address one in your network", Action::link);
  link.option("--id", options.id, "ID of your application at Netatmo; otherwise asked for").called("ID");
  Option const token = link.flag("--token", options.hasToken,
                                 "Read a refresh token from standard input; no browser is needed");
  link.flag("--no-browser", options.noBrowser, "Print the consent page's address and open nothing");
  Option const address =
      link.option("--address", options.address, "Address of a gateway or a JSON document in your network")
          .called("URL");
  Option const place =
      link.option("--place", options.place, "Where that station stands").called("PLACE").needs(address);
  static_cast<void>(place);
  link.option("--name", options.name, "What to call it").called("N").needs(address);
  token.excludes(address);
  define("list", "The stations of the linked account", Action::list);
  define("show", "What the station measures, and what of it is shown as the present", Action::show);
  Command const choose =
      define("choose", "Choose one of the account's stations, or public ones", Action::choose);
  Command const which = choose.group("station");
  which.option("STATION", options.station, "Its name, its beginning or its identifier");
  which.option("--around", options.place, "The public stations around a place instead").called("PLACE");
  which.requireOptions(1, 1);
  define("unlink", "Forget the station and its tokens", Action::unlink);
}

}  // namespace nimbara
