#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/options/command_definitions.h"
#include "demo/world/demo_scene.h"

namespace nimbara {

namespace {

void defineWatch(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand(
      "watch",
      "Keep the forecasts of your places fresh and tell what you want to be told of, until interrupted");
  command->add_flag("--json", line.watch.json, "A line of JSON for each event");
  command
      ->add_option("--record", line.watch.record,
                   "Keep what the services answer in this folder, for nimbara replay")
      ->type_name("DIRECTORY");
  defineCommon(*command, line, raw);
  auto* const install = command->add_flag("--install", line.watch.install,
                                          "Let it run in the background, now and after each login");
  command->add_flag("--uninstall", line.watch.uninstall, "Take that back")->excludes(install);
  command->callback([&line] {
    bool const installs = line.watch.install || line.watch.uninstall;
    line.run = installs ? runWatchInstall : runWatch;
  });
}

std::string sceneProblem(std::string const& name) {
  if (name == "list" || findDemoScene(name) != nullptr) return {};
  return "'" + oneLine(name) + "' is no scene of the demo; nimbara demo --scene list names them";
}

void defineDemo(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command =
      app.add_subcommand("demo", "Loopback stand-ins of the outside services, with generated weather");
  DemoOptions& options = line.demo;
  command->add_option("--port", options.port, "Port on 127.0.0.1; a free one by default")
      ->type_name("N")
      ->check(CLI::Range(0, 65535));
  command
      ->add_option("--fail", raw.faults,
                   "SERVICE=FAULT: let a service misbehave; may be given several times. Faults: " +
                       namesOf<DemoFault::Kind>() +
                       ". "
                       "Services: " +
                       namesOf<DemoService>())
      ->type_name("FAULT")
      ->allow_extra_args(false);
  command
      ->add_option("--scene", options.scene,
                   "Play a scene of official warnings instead of generated ones; --scene list names them")
      ->type_name("NAME")
      ->check(sceneProblem);
  command->add_option("COMMAND", options.command,
                      "After --: a command to run against the demo, which then stops");
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runDemo; });
}

}  // namespace

void defineService(CLI::App& app, CommandLine& line, RawOptions& raw) {
  defineWatch(app, line, raw);
  defineDemo(app, line, raw);
}

}  // namespace nimbara
