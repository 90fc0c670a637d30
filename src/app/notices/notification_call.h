// What the window is asked for when a person clicks on a notification: to come forward with the place and
// page that the notification is about. Pure.
#pragma once

#include "platform/session/application_instance.h"
#include "platform/session/notification_center.h"

#include <optional>

namespace nimbara {

/// Nothing for answers that are not about looking: snoozing and muting.
std::optional<ApplicationCall> notificationCall(NotificationResponse const& response);

}  // namespace nimbara
