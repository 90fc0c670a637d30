// A notification center that keeps what it is asked to do, and shows nothing. It can be denied, refuse, and
// play the person in front of the screen. Any thread may call.
#pragma once

#include "platform/session/notification_center.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara::test {

class FakeNotificationCenter final : public NotificationCenter {
 public:
  FakeNotificationCenter();
  ~FakeNotificationCenter() override;

  AuthorizationStatus authorizationStatus() override;
  AuthorizationStatus requestAuthorization() override { return authorizationStatus(); }
  Result<void, DeliveryError> deliver(NotificationRequest const& request) override;
  Result<void, DeliveryError> update(NotificationRequest const& request) override;
  void withdraw(std::string_view identifier) override;
  void setListener(Listener listener) override;

  void setStatus(AuthorizationStatus status);
  /// Every delivery and update fails so from now on; nothing: none does.
  void setFailure(std::optional<DeliveryError> failure);
  /// Somebody closes a notification without an answer.
  void close(std::string_view identifier);
  void respond(NotificationResponse const& response);

  /// Deliveries and updates, accepted or not.
  int attempts() const;
  /// What was accepted, in the order of its coming.
  std::vector<NotificationRequest> delivered() const;
  /// Updates of what was still to be seen.
  std::vector<NotificationRequest> updated() const;
  std::vector<std::string> withdrawn() const;
  /// The identifiers of what is to be seen.
  std::vector<std::string> shown() const;

 private:
  Result<void, DeliveryError> take(NotificationRequest const& request,
                                   std::vector<NotificationRequest>& list);
  template <class T>
  T copyOf(T const& list) const;

  mutable std::mutex mutex_;
  AuthorizationStatus status_ = AuthorizationStatus::authorized;
  std::optional<DeliveryError> failure_;
  int attempts_ = 0;
  Listener listener_;
  std::vector<NotificationRequest> delivered_;
  std::vector<NotificationRequest> updated_;
  std::vector<std::string> withdrawn_;
  std::vector<std::string> shown_;
};

}  // namespace nimbara::test
