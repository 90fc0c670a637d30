// The user's own notification rules in the settings store, where every change is saved at once as one step
// that no other process can come between. Holds nothing itself; any thread may call.
#pragma once

#include "notifications/custom_notification.h"
#include "platform/settings/settings_store.h"

#include <functional>
#include <span>
#include <string_view>

namespace nimbara {

/// The setting that holds them, a JSON list.
inline constexpr std::string_view kCustomNotificationsKey = "customNotifications";

/// Changes of the list. An error is a sentence and leaves the list as it was.
using RulesResult = Result<void, std::string>;

/// The one rule whose identifier begins with `prefix`, in either letter case; the error says that there is
/// none or that there are several.
Result<CustomNotification, std::string> findRule(std::span<CustomNotification const> rules,
                                                 std::string_view prefix);

class NotificationState {
 public:
  using Rules = std::vector<CustomNotification>;
  using Saved = Result<CustomNotificationList, StoreError>;

  explicit NotificationState(SettingsStore& store) : store_(store) {}

  /// Refuses a stored text that is not a list at all.
  Saved customNotifications();
  /// These give the list as it was saved.
  Saved change(std::function<RulesResult(Rules&)> const& change);
  Saved add(CustomNotification const& rule);
  /// In place of the rule of the same identifier.
  Saved edit(CustomNotification const& rule);
  Saved remove(Uuid const& id);
  Saved setEnabled(Uuid const& id, bool isEnabled);
  /// Disables the rules that watch other places than `places` and the selected one; writes nothing when there
  /// are none.
  Saved disableWithoutPlace(std::span<Uuid const> places);

 private:
  SettingsStore& store_;
};

}  // namespace nimbara
