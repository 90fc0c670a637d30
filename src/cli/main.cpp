#include "base/text/clean_text.h"
#include "cli/cli.h"
#include "platform/linux/interrupt_signals.h"

#include <csignal>
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
    write(text, stdout);
    std::fflush(stdout);
  }
  void err(std::string_view text) override { write(text, stderr); }

  int terminalWidth() const override {
    if (isatty(STDOUT_FILENO) == 0) return 0;
    winsize size{};
    bool const known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
  }

  bool showsProgress() const override { return isatty(STDERR_FILENO) != 0; }

 private:
  /// Whatever a text is made of, a terminal obeys none of it.
  static void write(std::string_view text, std::FILE* file) {
    std::string const printed = nimbara::terminalText(text);
    std::fwrite(printed.data(), 1, printed.size(), file);
  }
};

}  // namespace

int main(int count, char** arguments) {
  // Threads are few and mostly wait: pools of memory for each would only lie about.
  mallopt(M_ARENA_MAX, 1);
  // A limit of file sizes is an error of writing like others.
  std::signal(SIGXFSZ, SIG_IGN);
  nimbara::InterruptSignals const signals;
  ProcessConsole console;
  auto const environment = nimbara::Environment::ofProcess();
  nimbara::Session const session{environment, console, signals.token()};
  int const code = nimbara::runCli({arguments + 1, arguments + count}, session);
  if (std::ferror(stdout) == 0) return code;
  return session.fail(nimbara::exitCode::kUnavailable, "could not write the output; is the disk full?");
}
