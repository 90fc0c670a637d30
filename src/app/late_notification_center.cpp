#include "app/late_notification_center.h"

namespace nimbara {

void LateNotificationCenter::setListener(Listener listener) {
  std::lock_guard const lock(mutex_);
  if (made_) made_->setListener(listener);
  listener_ = std::move(listener);
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
