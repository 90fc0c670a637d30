// Child processes that write until they are killed in the middle of it, to see what is left behind.
#pragma once

#include <cstdlib>
#include <functional>
#include <random>
#include <signal.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace nimbara::test {

/// How many writers die: $NIMBARA_KILLS, else a number that suits every run of the tests.
inline int killCount() {
  char const* const text = std::getenv("NIMBARA_KILLS");
  return text == nullptr ? 40 : std::atoi(text);
}

/// `write` runs in a child of its own and calls its argument after each finished step; the child is killed
/// after a few steps, at any point of the next one, and `check` looks at what it left. Single-threaded.
template <class Write, class Check>
void killWriters(int count, Write write, Check check) {
  std::mt19937 random(20261121);
  for (int i = 0; i < count; ++i) {
    int channel[2];
    if (pipe(channel) != 0) throw std::runtime_error("no pipe can be made");
    pid_t const child = fork();
    if (child == 0) {
      close(channel[0]);
      write([&] { (void)!::write(channel[1], "x", 1); });
      _exit(0);
    }
    close(channel[1]);
    char byte;
    for (auto steps = 1 + random() % 3; steps > 0; --steps) (void)!read(channel[0], &byte, 1);
    // A busy wait of up to a millisecond spreads the kills over the whole of a step.
    for (auto volatile spin = random() % 1'000'000; spin > 0;) spin = spin - 1;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(channel[0]);
    check();
  }
}

}  // namespace nimbara::test
