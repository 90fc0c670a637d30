#include "app/services/task_runner.h"

namespace nimbara {

ThreadPool::ThreadPool(unsigned threads) {
  for (unsigned i = 0; i < threads; ++i) {
    threads_.emplace_back([this](std::stop_token const& stop) { work(stop); });
  }
}

ThreadPool::~ThreadPool() {
  stop();
}

void ThreadPool::stop() {
  for (std::jthread& thread : threads_) thread.request_stop();
  threads_.clear();
}

void ThreadPool::run(Task task) {
  {
    std::lock_guard const lock(mutex_);
    waiting_.push_back(std::move(task));
  }
  wake_.notify_one();
}

void ThreadPool::work(std::stop_token const& stop) {
  for (;;) {
    Task task;
    {
      std::unique_lock lock(mutex_);
      if (!wake_.wait(lock, stop, [this] { return !waiting_.empty(); }) || stop.stop_requested()) return;
      task = std::move(waiting_.front());
      waiting_.pop_front();
    }
    task(stop);
  }
}

}  // namespace nimbara
