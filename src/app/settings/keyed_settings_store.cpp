#include "app/settings/keyed_settings_store.h"

#include "app/settings/setting_text.h"
#include "base/files/file_turn.h"

#include <algorithm>
#include <tuple>

namespace nimbara {

namespace {

bool isKey(SettingsRegistry const& registry, std::string_view name) {
  SettingDefinition const* const definition = registry.find(name);
  return definition != nullptr && definition->isSecret;
}

/// Null for nothing, for a reference and for what is no text.
std::string const* plainKey(SettingValue const& value) {
  auto const* const text = std::get_if<std::string>(&value);
  return text == nullptr || text->empty() || ServiceKeys::isReference(*text) ? nullptr : text;
}

/// The keys among the settings.
StoreChanges plainKeys(SettingsRegistry const& registry, SettingValues const& stored) {
  StoreChanges keys;
  for (auto const& [name, value] : stored) {
    if (plainKey(value) != nullptr && isKey(registry, name)) keys.emplace(name, value);
  }
  return keys;
}

}  // namespace

KeyedSettingsStore::KeyedSettingsStore(std::unique_ptr<SettingsStore> store,
                                       std::filesystem::path const& directory, MakeSecretStore keyring)
    : SettingsStore(store->registry()), store_(std::move(store)), keys_(directory, std::move(keyring)) {}

Result<std::string, StoreError> KeyedSettingsStore::text(Settings const& settings,
                                                         SettingDefinition const& definition) const {
  std::string kept = settingText(settings.value(definition.key));
  if (!definition.isSecret) return kept;
  auto key = keys_.find(kept);
  if (key) return std::move(*key);
  return std::unexpected(StoreError{StoreError::Kind::unreadable,
                                    std::string(definition.key) + " cannot be read: " + key.error()});
}

/// Whether it would set or take away a key, as the settings are now.
bool KeyedSettingsStore::concernsKeys(StoreDecision const& decide) {
  auto const stored = store_->read(StoreArea::settings);
  auto const changes = stored ? decide(*stored) : std::unexpected(stored.error());
  return changes &&
         std::ranges::any_of(*changes, [&](auto const& change) { return isKey(registry(), change.first); });
}

Result<StoreChanges, StoreError> KeyedSettingsStore::withReferences(
    Result<StoreChanges, StoreError> changes) const {
  if (!changes) return changes;
  for (auto& [name, value] : *changes) {
    std::string const* const key = value && isKey(registry(), name) ? plainKey(*value) : nullptr;
    if (key == nullptr) continue;
    auto reference = keys_.add(*key);
    if (!reference)
      return std::unexpected(StoreError{StoreError::Kind::unwritable, std::move(reference.error())});
    value = std::move(*reference);
  }
  return changes;
}

Result<void, StoreError> KeyedSettingsStore::update(StoreArea area, StoreDecision const& decide) {
  if (area != StoreArea::settings || !concernsKeys(decide)) return store_->update(area, decide);
  auto const turn = keys_.turn();
  auto const done =
      store_->update(area, [&](SettingValues const& stored) { return withReferences(decide(stored)); });
  settleInTurn(ServiceKeys::Others::goAway);
  return done;
}

SettingsReading KeyedSettingsStore::opened() {
  auto reading = settings();
  bool const hasKeys = std::ranges::any_of(registry().all(), [&](SettingDefinition const* definition) {
    return definition->isSecret && plainKey(reading.settings.value(definition->key)) != nullptr;
  });
  return hasKeys && adopt() ? settings() : reading;
}

/// False where there is no key among the settings, or no other place for it.
bool KeyedSettingsStore::adopt() {
  auto const stored = store_->read(StoreArea::settings);
  if (!stored || plainKeys(registry(), *stored).empty()) return false;
  auto const turn = keys_.turn();
  return store_
      ->update(StoreArea::settings,
               [this](SettingValues const& now) { return withReferences(plainKeys(registry(), now)); })
      .has_value();
}

void KeyedSettingsStore::settle() {
  adopt();
  if (keys_.isEmpty()) return;
  auto const turn = keys_.turn();
  // Settings that somebody has put aside for a moment may come back.
  settleInTurn(ServiceKeys::Others::stay);
}

void KeyedSettingsStore::settleInTurn(ServiceKeys::Others others) {
  auto const stored = store_->read(StoreArea::settings);
  if (!stored) return;
  ServiceKeys::Uses inUse;
  for (auto const& [name, value] : *stored) {
    auto const* const text = std::get_if<std::string>(&value);
    if (text != nullptr && ServiceKeys::isReference(*text)) inUse.emplace(*text, name);
  }
  keys_.settle(inUse, others);
}

}  // namespace nimbara
