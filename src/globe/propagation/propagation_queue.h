// A serial queue with one thread of its own. The destructor waits for the work that is going on and drops
// what has not begun.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace nimbara {

class PropagationQueue {
 public:
  static constexpr char kLabel[] = "globe.satellites.propagate";

  PropagationQueue();
  ~PropagationQueue();
  PropagationQueue(PropagationQueue const&) = delete;
  PropagationQueue& operator=(PropagationQueue const&) = delete;

  void add(std::function<void()> work);

 private:
  void run(std::stop_token const& stop);

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::vector<std::function<void()>> waiting_;  ///< keeps its room, unlike a deque
  std::jthread thread_;                         ///< last, so that it ends before what it uses
};

}  // namespace nimbara
