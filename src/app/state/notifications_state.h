// What the core knows of notifications at one moment, for the page that shows it. A value.
#pragma once

#include "app/settings/settings_registry.h"
#include "notifications/custom_notification.h"
#include "notifications/log/notification_log.h"
#include "platform/session/notification_center.h"
#include "platform/settings/settings_store.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct NotificationsState {
  Settings settings{settingsRegistry()};
  CustomNotificationList rules;
  std::vector<LoggedNotification> log;  ///< newest last
  bool isOurs = true;                   ///< this program notifies
  std::string holder;                   ///< the program that does, as it calls itself; may be empty
  bool isStandIn = false;               ///< made-up news stay in the log
  AuthorizationStatus status = AuthorizationStatus::notDetermined;
  std::optional<StoreError> problem;  ///< why something could not be read or changed
  std::string testNote;               ///< why the last test did not come through; empty when it did
  int testsTold = 0;                  ///< how many tests were taken by the desktop
};

/// What became of trying a rule.
struct TrialAnswer {
  Uuid rule;
  bool rings = false;
  std::string text;
};

}  // namespace nimbara
