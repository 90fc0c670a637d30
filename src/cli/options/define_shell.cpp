#include "cli/cli.h"
#include "cli/options/command_definitions.h"

namespace nimbara {

void defineShell(Command app, CommandLine& line) {
  Command const complete = app.command("complete", "What may stand at the end of a command line, for shells");
  complete.option("WORDS", line.shell.words,
                  "After --: the words after the program's name, the last one unfinished");
  complete.hide();
  complete.whenGiven([&line] { line.run = runComplete; });
  Command const manual = app.command("manual", "Write the manual pages, for packages");
  manual.option("--to", line.shell.directory, "Into this folder").called("DIRECTORY").required();
  manual.hide();
  manual.whenGiven([&line] {
    line.run = runManual;
    line.needsHome = false;
  });
}

}  // namespace nimbara
