#include "app/notification_call.h"

namespace nimbara {

std::optional<ApplicationCall> notificationCall(NotificationResponse const& response) {
  if (response.action != "default") return std::nullopt;
  ApplicationCall call{"start", {"--page", "now"}, response.activationToken};
  // Those of other places than the selected one carry the place's key.
  auto const at = response.identifier.rfind('@');
  if (at != std::string::npos && at + 1 < response.identifier.size()) {
    call.arguments.insert(call.arguments.end(), {"--place", response.identifier.substr(at + 1)});
  }
  return call;
}

}  // namespace nimbara
