// A serial queue with one thread of its own. The destructor waits for the work that is going on and drops
// what has not begun.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

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
  std::deque<std::function<void()>> waiting_;
  std::jthread thread_;  ///< last, so that it ends before what it uses
};

}  // namespace nimbara
