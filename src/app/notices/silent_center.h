// A notification center that takes everything and shows nothing: what was sent is said elsewhere, or is made
// up and must not reach the user's desktop.
#pragma once

#include "platform/session/notification_center.h"

namespace nimbara {

class SilentCenter final : public NotificationCenter {
 public:
  AuthorizationStatus authorizationStatus() override { return AuthorizationStatus::authorized; }
  AuthorizationStatus requestAuthorization() override { return AuthorizationStatus::authorized; }
  Result<void, DeliveryError> deliver(NotificationRequest const& /*request*/) override { return {}; }
  Result<void, DeliveryError> update(NotificationRequest const& /*request*/) override { return {}; }
  void withdraw(std::string_view /*identifier*/) override {}
  void setListener(Listener /*listener*/) override {}
};

}  // namespace nimbara
