#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

void defineNotify(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand(
      "notify", "Check everything you want to be notified of once, and send notifications");
  NotifyOptions& options = line.notify;
  command->add_option("PLACE", options.place, "Only this place; all saved places by default");
  command->add_flag("--dry-run", options.dryRun, "Send and remember nothing");
  command->add_flag("--explain", options.explain,
                    "Explain for every rule why it would notify you or not; sends nothing");
  command->add_flag("--log", options.log, "Notifications sent and held back, and why; newest first")
      ->excludes("--explain", "--dry-run");
  command
      ->add_option("--deliver", options.deliver,
                   "desktop, or print (remembers, but shows nothing on the desktop)")
      ->type_name("WHERE")
      ->transform(CLI::CheckedTransformer(std::map<std::string, NotifyOptions::Deliver>{
          {"desktop", NotifyOptions::Deliver::desktop}, {"print", NotifyOptions::Deliver::print}}));
  command
      ->add_option("--record", options.record,
                   "Record the services' responses in this folder for nimbara replay")
      ->type_name("DIRECTORY");
  defineStatedRegions(*command, options.stated);
  command->add_flag("--json", options.json, "One JSON document instead of text");
  defineCommon(*command, line, raw);
  command->callback([&line] {
    line.run = runNotify;
    line.needsStore = true;
  });
}

void defineReplay(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand(
      "replay", "The notifications you would have received over a period, from recorded responses");
  ReplayOptions& options = line.replay;
  command->add_option("DIRECTORY", options.directory, "A folder written by --record; see docs/replay.md")
      ->required();
  command->add_option("PLACE", options.place, "Only this place; all saved places by default");
  command->add_option("--from", options.from, "Start time, for example 2026-11-21T09:00:00Z")
      ->type_name("TIME")
      ->required();
  command->add_option("--to", options.to, "End time")->type_name("TIME")->required();
  command->add_option("--step", options.stepSeconds, "Seconds between checks (default: 900)")
      ->type_name("SECONDS")
      ->check(CLI::Range(10, 86'400));
  command->add_flag("--json", options.json, "One JSON document instead of text");
  defineCommon(*command, line, raw);
  command->callback([&line] {
    line.run = runReplay;
    line.needsStore = true;
  });
}

}  // namespace

void defineNotifications(CLI::App& app, CommandLine& line, RawOptions& raw) {
  defineNotify(app, line, raw);
  defineReplay(app, line, raw);
}

}  // namespace nimbara
