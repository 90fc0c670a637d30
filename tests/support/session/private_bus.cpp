#include "support/session/private_bus.h"

#include <fstream>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

/// sdbus-c++ 1.2 loses the bus object when it cannot connect to an address that it was given, as tests of an
/// absent bus have it; the program itself gives none.
extern "C" char const* __lsan_default_suppressions();   // NOLINT(*-identifier,*-naming)
extern "C" char const* __lsan_default_suppressions() {  // NOLINT(*-identifier,*-naming)
  return "leak:sd_bus_new\n";
}

namespace nimbara::test {

namespace {

constexpr char kHead[] = "<busconfig><type>session</type><listen>unix:path=";
constexpr char kTail[] = R"(</listen><auth>EXTERNAL</auth><policy context="default">
<allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/><allow user="*"/></policy></busconfig>)";

}  // namespace

PrivateBus::PrivateBus() {
  auto const configuration = directory_.path() / "bus.conf";
  std::ofstream(configuration) << kHead << (directory_.path() / "socket").string() << kTail;
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  std::string const file = "--config-file=" + configuration.string();
  std::string const print = "--print-address=" + std::to_string(ends[1]);
  daemon_ = fork();
  if (daemon_ == 0) {
    close(ends[0]);
    execlp("dbus-daemon", "dbus-daemon", file.c_str(), print.c_str(), "--nofork", nullptr);
    _exit(127);
  }
  close(ends[1]);
  // The address is printed when the daemon listens; the end of the pipe means that it could not start.
  char letter = 0;
  while (read(ends[0], &letter, 1) == 1 && letter != '\n') address_ += letter;
  close(ends[0]);
  if (address_.empty()) throw std::runtime_error("dbus-daemon does not start");
}

PrivateBus::~PrivateBus() {
  end();
}

void PrivateBus::end() {
  if (daemon_ < 0) return;
  kill(daemon_, SIGKILL);
  waitpid(daemon_, nullptr, 0);
  daemon_ = -1;
}

}  // namespace nimbara::test
