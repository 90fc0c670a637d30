// A notification center that is made when it is first needed: for programs that must be there at once and may
// have nothing to tell for a while. Notifications know what a click on them opens. Any thread may call.
#pragma once

#include "platform/session/notification_center.h"

#include <memory>
#include <mutex>

namespace nimbara {

class LateNotificationCenter final : public NotificationCenter {
 public:
  using Make = std::function<std::unique_ptr<NotificationCenter>()>;

  /// `make` gives no null.
  explicit LateNotificationCenter(Make make) : make_(std::move(make)) {}

  AuthorizationStatus authorizationStatus() override { return center().authorizationStatus(); }
  AuthorizationStatus requestAuthorization() override { return center().requestAuthorization(); }
  Result<void, DeliveryError> deliver(NotificationRequest const& request) override {
    return center().deliver(withCall(request));
  }
  Result<void, DeliveryError> update(NotificationRequest const& request) override {
    return center().update(withCall(request));
  }
  void withdraw(std::string_view identifier) override { center().withdraw(identifier); }
  void setListener(Listener listener) override;

 private:
  NotificationCenter& center();
  static NotificationRequest withCall(NotificationRequest request);

  Make make_;
  std::mutex mutex_;  // guards the two below
  std::unique_ptr<NotificationCenter> made_;
  Listener listener_;
};

}  // namespace nimbara
