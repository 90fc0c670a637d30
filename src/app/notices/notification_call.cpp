#include "app/notices/notification_call.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Stems of the identifiers whose news the hazards page shows in full: official warnings, earthquakes,
/// geomagnetic activity.
constexpr std::string_view kOfHazards[] = {"gov_", "nws_", "tornado_conditions", "earthquake_",
                                           "beta_aurora"};

std::string pageOf(std::string_view identifier) {
  bool const isHazard =
      std::ranges::any_of(kOfHazards, [&](std::string_view stem) { return identifier.starts_with(stem); });
  return isHazard ? "hazards" : "now";
}

}  // namespace

std::optional<ApplicationCall> notificationCall(NotificationResponse const& response) {
  if (response.action != "default") return std::nullopt;
  ApplicationCall call{"start", {"--page", pageOf(response.identifier)}, response.activationToken};
  // Those of other places than the selected one carry the place's key.
  auto const at = response.identifier.rfind('@');
  if (at != std::string::npos && at + 1 < response.identifier.size()) {
    call.arguments.insert(call.arguments.end(), {"--place", response.identifier.substr(at + 1)});
  }
  return call;
}

}  // namespace nimbara
