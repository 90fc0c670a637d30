// Notifications through the desktop's own service, or through its portal. A thread of the center's own holds
// the conversation and tells the responses; callers hand it their questions and wait at most a second. It
// connects with the first question and again after the bus went away; at rest it sleeps until the bus has
// something for it.
#pragma once

#include "platform/linux/dbus/bus.h"
#include "platform/linux/dbus/notifications/notification_channel.h"
#include "platform/session/notification_center.h"

#include <chrono>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace nimbara {

class DesktopNotificationCenter final : public NotificationCenter {
 public:
  /// The session's own bus for an empty address. Where portals are wanted and there is none, the service is
  /// asked all the same.
  DesktopNotificationCenter(std::string sessionBus, std::filesystem::path soundsDirectory, bool usesPortal);
  ~DesktopNotificationCenter() override;

  AuthorizationStatus authorizationStatus() override;
  /// Services of this kind have no question for the user.
  AuthorizationStatus requestAuthorization() override { return authorizationStatus(); }
  Result<void, DeliveryError> deliver(NotificationRequest const& request) override;
  Result<void, DeliveryError> update(NotificationRequest const& request) override;
  void withdraw(std::string_view identifier) override;
  void setListener(Listener listener) override;

 private:
  using Deadline = std::chrono::steady_clock::time_point;
  template <class Answer>
  using Question = std::function<Answer(NotificationChannel&, BusTask&)>;

  /// The question's answer, or `otherwise` without a bus or in time.
  template <class Answer>
  Answer ask(Answer otherwise, Question<Answer> question);
  template <class Answer>
  Answer answer(Answer otherwise, Question<Answer> const& question, Deadline deadline);
  NotificationChannel* service();
  std::unique_ptr<NotificationChannel> connect() const;

  void run(std::stop_token const& stop);
  bool runNextTask();
  void handleBus();
  void tellResponses();
  void sleep();

  std::string sessionBus_;
  std::filesystem::path soundsDirectory_;
  bool usesPortal_;
  std::mutex mutex_;  ///< of the tasks
  std::deque<std::function<void()>> tasks_;
  /// Held while telling, so that a listener that was replaced is not running any more; it may replace itself.
  std::recursive_mutex listenerMutex_;
  Listener listener_;
  WakeUp wakeUp_;
  std::unique_ptr<NotificationChannel> service_;  ///< the thread's
  std::jthread thread_;
};

}  // namespace nimbara
