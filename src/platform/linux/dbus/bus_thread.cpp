#include "platform/linux/dbus/bus_thread.h"

#include <poll.h>
#include <utility>

namespace nimbara {

namespace {

/// For what the library asks of the bus itself and waits for.
constexpr std::chrono::milliseconds kPatience{700};

}  // namespace

BusThread::BusThread(std::string sessionBus, Work work)
    : sessionBus_(std::move(sessionBus)),
      work_(std::move(work)),
      thread_([this](std::stop_token const& stop) { run(stop); }) {}

BusThread::~BusThread() {
  thread_.request_stop();
  wakeUp_.ring();
  thread_.join();
}

void BusThread::post(std::function<void()> task) {
  {
    std::lock_guard const lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  wakeUp_.ring();
}

void BusThread::run(std::stop_token const& stop) {
  try {
    connection_ = connectToSessionBus(sessionBus_);
    connection_->setMethodCallTimeout(kPatience);
    work_.begin(*connection_);
  } catch (sdbus::Error const&) {
    lose();
  }
  while (!stop.stop_requested()) {
    wakeUp_.clear();
    try {
      runTasks();
      while (connection_ && connection_->processPendingRequest()) {
      }
    } catch (sdbus::Error const&) {
      lose();
    }
    if (!stop.stop_requested()) sleep();
  }
  lose();
}

void BusThread::runTasks() {
  std::deque<std::function<void()>> tasks;
  {
    std::lock_guard const lock(mutex_);
    tasks.swap(tasks_);
  }
  for (auto const& task : tasks) {
    if (connection_) task();
  }
}

void BusThread::sleep() {
  pollfd files[] = {{wakeUp_.descriptor(), POLLIN, 0}, {-1, 0, 0}};
  int timeout = -1;
  if (connection_) {
    auto const data = connection_->getEventLoopPollData();
    files[1] = {data.fd, data.events, 0};
    timeout = pollTimeout(data, std::nullopt);
  }
  poll(files, 2, timeout);
}

void BusThread::lose() {
  work_.end();
  connection_.reset();
}

}  // namespace nimbara
