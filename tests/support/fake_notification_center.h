// A notification center that keeps what it is asked to do, and shows nothing. It can be denied, refuse, and
// play the person in front of the screen. Any thread may call.
#pragma once

#include "platform/notification_center.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nimbara::test {

class FakeNotificationCenter final : public NotificationCenter {
 public:
  AuthorizationStatus authorizationStatus() override {
    std::lock_guard const lock(mutex_);
    return status_;
  }
  AuthorizationStatus requestAuthorization() override { return authorizationStatus(); }

  Result<void, DeliveryError> deliver(NotificationRequest const& request) override {
    return take(request, delivered_);
  }
  Result<void, DeliveryError> update(NotificationRequest const& request) override {
    {
      std::lock_guard const lock(mutex_);
      if (std::ranges::count(shown_, request.identifier) == 0) return {};
    }
    return take(request, updated_);
  }
  void withdraw(std::string_view identifier) override {
    std::lock_guard const lock(mutex_);
    if (std::erase(shown_, identifier) > 0) withdrawn_.emplace_back(identifier);
  }
  void setListener(Listener listener) override {
    std::lock_guard const lock(mutex_);
    listener_ = std::move(listener);
  }

  void setStatus(AuthorizationStatus status) {
    std::lock_guard const lock(mutex_);
    status_ = status;
  }
  /// Every delivery and update fails so from now on; nothing: none does.
  void setFailure(std::optional<DeliveryError> failure) {
    std::lock_guard const lock(mutex_);
    failure_ = std::move(failure);
  }
  /// Somebody closes a notification without an answer.
  void close(std::string_view identifier) {
    std::lock_guard const lock(mutex_);
    std::erase(shown_, identifier);
  }
  void respond(NotificationResponse const& response) {
    Listener listener;
    {
      std::lock_guard const lock(mutex_);
      listener = listener_;
    }
    if (listener) listener(response);
  }

  /// Deliveries and updates, accepted or not.
  int attempts() const { return copyOf(attempts_); }
  /// What was accepted, in the order of its coming.
  std::vector<NotificationRequest> delivered() const { return copyOf(delivered_); }
  /// Updates of what was still to be seen.
  std::vector<NotificationRequest> updated() const { return copyOf(updated_); }
  std::vector<std::string> withdrawn() const { return copyOf(withdrawn_); }
  /// The identifiers of what is to be seen.
  std::vector<std::string> shown() const { return copyOf(shown_); }

 private:
  Result<void, DeliveryError> take(NotificationRequest const& request,
                                   std::vector<NotificationRequest>& list) {
    std::lock_guard const lock(mutex_);
    ++attempts_;
    if (failure_) return std::unexpected(*failure_);
    list.push_back(request);
    if (std::ranges::count(shown_, request.identifier) == 0) shown_.push_back(request.identifier);
    return {};
  }
  template <class T>
  T copyOf(T const& list) const {
    std::lock_guard const lock(mutex_);
    return list;
  }

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
