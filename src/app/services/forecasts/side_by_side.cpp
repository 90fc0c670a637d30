#include "app/services/forecasts/side_by_side.h"

#include <thread>

namespace nimbara {

void runAll(std::vector<std::function<void()>> const& tasks, Waiting waiting) {
  if (waiting == Waiting::oneAfterTheOther || tasks.size() < 2) {
    for (auto const& task : tasks) task();
    return;
  }
  std::vector<std::jthread> threads;
  threads.reserve(tasks.size() - 1);
  for (std::size_t i = 1; i < tasks.size(); ++i) threads.emplace_back(std::cref(tasks[i]));
  tasks.front()();
}

}  // namespace nimbara
