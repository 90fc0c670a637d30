#include "cli/command_definitions.h"

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
  command->add_option("--deliver", options.deliver, "desktop, or print: remember, but post nothing")
      ->type_name("WHERE")
      ->transform(CLI::CheckedTransformer(std::map<std::string, NotifyOptions::Deliver>{
          {"desktop", NotifyOptions::Deliver::desktop}, {"print", NotifyOptions::Deliver::print}}));
  defineStatedRegions(*command, options.stated);
  command->add_flag("--json", options.json, "One JSON document instead of text");
  defineCommon(*command, line, raw);
  command->callback([&line] {
    line.run = runNotify;
    line.needsStore = true;
  });
}

}  // namespace

void defineNotifications(CLI::App& app, CommandLine& line, RawOptions& raw) {
  defineNotify(app, line, raw);
}

}  // namespace nimbara
