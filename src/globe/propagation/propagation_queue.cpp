#include "globe/propagation/propagation_queue.h"

#include <pthread.h>
#include <string>

namespace nimbara {

PropagationQueue::PropagationQueue() : thread_([this](std::stop_token const& stop) { run(stop); }) {
  // The system shows fifteen characters of a thread's name.
  pthread_setname_np(thread_.native_handle(), std::string(kLabel).substr(0, 15).c_str());
}

PropagationQueue::~PropagationQueue() {
  thread_.request_stop();
}

void PropagationQueue::add(std::function<void()> work) {
  {
    std::lock_guard const lock(mutex_);
    waiting_.push_back(std::move(work));
  }
  changed_.notify_one();
}

void PropagationQueue::run(std::stop_token const& stop) {
  std::unique_lock lock(mutex_);
  while (changed_.wait(lock, stop, [this] { return !waiting_.empty(); }) && !stop.stop_requested()) {
    auto const work = std::move(waiting_.front());
    waiting_.erase(waiting_.begin());
    lock.unlock();
    work();
    lock.lock();
  }
}

}  // namespace nimbara
