// A thread that holds one connection to the session's bus and handles its events, for parts of the program
// that others on the bus speak to. At rest it sleeps until the bus or the program has something for it. A bus
// that has gone does not come back.
#pragma once

#include "platform/linux/dbus/bus.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace nimbara {

class BusThread {
 public:
  /// Called on the thread.
  struct Work {
    std::function<void(sdbus::IConnection&)> begin;  ///< there is a bus; may throw sdbus::Error
    std::function<void()> end;  ///< there is none, or not any more; gives up what hangs on the connection
  };

  /// The session's own bus for an empty address.
  BusThread(std::string sessionBus, Work work);
  /// Ends the work.
  ~BusThread();
  BusThread(BusThread const&) = delete;
  BusThread& operator=(BusThread const&) = delete;

  /// Runs on the thread; dropped when there is no bus. May throw sdbus::Error, which loses the bus.
  void post(std::function<void()> task);

 private:
  void run(std::stop_token const& stop);
  /// What waits now, and then what the bus has for us.
  void runTasks();
  void sleep();
  void lose();

  std::string sessionBus_;
  Work work_;
  std::mutex mutex_;  ///< of the tasks
  std::deque<std::function<void()>> tasks_;
  WakeUp wakeUp_;
  std::unique_ptr<sdbus::IConnection> connection_;  ///< the thread's
  std::jthread thread_;
};

}  // namespace nimbara
