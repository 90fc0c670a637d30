#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/options/command_definitions.h"
#include "demo/world/demo_scene.h"

namespace nimbara {

namespace {

void defineWatch(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand(
      "watch", "Keep the forecasts for your places up to date and send notifications until interrupted");
  command->add_flag("--json", line.watch.json, "A line of JSON for each event");
  command
      ->add_option("--record", line.watch.record,
                   "Record the services' responses in this folder for nimbara replay")
      ->type_name("DIRECTORY");
  defineCommon(*command, line, raw);
  auto* const install =
      command->add_flag("--install", line.watch.install, "Run it in the background, now and at every login");
  command->add_flag("--uninstall", line.watch.uninstall, "Undo --install")->excludes(install);
  command->callback([&line] {
    bool const installs = line.watch.install || line.watch.uninstall;
    line.run = installs ? runWatchInstall : runWatch;
  });
}

std::string sceneProblem(std::string const& name) {
  if (name == "list" || findDemoScene(name) != nullptr) return {};
  return "'" + oneLine(name) + "' is not a demo scene; nimbara demo --scene list shows them all";
}

void defineDemo(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command =
      app.add_subcommand("demo", "Local test servers with generated weather in place of all services");
  DemoOptions& options = line.demo;
  command->add_option("--port", options.port, "Port on 127.0.0.1; a free one by default")
      ->type_name("N")
      ->check(CLI::Range(0, 65535));
  command
      ->add_option(
          "--fail", raw.faults,
          "SERVICE=FAULT: make a service fail; may be repeated. Faults: " + namesOf<DemoFault::Kind>() +
              ". "
              "Services: " +
              namesOf<DemoService>())
      ->type_name("FAULT")
      ->allow_extra_args(false);
  command
      ->add_option("--scene", options.scene,
                   "Play a scene of official warnings instead of generated ones; --scene list shows them all")
      ->type_name("NAME")
      ->check(sceneProblem);
  command->add_option("COMMAND", options.command,
                      "After --: a command to run against the demo, which stops afterwards");
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runDemo; });
}

}  // namespace

void defineService(CLI::App& app, CommandLine& line, RawOptions& raw) {
  defineWatch(app, line, raw);
  defineDemo(app, line, raw);
}

}  // namespace nimbara
