#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

void defineNotify(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("notify", "Check everything you want to be notified of once, and send notifications");
  NotifyOptions& options = line.notify;
  command.option("PLACE", options.place, "Only this place; all saved places by default");
  Option const dryRun = command.flag("--dry-run", options.dryRun, "Send and remember nothing");
  Option const explain = command.flag("--explain", options.explain,
                                      "Explain for every rule why it would notify you or not; sends nothing");
  command.flag("--log", options.log, "Notifications sent and held back, and why; newest first")
      .excludes(explain)
      .excludes(dryRun);
  command
      .choice("--deliver", options.deliver, "desktop, or print (remembers, but shows nothing on the desktop)",
              {{"desktop", NotifyOptions::Deliver::desktop}, {"print", NotifyOptions::Deliver::print}})
      .called("WHERE");
  command
      .option("--record", options.record, "Record the services' responses in this folder for nimbara replay")
      .called("DIRECTORY");
  defineStatedRegions(command, options.stated);
  command.flag("--json", options.json, "One JSON document instead of text");
  defineCommon(command, line, raw);
  command.whenGiven([&line] {
    line.run = runNotify;
    line.needsStore = true;
  });
}

void defineReplay(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command(
      "replay", "The notifications you would have received over a period, from recorded responses");
  ReplayOptions& options = line.replay;
  command.option("DIRECTORY", options.directory, "A folder written by --record; see docs/replay.md")
      .required();
  command.option("PLACE", options.place, "Only this place; all saved places by default");
  command.option("--from", options.from, "Start time, for example 2026-11-21T09:00:00Z")
      .called("TIME")
      .required();
  command.option("--to", options.to, "End time").called("TIME").required();
  command.option("--step", options.stepSeconds, "Seconds between checks (default: 900)")
      .called("SECONDS")
      .range(10, 86'400);
  command.flag("--json", options.json, "One JSON document instead of text");
  defineCommon(command, line, raw);
  command.whenGiven([&line] {
    line.run = runReplay;
    line.needsStore = true;
  });
}

}  // namespace

void defineNotifications(Command app, CommandLine& line, RawOptions& raw) {
  defineNotify(app, line, raw);
  defineReplay(app, line, raw);
}

}  // namespace nimbara
