#include "cli/options/command_definitions.h"

namespace nimbara {

namespace {

void defineNotify(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command =
      app.add_subcommand("notify", "Look once at everything you want to be told of, and tell it");
  NotifyOptions& options = line.notify;
  command->add_option("PLACE", options.place, "Only this place; your saved places without it");
  command->add_flag("--dry-run", options.dryRun, "Deliver and remember nothing");
  command->add_flag("--explain", options.explain,
                    "Say of every rule why it tells something or not; delivers nothing");
  command->add_flag("--log", options.log, "What was told and what was held back, and why; newest first")
      ->excludes("--explain", "--dry-run");
  command->add_option("--deliver", options.deliver, "desktop, or print: remember, but post nothing")
      ->type_name("WHERE")
      ->transform(CLI::CheckedTransformer(std::map<std::string, NotifyOptions::Deliver>{
          {"desktop", NotifyOptions::Deliver::desktop}, {"print", NotifyOptions::Deliver::print}}));
  command
      ->add_option("--record", options.record,
                   "Keep what the services answer in this folder, for nimbara replay")
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
      "replay", "What you would have been told in a stretch of time, from recorded answers of the services");
  ReplayOptions& options = line.replay;
  command
      ->add_option("DIRECTORY", options.directory, "A folder that --record has written; see docs/replay.md")
      ->required();
  command->add_option("PLACE", options.place, "Only this place; your saved places without it");
  command->add_option("--from", options.from, "The first moment, as in 2026-11-21T09:00:00Z")
      ->type_name("TIME")
      ->required();
  command->add_option("--to", options.to, "The last moment")->type_name("TIME")->required();
  command->add_option("--step", options.stepSeconds, "Seconds from one look to the next; 900 by default")
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
