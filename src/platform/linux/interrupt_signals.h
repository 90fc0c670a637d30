// Turns an interrupt from the keyboard, or a request to terminate, into a stop request, so that whatever runs
// ends in order. Lives in the entry of a program, before any other thread is started; one at a time. The
// signal stays pending: behind this object it ends the process, so that whoever waits for it learns of what
// it ended.
#pragma once

#include <atomic>
#include <stop_token>
#include <thread>

namespace nimbara {

class InterruptSignals {
 public:
  InterruptSignals();
  ~InterruptSignals();
  InterruptSignals(InterruptSignals const&) = delete;
  InterruptSignals& operator=(InterruptSignals const&) = delete;

  std::stop_token token() const { return stop_.get_token(); }
  /// The one that came; 0 before.
  int signal() const { return signal_; }

 private:
  std::stop_source stop_;
  std::atomic<int> signal_ = 0;
  int signals_ = -1;
  int ending_ = -1;
  std::jthread watcher_;
};

}  // namespace nimbara
