// A thread for each connection of the demo's server, so that an answer that is held back holds back nobody
// else. Owned by the server, which calls it from its listening thread.
#pragma once

#include <httplib.h>

#include <atomic>
#include <functional>
#include <list>
#include <thread>

namespace nimbara {

class ConnectionThreads final : public httplib::TaskQueue {
 public:
  void enqueue(std::function<void()> serve) override;
  /// Waits for all of them.
  void shutdown() override { threads_.clear(); }

 private:
  struct Served {
    std::atomic<bool> done = false;
    std::jthread thread;
  };

  std::list<Served> threads_;
};

/// Ends every connection that somebody has to our `port`, so that threads which wait for a next request wait
/// no more.
void shutDownConnections(int port);

}  // namespace nimbara
