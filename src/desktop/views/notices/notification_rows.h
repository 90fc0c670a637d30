// The settings of notifications as the page groups them: one table of groups and rows, with what a row needs
// beside the setting's own definition. Constants.
#pragma once

#include "notifications/custom/condition_kinds.h"

#include <optional>
#include <span>
#include <string_view>

namespace nimbara {

struct NotificationRow {
  enum class Control { toggle, number, level, hour };

  std::string_view key;
  Control control = Control::toggle;
  std::string_view of = {};  // NOLINT(readability-redundant-member-init): the switch that it belongs to
  std::optional<ConditionUnit> unit = std::nullopt;  ///< of a number
  double step = 1;                                   ///< in the user's unit
  double most = 0;                                   ///< metric; 0: the definition's own
};

struct NotificationGroup {
  std::string_view name;
  std::span<NotificationRow const> rows;
};

std::span<NotificationGroup const> notificationGroups();
NotificationRow const* findNotificationRow(std::string_view key);

}  // namespace nimbara
