#include "platform/linux/dbus/notifications/desktop_notification_center.h"

#include "platform/linux/dbus/notifications/notification_service.h"
#include "platform/linux/dbus/portal/portal_notifications.h"

#include <future>
#include <poll.h>
#include <utility>

namespace nimbara {

namespace {

/// What a caller waits, and what of it the bus may take: the rest brings the answer back.
constexpr std::chrono::milliseconds kPatience{1000};
constexpr std::chrono::milliseconds kBusPatience{900};

Result<void, DeliveryError> nobodyThere() {
  return std::unexpected(
      DeliveryError{DeliveryError::Kind::unavailable, "the desktop's session bus (D-Bus) does not respond"});
}

}  // namespace

DesktopNotificationCenter::DesktopNotificationCenter(std::string sessionBus,
                                                     std::filesystem::path soundsDirectory, bool usesPortal)
    : sessionBus_(std::move(sessionBus)),
      soundsDirectory_(std::move(soundsDirectory)),
      usesPortal_(usesPortal),
      thread_([this](std::stop_token const& stop) { run(stop); }) {}

DesktopNotificationCenter::~DesktopNotificationCenter() {
  thread_.request_stop();
  wakeUp_.ring();
  thread_.join();
}

AuthorizationStatus DesktopNotificationCenter::authorizationStatus() {
  return ask<AuthorizationStatus>(
      AuthorizationStatus::denied,
      [](NotificationChannel& service, BusTask& task) { return service.status(task); });
}

Result<void, DeliveryError> DesktopNotificationCenter::deliver(NotificationRequest const& request) {
  return ask<Result<void, DeliveryError>>(
      nobodyThere(),
      [request](NotificationChannel& service, BusTask& task) { return service.deliver(request, task); });
}

Result<void, DeliveryError> DesktopNotificationCenter::update(NotificationRequest const& request) {
  NotificationRequest silent = request;
  silent.isSilent = true;
  return ask<Result<void, DeliveryError>>(
      nobodyThere(), [silent](NotificationChannel& service, BusTask& task) -> Result<void, DeliveryError> {
        if (!service.isShown(silent.identifier)) return {};
        return service.deliver(silent, task);
      });
}

void DesktopNotificationCenter::withdraw(std::string_view identifier) {
  ask<bool>(false, [name = std::string(identifier)](NotificationChannel& service, BusTask& task) {
    service.withdraw(name, task);
    return true;
  });
}

void DesktopNotificationCenter::setListener(Listener listener) {
  std::lock_guard const lock(listenerMutex_);
  listener_ = std::move(listener);
}

template <class Answer>
Answer DesktopNotificationCenter::ask(Answer otherwise, Question<Answer> question) {
  auto const start = std::chrono::steady_clock::now();
  // A listener asks on the thread itself.
  if (std::this_thread::get_id() == thread_.get_id())
    return answer(otherwise, question, start + kBusPatience);
  auto const promise = std::make_shared<std::promise<Answer>>();
  auto future = promise->get_future();
  {
    std::lock_guard const lock(mutex_);
    tasks_.push_back([this, promise, otherwise, question = std::move(question), start] {
      promise->set_value(answer(otherwise, question, start + kBusPatience));
    });
  }
  wakeUp_.ring();
  return future.wait_until(start + kPatience) == std::future_status::ready ? future.get() : otherwise;
}

template <class Answer>
Answer DesktopNotificationCenter::answer(Answer otherwise, Question<Answer> const& question,
                                         Deadline deadline) {
  NotificationChannel* const asked = service();
  auto const left =
      std::chrono::floor<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
  if (asked == nullptr || left.count() <= 0) return otherwise;
  try {
    BusTask task(asked->connection(), left, thread_.get_stop_token());
    task.waitUntil([] { return true; });  // what was closed or replaced meanwhile
    return question(*asked, task);
  } catch (sdbus::Error const&) {
    service_.reset();
    return otherwise;
  }
}

std::unique_ptr<NotificationChannel> DesktopNotificationCenter::connect() const {
  if (usesPortal_) {
    auto portal = std::make_unique<PortalNotifications>(sessionBus_, soundsDirectory_);
    BusTask task(portal->connection(), kBusPatience / 2, thread_.get_stop_token());
    if (portal->status(task) == AuthorizationStatus::authorized) return portal;
  }
  return std::make_unique<NotificationService>(sessionBus_, soundsDirectory_);
}

NotificationChannel* DesktopNotificationCenter::service() {
  try {
    if (!service_) service_ = connect();
  } catch (sdbus::Error const&) {
    service_.reset();
  }
  return service_.get();
}

void DesktopNotificationCenter::run(std::stop_token const& stop) {
  while (!stop.stop_requested()) {
    wakeUp_.clear();
    while (runNextTask()) tellResponses();
    handleBus();
    tellResponses();
    if (!stop.stop_requested()) sleep();
  }
  service_.reset();
}

bool DesktopNotificationCenter::runNextTask() {
  std::function<void()> task;
  {
    std::lock_guard const lock(mutex_);
    if (tasks_.empty()) return false;
    task = std::move(tasks_.front());
    tasks_.pop_front();
  }
  task();
  return true;
}

void DesktopNotificationCenter::handleBus() {
  try {
    while (service_ && service_->connection().processPendingRequest()) {
    }
  } catch (sdbus::Error const&) {
    service_.reset();
  }
}

void DesktopNotificationCenter::tellResponses() {
  auto const taken = [this] {
    return service_ ? service_->takeResponses() : std::vector<NotificationResponse>{};
  };
  // Outside of the bus's own calls: the listener may ask the center something, and more may come of it.
  for (auto responses = taken(); !responses.empty(); responses = taken()) {
    for (NotificationResponse const& response : responses) {
      std::lock_guard const lock(listenerMutex_);
      if (auto const listener = listener_) listener(response);
    }
  }
}

void DesktopNotificationCenter::sleep() {
  pollfd files[] = {{wakeUp_.descriptor(), POLLIN, 0}, {-1, 0, 0}};
  int timeout = -1;
  if (service_) {
    auto const data = service_->connection().getEventLoopPollData();
    files[1] = {data.fd, data.events, 0};
    timeout = pollTimeout(data, std::nullopt);
  }
  poll(files, 2, timeout);
}

}  // namespace nimbara
