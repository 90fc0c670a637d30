// The conversation with the desktop's notification service (org.freedesktop.Notifications) over one
// connection to the session's bus: what it can do, which notifications it shows, and how people answered
// them. It knows a service that was replaced by another. One thread uses it; it waits no longer than the task
// it is given.
#pragma once

#include "platform/linux/dbus/bus.h"
#include "platform/linux/dbus/notifications/notify_call.h"
#include "platform/notification_center.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Every method may throw sdbus::Error when the bus has gone.
class NotificationService {
 public:
  /// Throws sdbus::Error when there is no bus.
  NotificationService(std::string const& sessionBus, std::filesystem::path soundsDirectory);

  sdbus::IConnection& connection() { return *connection_; }

  /// Does not start a service.
  AuthorizationStatus status(BusTask& task);
  Result<void, DeliveryError> deliver(NotificationRequest const& request, BusTask& task);
  bool isShown(std::string_view identifier) const { return shown_.contains(identifier); }
  void withdraw(std::string_view identifier, BusTask& task);

  /// What people answered since the last call, in their order.
  std::vector<NotificationResponse> takeResponses();

 private:
  using ServerId = std::uint32_t;

  void hearOwner();
  void hearResponses();
  void forgetServer();
  std::optional<std::string> identifierOf(ServerId id) const;
  void responded(ServerId id, std::string const& action);
  void closed(ServerId id);
  Result<NotificationCapabilities, DeliveryError> capabilities(BusTask& task);
  Result<void, DeliveryError> notify(std::string const& identifier, NotifyCall const& call, BusTask& task);

  std::filesystem::path soundsDirectory_;
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IProxy> bus_;
  std::unique_ptr<sdbus::IProxy> server_;
  sdbus::Slot ownerChanges_;
  std::optional<NotificationCapabilities> capabilities_;
  std::map<std::string, ServerId, std::less<>> shown_;
  std::map<ServerId, std::string> activationTokens_;  ///< of responses that are about to come
  std::vector<NotificationResponse> responses_;
};

}  // namespace nimbara
