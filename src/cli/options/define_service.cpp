#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/options/command_definitions.h"
#include "demo/demo_fault.h"
#include "demo/world/demo_scene.h"

namespace nimbara {

namespace {

void defineWatch(Command app, CommandLine& line, RawOptions& raw) {
  Command const command = app.command(
      "watch", "Keep the forecasts for your places up to date and send notifications until interrupted");
  command.flag("--json", line.watch.json, "A line of JSON for each event");
  command
      .option("--record", line.watch.record,
              "Record the services' responses in this folder for nimbara replay")
      .called("DIRECTORY");
  defineCommon(command, line, raw);
  Option const install =
      command.flag("--install", line.watch.install, "Run it in the background, now and at every login");
  command.flag("--uninstall", line.watch.uninstall, "Undo --install").excludes(install);
  command.whenGiven([&line] {
    bool const installs = line.watch.install || line.watch.uninstall;
    line.run = installs ? runWatchInstall : runWatch;
  });
}

std::string sceneProblem(std::string const& name) {
  if (name == "list" || findDemoScene(name) != nullptr) return {};
  return "'" + oneLine(name) + "' is not a demo scene; nimbara demo --scene list shows them all";
}

void defineDemo(Command app, CommandLine& line, RawOptions& raw) {
  Command const command =
      app.command("demo", "Local test servers with generated weather in place of all services");
  DemoOptions& options = line.demo;
  command.option("--port", options.port, "Port on 127.0.0.1; a free one by default")
      .called("N")
      .range(0, 65535);
  command
      .option("--fail", raw.faults,
              "SERVICE=FAULT: make a service fail; may be repeated. Faults: " + namesOf<DemoFault::Kind>() +
                  ". "
                  "Services: " +
                  demoServiceNames())
      .called("FAULT")
      .oneValueEach();
  command
      .option("--scene", options.scene,
              "Play a scene of official warnings instead of generated ones; --scene list shows them all")
      .called("NAME")
      .check(sceneProblem);
  command.option("COMMAND", options.command,
                 "After --: a command to run against the demo, which stops afterwards");
  defineCommon(command, line, raw);
  command.whenGiven([&line] { line.run = runDemo; });
}

}  // namespace

void defineService(Command app, CommandLine& line, RawOptions& raw) {
  defineWatch(app, line, raw);
  defineDemo(app, line, raw);
}

}  // namespace nimbara
