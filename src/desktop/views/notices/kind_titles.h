// What can be muted, in words: rules, kinds of warnings, single countries and storms, rules of the user's
// own. Pure.
#pragma once

#include "desktop/views/view_context.h"
#include "notifications/custom_notification.h"

#include <string>
#include <string_view>

namespace nimbara {

/// The title of the setting with that key.
std::string settingTitle(std::string_view key, ViewContext const& view);

/// "Heavy rain", "Official warnings: wind", "Official warnings: wind (level “medium”)". What no rule of this
/// version has is named as one that is unknown.
std::string kindTitle(std::string_view kind, CustomNotificationList const& own, ViewContext const& view);

/// The rule or rule of the user's own that a kind belongs to, as a mute names it: "gov" of "gov:wind".
std::string_view stemOfKind(std::string_view kind);

}  // namespace nimbara
