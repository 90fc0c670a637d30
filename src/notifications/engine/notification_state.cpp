#include "notifications/engine/notification_state.h"

#include "base/text/text.h"

#include <algorithm>

namespace nimbara {

namespace {

using Rules = NotificationState::Rules;

std::unexpected<StoreError> refused(std::string sentence) {
  return std::unexpected(StoreError{StoreError::Kind::refused, std::move(sentence)});
}

NotificationState::Saved listOf(SettingValues const& settings) {
  auto const found = settings.find(kCustomNotificationsKey);
  if (found == settings.end()) return CustomNotificationList{};
  auto const* const text = std::get_if<std::string>(&found->second);
  auto list = parseCustomNotifications(text == nullptr ? "" : *text);
  if (list) return std::move(*list);
  return refused("the stored rules cannot be read (" + list.error() +
                 "); delete them with: nimbara settings reset customNotifications");
}

/// Runs `change` on the rule of that identifier.
RulesResult onRule(Rules& rules, Uuid const& id, auto change) {
  auto const found = std::ranges::find(rules, id, &CustomNotification::id);
  if (found == rules.end()) return std::unexpected("no such rule: '" + id.text() + "'");
  change(found);
  return {};
}

bool isWithoutPlace(CustomNotification const& rule, std::span<Uuid const> places) {
  return rule.isEnabled && rule.locationID && std::ranges::count(places, *rule.locationID) == 0;
}

}  // namespace

Result<CustomNotification, std::string> findRule(std::span<CustomNotification const> rules,
                                                 std::string_view prefix) {
  std::string const wanted = asciiLowered(prefix);
  CustomNotification const* found = nullptr;
  for (CustomNotification const& rule : rules) {
    if (!rule.id.text().starts_with(wanted)) continue;
    if (found != nullptr) return std::unexpected("several rule IDs start with '" + oneLine(prefix) + "'");
    found = &rule;
  }
  if (wanted.empty() || found == nullptr) return std::unexpected("no such rule: '" + oneLine(prefix) + "'");
  return *found;
}

NotificationState::Saved NotificationState::customNotifications() {
  auto const settings = store_.read(StoreArea::settings);
  if (!settings) return std::unexpected(settings.error());
  return listOf(*settings);
}

NotificationState::Saved NotificationState::change(std::function<RulesResult(Rules&)> const& change) {
  CustomNotificationList after;
  auto const decide = [&](SettingValues const& settings) -> Result<StoreChanges, StoreError> {
    auto list = listOf(settings);
    if (!list) return std::unexpected(list.error());
    Rules const before = list->rules;
    if (auto const done = change(list->rules); !done) return refused(done.error());
    after = std::move(*list);
    if (after.rules == before) return StoreChanges{};
    return StoreChanges{{std::string(kCustomNotificationsKey), encodeCustomNotifications(after)}};
  };
  if (auto const saved = store_.update(StoreArea::settings, decide); !saved) {
    return std::unexpected(saved.error());
  }
  return after;
}

NotificationState::Saved NotificationState::add(CustomNotification const& rule) {
  return change([&](Rules& rules) -> RulesResult {
    if (auto fault = faultOf(rule)) return std::unexpected(*fault);
    if (std::ranges::count(rules, rule.id, &CustomNotification::id) > 0) {
      return std::unexpected("there is a rule '" + rule.id.text() + "' already");
    }
    rules.push_back(rule);
    return {};
  });
}

NotificationState::Saved NotificationState::edit(CustomNotification const& rule) {
  return change([&](Rules& rules) -> RulesResult {
    if (auto fault = faultOf(rule)) return std::unexpected(*fault);
    return onRule(rules, rule.id, [&](auto found) { *found = rule; });
  });
}

NotificationState::Saved NotificationState::remove(Uuid const& id) {
  return change([&](Rules& rules) { return onRule(rules, id, [&](auto found) { rules.erase(found); }); });
}

NotificationState::Saved NotificationState::setEnabled(Uuid const& id, bool isEnabled) {
  return change(
      [&](Rules& rules) { return onRule(rules, id, [&](auto found) { found->isEnabled = isEnabled; }); });
}

NotificationState::Saved NotificationState::disableWithoutPlace(std::span<Uuid const> places) {
  return change([&](Rules& rules) -> RulesResult {
    for (CustomNotification& rule : rules) {
      if (isWithoutPlace(rule, places)) rule.isEnabled = false;
    }
    return {};
  });
}

}  // namespace nimbara
