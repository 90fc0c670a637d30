// The conversation with the desktop's notification service (org.freedesktop.Notifications) over one
// connection to the session's bus: what it can do, which notifications it shows, and how people answered
// them. It knows a service that was replaced by another. One thread uses it; it waits no longer than the task
// it is given.
#pragma once

#include "platform/linux/dbus/notifications/notification_channel.h"
#include "platform/linux/dbus/notifications/notify_call.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class NotificationService final : public NotificationChannel {
 public:
  /// Throws sdbus::Error when there is no bus.
  NotificationService(std::string const& sessionBus, std::filesystem::path soundsDirectory);

  sdbus::IConnection& connection() override { return *connection_; }
  AuthorizationStatus status(BusTask& task) override;
  Result<void, DeliveryError> deliver(NotificationRequest const& request, BusTask& task) override;
  bool isShown(std::string_view identifier) const override { return shown_.contains(identifier); }
  void withdraw(std::string_view identifier, BusTask& task) override;
  std::vector<NotificationResponse> takeResponses() override;

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
