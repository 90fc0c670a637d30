#include "cli/cli.h"
#include "platform/linux/interrupt_signals.h"

#include <cstdio>
#include <malloc.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

namespace {

class ProcessConsole final : public nimbara::Console {
 public:
  void out(std::string_view text) override {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
  }
  void err(std::string_view text) override { std::fwrite(text.data(), 1, text.size(), stderr); }

  int terminalWidth() const override {
    if (isatty(STDOUT_FILENO) == 0) return 0;
    winsize size{};
    bool const known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
  }
};

}  // namespace

int main(int count, char** arguments) {
  // Threads are few and mostly wait: pools of memory for each would only lie about.
  mallopt(M_ARENA_MAX, 1);
  nimbara::InterruptSignals const signals;
  ProcessConsole console;
  auto const environment = nimbara::Environment::ofProcess();
  nimbara::Session const session{environment, console, signals.token()};
  return nimbara::runCli({arguments + 1, arguments + count}, session);
}
