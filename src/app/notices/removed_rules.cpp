#include "app/notices/removed_rules.h"

#include "notifications/engine/notification_state.h"

namespace nimbara {

void RemovedRules::disable(Uuid const& place, std::vector<Uuid> const& remaining) {
  NotificationState rules(store_);
  auto const before = rules.customNotifications();
  if (!before) return;
  std::vector<Uuid>& disabled = disabled_[place];
  for (CustomNotification const& rule : before->rules) {
    if (rule.isEnabled && rule.locationID == place) disabled.push_back(rule.id);
  }
  std::ignore = rules.disableWithoutPlace(remaining);
}

void RemovedRules::enable(Uuid const& place) {
  NotificationState rules(store_);
  for (Uuid const& rule : disabled_[place]) std::ignore = rules.setEnabled(rule, true);
  disabled_.erase(place);
}

}  // namespace nimbara
