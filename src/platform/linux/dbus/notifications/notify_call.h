// What is sent to a notification service for a request: the arguments of its Notify method, cut to what the
// service says it can do. A plain function, but for the look whether a sound file is there.
#pragma once

#include "platform/session/notification_center.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace nimbara {

struct NotificationCapabilities {
  bool body = false;
  bool bodyMarkup = false;  ///< the body is taken for markup
  bool actions = false;
  bool sound = false;
};

/// From the names of the Desktop Notifications Specification; others are skipped.
NotificationCapabilities capabilitiesOf(std::vector<std::string> const& names);

struct NotifyCall {
  std::string summary;
  std::string body;
  std::vector<std::string> actions;  ///< key, label, key, label, …
  std::map<std::string, sdbus::Variant> hints;
  std::int32_t expireTimeout = -1;  ///< milliseconds; -1 the service's choice, 0 never
};

NotifyCall notifyCall(NotificationRequest const& request, NotificationCapabilities const& capabilities,
                      std::filesystem::path const& soundsDirectory);

}  // namespace nimbara
