#include "platform/linux/interrupt_signals.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace nimbara {

namespace {

sigset_t interrupts() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGINT);
  sigaddset(&set, SIGTERM);
  return set;
}

int pendingInterrupt() {
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, SIGTERM) == 1 ? SIGTERM : SIGINT;
}

}  // namespace

InterruptSignals::InterruptSignals() {
  sigset_t const set = interrupts();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  signals_ = signalfd(-1, &set, SFD_CLOEXEC);
  ending_ = eventfd(0, EFD_CLOEXEC);
  watcher_ = std::jthread([this] {
    pollfd files[] = {{signals_, POLLIN, 0}, {ending_, POLLIN, 0}};
    while (poll(files, 2, -1) < 0) {
    }
    if (files[0].revents == 0) return;
    signal_ = pendingInterrupt();
    stop_.request_stop();
  });
}

InterruptSignals::~InterruptSignals() {
  eventfd_write(ending_, 1);
  watcher_.join();
  close(signals_);
  close(ending_);
  sigset_t const set = interrupts();
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

}  // namespace nimbara
