// Notifications through the portal (org.freedesktop.portal.Notification), as programs in a sandbox send them.
// The same identifier replaces what is shown. Of the second version of the portal it uses sounds, categories
// and hints; the first shows title, text and buttons.
#pragma once

#include "platform/linux/dbus/notifications/notification_channel.h"
#include "platform/linux/dbus/portal/portal_names.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace nimbara {

/// What the portal can do.
struct PortalAbilities {
  std::uint32_t version = 0;         ///< 0: there is none
  std::set<std::string> categories;  ///< of notifications; others would be refused
};

/// What is sent for a request. The sound's file is handed over as a sealed copy.
PortalOptions portalNotification(NotificationRequest const& request, PortalAbilities const& abilities,
                                 std::filesystem::path const& soundsDirectory);

class PortalNotifications final : public NotificationChannel {
 public:
  /// Throws sdbus::Error when there is no bus.
  PortalNotifications(std::string const& sessionBus, std::filesystem::path soundsDirectory);

  sdbus::IConnection& connection() override { return *connection_; }
  AuthorizationStatus status(BusTask& task) override;
  Result<void, DeliveryError> deliver(NotificationRequest const& request, BusTask& task) override;
  /// The portal does not say when one was closed.
  bool isShown(std::string_view identifier) const override { return shown_.contains(identifier); }
  void withdraw(std::string_view identifier, BusTask& task) override;
  std::vector<NotificationResponse> takeResponses() override;

 private:
  std::optional<sdbus::Variant> property(char const* name, BusTask& task);
  PortalAbilities const& abilities(BusTask& task);
  void responded(std::string const& identifier, std::string const& action,
                 std::vector<sdbus::Variant> const& parameters);

  std::filesystem::path soundsDirectory_;
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IProxy> portal_;
  std::optional<PortalAbilities> abilities_;
  std::set<std::string, std::less<>> shown_;
  std::vector<NotificationResponse> responses_;
};

}  // namespace nimbara
