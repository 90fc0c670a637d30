#include "platform/settings/settings_store.h"

namespace nimbara {

namespace {

StoreDecision change(std::string_view key, std::optional<SettingValue> value) {
  return [changes = StoreChanges{{std::string(key), std::move(value)}}](SettingValues const&) {
    return changes;
  };
}

/// With it goes what an earlier version kept, which would count otherwise.
void put(StoreChanges& changes, SettingDefinition const& definition, std::optional<SettingValue> value) {
  changes[std::string(definition.key)] = std::move(value);
  if (!definition.formerKey.empty()) changes[std::string(definition.formerKey)] = std::nullopt;
}

std::unexpected<StoreError> unknown(std::string_view key) {
  return std::unexpected(
      StoreError{StoreError::Kind::refused, "no such setting: '" + std::string(key) + "'"});
}

}  // namespace

SettingsReading SettingsStore::settings() {
  auto stored = read(StoreArea::settings);
  if (!stored) return {Settings(registry_), stored.error()};
  return {Settings(registry_, std::move(*stored)), std::nullopt};
}

Result<void, StoreError> SettingsStore::set(std::string_view key, SettingValue const& value) {
  SettingDefinition const* const definition = registry_.find(key);
  if (definition == nullptr) return unknown(key);
  auto checked = checkedSetting(*definition, value);
  if (!checked) return std::unexpected(StoreError{StoreError::Kind::refused, checked.error()});
  StoreChanges changes;
  put(changes, *definition, std::move(*checked));
  return update(StoreArea::settings, [&changes](SettingValues const&) { return changes; });
}

Result<void, StoreError> SettingsStore::reset(std::string_view key) {
  SettingDefinition const* const definition = registry_.find(key);
  if (definition == nullptr) return unknown(key);
  StoreChanges changes;
  put(changes, *definition, std::nullopt);
  return update(StoreArea::settings, [&changes](SettingValues const&) { return changes; });
}

Result<void, StoreError> SettingsStore::setAll(SettingValues const& values) {
  StoreChanges changes;
  for (auto const& [key, value] : values) {
    SettingDefinition const* const definition = registry_.find(key);
    if (definition == nullptr) return unknown(key);
    auto checked = checkedSetting(*definition, value);
    if (!checked) return std::unexpected(StoreError{StoreError::Kind::refused, checked.error()});
    put(changes, *definition, std::move(*checked));
  }
  return update(StoreArea::settings, [&changes](SettingValues const&) { return changes; });
}

Result<std::optional<SettingValue>, StoreError> SettingsStore::state(std::string_view key) {
  auto const stored = read(StoreArea::state);
  if (!stored) return std::unexpected(stored.error());
  auto const found = stored->find(key);
  return found == stored->end() ? std::nullopt : std::optional(found->second);
}

Result<void, StoreError> SettingsStore::setState(std::string_view key, std::optional<SettingValue> value) {
  return update(StoreArea::state, change(key, std::move(value)));
}

}  // namespace nimbara
