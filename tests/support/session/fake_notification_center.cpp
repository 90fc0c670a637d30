#include "support/session/fake_notification_center.h"

#include <algorithm>
#include <utility>

namespace nimbara::test {

FakeNotificationCenter::FakeNotificationCenter() = default;
FakeNotificationCenter::~FakeNotificationCenter() = default;

AuthorizationStatus FakeNotificationCenter::authorizationStatus() {
  return copyOf(status_);
}

Result<void, DeliveryError> FakeNotificationCenter::deliver(NotificationRequest const& request) {
  return take(request, delivered_);
}

Result<void, DeliveryError> FakeNotificationCenter::update(NotificationRequest const& request) {
  if (std::ranges::count(shown(), request.identifier) == 0) return {};
  return take(request, updated_);
}

void FakeNotificationCenter::withdraw(std::string_view identifier) {
  std::lock_guard const lock(mutex_);
  if (std::erase(shown_, identifier) > 0) withdrawn_.emplace_back(identifier);
}

void FakeNotificationCenter::setListener(Listener listener) {
  std::lock_guard const lock(mutex_);
  listener_ = std::move(listener);
}

void FakeNotificationCenter::setStatus(AuthorizationStatus status) {
  std::lock_guard const lock(mutex_);
  status_ = status;
}

void FakeNotificationCenter::setFailure(std::optional<DeliveryError> failure) {
  std::lock_guard const lock(mutex_);
  failure_ = std::move(failure);
}

void FakeNotificationCenter::close(std::string_view identifier) {
  std::lock_guard const lock(mutex_);
  std::erase(shown_, identifier);
}

void FakeNotificationCenter::respond(NotificationResponse const& response) {
  if (Listener const listener = copyOf(listener_)) listener(response);
}

int FakeNotificationCenter::attempts() const {
  return copyOf(attempts_);
}
std::vector<NotificationRequest> FakeNotificationCenter::delivered() const {
  return copyOf(delivered_);
}
std::vector<NotificationRequest> FakeNotificationCenter::updated() const {
  return copyOf(updated_);
}
std::vector<std::string> FakeNotificationCenter::withdrawn() const {
  return copyOf(withdrawn_);
}
std::vector<std::string> FakeNotificationCenter::shown() const {
  return copyOf(shown_);
}

Result<void, DeliveryError> FakeNotificationCenter::take(NotificationRequest const& request,
                                                         std::vector<NotificationRequest>& list) {
  std::lock_guard const lock(mutex_);
  ++attempts_;
  if (failure_) return std::unexpected(*failure_);
  list.push_back(request);
  if (std::ranges::count(shown_, request.identifier) == 0) shown_.push_back(request.identifier);
  return {};
}

template <class T>
T FakeNotificationCenter::copyOf(T const& list) const {
  std::lock_guard const lock(mutex_);
  return list;
}

}  // namespace nimbara::test
