// A conversation with whoever shows notifications in the session: the desktop's own service, or its portal.
// One thread uses it; it waits no longer than the task it is given.
#pragma once

#include "platform/linux/dbus/bus.h"
#include "platform/session/notification_center.h"

#include <string_view>
#include <vector>

namespace nimbara {

/// Every method may throw sdbus::Error when the bus has gone.
class NotificationChannel {
 public:
  virtual ~NotificationChannel() = default;

  virtual sdbus::IConnection& connection() = 0;
  /// Does not start a service.
  virtual AuthorizationStatus status(BusTask& task) = 0;
  virtual Result<void, DeliveryError> deliver(NotificationRequest const& request, BusTask& task) = 0;
  virtual bool isShown(std::string_view identifier) const = 0;
  virtual void withdraw(std::string_view identifier, BusTask& task) = 0;
  /// What people answered since the last call, in their order.
  virtual std::vector<NotificationResponse> takeResponses() = 0;
};

}  // namespace nimbara
