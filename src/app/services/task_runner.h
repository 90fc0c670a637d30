// Where work runs that must not hold up its caller: a few threads that the program owns. Nobody else starts
// threads for such work. Tests run the same work by hand.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace nimbara {

class TaskRunner {
 public:
  using Task = std::function<void(std::stop_token)>;

  virtual ~TaskRunner() = default;
  /// Runs the task some time after; never inside this call.
  virtual void run(Task task) = 0;
};

/// At its end running tasks are asked to stop and waited for, waiting ones are dropped.
class ThreadPool final : public TaskRunner {
 public:
  explicit ThreadPool(unsigned threads = 2);
  ~ThreadPool() override;

  void run(Task task) override;
  /// As at its end, but earlier: before what the tasks work on ends.
  void stop();

 private:
  void work(std::stop_token const& stop);

  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<Task> waiting_;
  std::vector<std::jthread> threads_;
};

}  // namespace nimbara
