#include "app/notices/late_notification_center.h"

#include "app/notices/notification_call.h"

namespace nimbara {

void LateNotificationCenter::setListener(Listener listener) {
  NotificationCenter* made = nullptr;
  {
    std::lock_guard const lock(mutex_);
    listener_ = listener;
    made = made_.get();
  }
  // Without the lock: this waits for a listener that is running, and that one may ask this center something.
  if (made != nullptr) made->setListener(std::move(listener));
}

NotificationRequest LateNotificationCenter::withCall(NotificationRequest request) {
  if (auto call = notificationCall({request.identifier, "default", {}})) request.opens = call->arguments;
  return request;
}

NotificationCenter& LateNotificationCenter::center() {
  std::lock_guard const lock(mutex_);
  if (!made_) {
    made_ = make_();
    made_->setListener(listener_);
  }
  return *made_;
}

}  // namespace nimbara
